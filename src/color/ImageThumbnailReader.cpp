#include "color/ImageThumbnailReader.h"

#include "color/ThumbnailDecoders.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <new>

namespace hueshelf::ImageThumbnailReader {

namespace {

// Enough for every signature below; HEIF needs its 'ftyp' box and first brands.
constexpr qint64 kSniffBytes = 64;

bool startsWith(const QByteArray& head, const char* signature, qsizetype length) {
    return head.size() >= length && std::equal(signature, signature + length, head.cbegin());
}

} // namespace

std::optional<QImage> read(const QString& path, const ThumbnailLimits& limits) {
    const QFileInfo info(path);
    if (!info.isFile() || info.size() == 0) {
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray head = file.peek(kSniffBytes);
    try {
        if (startsWith(head, "\xFF\xD8\xFF", 3)) {
            return ThumbnailDecoders::decodeJpeg(file, limits);
        }
        if (startsWith(head, "\x89PNG\r\n\x1A\n", 8)) {
            return ThumbnailDecoders::decodePng(file, limits);
        }
        if (ThumbnailDecoders::looksLikeHeif(head)) {
            file.close();
            return ThumbnailDecoders::decodeHeif(path, limits);
        }
        return ThumbnailDecoders::decodeWithQt(file, limits);
    } catch (const std::bad_alloc&) {
        // A decoder that couldn't get its buffers has failed like any other.
        return std::nullopt;
    }
}

} // namespace hueshelf::ImageThumbnailReader
