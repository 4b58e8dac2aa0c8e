#include "PaletteTestSupport.h"
#include "color/DarkVersion.h"
#include "color/SchemeGenerator.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::SchemeGenerator;
using namespace hueshelf::testing_palette;

namespace {

// Six colours in role order, for the contrast pass on colours no starting colour would give.
QList<GeneratedColor> rolesWith(const QString& hexes) {
    QList<GeneratedColor> colors;
    for (const QString& hex : words(hexes))
        colors.append({QUuid::createUuid(), roles()[std::size_t(colors.size())], hex, {}});
    return colors;
}

QString hexesOf(const QList<GeneratedColor>& colors) {
    return testing_palette::hexesOf(schemePaletteColors(colors)).join(u' ');
}

// Schemes of every style are compared with an independent model through the command line;
// here the window's side, and colours no starting colour would give.
TEST(SchemeGenerator, ContrastPassOrderVerdictAndStartingText) {
    // Grey text is darkened for white (#767676), then lightened for pure blue: the later pair
    // wins and the first is lost again; the verdict is judged from the final codes.
    const auto lost =
        withContrastPass(rolesWith(u"#3B82F6 #808080 #FF8800 #FFFFFF #0000FF #808080"_s));
    EXPECT_EQ(hexesOf(lost), u"#3B82F6 #BCBCBC #FF8800 #FFFFFF #0000FF #BCBCBC"_s);
    EXPECT_FALSE(allPairsReadable(lost));
    // No darker grey reads on #3333FF: the search runs back to where it started, which is the
    // first pair's #767676, not the typed #808080.
    EXPECT_EQ(
        hexesOf(withContrastPass(rolesWith(u"#3B82F6 #404040 #FF8800 #FFFFFF #3333FF #808080"_s))),
        u"#3B82F6 #404040 #FF8800 #FFFFFF #3333FF #767676"_s);
    // Primary and Accent are in no pair; an unreadable code in a pair fails the verdict.
    EXPECT_TRUE(allPairsReadable(rolesWith(u"x #000000 y #FFFFFF #EEEEEE #111111"_s)));
    EXPECT_FALSE(allPairsReadable(rolesWith(u"x #000000 y #FFFFFF #GGGGGG #111111"_s)));

    const std::tuple<QString, std::optional<QString>, bool> typed[] = {
        {u" #3b82f6 "_s, u"#3B82F6"_s, true},
        {u"3b82f6"_s, std::nullopt, true},
        {u"#3b82f6"_s, std::nullopt, true},
        {u"#abc"_s, std::nullopt, false}};
    for (const auto& [text, replacement, generates] : typed) {
        EXPECT_EQ(startingTextEdit(text).replacementText, replacement) << text.toStdString();
        EXPECT_EQ(startingTextEdit(text).generates, generates) << text.toStdString();
    }
    EXPECT_EQ(defaultStartingHex(palette({u"#12ab34"_s})), u"#12ab34"_s);
    EXPECT_EQ(defaultStartingHex(palette({u"#FFF"_s, u"#112233"_s})), u"#3B82F6"_s);
}

// A palette made of the dark version is new: no locks, no ids of its source.
TEST(DarkVersion, APaletteOfFreshUnlockedColours) {
    QList<ColorItem> source = palette({u"#FFFFFF"_s});
    source[0].isLocked = true;
    const ColorItem made = DarkVersion::darkPaletteColors(source).at(0);
    EXPECT_EQ(std::tuple(made.hex, made.name, made.isLocked),
              std::tuple(u"#0A0A0A"_s, u"C0"_s, false));
    EXPECT_NE(made.id, source[0].id);
}

} // namespace
