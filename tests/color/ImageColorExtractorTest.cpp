#include "color/ImageColorExtractor.h"

#include "QtPrinters.h"
#include "color/ExtractionRandom.h"

#include <QColor>
#include <QImage>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::ImageColorExtractor;

namespace {

// Draws exactly what the test says, and remembers what it was asked.
struct ScriptedRandom final : ExtractionRandom {
    ScriptedRandom(std::vector<std::size_t> i, std::vector<double> d)
        : ExtractionRandom(0), indexes(std::move(i)), draws(std::move(d)) {}
    std::size_t index(std::size_t count) override {
        return counts.push_back(count), indexes.at(counts.size() - 1);
    }
    double upTo(double total) override {
        return totals.push_back(total), draws.at(totals.size() - 1);
    }
    std::vector<std::size_t> indexes, counts;
    std::vector<double> draws, totals;
};

// Pixels on the red axis keep the arithmetic of the cases readable.
std::vector<Pixel> reds(std::initializer_list<double> values) {
    std::vector<Pixel> pixels;
    for (const double value : values)
        pixels.push_back(Pixel{value, 0.0, 0.0});
    return pixels;
}

// A thumbnail in premultiplied bytes: `fill` everywhere, `patch` over the first ten rows.
QImage thumbnail(std::array<uchar, 4> fill, std::optional<std::array<uchar, 4>> patch = {}) {
    QImage image(thumbnailSide, thumbnailSide, QImage::Format_RGBA8888_Premultiplied);
    for (int y = 0; y < thumbnailSide; ++y) {
        for (int x = 0; x < thumbnailSide; ++x)
            std::copy_n((y < 10 && patch ? *patch : fill).data(), 4, image.scanLine(y) + 4 * x);
    }
    return image;
}

TEST(ImageSampling, PassesAndRules) {
    const std::tuple<QImage, std::size_t, Pixel> cases[] = {
        // White only falls to the second pass; nothing visible gives nothing.
        {thumbnail({255, 255, 255, 255}), 2500, {255, 255, 255}},
        {thumbnail({0, 0, 0, 0}), 0, {}},
        // Alpha 127 is dropped while something solid is left; 128 is solid.
        {thumbnail({127, 0, 0, 127}, {{0, 0, 255, 255}}), 500, {0, 0, 255}},
        {thumbnail({128, 0, 0, 128}, {{255, 255, 255, 255}}), 2000, {255, 0, 0}},
        // Near-white needs all three above 240, near-black all three below 15.
        {thumbnail({241, 241, 241, 255}, {{240, 241, 241, 255}}), 500, {240, 241, 241}},
        {thumbnail({14, 14, 14, 255}, {{15, 14, 14, 255}}), 500, {15, 14, 14}},
        // The second pass takes any alpha and no rule; undone premultiplication stops at 255.
        {thumbnail({1, 1, 1, 1}, {{0, 0, 0, 0}}), 2000, {255, 255, 255}},
        {thumbnail({200, 10, 0, 128}), 2500, {255, 10 / (128 / 255.0), 0}}};
    for (const auto& [image, count, first] : cases) {
        const std::vector<Pixel> pixels = sampledPixels(image);
        ASSERT_EQ(pixels.size(), count) << first[0] << " " << first[1] << " " << first[2];
        for (std::size_t i = 0; i < 3 && count; ++i)
            EXPECT_NEAR(pixels.front()[i], first[i], 1e-9) << count;
    }
}

TEST(KMeans, SeedingWalksTheSquaredDistances) {
    // From the seed at 0 the squared distances are 0, 100 and 400: T = 500. The walk stops
    // where r reaches 0; rounding may leave it above 0 after the last pixel.
    for (const auto& [draw, second] :
         {std::pair{100.0, 10.0}, {100.5, 20.0}, {0.0, 0.0}, {500.5, 20.0}}) {
        ScriptedRandom random({0}, {draw});
        const std::vector<Pixel> seeds = seedCentroids(reds({0, 10, 20}), 2, random);
        EXPECT_EQ(seeds, reds({0, second})) << draw;
        EXPECT_EQ(random.totals, std::vector<double>{500.0});
    }
    // No distance left: a uniform pick among all pixels.
    ScriptedRandom same({1, 2, 0}, {});
    EXPECT_EQ(seedCentroids(reds({7, 7, 7}), 3, same), reds({7, 7, 7}));
    EXPECT_EQ(same.counts, (std::vector<std::size_t>{3, 3, 3}));
    EXPECT_TRUE(seedCentroids({}, 3, same).empty());
}

TEST(KMeans, TiesConvergenceAndEmptyClusters) {
    using Clusters = std::vector<Cluster>;
    // Seeds 0 and 20; 10 lies halfway and goes to the earlier centroid.
    ScriptedRandom tie({0}, {500.0});
    EXPECT_EQ(kMeans(reds({0, 10, 20}), 2, 1, tie), (Clusters{{{5, 0, 0}, 2}, {{20, 0, 0}, 1}}));
    // The far pixel pulls the centroid at 20 away until the borderline one is halfway: a
    // movement of 0.5 ends the loop, one of exactly 1.0 goes on and hands it over.
    ScriptedRandom half({0}, {10.25 * 10.25 + 400});
    EXPECT_EQ(kMeans(reds({0, 10.25, 20, 31.25}), 2, 10, half),
              (Clusters{{{0, 0, 0}, 1}, {{20.5, 0, 0}, 3}}));
    ScriptedRandom one({0}, {10.5 * 10.5 + 400});
    EXPECT_EQ(kMeans(reds({0, 10.5, 20, 32.5}), 2, 10, one),
              (Clusters{{{5.25, 0, 0}, 2}, {{26.25, 0, 0}, 2}}));
    // The third seed repeats the first, so its cluster starts empty and restarts from a pixel
    // of the largest cluster, the first of equals.
    ScriptedRandom empty({0, 1}, {10004.0, 0.0});
    EXPECT_EQ(kMeans(reds({0, 2, 100, 102}), 3, 10, empty),
              (Clusters{{{0, 0, 0}, 1}, {{101, 0, 0}, 2}, {{2, 0, 0}, 1}}));
    EXPECT_EQ(empty.counts, (std::vector<std::size_t>{4, 2}));
}

TEST(DistinctColors, SelectionByCountAndDistance) {
    using Clusters = std::vector<Cluster>;
    const std::pair<Clusters, QString> cases[] = {
        // 30 apart is kept, less is skipped, measured on codes rounded half away from zero.
        {{{{100, 100, 100}, 5}, {{130, 100, 100}, 4}}, u"#646464 #826464"_s},
        {{{{100, 100, 100}, 5}, {{129, 107, 102}, 4}}, u"#646464"_s},
        {{{{100, 100, 100}, 5}, {{129.5, 100, 100}, 4}}, u"#646464 #826464"_s},
        {{{{100, 100, 100}, 5}, {{129.49, 100, 100}, 4}}, u"#646464"_s},
        {{{{0, 0, 0}, 3}, {{100, 0, 0}, 2}, {{20, 0, 0}, 1}}, u"#000000 #640000"_s},
        {{{{260.2, -3, 128.5}, 1}}, u"#FF0081"_s} // channels clamped
    };
    for (const auto& [clusters, expected] : cases)
        EXPECT_EQ(distinctColors(clusters), expected.split(u' ')) << expected.toStdString();
    // Largest count first; enough equals that an unstable sort would shuffle them.
    std::vector<Cluster> clusters;
    QStringList twice, once;
    for (int i = 0; i < 40; ++i) {
        const Pixel color{(i % 5) * 60.0, (i / 5 % 4) * 60.0, (i / 20) * 120.0};
        clusters.push_back(Cluster{color, i % 3 == 0 ? 2 : 1});
        (i % 3 == 0 ? twice : once)
            << QColor(int(color[0]), int(color[1]), int(color[2])).name().toUpper();
    }
    EXPECT_EQ(distinctColors(clusters), twice + once);
}

TEST(ExtractColors, WholeThumbnails) {
    ExtractionRandom random(1); // one colour asked: the mean of 10 rows of blue, 40 of red
    EXPECT_EQ(colorsOfThumbnail(thumbnail({255, 0, 0, 255}, {{0, 0, 255, 255}}), 1, random),
              QStringList{u"#CC0033"_s});
    EXPECT_EQ(colorsOfThumbnail(thumbnail({0, 0, 0, 0}), 6, random), std::nullopt);
}

} // namespace
