#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace hueshelf {

class ExtractionRandom;

// Up to a handful of colours that stand for an image: k-means over a 50 by 50 thumbnail in RGB,
// seeded by k-means++, then only colours that differ visibly. Pure functions; the only state is
// the random source the caller hands in.
namespace ImageColorExtractor {

// Red, green and blue on the scale 0 to 255.
using Pixel = std::array<double, 3>;

struct Cluster {
    Pixel centroid{};
    int count = 0; // pixels assigned to it

    friend bool operator==(const Cluster&, const Cluster&) = default;
};

inline constexpr int thumbnailSide = 50;
inline constexpr int colorsAsked = 6;
inline constexpr int iterationLimit = 10;
inline constexpr double convergenceLimit = 1.0;
inline constexpr int firstPassAlpha = 128;
inline constexpr double nearWhiteAbove = 240.0;
inline constexpr double nearBlackBelow = 15.0;
inline constexpr double distinctnessLimit = 30.0;

// The image file's colours as canonical hex codes, most common first. Absent for a file that
// can't be read, an image without a visible pixel, or maxColors below 1; an empty list when no
// cluster survives the selection.
std::optional<QStringList> extractColors(const QString& path, int maxColors,
                                         ExtractionRandom& random);
// The same with a freshly seeded random source.
std::optional<QStringList> extractColors(const QString& path, int maxColors);
// Everything after the file is read: the thumbnail's colours.
std::optional<QStringList> colorsOfThumbnail(const QImage& thumbnail, int maxColors,
                                             ExtractionRandom& random);

// The thumbnail's pixels, row by row and without premultiplication. First only pixels with
// alpha of at least 128 that are neither near-white nor near-black; if that keeps nothing,
// every pixel that isn't fully transparent. Any image format is accepted; the pixels are read
// as premultiplied RGBA.
std::vector<Pixel> sampledPixels(const QImage& thumbnail);

// k-means++: the first seed uniformly, each next one with a chance proportional to its squared
// distance from the nearest seed so far.
std::vector<Pixel> seedCentroids(const std::vector<Pixel>& pixels, int k, ExtractionRandom& random);

// At most `limit` rounds of assignment and update, ending early once the centroids moved less
// than 1.0 in total. Counts are those of the last assignment, made before the last update.
std::vector<Cluster> kMeans(const std::vector<Pixel>& pixels, int k, int limit,
                            ExtractionRandom& random);

// The clusters by count (largest first, equal counts in their order), each rounded colour kept
// unless it lies closer than 30.0 to one kept before; as "#RRGGBB".
QStringList distinctColors(std::vector<Cluster> clusters);

} // namespace ImageColorExtractor
} // namespace hueshelf
