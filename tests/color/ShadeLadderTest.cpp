#include "QtPrinters.h"
#include "color/ColorUtils.h"
#include "model/ColorItem.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::ColorUtils;

namespace {

std::vector<ShadeStep> ladderOf(std::initializer_list<const char16_t*> hexes, int base,
                                const QString& baseText) {
    std::vector<ShadeStep> steps;
    const int labels[] = {50, 100, 200, 300, 400, 500, 600, 700, 800, 900};
    int i = 0;
    for (const char16_t* hex : hexes) {
        steps.push_back(
            ShadeStep{labels[i], i == base ? baseText : QString::fromUtf16(hex), i == base});
        ++i;
    }
    return steps;
}

TEST(ShadeLadder, TenStepsWithTheInputAsBase) {
    // #3366ff has lightness 0.6: step 400 is its own, and keeps the text as typed.
    EXPECT_EQ(shadeLadder(u"#3366ff"_s),
              ladderOf({u"#E5ECFF", u"#CCD9FF", u"#A3BAFF", u"#7094FF", u"", u"#003DF5", u"#0030C2",
                        u"#00248F", u"#00175C", u"#000D33"},
                       4, u"#3366ff"_s));
    // Black is nearest to 0.10, so the darkest step holds it.
    EXPECT_EQ(shadeLadder(u"#000000"_s),
              ladderOf({u"#F2F2F2", u"#E6E6E6", u"#D1D1D1", u"#B8B8B8", u"#999999", u"#7A7A7A",
                        u"#616161", u"#474747", u"#2E2E2E", u""},
                       9, u"#000000"_s));
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
        int bases = 0;
        for (const ShadeStep& step : steps) {
            if (step.isBase) {
                ++bases;
                EXPECT_EQ(step.label, c.baseLabel);
                EXPECT_EQ(step.hex, c.hex);
            }
        }
        EXPECT_EQ(bases, 1);
    }
}

TEST(ShadeLadder, UnreadableHexHasNoLadder) {
    EXPECT_TRUE(shadeLadder(u"#abc"_s).empty());
    EXPECT_TRUE(shadeLadder(u"nope"_s).empty());
}

QList<ColorItem> items(std::initializer_list<const char16_t*> hexes) {
    QList<ColorItem> list;
    for (const char16_t* hex : hexes) {
        list.append(ColorItem::make(u"c"_s, QString::fromUtf16(hex), true));
    }
    return list;
}

TEST(SimilarPairs, ManhattanDistanceBelowTheThreshold) {
    using Pairs = std::vector<std::pair<int, int>>;
    struct Case {
        QList<ColorItem> colors;
        int threshold;
        Pairs pairs;
    };
    const Case cases[] = {
        // 5 + 5 + 4 = 14 is below 15; 5 + 5 + 5 = 15 is not.
        {items({u"#101010", u"#151514"}), 15, Pairs{{0, 1}}},
        {items({u"#101010", u"#151515"}), 15, Pairs{}},
        {items({u"#101010", u"#151515"}), 16, Pairs{{0, 1}}},
        // Index order, i then j; an unreadable colour pairs with nothing.
        {items({u"#000000", u"#FFFFFF", u"#010101", u"#fff", u"#000001"}), 15,
         Pairs{{0, 2}, {0, 4}, {2, 4}}},
        {items({u"#000000", u"#000000"}), 0, Pairs{}},
        {items({u"#000000"}), 100, Pairs{}},
        {items({}), 100, Pairs{}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(similarPairs(c.colors, c.threshold), c.pairs);
    }
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
