#include "platform/linux/GrabSampling.h"

#include <gtest/gtest.h>

#include <limits>

namespace hueshelf {
namespace {

// Logical points of a screen against the device pixels of its grab: the ratio scales, the
// floor picks the pixel a point lies in, and anything off the grab takes the nearest edge.
TEST(GrabSampling, MapsLogicalPointsToTheDevicePixelUnderThem) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    const struct {
        QPointF logical;
        qreal ratio;
        QSize device;
        QPoint expected;
    } cases[] = {
        {{0, 0}, 1, {100, 50}, {0, 0}},
        {{10.9, 20.2}, 1, {100, 50}, {10, 20}},
        {{99, 49}, 1, {100, 50}, {99, 49}},
        {{100, 50}, 1, {100, 50}, {99, 49}}, // the far edge of the last pixel
        {{-0.5, -30}, 1, {100, 50}, {0, 0}},
        {{1e12, -1e12}, 1, {100, 50}, {99, 0}},
        {{10, 20}, 2, {200, 100}, {20, 40}},
        {{10.5, 20.75}, 2, {200, 100}, {21, 41}},
        {{99.9, 49.9}, 2, {200, 100}, {199, 99}},
        {{100, 50}, 2, {200, 100}, {199, 99}},
        {{101, 3}, 2, {200, 100}, {199, 6}},
        {{3, 3}, 1.5, {150, 75}, {4, 4}},
        // A ratio that makes no sense is taken as 1; a point that is no number as the origin.
        {{7, 8}, 0, {100, 50}, {7, 8}},
        {{7, 8}, -2, {100, 50}, {7, 8}},
        {{std::nan(""), inf}, 1, {100, 50}, {0, 0}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(GrabSampling::devicePixel(c.logical, c.ratio, c.device), c.expected)
            << c.logical.x() << "," << c.logical.y() << " at " << c.ratio;
    }
}

TEST(GrabSampling, ReadsTheComponentsOfThatPixelAndNothingFromAnEmptyGrab) {
    QImage grab(4, 2, QImage::Format_RGB32);
    grab.fill(Qt::black);
    grab.setPixel(3, 1, qRgb(255, 128, 0));
    grab.setPixel(1, 0, qRgb(1, 2, 254));
    EXPECT_EQ(GrabSampling::colorAt(grab, {1.9, 0.9}, 2),
              (SampledColor{255 / 255.0, 128 / 255.0, 0}));
    EXPECT_EQ(GrabSampling::colorAt(grab, {0.5, 0.2}, 2),
              (SampledColor{1 / 255.0, 2 / 255.0, 254 / 255.0}));
    EXPECT_EQ(GrabSampling::colorAt(grab, {0.4, 0.2}, 2), (SampledColor{0, 0, 0}));
    EXPECT_EQ(GrabSampling::colorAt(QImage(), {0, 0}, 1), std::nullopt);
}

} // namespace
} // namespace hueshelf
