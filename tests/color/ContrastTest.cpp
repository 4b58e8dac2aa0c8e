#include "QtPrinters.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

TEST(Contrast, RelativeLuminanceFollowsWcag) {
    struct Case {
        QString hex;
        double luminance;
    };
    const Case cases[] = {
        {u"#FFFFFF"_s, 1.0},
        {u"#000000"_s, 0.0},
        {u"#0A0A0A"_s, 10 / 255.0 / 12.92}, // below the 0.03928 knee: linear part
        {u"#0B0B0B"_s, std::pow((11 / 255.0 + 0.055) / 1.055, 2.4)},
        {u"#FF0000"_s, 0.2126},
        {u"#00FF00"_s, 0.7152},
        {u"#0000FF"_s, 0.0722},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hex.toStdString());
        const std::optional<double> luminance = relativeLuminance(c.hex);
        ASSERT_TRUE(luminance);
        EXPECT_NEAR(*luminance, c.luminance, 1e-15);
    }
    EXPECT_FALSE(relativeLuminance(u"#FFF"_s));
}

TEST(Contrast, RatioIsSymmetricAndSpansOneToTwentyOne) {
    EXPECT_DOUBLE_EQ(contrastRatio(1.0, 0.0), 21.0);
    EXPECT_DOUBLE_EQ(contrastRatio(0.0, 1.0), 21.0);
    EXPECT_DOUBLE_EQ(contrastRatio(0.3, 0.3), 1.0);
    EXPECT_DOUBLE_EQ(contrastRatio(0.2, 0.7), (0.7 + 0.05) / (0.2 + 0.05));
}

TEST(Contrast, LevelThresholdsAreInclusive) {
    struct Case {
        double ratio;
        ContrastLevel level;
    };
    const Case cases[] = {
        {21.0, ContrastLevel::readable},
        {4.5, ContrastLevel::readable},
        {std::nextafter(4.5, 0.0), ContrastLevel::lowContrast},
        {3.0, ContrastLevel::lowContrast},
        {std::nextafter(3.0, 0.0), ContrastLevel::poor},
        {1.0, ContrastLevel::poor},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.ratio);
        EXPECT_EQ(contrastLevelForRatio(c.ratio), c.level);
    }
}

TEST(Contrast, LevelOfColorPairsClosestToTheThresholds) {
    // The pairs whose ratio lies nearest each threshold from either side, among all colours
    // against white, black and mid grey.
    struct Case {
        QString text, background;
        ContrastLevel level;
    };
    const Case cases[] = {
        {u"#7C7290"_s, u"#FFFFFF"_s, ContrastLevel::readable},    // 4.5000006
        {u"#9A6C5A"_s, u"#FFFFFF"_s, ContrastLevel::lowContrast}, // 4.4999999
        {u"#9D5D9F"_s, u"#000000"_s, ContrastLevel::readable},    // 4.5000007
        {u"#458301"_s, u"#000000"_s, ContrastLevel::lowContrast}, // 4.4999999
        {u"#1D1427"_s, u"#808080"_s, ContrastLevel::readable},    // 4.500004
        {u"#2A0638"_s, u"#808080"_s, ContrastLevel::lowContrast}, // 4.499998
        {u"#E969A1"_s, u"#FFFFFF"_s, ContrastLevel::lowContrast}, // 3.0000002
        {u"#989A30"_s, u"#FFFFFF"_s, ContrastLevel::poor},        // 2.9999998
        {u"#960FB1"_s, u"#000000"_s, ContrastLevel::lowContrast}, // 3.0000006
        {u"#33642C"_s, u"#000000"_s, ContrastLevel::poor},        // 2.9999999
        {u"#17FFAE"_s, u"#808080"_s, ContrastLevel::lowContrast}, // 3.00000003
        {u"#ADEAFC"_s, u"#808080"_s, ContrastLevel::poor},        // 2.99999995
        {u"#FFFFFF"_s, u"#7C7290"_s, ContrastLevel::readable},    // order doesn't matter
        {u"#FFFFFF"_s, u"#FFF"_s, ContrastLevel::poor},           // unreadable background
        {u"nope"_s, u"#000000"_s, ContrastLevel::poor},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(QString(c.text + u" on "_s + c.background).toStdString());
        EXPECT_EQ(contrastLevel(c.text, c.background), c.level);
    }
}

TEST(Contrast, LevelWordsAndBadges) {
    EXPECT_EQ(badgeText(ContrastLevel::readable), u"Readable"_s);
    EXPECT_EQ(badgeText(ContrastLevel::lowContrast), u"OK for headings"_s);
    EXPECT_EQ(badgeText(ContrastLevel::poor), u"Hard to read"_s);
    EXPECT_EQ(inlineWord(ContrastLevel::readable), u"readable"_s);
    EXPECT_EQ(inlineWord(ContrastLevel::lowContrast), u"OK for headings"_s);
    EXPECT_EQ(inlineWord(ContrastLevel::poor), u"hard to read"_s);
    EXPECT_EQ(contrastLevelIdentifier(ContrastLevel::lowContrast), u"lowContrast"_s);
    EXPECT_DOUBLE_EQ(badgeColor(ContrastLevel::readable).green, 0.68);
    EXPECT_DOUBLE_EQ(badgeColor(ContrastLevel::lowContrast).red, 0.83);
    EXPECT_DOUBLE_EQ(badgeColor(ContrastLevel::poor).blue, 0.39);
    EXPECT_DOUBLE_EQ(badgeColor(ContrastLevel::poor).alpha, 1.0);
}

TEST(ContrastAdjustment, FirstDirectionFindsTheNearestPassingLightness) {
    // #777777 misses 4.5 on white by a hair; #767676 is the lightest grey that passes.
    EXPECT_EQ(adjustedForContrast(u"#777777"_s, u"#FFFFFF"_s, 4.5), u"#767676"_s);
    // A colour that passes already keeps its lightness.
    EXPECT_EQ(adjustedForContrast(u"#3366FF"_s, u"#FFFFFF"_s, 4.5), u"#3366FF"_s);
    EXPECT_EQ(adjustedForContrast(u"#000000"_s, u"#FFFFFF"_s, 4.5), u"#000000"_s);
    // On black it moves lighter, keeping hue and saturation.
    const std::optional<QString> lighter = adjustedForContrast(u"#3366FF"_s, u"#000000"_s, 7.0);
    ASSERT_TRUE(lighter);
    EXPECT_EQ(*lighter, u"#6A90FF"_s);
    EXPECT_GE(contrastRatio(*relativeLuminance(*lighter), 0.0), 7.0);
}

TEST(ContrastAdjustment, SecondDirectionRunsToTheExtremeWhenTheFirstMidpointPasses) {
    // #1010FF has lightness above 0.5 but is dark to the eye: black misses 3.0, so the search
    // turns lighter, and keeps moving "low" up as on any light background, ending at white
    // rather than at the nearest passing grey.
    EXPECT_EQ(adjustedForContrast(u"#404040"_s, u"#1010FF"_s, 3.0), u"#FFFFFF"_s);
    // Mirror image on a dark background that is bright to the eye: it ends at black.
    EXPECT_EQ(adjustedForContrast(u"#C0C0C0"_s, u"#00FF00"_s, 4.5), u"#000000"_s);
}

TEST(ContrastAdjustment, SecondDirectionFallsBackToTheColorWhenTheFirstMidpointFails) {
    // White passes 7.0 on #1010FF, the midpoint doesn't; the search runs back to the colour's
    // own lightness and returns it unchanged although it misses the target.
    EXPECT_EQ(adjustedForContrast(u"#404040"_s, u"#1010FF"_s, 7.0), u"#404040"_s);
    EXPECT_EQ(adjustedForContrast(u"#800000"_s, u"#FF0000"_s, 4.5), u"#800000"_s);
}

TEST(ContrastAdjustment, BackgroundOfLightnessExactlyHalfCountsAsDark) {
    // #FF0000 has lightness 0.5. Both black and a lighter red reach 3.0 on it; as a dark
    // background it sends the colour lighter first.
    EXPECT_EQ(adjustedForContrast(u"#800000"_s, u"#FF0000"_s, 3.0), u"#FFD6D6"_s);
}

TEST(ContrastAdjustment, AbsentWhenUnreadableOrUnreachable) {
    EXPECT_FALSE(adjustedForContrast(u"#777777"_s, u"#777777"_s, 21.0));
    EXPECT_FALSE(adjustedForContrast(u"#FFF"_s, u"#000000"_s, 4.5));
    EXPECT_FALSE(adjustedForContrast(u"#FFFFFF"_s, u"black"_s, 4.5));
}

} // namespace
