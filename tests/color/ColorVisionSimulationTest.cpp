#include "color/ColorVisionSimulation.h"

#include "QtPrinters.h"
#include "model/ColorItem.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::ColorVisionSimulation;

namespace {

using Pairs = std::vector<std::pair<int, int>>;

QList<ColorItem> items(const QStringList& hexes) {
    QList<ColorItem> colors;
    for (const QString& hex : hexes)
        colors << ColorItem::make(u"c"_s, hex, false);
    return colors;
}

struct SimulationCase {
    QString input;
    QString protanopia;
    QString deuteranopia;
    QString tritanopia;
};

// Expected codes worked out by hand: linearise (1.0 for 255, 0 for 0), take one matrix row,
// clamp, encode with 1.055 x^(1/2.4) - 0.055 and round. For pure red under protanopia the rows
// give 0.152286 -> 108.79, 0.114503 -> 95.03 and -0.003882, which clamps to 0: #6D5F00. The blue
// row of pure red under tritanopia, 0.004733, lies above the linear toe: 14.89 -> 0F.
TEST(ColorVisionSimulation, PrimariesAsEachTypeSeesThem) {
    const SimulationCase cases[] = {
        {u"#FF0000"_s, u"#6D5F00"_s, u"#A39000"_s, u"#FF000F"_s},
        {u"#00FF00"_s, u"#FFE500"_s, u"#EFD63A"_s, u"#00F7D9"_s},
        {u"#0000FF"_s, u"#0059FF"_s, u"#003DFB"_s, u"#006B96"_s},
        // Lower case and blanks are read, and the result is canonical.
        {u" #ff0000\n"_s, u"#6D5F00"_s, u"#A39000"_s, u"#FF000F"_s},
        {u"0000ff"_s, u"#0059FF"_s, u"#003DFB"_s, u"#006B96"_s},
    };
    for (const SimulationCase& c : cases) {
        SCOPED_TRACE(c.input.toStdString());
        EXPECT_EQ(simulated(c.input, SimulationType::protanopia), c.protanopia);
        EXPECT_EQ(simulated(c.input, SimulationType::deuteranopia), c.deuteranopia);
        EXPECT_EQ(simulated(c.input, SimulationType::tritanopia), c.tritanopia);
    }
}

TEST(ColorVisionSimulation, NegativeProductsClampToZeroNotWrap) {
    // Pure blue has a negative red product under all three types (-0.204868, -0.227968,
    // -0.178779): the red byte must be 00, not a wrapped or mirrored value.
    for (const SimulationType type :
         {SimulationType::protanopia, SimulationType::deuteranopia, SimulationType::tritanopia}) {
        EXPECT_TRUE(simulated(u"#0000FF"_s, type).startsWith(u"#00"_s))
            << identifier(type).toStdString();
    }
    // Green's products above 1 (1.052583 for protanopia's red) clamp to FF.
    EXPECT_TRUE(simulated(u"#00FF00"_s, SimulationType::protanopia).startsWith(u"#FF"_s));
}

TEST(ColorVisionSimulation, WhiteBlackAndGreysKeepTheirPlace) {
    // Each matrix row sums to 1 within 1e-6, so the achromatic axis survives every type.
    for (const SimulationType type :
         {SimulationType::protanopia, SimulationType::deuteranopia, SimulationType::tritanopia}) {
        SCOPED_TRACE(identifier(type).toStdString());
        EXPECT_EQ(simulated(u"#FFFFFF"_s, type), u"#FFFFFF"_s);
        EXPECT_EQ(simulated(u"#000000"_s, type), u"#000000"_s);
        EXPECT_EQ(simulated(u"#808080"_s, type), u"#808080"_s);
        EXPECT_EQ(simulated(u"#0A0A0A"_s, type), u"#0A0A0A"_s); // the linear toe of the curve
    }
}

TEST(ColorVisionSimulation, NormalVisionAndUnreadableTextComeBackAsGiven) {
    EXPECT_EQ(simulated(u" #ff0000\n"_s, SimulationType::normal), u" #ff0000\n"_s);
    for (const SimulationType type : allSimulationTypes()) {
        for (const QString& text : {u"#abc"_s, u"nope"_s, u""_s, u"#FF000"_s, u"rgb(1, 2, 3)"_s})
            EXPECT_EQ(simulated(text, type), text);
    }
}

TEST(ColorVisionSimulation, LinearValuesOfKnownBytes) {
    const std::optional<LinearRGB> grey = linearRGB(u"#80FF00"_s);
    ASSERT_TRUE(grey);
    EXPECT_NEAR(grey->r, 0.2158605, 1e-7); // the published linear value of sRGB 128
    EXPECT_EQ(grey->g, 1.0);
    EXPECT_EQ(grey->b, 0.0);
    // Byte 10 (0.0392) is on the straight toe: 10 / 255 / 12.92.
    const std::optional<LinearRGB> toe = linearRGB(u"0A0A0A"_s);
    ASSERT_TRUE(toe);
    EXPECT_NEAR(toe->r, 0.0030353, 1e-7);
    EXPECT_FALSE(linearRGB(u"#FFF"_s));
}

TEST(ColorVisionSimulation, EncodingClampsAndRounds) {
    EXPECT_EQ(encodedHex({-0.5, 2.0, 1.0}), u"#00FFFF"_s);
    EXPECT_EQ(encodedHex({0.0, 0.0, 0.0}), u"#000000"_s);
    // The published linear value of 128 encodes back to 128 (127.99 rounds up).
    EXPECT_EQ(encodedHex({0.2158605, 0.2158605, 0.2158605}), u"#808080"_s);
    // 0.002 is on the toe: 0.002 * 12.92 * 255 = 6.59 -> 7.
    EXPECT_EQ(encodedHex({0.002, 0.0, 0.0}), u"#070000"_s);
}

TEST(ColorVisionSimulation, TypesAndTheirTexts) {
    struct Texts {
        SimulationType type;
        QString id, lens, details, longLabel;
        std::optional<QString> technical;
    };
    const Texts table[] = {
        {SimulationType::normal, u"normal"_s, u"Off"_s, u"Normal vision"_s, u"Normal vision"_s,
         std::nullopt},
        {SimulationType::protanopia, u"protanopia"_s, u"Red-green (less common)"_s,
         u"Red-green, less common"_s, u"Red-green color blindness (less common)"_s,
         u"Protanopia"_s},
        {SimulationType::deuteranopia, u"deuteranopia"_s, u"Red-green (most common)"_s,
         u"Red-green, most common"_s, u"Red-green color blindness (most common)"_s,
         u"Deuteranopia"_s},
        {SimulationType::tritanopia, u"tritanopia"_s, u"Blue-yellow"_s, u"Blue-yellow, rare"_s,
         u"Blue-yellow color blindness"_s, u"Tritanopia"_s},
    };
    ASSERT_EQ(allSimulationTypes().size(), std::size(table));
    for (std::size_t i = 0; i < std::size(table); ++i) {
        const Texts& t = table[i];
        EXPECT_EQ(allSimulationTypes()[i], t.type); // menu order
        EXPECT_EQ(identifier(t.type), t.id);
        EXPECT_EQ(simulationTypeFromIdentifier(t.id), t.type);
        EXPECT_EQ(lensLabel(t.type), t.lens);
        EXPECT_EQ(tooltipShortName(t.type),
                  t.type == SimulationType::normal ? std::nullopt : std::optional(t.lens));
        EXPECT_EQ(detailsLabel(t.type), t.details);
        EXPECT_EQ(detailsLongLabel(t.type), t.longLabel);
        EXPECT_EQ(technicalName(t.type), t.technical);
    }
    for (const QString& unknown : {u"Protanopia"_s, u""_s, u"off"_s, u" normal"_s})
        EXPECT_FALSE(simulationTypeFromIdentifier(unknown)) << unknown.toStdString();
}

TEST(ColorVisionSimulation, LensAndDetailsWording) {
    EXPECT_EQ(lensMenuTitle(), u"How others see it"_s);
    EXPECT_EQ(lensMenuNote(),
              u"Draws the bar as they see it. Copying still copies the real color."_s);
    EXPECT_EQ(lensTooltip(SimulationType::normal), u"How others see it"_s);
    EXPECT_EQ(lensTooltip(SimulationType::deuteranopia),
              u"Seeing as Red-green (most common) — click to change"_s);
    EXPECT_EQ(lensAccessibleValue(SimulationType::tritanopia),
              u"How others see it, showing Blue-yellow"_s);
    EXPECT_EQ(lensAccessibleValue(SimulationType::normal), u"How others see it, showing Off"_s);
    EXPECT_EQ(detailsAccessibleText(SimulationType::protanopia),
              u"Red-green color blindness (less common) — Protanopia"_s);
    EXPECT_EQ(detailsAccessibleText(SimulationType::normal), u"Normal vision"_s);
}

TEST(LookAlikePairs, MaterialRedAndGreenCollapseOnlyForDeuteranopes) {
    // #D32F2F and #388E3C become #8B7C28 and #867A42: sqrt(5² + 2² + 26²) = 26.55 < 30. For
    // protanopes they stay 62.8 apart (#62592D, #918234).
    const QList<ColorItem> colors = items({u"#D32F2F"_s, u"#388E3C"_s, u"#1976D2"_s});
    EXPECT_EQ(lookAlikePairs(colors, SimulationType::deuteranopia, 30.0), (Pairs{{0, 1}}));
    EXPECT_EQ(lookAlikePairs(colors, SimulationType::deuteranopia, 26.5), Pairs{});
    EXPECT_EQ(lookAlikePairs(colors, SimulationType::protanopia, 30.0), Pairs{});
    EXPECT_EQ(lookAlikePairs(colors, SimulationType::protanopia, 63.0), (Pairs{{0, 1}}));
}

TEST(LookAlikePairs, DistanceEqualToTheThresholdIsNotListed) {
    // Greys survive every type unchanged; #000000 to #0A0A0A is sqrt(300) exactly as computed.
    const QList<ColorItem> colors = items({u"#000000"_s, u"#0A0A0A"_s});
    const double distance = std::sqrt(300.0);
    for (const SimulationType type :
         {SimulationType::protanopia, SimulationType::deuteranopia, SimulationType::tritanopia}) {
        EXPECT_EQ(lookAlikePairs(colors, type, distance), Pairs{});
        EXPECT_EQ(lookAlikePairs(colors, type, std::nextafter(distance, 100.0)), (Pairs{{0, 1}}));
    }
}

TEST(LookAlikePairs, OrderSkipsAndEmptyCases) {
    const QList<ColorItem> greys =
        items({u"#101010"_s, u"nope"_s, u"#121212"_s, u"#abc"_s, u"#111111"_s});
    // Unreadable entries pair with nothing, even with a huge threshold; i ascending, then j.
    EXPECT_EQ(lookAlikePairs(greys, SimulationType::tritanopia, 1000.0),
              (Pairs{{0, 2}, {0, 4}, {2, 4}}));
    EXPECT_EQ(lookAlikePairs(items({u"nope"_s, u"nope"_s}), SimulationType::protanopia, 1000.0),
              Pairs{});
    // Normal vision finds nothing, not even identical colours.
    EXPECT_EQ(lookAlikePairs(items({u"#FF0000"_s, u"#FF0000"_s}), SimulationType::normal, 30.0),
              Pairs{});
    EXPECT_EQ(lookAlikePairs(items({u"#FF0000"_s}), SimulationType::protanopia, 1000.0), Pairs{});
    EXPECT_EQ(lookAlikePairs({}, SimulationType::protanopia, 1000.0), Pairs{});
    // Identical colours are at distance 0: a zero threshold lists nothing.
    EXPECT_EQ(lookAlikePairs(items({u"#FF0000"_s, u"#ff0000"_s}), SimulationType::protanopia, 0.0),
              Pairs{});
}

} // namespace
