#include "color/ImageColorExtractor.h"

#include "color/ExtractionRandom.h"
#include "color/ImageThumbnailReader.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace hueshelf::ImageColorExtractor {

namespace {

double squaredDistance(const Pixel& a, const Pixel& b) {
    const double dr = a[0] - b[0];
    const double dg = a[1] - b[1];
    const double db = a[2] - b[2];
    return dr * dr + dg * dg + db * db;
}

bool isNearWhite(const Pixel& p) {
    return p[0] > nearWhiteAbove && p[1] > nearWhiteAbove && p[2] > nearWhiteAbove;
}

bool isNearBlack(const Pixel& p) {
    return p[0] < nearBlackBelow && p[1] < nearBlackBelow && p[2] < nearBlackBelow;
}

// One reading of all pixels. The first pass wants solid pixels that say something; the second
// takes whatever is visible, so that a plain white or black image still has a colour.
void collect(const QImage& image, bool firstPass, std::vector<Pixel>& out) {
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            const uchar* px = row + 4 * x;
            const int alphaByte = px[3];
            if (firstPass ? alphaByte < firstPassAlpha : alphaByte == 0) {
                continue;
            }
            const double a = alphaByte / 255.0;
            const Pixel pixel{std::min(px[0] / a, 255.0), std::min(px[1] / a, 255.0),
                              std::min(px[2] / a, 255.0)};
            if (firstPass && (isNearWhite(pixel) || isNearBlack(pixel))) {
                continue;
            }
            out.push_back(pixel);
        }
    }
}

// The index of the seed or centroid nearest to `pixel`; a tie keeps the earlier one.
std::size_t nearest(const Pixel& pixel, const std::vector<Pixel>& centroids) {
    double best = std::numeric_limits<double>::max();
    std::size_t bestIndex = 0;
    for (std::size_t c = 0; c < centroids.size(); ++c) {
        const double d = squaredDistance(pixel, centroids[c]);
        if (d < best) {
            best = d;
            bestIndex = c;
        }
    }
    return bestIndex;
}

QString hexOf(const std::array<int, 3>& rgb) {
    return QString::asprintf("#%02X%02X%02X", rgb[0], rgb[1], rgb[2]);
}

} // namespace

std::vector<Pixel> sampledPixels(const QImage& thumbnail) {
    const QImage image = thumbnail.format() == QImage::Format_RGBA8888_Premultiplied
                             ? thumbnail
                             : thumbnail.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    std::vector<Pixel> pixels;
    pixels.reserve(static_cast<std::size_t>(thumbnailSide * thumbnailSide));
    collect(image, true, pixels);
    if (pixels.empty()) {
        collect(image, false, pixels);
    }
    return pixels;
}

std::vector<Pixel> seedCentroids(const std::vector<Pixel>& pixels, int k,
                                 ExtractionRandom& random) {
    std::vector<Pixel> seeds;
    if (pixels.empty() || k < 1) {
        return seeds;
    }
    const auto wanted = static_cast<std::size_t>(k);
    seeds.reserve(wanted);
    seeds.push_back(pixels[random.index(pixels.size())]);

    std::vector<double> d2(pixels.size());
    while (seeds.size() < wanted) {
        double total = 0.0;
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            double best = std::numeric_limits<double>::max();
            for (const Pixel& seed : seeds) {
                best = std::min(best, squaredDistance(pixels[i], seed));
            }
            d2[i] = best;
            total += best;
        }
        if (total > 0.0) {
            double r = random.upTo(total);
            // Rounding in the running sum can leave r just above 0 after the last pixel.
            std::size_t chosen = pixels.size() - 1;
            for (std::size_t i = 0; i < pixels.size(); ++i) {
                r -= d2[i];
                if (r <= 0.0) {
                    chosen = i;
                    break;
                }
            }
            seeds.push_back(pixels[chosen]);
        } else {
            // Every pixel is a seed already.
            seeds.push_back(pixels[random.index(pixels.size())]);
        }
    }
    return seeds;
}

std::vector<Cluster> kMeans(const std::vector<Pixel>& pixels, int k, int limit,
                            ExtractionRandom& random) {
    std::vector<Pixel> centroids = seedCentroids(pixels, k, random);
    const std::size_t clusterCount = centroids.size();
    if (clusterCount == 0) {
        return {};
    }
    std::vector<std::size_t> assignments(pixels.size(), 0);
    std::vector<Pixel> sums(clusterCount);
    std::vector<int> counts(clusterCount);

    for (int round = 0; round < limit; ++round) {
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            assignments[i] = nearest(pixels[i], centroids);
        }
        std::fill(sums.begin(), sums.end(), Pixel{});
        std::fill(counts.begin(), counts.end(), 0);
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            Pixel& sum = sums[assignments[i]];
            sum[0] += pixels[i][0];
            sum[1] += pixels[i][1];
            sum[2] += pixels[i][2];
            ++counts[assignments[i]];
        }

        double movement = 0.0;
        for (std::size_t c = 0; c < clusterCount; ++c) {
            if (counts[c] > 0) {
                const double n = counts[c];
                const Pixel mean{sums[c][0] / n, sums[c][1] / n, sums[c][2] / n};
                movement += std::sqrt(squaredDistance(centroids[c], mean));
                centroids[c] = mean;
                continue;
            }
            // An empty cluster starts again from a pixel of the largest one, which it may then
            // split; the jump is not movement.
            const auto largest = static_cast<std::size_t>(
                std::max_element(counts.cbegin(), counts.cend()) - counts.cbegin());
            std::vector<std::size_t> members;
            members.reserve(static_cast<std::size_t>(counts[largest]));
            for (std::size_t i = 0; i < pixels.size(); ++i) {
                if (assignments[i] == largest) {
                    members.push_back(i);
                }
            }
            centroids[c] = pixels[members[random.index(members.size())]];
        }
        if (movement < convergenceLimit) {
            break;
        }
    }

    std::fill(counts.begin(), counts.end(), 0);
    for (const std::size_t assignment : assignments) {
        ++counts[assignment];
    }
    std::vector<Cluster> clusters;
    clusters.reserve(clusterCount);
    for (std::size_t c = 0; c < clusterCount; ++c) {
        clusters.push_back(Cluster{centroids[c], counts[c]});
    }
    return clusters;
}

QStringList distinctColors(std::vector<Cluster> clusters) {
    std::stable_sort(clusters.begin(), clusters.end(),
                     [](const Cluster& a, const Cluster& b) { return a.count > b.count; });
    std::vector<std::array<int, 3>> chosen;
    QStringList hexes;
    for (const Cluster& cluster : clusters) {
        std::array<int, 3> rounded{};
        for (std::size_t i = 0; i < 3; ++i) {
            rounded[i] = static_cast<int>(std::round(cluster.centroid[i])); // half away from 0
        }
        const bool tooClose =
            std::any_of(chosen.cbegin(), chosen.cend(), [&rounded](const std::array<int, 3>& c) {
                const double dr = rounded[0] - c[0];
                const double dg = rounded[1] - c[1];
                const double db = rounded[2] - c[2];
                return std::sqrt(dr * dr + dg * dg + db * db) < distinctnessLimit;
            });
        if (tooClose) {
            continue;
        }
        for (int& channel : rounded) {
            channel = std::clamp(channel, 0, 255);
        }
        chosen.push_back(rounded);
        hexes.append(hexOf(rounded));
    }
    return hexes;
}

std::optional<QStringList> colorsOfThumbnail(const QImage& thumbnail, int maxColors,
                                             ExtractionRandom& random) {
    const std::vector<Pixel> pixels = sampledPixels(thumbnail);
    if (pixels.empty() || maxColors < 1) {
        return std::nullopt;
    }
    const int k =
        static_cast<int>(std::min<std::size_t>(pixels.size(), static_cast<std::size_t>(maxColors)));
    return distinctColors(kMeans(pixels, k, iterationLimit, random));
}

std::optional<QStringList> extractColors(const QString& path, int maxColors,
                                         ExtractionRandom& random) {
    // Absent whatever the file holds; no need to decode it first.
    if (maxColors < 1) {
        return std::nullopt;
    }
    const std::optional<QImage> thumbnail = ImageThumbnailReader::read(path);
    if (!thumbnail) {
        return std::nullopt;
    }
    return colorsOfThumbnail(*thumbnail, maxColors, random);
}

std::optional<QStringList> extractColors(const QString& path, int maxColors) {
    ExtractionRandom random;
    return extractColors(path, maxColors, random);
}

} // namespace hueshelf::ImageColorExtractor
