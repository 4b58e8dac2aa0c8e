#include "color/DarkVersion.h"

#include "QtPrinters.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;

namespace {

QList<ColorItem> colorsWith(const QStringList& hexes) {
    QList<ColorItem> colors;
    for (const QString& hex : hexes) {
        colors.append(ColorItem::make(u"c"_s, hex, true));
    }
    return colors;
}

QStringList hexesOf(const QList<ColorItem>& colors) {
    QStringList hexes;
    for (const ColorItem& color : colors) {
        hexes.append(color.hex);
    }
    return hexes;
}

TEST(DarkVersion, InvertsThenFixes) {
    struct Case {
        const char* what;
        QStringList before;
        QStringList after;
    };
    const Case cases[] = {
        // Floor and ceiling: white goes to 0.04, black to 0.96, and the pair reads.
        {"white and black", {u"#FFFFFF"_s, u"#000000"_s}, {u"#0A0A0A"_s, u"#F5F5F5"_s}},
        // A tinted white and a tinted black keep their hue at the clamped lightness.
        {"tinted extremes", {u"#FFF0F0"_s, u"#100000"_s}, {u"#140000"_s, u"#FFEBEB"_s}},
        // Red stays at l = 0.5, which is dark (below 0.55), so it is moved for the light grey.
        {"l = 0.5 is dark", {u"#FF0000"_s, u"#000000"_s}, {u"#E30000"_s, u"#F5F5F5"_s}},
        // Everything inverts to dark: no light colour, so the pass changes nothing even where
        // two colours barely differ.
        {"all dark",
         {u"#FFFFFF"_s, u"#EEEEEE"_s, u"#CC8888"_s},
         {u"#0A0A0A"_s, u"#111111"_s, u"#773333"_s}},
        {"one colour", {u"#3B82F6"_s}, {u"#0950C4"_s}},
        // Unreadable codes stay in place and take part in neither list.
        {"unreadable kept",
         {u"nope"_s, u"#FFFFFF"_s, u"#FFF"_s, u"#000000"_s},
         {u"nope"_s, u"#0A0A0A"_s, u"#FFF"_s, u"#F5F5F5"_s}},
        {"empty", {}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const QList<ColorItem> before = colorsWith(c.before);
        const QList<ColorItem> after = DarkVersion::darkVersion(before);
        EXPECT_EQ(hexesOf(after), c.after);
        // Ids, names and flags travel unchanged.
        ASSERT_EQ(after.size(), before.size());
        for (qsizetype i = 0; i < before.size(); ++i) {
            EXPECT_EQ(after.at(i).id, before.at(i).id);
            EXPECT_EQ(after.at(i).name, before.at(i).name);
            EXPECT_EQ(after.at(i).isAutoNamed, before.at(i).isAutoNamed);
        }
    }
}

TEST(DarkContrastPass, EachDarkColourMovesFromItsLatestValue) {
    struct Case {
        const char* what;
        QStringList before;
        QStringList after;
    };
    const Case cases[] = {
        // The green is darkened for the mint, then #1A1AFF (light by lightness, too dark for
        // any darker colour) drives it all the way to white: the mint pair is lost again and
        // nothing goes back over it.
        {"the last light colour wins",
         {u"#0EE249"_s, u"#86FEA5"_s, u"#1A1AFF"_s},
         {u"#FFFFFF"_s, u"#86FEA5"_s, u"#1A1AFF"_s}},
        // The grey turns white, but the lists were fixed before: the yellow is still judged
        // against the blue only, and reads on it.
        {"lists fixed at the start",
         {u"#868686"_s, u"#1A1AFF"_s, u"#FFFF00"_s},
         {u"#FFFFFF"_s, u"#1A1AFF"_s, u"#FFFF00"_s}},
        // Light colours never move, even when they read badly on each other.
        {"only light colours", {u"#FFFFFF"_s, u"#EEEEEE"_s}, {u"#FFFFFF"_s, u"#EEEEEE"_s}},
        {"all dark", {u"#000000"_s, u"#111111"_s}, {u"#000000"_s, u"#111111"_s}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(hexesOf(DarkVersion::darkContrastPass(colorsWith(c.before))), c.after);
    }
}

TEST(DarkVersion, MorePreviewLine) {
    EXPECT_EQ(DarkVersion::morePreviewLine(0), std::nullopt);
    EXPECT_EQ(DarkVersion::morePreviewLine(6), std::nullopt);
    EXPECT_EQ(DarkVersion::morePreviewLine(7), u"+1 more color not shown"_s);
    EXPECT_EQ(DarkVersion::morePreviewLine(8), u"+2 more colors not shown"_s);
    EXPECT_EQ(DarkVersion::morePreviewLine(17), u"+11 more colors not shown"_s);
}

TEST(DarkVersion, PaletteColoursAreFreshAndUnlocked) {
    QList<ColorItem> source = colorsWith({u"#FFFFFF"_s, u"#000000"_s, u"nope"_s});
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
