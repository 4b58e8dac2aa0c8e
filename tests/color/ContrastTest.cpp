#include "QtPrinters.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

// Luminance, ratio, level and the adjusted foreground of ordinary pairs, and targets that the
// search meets exactly, are compared with an independent model through the command line. Here
// the thresholds themselves, pairs closest to them, and the turns of the search.
TEST(Contrast, LevelThresholdsAreInclusive) {
    struct Case {
        double ratio;
        ContrastLevel level;
    };
    const Case cases[] = {
        {4.5, ContrastLevel::readable},
        {std::nextafter(4.5, 0.0), ContrastLevel::lowContrast},
        {3.0, ContrastLevel::lowContrast},
        {std::nextafter(3.0, 0.0), ContrastLevel::poor},
    };
    for (const Case& c : cases)
        EXPECT_EQ(contrastLevelForRatio(c.ratio), c.level) << c.ratio;
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

TEST(ContrastAdjustment, EachTurnOfTheSearch) {
    struct Case {
        const char* why;
        QString text, background;
        double target;
        std::optional<QString> adjusted;
    };
    const Case cases[] = {
        {"misses by a hair: the lightest grey that passes", u"#777777"_s, u"#FFFFFF"_s, 4.5,
         u"#767676"_s},
        {"passes already: kept", u"#3366FF"_s, u"#FFFFFF"_s, 4.5, u"#3366FF"_s},
        {"on black it moves lighter, same hue", u"#3366FF"_s, u"#000000"_s, 7.0, u"#6A90FF"_s},
        // #1010FF has lightness above 0.5 but is dark to the eye: black misses 3.0, so the
        // search turns lighter and keeps moving "low" up as on any light background.
        {"second direction runs to white", u"#404040"_s, u"#1010FF"_s, 3.0, u"#FFFFFF"_s},
        {"mirror image runs to black", u"#C0C0C0"_s, u"#00FF00"_s, 4.5, u"#000000"_s},
        // White passes 7.0 on #1010FF, the midpoint doesn't: back to the colour's own lightness.
        {"second direction falls back", u"#404040"_s, u"#1010FF"_s, 7.0, u"#404040"_s},
        {"falls back on red", u"#800000"_s, u"#FF0000"_s, 4.5, u"#800000"_s},
        // #FF0000 has lightness 0.5: as a dark background it sends the colour lighter first,
        // although black reaches 3.0 too.
        {"lightness exactly half is dark", u"#800000"_s, u"#FF0000"_s, 3.0, u"#FFD6D6"_s},
        {"unreachable", u"#777777"_s, u"#777777"_s, 21.0, std::nullopt},
        {"unreadable text", u"#FFF"_s, u"#000000"_s, 4.5, std::nullopt},
        {"unreadable background", u"#FFFFFF"_s, u"black"_s, 4.5, std::nullopt},
    };
    for (const Case& c : cases)
        EXPECT_EQ(adjustedForContrast(c.text, c.background, c.target), c.adjusted) << c.why;
}

} // namespace
