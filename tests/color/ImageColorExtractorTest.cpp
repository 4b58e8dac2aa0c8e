#include "color/ImageColorExtractor.h"

#include "QtPrinters.h"
#include "color/ExtractionRandom.h"

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::ImageColorExtractor;

namespace {

// Draws exactly what the test says, and remembers what it was asked.
class ScriptedRandom final : public ExtractionRandom {
public:
    ScriptedRandom(std::vector<std::size_t> indexes, std::vector<double> draws)
        : ExtractionRandom(0), m_indexes(std::move(indexes)), m_draws(std::move(draws)) {}

    std::size_t index(std::size_t count) override {
        askedCounts.push_back(count);
        if (m_nextIndex >= m_indexes.size()) {
            ADD_FAILURE() << "unscripted index draw among " << count;
            return 0;
        }
        return m_indexes[m_nextIndex++];
    }
    double upTo(double total) override {
        askedTotals.push_back(total);
        if (m_nextDraw >= m_draws.size()) {
            ADD_FAILURE() << "unscripted draw up to " << total;
            return 0.0;
        }
        return m_draws[m_nextDraw++];
    }

    std::vector<std::size_t> askedCounts;
    std::vector<double> askedTotals;

private:
    std::vector<std::size_t> m_indexes;
    std::vector<double> m_draws;
    std::size_t m_nextIndex = 0;
    std::size_t m_nextDraw = 0;
};

// Pixels on the red axis, which keeps the arithmetic of the cases readable.
std::vector<Pixel> reds(std::initializer_list<double> values) {
    std::vector<Pixel> pixels;
    for (const double value : values) {
        pixels.push_back(Pixel{value, 0.0, 0.0});
    }
    return pixels;
}

using Bytes = std::array<uchar, 4>;

// A thumbnail given in premultiplied bytes: `fill` everywhere, `patch` over the first
// `patchRows` rows.
QImage premultiplied(Bytes fill, Bytes patch = {}, int patchRows = 0) {
    QImage image(thumbnailSide, thumbnailSide, QImage::Format_RGBA8888_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        uchar* row = image.scanLine(y);
        const Bytes& bytes = y < patchRows ? patch : fill;
        for (int x = 0; x < image.width(); ++x) {
            std::copy(bytes.cbegin(), bytes.cend(), row + 4 * x);
        }
    }
    return image;
}

QImage bands(std::initializer_list<std::pair<QRgb, int>> rowsOfColor) {
    QImage image(thumbnailSide, thumbnailSide, QImage::Format_ARGB32);
    int y = 0;
    for (const auto& [color, rows] : rowsOfColor) {
        for (int i = 0; i < rows; ++i, ++y) {
            for (int x = 0; x < thumbnailSide; ++x) {
                image.setPixel(x, y, color);
            }
        }
    }
    return image;
}

QStringList sorted(QStringList list) {
    list.sort();
    return list;
}

TEST(ImageSampling, PassesAndRules) {
    struct Case {
        QImage image;
        std::size_t count;
        Pixel first;
    };
    const Case cases[] = {
        // White only and black only fall to the second pass; nothing visible gives nothing.
        {premultiplied({255, 255, 255, 255}), 2500, {255, 255, 255}},
        {premultiplied({0, 0, 0, 255}), 2500, {0, 0, 0}},
        {premultiplied({0, 0, 0, 0}), 0, {}},
        // Alpha 127 is dropped while blue survives, survives the second pass alone; 128 is solid.
        {premultiplied({127, 0, 0, 127}, {0, 0, 255, 255}, 10), 500, {0, 0, 255}},
        {premultiplied({127, 0, 0, 127}), 2500, {255, 0, 0}},
        {premultiplied({128, 0, 0, 128}, {255, 255, 255, 255}, 10), 2000, {255, 0, 0}},
        // Near-white needs all three above 240, near-black all three below 15.
        {premultiplied({241, 241, 241, 255}, {240, 241, 241, 255}, 10), 500, {240, 241, 241}},
        {premultiplied({14, 14, 14, 255}, {15, 14, 14, 255}, 10), 500, {15, 14, 14}},
        // The second pass takes any alpha and no rule.
        {premultiplied({1, 1, 1, 1}, {0, 0, 0, 0}, 10), 2000, {255, 255, 255}},
        // Undone premultiplication stops at 255.
        {premultiplied({200, 10, 0, 128}), 2500, {255, 10 / (128 / 255.0), 0}},
    };
    for (std::size_t k = 0; k < std::size(cases); ++k) {
        SCOPED_TRACE(k);
        const std::vector<Pixel> pixels = sampledPixels(cases[k].image);
        ASSERT_EQ(pixels.size(), cases[k].count);
        for (std::size_t i = 0; i < 3 && !pixels.empty(); ++i)
            EXPECT_NEAR(pixels.front()[i], cases[k].first[i], 1e-9);
    }
}

TEST(KMeansSeeding, WalksTheSquaredDistances) {
    struct Case {
        const char* name;
        std::vector<Pixel> pixels;
        std::vector<double> draws;
        double expectedSecond;
    };
    // From the seed at 0, the squared distances are 0, 100 and 400: T = 500.
    const Case cases[] = {
        {"r reaching exactly 0 takes that pixel", reds({0, 10, 20}), {100.0}, 10},
        {"just past it takes the next", reds({0, 10, 20}), {100.5}, 20},
        {"r of 0 takes the first pixel, a seed already", reds({0, 10, 20}), {0.0}, 0},
        {"r left above 0 by rounding takes the last", reds({0, 10, 20}), {500.5}, 20},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ScriptedRandom random({0}, c.draws);
        const std::vector<Pixel> seeds = seedCentroids(c.pixels, 2, random);
        ASSERT_EQ(seeds.size(), 2u);
        EXPECT_EQ(seeds[0], c.pixels[0]);
        EXPECT_EQ(seeds[1][0], c.expectedSecond);
        EXPECT_EQ(random.askedTotals, std::vector<double>{500.0});
    }
}

TEST(KMeansSeeding, NoDistanceLeftMeansAUniformPick) {
    ScriptedRandom random({1, 2, 0}, {});
    const std::vector<Pixel> seeds = seedCentroids(reds({7, 7, 7}), 3, random);
    EXPECT_EQ(seeds, reds({7, 7, 7}));
    EXPECT_EQ(random.askedCounts, (std::vector<std::size_t>{3, 3, 3}));
    EXPECT_TRUE(random.askedTotals.empty());
    EXPECT_TRUE(seedCentroids({}, 3, random).empty());
    EXPECT_TRUE(seedCentroids(reds({1}), 0, random).empty());
}

TEST(KMeans, ATieGoesToTheEarlierCentroid) {
    // Seeds 0 and 20 (r = 500 runs out at the last pixel); 10 lies halfway.
    ScriptedRandom random({0}, {500.0});
    const std::vector<Cluster> clusters = kMeans(reds({0, 10, 20}), 2, 1, random);
    EXPECT_EQ(clusters, (std::vector<Cluster>{{{5, 0, 0}, 2}, {{20, 0, 0}, 1}}));
}

TEST(KMeans, StopsOnceMovementIsUnderOne) {
    struct Case {
        const char* name;
        double borderline;
        double far;
        std::vector<Cluster> expected;
    };
    // Seeds 0 and 20. The borderline pixel starts with the seed at 20; the far one pulls that
    // centroid away until the borderline pixel is exactly halfway, where a next assignment
    // would hand it to the centroid at 0.
    const Case cases[] = {
        // 20 -> 20.5: movement 0.5 ends the loop, with counts of the assignment before it.
        {"0.5 stops", 10.25, 31.25, {{{0, 0, 0}, 1}, {{20.5, 0, 0}, 3}}},
        // 20 -> 21: movement of exactly 1.0 goes on, and the borderline pixel changes sides.
        {"1.0 goes on", 10.5, 32.5, {{{5.25, 0, 0}, 2}, {{26.25, 0, 0}, 2}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ScriptedRandom random({0}, {c.borderline * c.borderline + 400.0});
        EXPECT_EQ(kMeans(reds({0, c.borderline, 20, c.far}), 2, 10, random), c.expected);
    }
}

TEST(KMeans, AnEmptyClusterRestartsFromAPixelOfTheLargest) {
    struct Case {
        const char* name;
        std::vector<Pixel> pixels;
        std::size_t member;
        std::vector<Cluster> expected;
        std::size_t largestCount;
    };
    // The third seed repeats the first (r = 0), so the third cluster starts empty.
    const Case cases[] = {
        {"the first of equal clusters",
         reds({0, 2, 100, 102}),
         1,
         {{{0, 0, 0}, 1}, {{101, 0, 0}, 2}, {{2, 0, 0}, 1}},
         2},
        {"the largest cluster",
         reds({0, 2, 100, 102, 104}),
         2,
         {{{1, 0, 0}, 2}, {{101, 0, 0}, 2}, {{104, 0, 0}, 1}},
         3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ScriptedRandom random({0, c.member}, {10004.0, 0.0});
        EXPECT_EQ(kMeans(c.pixels, 3, 10, random), c.expected);
        EXPECT_EQ(random.askedCounts, (std::vector<std::size_t>{c.pixels.size(), c.largestCount}));
    }
}

TEST(KMeans, NoRoundsLeaveEveryPixelInTheFirstCluster) {
    ScriptedRandom random({0}, {100.0});
    EXPECT_EQ(kMeans(reds({0, 10}), 2, 0, random),
              (std::vector<Cluster>{{{0, 0, 0}, 2}, {{10, 0, 0}, 0}}));
}

TEST(DistinctColors, SelectionByCountAndDistance) {
    using Clusters = std::vector<Cluster>;
    const std::pair<Clusters, QString> cases[] = {
        // Exactly 30 apart is kept, 29.9 skipped; the codes are rounded half away from zero
        // before the distance is measured.
        {{{{100, 100, 100}, 5}, {{130, 100, 100}, 4}}, u"#646464 #826464"_s},
        {{{{100, 100, 100}, 5}, {{129, 107, 102}, 4}}, u"#646464"_s},
        {{{{100, 100, 100}, 5}, {{129.5, 100, 100}, 4}}, u"#646464 #826464"_s},
        {{{{100, 100, 100}, 5}, {{129.49, 100, 100}, 4}}, u"#646464"_s},
        // Measured against every colour kept.
        {{{{0, 0, 0}, 3}, {{100, 0, 0}, 2}, {{20, 0, 0}, 1}}, u"#000000 #640000"_s},
        // Largest count first, equal counts keep their order.
        {{{{0, 0, 200}, 1}, {{200, 0, 0}, 5}, {{0, 200, 0}, 5}}, u"#C80000 #00C800 #0000C8"_s},
        {{{{260.2, -3, 128.5}, 1}}, u"#FF0081"_s}, // channels clamped
        {{}, u""_s},
    };
    for (const auto& [clusters, expected] : cases)
        EXPECT_EQ(distinctColors(clusters), expected.split(u' ', Qt::SkipEmptyParts))
            << expected.toStdString();
}

TEST(DistinctColors, EqualCountsKeepTheirOrderInALongList) {
    // Enough clusters that an unstable sort would shuffle equals; all far enough apart to stay.
    std::vector<Cluster> clusters;
    QStringList twice;
    QStringList once;
    for (int i = 0; i < 40; ++i) {
        const Pixel color{(i % 5) * 60.0, (i / 5 % 4) * 60.0, (i / 20) * 120.0};
        const int count = i % 3 == 0 ? 2 : 1;
        clusters.push_back(Cluster{color, count});
        (count == 2 ? twice : once)
            .append(QString::asprintf("#%02X%02X%02X", static_cast<int>(color[0]),
                                      static_cast<int>(color[1]), static_cast<int>(color[2])));
    }
    EXPECT_EQ(distinctColors(clusters), twice + once);
}

TEST(ExtractColors, MadeUpThumbnails) {
    const QRgb red = qRgb(255, 0, 0);
    const QRgb blue = qRgb(0, 0, 255);
    const QRgb green = qRgb(0, 160, 0);
    struct Case {
        const char* name;
        QImage thumbnail;
        int maxColors;
        std::optional<QStringList> expected;
        bool anyOrder = false; // equal counts come in the order the clusters happened to have
    };
    const Case cases[] = {
        {"fully transparent", bands({{qRgba(255, 0, 0, 0), 50}}), 6, std::nullopt},
        {"two colours", bands({{red, 25}, {blue, 25}}), 6, QStringList{u"#0000FF"_s, u"#FF0000"_s},
         true},
        {"three colours by count", bands({{green, 5}, {red, 30}, {blue, 15}}), 6,
         QStringList{u"#FF0000"_s, u"#0000FF"_s, u"#00A000"_s}},
        {"half-transparent red alone kept", bands({{qRgba(255, 0, 0, 127), 50}}), 6,
         QStringList{u"#FF0000"_s}},
        {"one colour asked: the mean", bands({{red, 25}, {blue, 25}}), 1,
         QStringList{u"#800080"_s}},
        {"no colour asked", bands({{red, 50}}), 0, std::nullopt},
        {"fewer than none asked", bands({{red, 50}}), -1, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        for (const std::uint64_t seed : {1u, 2u, 3u}) {
            ExtractionRandom random(seed);
            std::optional<QStringList> colors = colorsOfThumbnail(c.thumbnail, c.maxColors, random);
            if (c.anyOrder && colors) {
                colors = sorted(*colors);
            }
            EXPECT_EQ(colors, c.expected);
        }
    }
}

TEST(ExtractColors, ARandomSourceCanBeRepeated) {
    QImage image(thumbnailSide, thumbnailSide, QImage::Format_ARGB32);
    for (int y = 0; y < thumbnailSide; ++y) {
        for (int x = 0; x < thumbnailSide; ++x) {
            image.setPixel(x, y, qRgb(x * 5, y * 5, (x * y) % 256));
        }
    }
    ExtractionRandom first(99);
    ExtractionRandom second(99);
    const auto colors = colorsOfThumbnail(image, 6, first);
    ASSERT_TRUE(colors);
    EXPECT_GE(colors->size(), 2);
    EXPECT_LE(colors->size(), 6);
    EXPECT_EQ(colorsOfThumbnail(image, 6, second), colors);
}

} // namespace
