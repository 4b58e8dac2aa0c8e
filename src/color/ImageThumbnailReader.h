#pragma once

#include <QImage>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace hueshelf {

// How much work and memory one image may cost. Users drop camera photos of tens of megapixels;
// a file may also claim dimensions that nothing could hold, and then it is refused before any
// pixel is decoded.
struct ThumbnailLimits {
    // Source pixels a row-by-row decoder (JPEG, PNG) may walk through.
    qint64 maxSourcePixels = 300'000'000;
    // Bytes a decoder that must hold a whole picture (HEIC, Qt's formats, a progressive JPEG's
    // coefficients) may allocate for it.
    qint64 maxDecodedBytes = qint64{256} * 1024 * 1024;
};

// An image file as a 50 by 50 thumbnail: stretched to the square without keeping the aspect,
// each pixel the area average of what it covers, in premultiplied space; the format is
// Format_RGBA8888_Premultiplied. The format is told by the file's content, not its name.
// Absent for anything that can't be read in full: a missing, empty or unreadable file, a
// directory, an unknown format, a truncated or corrupt file, or one beyond the limits.
// Safe to call on any thread.
namespace ImageThumbnailReader {

std::optional<QImage> read(const QString& path, const ThumbnailLimits& limits = {});

} // namespace ImageThumbnailReader
} // namespace hueshelf
