// The other promised formats through Qt's image plugins: GIF (its first frame), WebP, TIFF and
// BMP. Whatever else happens to be installed (icons, SVG, MNG, TGA, the portable bitmaps...) is
// refused: each plugin is more code that strangers' files can reach, for formats nobody was
// promised. These decode the whole picture, so its claimed size is checked
// before a pixel is read, and Qt's own allocation limit stands behind that check for formats
// that don't tell their size up front.

#include "color/ThumbnailAccumulator.h"
#include "color/ThumbnailDecoders.h"

#include <QByteArrayList>
#include <QImageIOHandler>
#include <QImageReader>

#include <algorithm>
#include <mutex>

namespace hueshelf::ThumbnailDecoders {

namespace {

// Process-wide in Qt; the same 256 megabytes as ThumbnailLimits' default.
constexpr int kQtAllocationLimitMb = 256;
// A plugin that can decode at reduced size needn't go further than this for an average.
constexpr int kScaledDecodeSide = 400;

void limitAllocationsOnce() {
    static std::once_flag once;
    std::call_once(once, [] { QImageReader::setAllocationLimit(kQtAllocationLimitMb); });
}

} // namespace

std::optional<QImage> decodeWithQt(QFile& file, const ThumbnailLimits& limits) {
    limitAllocationsOnce();
    // On a device the reader asks each plugin about the content; the name plays no part.
    QImageReader reader(&file);
    if (!reader.canRead()) {
        return std::nullopt;
    }
    static const QByteArrayList promised{"gif", "webp", "tif", "tiff", "bmp"};
    if (!promised.contains(reader.format().toLower())) {
        return std::nullopt;
    }
    const QSize size = reader.size();
    if (size.isValid()) {
        if (size.isEmpty() || qint64{size.width()} * size.height() * 4 > limits.maxDecodedBytes) {
            return std::nullopt;
        }
        // The aspect needn't be kept: the thumbnail is stretched anyway.
        if (reader.supportsOption(QImageIOHandler::ScaledSize) &&
            (size.width() > kScaledDecodeSide || size.height() > kScaledDecodeSide)) {
            reader.setScaledSize(QSize(std::min(size.width(), kScaledDecodeSide),
                                       std::min(size.height(), kScaledDecodeSide)));
        }
    }
    QImage image;
    if (!reader.read(&image) || image.isNull()) {
        return std::nullopt;
    }
    image.convertTo(QImage::Format_RGBA8888_Premultiplied);
    if (image.isNull()) {
        return std::nullopt;
    }
    ThumbnailAccumulator accumulator(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y) {
        accumulator.addRow(y, image.constScanLine(y), image.width(),
                           ThumbnailAccumulator::Alpha::premultiplied);
    }
    return accumulator.image();
}

} // namespace hueshelf::ThumbnailDecoders
