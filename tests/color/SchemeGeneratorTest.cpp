#include "color/SchemeGenerator.h"

#include "PaletteTestSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::SchemeGenerator;
using hueshelf::testing_palette::words;

namespace {

QStringList hexesOf(const QList<GeneratedColor>& colors) {
    QStringList hexes;
    for (const GeneratedColor& color : colors) {
        hexes.append(color.hex);
    }
    return hexes;
}

// A hand-made six-colour list in role order, for the contrast pass on chosen colours.
QList<GeneratedColor> rolesWith(const QStringList& hexes) {
    QList<GeneratedColor> colors;
    for (qsizetype i = 0; i < hexes.size(); ++i) {
        colors.append(GeneratedColor{
            QUuid::createUuid(), roles()[static_cast<std::size_t>(i)], hexes.at(i), {}});
    }
    return colors;
}

// Schemes of every style are compared with an independent model through the command line,
// starting colours drawn to the wrap of the hue, the clamps and the floors included. Here what
// it can't hand over, and the order of the contrast pass on colours chosen by hand.
TEST(SchemeStyle, ParsesExactIdentifiersOnly) {
    for (SchemeStyle style : allSchemeStyles())
        EXPECT_EQ(styleFromIdentifier(styleIdentifier(style)), style);
    for (const QString& text : {u"Warm"_s, u" cool"_s, u""_s, u"hot"_s})
        EXPECT_EQ(styleFromIdentifier(text), std::nullopt) << text.toStdString();
}

TEST(SchemeColors, HueWrapsBothWays) {
    // h + 30 = 380 and h + 15 = 365 wrap to 20 and 5; h - 30 = -20 and h - 15 = -5 to 340, 355.
    const QList<GeneratedColor> warm = schemeColors(u"#abcdef"_s, 350, 1.0, 0.5, SchemeStyle::warm);
    EXPECT_EQ(hexesOf(warm), words(u"#abcdef #800015 #FF5500 #F8F6F6 #EFEBEB #450812"_s));
    const QList<GeneratedColor> cool = schemeColors(u"#abcdef"_s, 10, 1.0, 0.5, SchemeStyle::cool);
    EXPECT_EQ(hexesOf(cool), words(u"#abcdef #801500 #FF0055 #F8F6F7 #EFEBEC #451208"_s));
    for (qsizetype i = 0; i < roleCount; ++i)
        EXPECT_EQ(cool.at(i).role, roles()[static_cast<std::size_t>(i)]);
}

TEST(GenerateScheme, ThePrimaryKeepsTheTextAsTypedAndTheHeaderIsClamped) {
    // s * 1.1 is clamped to 1: an unclamped header would not even be a colour.
    const std::optional<GeneratedScheme> red = generateScheme(u"ff0000"_s, SchemeStyle::warm);
    ASSERT_TRUE(red);
    EXPECT_EQ(hexesOf(red->colors), words(u"ff0000 #800000 #FF8000 #F8F7F6 #EFECEB #450808"_s));
    EXPECT_EQ(red->colors.at(accent).name, u"Copper"_s);
    for (const QString& text : {u""_s, u"#abc"_s, u"rgb(1, 2, 3)"_s, u"blue"_s})
        EXPECT_FALSE(generateScheme(text, SchemeStyle::warm)) << text.toStdString();
}

TEST(ContrastPass, SecondPairStartsFromTheFirstResult) {
    struct Case {
        const char* what;
        QString before;
        QString after;
    };
    const Case cases[] = {
        // Grey text is darkened for white (#767676), then lightened for pure blue, which reads as
        // a dark background: the blue pair wins and the white pair is lost again. In the
        // opposite order the text would end #767676.
        {"the later pair wins", u"#3B82F6 #808080 #FF8800 #FFFFFF #0000FF #808080"_s,
         u"#3B82F6 #BCBCBC #FF8800 #FFFFFF #0000FF #BCBCBC"_s},
        // #3333FF is a light background that no darker grey reaches; the search runs back to the
        // grey it started from, which is the first pair's #767676, not the typed #808080.
        {"the second search starts from the first result",
         u"#3B82F6 #404040 #FF8800 #FFFFFF #3333FF #808080"_s,
         u"#3B82F6 #404040 #FF8800 #FFFFFF #3333FF #767676"_s},
        // Readable pairs and colours outside any pair are left alone, unreadable ones too.
        {"nothing to fix", u"nope #000000 #123 #FFFFFF #EEEEEE #111111"_s,
         u"nope #000000 #123 #FFFFFF #EEEEEE #111111"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(hexesOf(withContrastPass(rolesWith(words(c.before)))), words(c.after));
    }
}

TEST(ContrastPass, VerdictIsJudgedFromTheFinalHexes) {
    const QStringList readable{u"#3B82F6"_s, u"#000000"_s, u"#FF8800"_s,
                               u"#FFFFFF"_s, u"#EEEEEE"_s, u"#111111"_s};
    EXPECT_TRUE(allPairsReadable(rolesWith(readable)));

    // The text was fixed for each background in turn but ends unreadable on the first.
    const QList<GeneratedColor> lost = withContrastPass(rolesWith(
        {u"#3B82F6"_s, u"#000000"_s, u"#FF8800"_s, u"#FFFFFF"_s, u"#0000FF"_s, u"#808080"_s}));
    EXPECT_FALSE(allPairsReadable(lost));

    // An unreadable code in any pair fails the verdict, whichever side it is on.
    for (qsizetype role : {header, background, surface, text}) {
        QStringList hexes = readable;
        hexes[role] = u"#GGGGGG"_s;
        EXPECT_FALSE(allPairsReadable(rolesWith(hexes))) << role;
    }
    // Primary and Accent take part in no pair.
    QStringList outside = readable;
    outside[primary] = u"x"_s;
    outside[accent] = u"y"_s;
    EXPECT_TRUE(allPairsReadable(rolesWith(outside)));
}

TEST(StartingText, ReplacesPastedCodesAndKeepsSixDigits) {
    struct Case {
        QString typed;
        std::optional<QString> replacement;
        bool generates;
    };
    const Case cases[] = {
        {u"rgb(59, 130, 246)"_s, u"#3B82F6"_s, true},
        {u"hsl(217, 91%, 60%)"_s, u"#3C83F6"_s, true},
        {u"##3b82f6"_s, u"#3B82F6"_s, true},
        {u" #3b82f6 "_s, u"#3B82F6"_s, true},
        {u"3b82f6"_s, std::nullopt, true},
        {u"#3b82f6"_s, std::nullopt, true},
        {u"#3B82F6"_s, std::nullopt, true},
        {u"#abc"_s, std::nullopt, false},
        {u"garbage"_s, std::nullopt, false},
        {u""_s, std::nullopt, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typed.toStdString());
        const StartingTextEdit edit = startingTextEdit(c.typed);
        EXPECT_EQ(edit.replacementText, c.replacement);
        EXPECT_EQ(edit.generates, c.generates);
    }
}

TEST(StartingColour, FirstReadableColourOfThePalette) {
    EXPECT_EQ(defaultStartingHex({}), u"#3B82F6"_s);
    EXPECT_EQ(defaultStartingHex({ColorItem::make(u"a"_s, u"#12ab34"_s, true)}), u"#12ab34"_s);
    // Only the first colour counts, even when a later one could be read.
    EXPECT_EQ(defaultStartingHex({ColorItem::make(u"a"_s, u"#FFF"_s, true),
                                  ColorItem::make(u"b"_s, u"#112233"_s, true)}),
              u"#3B82F6"_s);
}

} // namespace
