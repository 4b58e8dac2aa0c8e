#include "PaletteTestSupport.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::ColorUtils;
using namespace hueshelf::testing_palette;

namespace {

// Ladders of canonical codes are compared with an independent model through the command line;
// here the text as typed, and each midpoint between neighbouring steps.
TEST(ShadeLadder, TheBaseKeepsTheTextAsTyped) {
    const std::vector<ShadeStep> steps = shadeLadder(u"#3366ff"_s); // lightness 0.6: step 400
    ASSERT_EQ(steps.size(), 10u);
    EXPECT_EQ(steps[4], (ShadeStep{400, u"#3366ff"_s, true}));
    EXPECT_EQ(steps[5], (ShadeStep{500, u"#003DF5"_s, false}));
    EXPECT_TRUE(shadeLadder(u"#abc"_s).empty());
}

TEST(ShadeLadder, BaseIsTheNearestLightness) {
    struct Case {
        QString hex;
        int baseLabel;
    };
    // Pairs straddle the midpoint between two neighbouring steps.
    const Case cases[] = {
        {u"#FFFFFF"_s, 50},  {u"#ECECEC"_s, 50},  {u"#ECEBEB"_s, 100}, {u"#DCDBDB"_s, 100},
        {u"#DBDBDB"_s, 200}, {u"#C5C4C4"_s, 200}, {u"#C4C4C4"_s, 300}, {u"#A9A8A8"_s, 300},
        {u"#A8A8A8"_s, 400}, {u"#8A8A8A"_s, 400}, {u"#8A8989"_s, 500}, {u"#6E6E6E"_s, 500},
        {u"#6E6D6D"_s, 600}, {u"#555454"_s, 600}, {u"#545454"_s, 700}, {u"#3B3B3B"_s, 700},
        {u"#3B3A3A"_s, 800}, {u"#242424"_s, 800}, {u"#242323"_s, 900}, {u"#1A1A1A"_s, 900},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hex.toStdString());
        const std::vector<ShadeStep> steps = shadeLadder(c.hex);
        ASSERT_EQ(steps.size(), 10u);
        for (const ShadeStep& step : steps)
            EXPECT_EQ(step.isBase, step.label == c.baseLabel) << step.label;
        EXPECT_EQ(steps.at(c.baseLabel == 50 ? 0 : c.baseLabel / 100).hex, c.hex);
    }
}

TEST(SimilarPairs, ManhattanDistanceBelowTheThreshold) {
    using Pairs = std::vector<std::pair<int, int>>;
    struct Case {
        QString hexes;
        int threshold;
        Pairs pairs;
    };
    // 5 + 5 + 4 = 14 is below 15; 5 + 5 + 5 = 15 is not. Index order, i then j; an unreadable
    // colour pairs with nothing.
    const Case cases[] = {
        {u"#101010 #151514"_s, 15, Pairs{{0, 1}}},
        {u"#101010 #151515"_s, 15, Pairs{}},
        {u"#101010 #151515"_s, 16, Pairs{{0, 1}}},
        {u"#000000 #FFFFFF #010101 #fff #000001"_s, 15, Pairs{{0, 2}, {0, 4}, {2, 4}}},
        {u"#000000 #000000"_s, 0, Pairs{}},
        {u"#000000"_s, 100, Pairs{}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(similarPairs(palette(words(c.hexes)), c.threshold), c.pairs)
            << c.hexes.toStdString();
}

TEST(SwatchLabel, DarkLabelAboveLightnessSixTenths) {
    EXPECT_TRUE(swatchLabelIsDark(u"#FFFFFF"_s));
    EXPECT_TRUE(swatchLabelIsDark(u"#9A9A9A"_s));  // 0.6039
    EXPECT_FALSE(swatchLabelIsDark(u"#999999"_s)); // exactly 0.6
    EXPECT_FALSE(swatchLabelIsDark(u"#3366FF"_s)); // 0.6 too
    EXPECT_FALSE(swatchLabelIsDark(u"#000000"_s));
    EXPECT_TRUE(swatchLabelIsDark(u"not a colour"_s));
}

} // namespace
