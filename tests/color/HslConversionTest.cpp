#include "QtPrinters.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

TEST(HslConversion, HexToHslKnownColors) {
    struct Case {
        QString hex;
        double h, s, l;
    };
    const Case cases[] = {
        {u"#808080"_s, 0.0, 0.0, 128 / 255.0}, // a grey has hue and saturation 0
        {u"#FF0000"_s, 0.0, 1.0, 0.5},
        {u"#FFFF00"_s, 60.0, 1.0, 0.5},  // red and green tie: red decides
        {u"#00FFFF"_s, 180.0, 1.0, 0.5}, // green and blue tie: green decides
        {u"#FF00FF"_s, 300.0, 1.0, 0.5}, // red and blue tie: red decides, hue wraps by 6
        {u"#3366FF"_s, 225.0, 1.0, 0.6},
        {u"#BF9540"_s, 40.15748031496063, 0.4980392156862745,
         0.5}, // l exactly 0.5: the d / (max + min) branch
        {u"#E5ECFF"_s, 223.8461538461538, 1.0, 0.9490196078431372},
        {u"#000000"_s, 0.0, 0.0, 0.0},
        {u"#ffffff"_s, 0.0, 0.0, 1.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hex.toStdString());
        const std::optional<HSL> hsl = hexToHSL(c.hex);
        ASSERT_TRUE(hsl);
        EXPECT_NEAR(hsl->h, c.h, 1e-9);
        EXPECT_NEAR(hsl->s, c.s, 1e-12);
        EXPECT_NEAR(hsl->l, c.l, 1e-12);
    }
}

TEST(HslConversion, HueJustBelowRedStaysBelow360) {
    const std::optional<HSL> hsl = hexToHSL(u"#FF0001"_s);
    ASSERT_TRUE(hsl);
    EXPECT_LT(hsl->h, 360.0);
    EXPECT_GT(hsl->h, 359.0);
}

TEST(HslConversion, UnreadableHexHasNoHsl) {
    EXPECT_FALSE(hexToHSL(u"#abc"_s));
    EXPECT_FALSE(hexToHSL(u"nope"_s));
}

TEST(HslConversion, HslToHexSectorsAndTheirEdges) {
    struct Case {
        double h, s, l;
        QString hex;
    };
    const Case cases[] = {
        {0, 1, 0.5, u"#FF0000"_s},
        {59.999, 1, 0.5, u"#FFFF00"_s},
        {60, 1, 0.5, u"#FFFF00"_s},
        {90, 1, 0.5, u"#80FF00"_s},
        {119.999, 1, 0.5, u"#00FF00"_s},
        {120, 1, 0.5, u"#00FF00"_s},
        {150, 1, 0.5, u"#00FF80"_s},
        {180, 1, 0.5, u"#00FFFF"_s},
        {210, 1, 0.5, u"#0080FF"_s},
        {240, 1, 0.5, u"#0000FF"_s},
        {270, 1, 0.5, u"#8000FF"_s},
        {300, 1, 0.5, u"#FF00FF"_s},
        {330, 1, 0.5, u"#FF0080"_s},
        {360, 1, 0.5, u"#FF0000"_s}, // 360 falls in the last sector
        {390, 1, 0.5, u"#FF0080"_s}, // so does anything above, unnormalised
        {225, 1, 0.6, u"#3366FF"_s},
        {0, 0, 0.5, u"#808080"_s},
        {0, 0, 0.5 / 255.0, u"#010101"_s}, // 0.5 rounds away from zero, not to even
        {0, 0, 1, u"#FFFFFF"_s},
        {0, 1, 0, u"#000000"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.h << ' ' << c.s << ' ' << c.l);
        EXPECT_EQ(hslToHex(c.h, c.s, c.l), c.hex);
    }
}

TEST(HslConversion, NegativeHueIsNotNormalised) {
    // A negative hue lands in the (c, 0, x) sector with x from the negative t: red stays full,
    // green empty, and blue comes out below the grey level m instead of above it.
    EXPECT_EQ(hslToHex(-120, 1, 0.5), u"#FF0000"_s);
    EXPECT_EQ(hslToHex(-10, 0.5, 0.5), u"#BF402A"_s);
    EXPECT_NE(hslToHex(-10, 0.5, 0.5), hslToHex(350, 0.5, 0.5));
    // Fully saturated, blue would fall below zero; the code stays six digits and reads as red.
    EXPECT_EQ(hslToHex(-10, 1, 0.5), u"#FF0000"_s);
    EXPECT_EQ(hslToHex(-10, 1, 0.5).size(), 7);
}

TEST(HslConversion, EveryColorSurvivesTheRoundTrip) {
    for (unsigned value = 0; value < 0x1000000u; value += 4099u) {
        const QString hex = u'#' + QString::number(value, 16).toUpper().rightJustified(6, u'0');
        const std::optional<HSL> hsl = hexToHSL(hex);
        ASSERT_TRUE(hsl) << hex.toStdString();
        EXPECT_EQ(hslToHex(hsl->h, hsl->s, hsl->l), hex);
    }
}

} // namespace
