#include "color/ColorVisionSimulation.h"

#include "PaletteTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::testing_palette;
using namespace hueshelf::ColorVisionSimulation;

namespace {

using Pairs = std::vector<std::pair<int, int>>;

// The simulated codes of every single-channel level, every grey and the clamped secondaries
// are compared with an independent model through the command line; here only what it can't
// hand over: normal vision and text that isn't a code.
TEST(ColorVisionSimulation, NormalVisionAndUnreadableTextComeBackAsGiven) {
    EXPECT_EQ(simulated(u" #ff0000\n"_s, SimulationType::normal), u" #ff0000\n"_s);
    for (const SimulationType type : allSimulationTypes()) {
        for (const QString& text : {u"#abc"_s, u"nope"_s, u""_s, u"#FF000"_s, u"rgb(1, 2, 3)"_s})
            EXPECT_EQ(simulated(text, type), text);
    }
}

TEST(ColorVisionSimulation, IdentifiersReadBackInMenuOrderAndNothingElseReads) {
    const QString identifiers[] = {u"normal"_s, u"protanopia"_s, u"deuteranopia"_s,
                                   u"tritanopia"_s};
    ASSERT_EQ(allSimulationTypes().size(), std::size(identifiers));
    for (std::size_t i = 0; i < std::size(identifiers); ++i) {
        EXPECT_EQ(identifier(allSimulationTypes()[i]), identifiers[i]);
        EXPECT_EQ(simulationTypeFromIdentifier(identifiers[i]), allSimulationTypes()[i]);
    }
    for (const QString& unknown : {u"Protanopia"_s, u""_s, u"off"_s, u" normal"_s})
        EXPECT_FALSE(simulationTypeFromIdentifier(unknown)) << unknown.toStdString();
    EXPECT_FALSE(tooltipShortName(SimulationType::normal));
    EXPECT_EQ(tooltipShortName(SimulationType::tritanopia), lensLabel(SimulationType::tritanopia));
}

// The texts built from a type's own words.
TEST(ColorVisionSimulation, LensAndDetailsWording) {
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

TEST(LookAlikePairs, DistanceEqualToTheThresholdIsNotListed) {
    // Greys survive every type unchanged; #000000 to #0A0A0A is sqrt(300) exactly as computed.
    const QList<ColorItem> colors = palette({u"#000000"_s, u"#0A0A0A"_s});
    const double distance = std::sqrt(300.0);
    for (const SimulationType type :
         {SimulationType::protanopia, SimulationType::deuteranopia, SimulationType::tritanopia}) {
        EXPECT_EQ(lookAlikePairs(colors, type, distance), Pairs{});
        EXPECT_EQ(lookAlikePairs(colors, type, std::nextafter(distance, 100.0)), (Pairs{{0, 1}}));
    }
}

TEST(LookAlikePairs, OrderSkipsAndEmptyCases) {
    const QList<ColorItem> greys =
        palette({u"#101010"_s, u"nope"_s, u"#121212"_s, u"#abc"_s, u"#111111"_s});
    // Unreadable entries pair with nothing, even with a huge threshold; i ascending, then j.
    EXPECT_EQ(lookAlikePairs(greys, SimulationType::tritanopia, 1000.0),
              (Pairs{{0, 2}, {0, 4}, {2, 4}}));
    EXPECT_EQ(lookAlikePairs(palette({u"nope"_s, u"nope"_s}), SimulationType::protanopia, 1000.0),
              Pairs{});
    // Normal vision finds nothing, not even identical colours.
    EXPECT_EQ(lookAlikePairs(palette({u"#FF0000"_s, u"#FF0000"_s}), SimulationType::normal, 30.0),
              Pairs{});
    EXPECT_EQ(lookAlikePairs(palette({u"#FF0000"_s}), SimulationType::protanopia, 1000.0), Pairs{});
    EXPECT_EQ(lookAlikePairs({}, SimulationType::protanopia, 1000.0), Pairs{});
    // Identical colours are at distance 0: a zero threshold lists nothing.
    EXPECT_EQ(
        lookAlikePairs(palette({u"#FF0000"_s, u"#ff0000"_s}), SimulationType::protanopia, 0.0),
        Pairs{});
}

} // namespace
