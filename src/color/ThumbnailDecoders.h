#pragma once

#include "color/ImageThumbnailReader.h"

#include <QByteArray>
#include <QFile>
#include <QImage>

#include <optional>

// The decoders behind ImageThumbnailReader, one file each. Each gets the open file at its
// start and answers the finished thumbnail or nothing.
namespace hueshelf::ThumbnailDecoders {

// Scaled-down decoding through libjpeg's reduced-size IDCT, scanline by scanline.
std::optional<QImage> decodeJpeg(QFile& file, const ThumbnailLimits& limits);
// libpng row by row, interlaced passes included.
std::optional<QImage> decodePng(QFile& file, const ThumbnailLimits& limits);
// libheif: an embedded thumbnail when one is large enough, else the primary image.
bool looksLikeHeif(const QByteArray& head);
std::optional<QImage> decodeHeif(const QString& path, const ThumbnailLimits& limits);
// Qt's image plugins: GIF, WebP, TIFF, BMP and the rest.
std::optional<QImage> decodeWithQt(QFile& file, const ThumbnailLimits& limits);

} // namespace hueshelf::ThumbnailDecoders
