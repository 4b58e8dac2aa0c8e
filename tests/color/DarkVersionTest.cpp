#include "color/DarkVersion.h"

#include "PaletteTestSupport.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::testing_palette;

namespace {

QStringList hexesOf(const QList<ColorItem>& colors) {
    QStringList hexes;
    for (const ColorItem& color : colors) {
        hexes.append(color.hex);
    }
    return hexes;
}

// Dark versions of stored palettes are compared with an independent model through the command
// line; here the limits and the order in which the contrast pass sees its colours.
TEST(DarkVersion, InvertsThenFixes) {
    const std::pair<const char*, const char*> cases[] = {
        // Floor and ceiling: white goes to 0.04, black to 0.96, and the pair reads.
        {"#FFFFFF #000000", "#0A0A0A #F5F5F5"},
        // Red stays at l = 0.5, which is dark (below 0.55), so it is moved for the light grey.
        {"#FF0000 #000000", "#E30000 #F5F5F5"},
        // Unreadable codes stay in place and take part in neither list.
        {"nope #FFFFFF #FFF #000000", "nope #0A0A0A #FFF #F5F5F5"},
        {"", ""},
    };
    for (const auto& [before, after] : cases) {
        const QList<ColorItem> colors = palette(words(QString::fromUtf8(before)));
        const QList<ColorItem> dark = DarkVersion::darkVersion(colors);
        EXPECT_EQ(hexesOf(dark), words(QString::fromUtf8(after))) << before;
        // Ids, names and flags travel unchanged.
        ASSERT_EQ(dark.size(), colors.size());
        for (qsizetype i = 0; i < colors.size(); ++i) {
            EXPECT_EQ(dark.at(i).id, colors.at(i).id);
            EXPECT_EQ(dark.at(i).name, colors.at(i).name);
        }
    }
}

TEST(DarkContrastPass, EachDarkColourMovesFromItsLatestValue) {
    const std::pair<const char*, const char*> cases[] = {
        // The green is darkened for the mint, then #1A1AFF (light by lightness, too dark for
        // any darker colour) drives it all the way to white: the mint pair is lost again and
        // nothing goes back over it.
        {"#0EE249 #86FEA5 #1A1AFF", "#FFFFFF #86FEA5 #1A1AFF"},
        // The grey turns white, but the lists were fixed before: the yellow is still judged
        // against the blue only, and reads on it.
        {"#868686 #1A1AFF #FFFF00", "#FFFFFF #1A1AFF #FFFF00"},
        // Light colours never move, even when they read badly on each other.
        {"#FFFFFF #EEEEEE", "#FFFFFF #EEEEEE"},
        {"#000000 #111111", "#000000 #111111"},
    };
    for (const auto& [before, after] : cases) {
        const QList<ColorItem> colors = palette(words(QString::fromUtf8(before)));
        EXPECT_EQ(hexesOf(DarkVersion::darkContrastPass(colors)), words(QString::fromUtf8(after)))
            << before;
    }
}

TEST(DarkVersion, MorePreviewLine) {
    EXPECT_EQ(DarkVersion::morePreviewLine(6), std::nullopt);
    EXPECT_EQ(DarkVersion::morePreviewLine(7), u"+1 more color not shown"_s);
    EXPECT_EQ(DarkVersion::morePreviewLine(8), u"+2 more colors not shown"_s);
    EXPECT_EQ(DarkVersion::morePreviewLine(17), u"+11 more colors not shown"_s);
}

TEST(DarkVersion, PaletteColoursAreFreshAndUnlocked) {
    QList<ColorItem> source = palette({u"#FFFFFF"_s, u"#000000"_s, u"nope"_s});
    source[0].isLocked = true;
    source[0].isAutoNamed = false;
    source[0].name = u"Paper"_s;
    source[1].dividerBefore = true;
    source[1].dividerLabel = u"Ink"_s;

    const QList<ColorItem> colors = DarkVersion::darkPaletteColors(source);
    EXPECT_EQ(hexesOf(colors), (QStringList{u"#0A0A0A"_s, u"#F5F5F5"_s, u"nope"_s}));
    QSet<QUuid> ids;
    for (qsizetype i = 0; i < colors.size(); ++i) {
        EXPECT_NE(colors.at(i).id, source.at(i).id);
        EXPECT_FALSE(colors.at(i).isLocked);
        EXPECT_EQ(colors.at(i).name, source.at(i).name);
        EXPECT_EQ(colors.at(i).isAutoNamed, source.at(i).isAutoNamed);
        EXPECT_EQ(colors.at(i).dividerBefore, source.at(i).dividerBefore);
        EXPECT_EQ(colors.at(i).dividerLabel, source.at(i).dividerLabel);
        ids.insert(colors.at(i).id);
    }
    EXPECT_EQ(ids.size(), colors.size());
    // The source itself is untouched.
    EXPECT_TRUE(source.at(0).isLocked);
    EXPECT_EQ(source.at(0).hex, u"#FFFFFF"_s);
}

} // namespace
