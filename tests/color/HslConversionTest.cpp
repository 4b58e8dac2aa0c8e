#include "QtPrinters.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

TEST(HslConversion, TiesBetweenChannelsAndTheTopOfTheCircle) {
    struct Case {
        QString hex;
        double h, s, l;
    };
    const Case cases[] = {
        {u"#808080"_s, 0.0, 0.0, 128 / 255.0}, // a grey has hue and saturation 0
        {u"#FFFF00"_s, 60.0, 1.0, 0.5},        // red and green tie: red decides
        {u"#00FFFF"_s, 180.0, 1.0, 0.5},       // green and blue tie: green decides
        {u"#FF00FF"_s, 300.0, 1.0, 0.5},       // red and blue tie: red decides, hue wraps by 6
        {u"#BF9540"_s, 40.15748031496063, 0.4980392156862745, 0.5}, // the d / (max + min) side
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hex.toStdString());
        const std::optional<HSL> hsl = hexToHSL(c.hex);
        ASSERT_TRUE(hsl);
        EXPECT_NEAR(hsl->h, c.h, 1e-9);
        EXPECT_NEAR(hsl->s, c.s, 1e-12);
        EXPECT_NEAR(hsl->l, c.l, 1e-12);
    }
    const double belowRed = hexToHSL(u"#FF0001"_s)->h;
    EXPECT_TRUE(belowRed > 359.0 && belowRed < 360.0) << belowRed;
    EXPECT_FALSE(hexToHSL(u"#abc"_s));
}

// Hues outside 0...360 never come from the readers; the arithmetic must still be the rule's.
TEST(HslConversion, HslToHexAtSectorEdgesAndOutsideTheCircle) {
    struct Case {
        double h, s, l;
        QString hex;
    };
    const Case cases[] = {
        {59.999, 1, 0.5, u"#FFFF00"_s},
        {60, 1, 0.5, u"#FFFF00"_s},
        {119.999, 1, 0.5, u"#00FF00"_s},
        {360, 1, 0.5, u"#FF0000"_s},       // the last sector
        {390, 1, 0.5, u"#FF0080"_s},       // so does anything above, unnormalised
        {0, 0, 0.5 / 255.0, u"#010101"_s}, // 0.5 rounds away from zero, not to even
        // A negative hue lands in the (c, 0, x) sector with x from the negative t: blue comes
        // out below the grey level m, and when it would fall below zero the code reads as red.
        {-120, 1, 0.5, u"#FF0000"_s},
        {-10, 0.5, 0.5, u"#BF402A"_s},
        {-10, 1, 0.5, u"#FF0000"_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(hslToHex(c.h, c.s, c.l), c.hex) << c.h << ' ' << c.s << ' ' << c.l;
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
