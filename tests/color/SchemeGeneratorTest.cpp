#include "color/SchemeGenerator.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::SchemeGenerator;

namespace {

QStringList hexesOf(const QList<GeneratedColor>& colors) {
    QStringList hexes;
    for (const GeneratedColor& color : colors) {
        hexes.append(color.hex);
    }
    return hexes;
}

QStringList namesOf(const QList<GeneratedColor>& colors) {
    QStringList names;
    for (const GeneratedColor& color : colors) {
        names.append(color.name);
    }
    return names;
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

TEST(SchemeStyle, ParsesExactIdentifiersOnly) {
    for (SchemeStyle style : allSchemeStyles()) {
        EXPECT_EQ(styleFromIdentifier(styleIdentifier(style)), style);
    }
    EXPECT_EQ(styleIdentifier(SchemeStyle::neutral), u"neutral"_s);
    EXPECT_EQ(styleLabel(SchemeStyle::neutral), u"Neutral"_s);
    for (const QString& text : {u"Warm"_s, u" cool"_s, u""_s, u"hot"_s}) {
        EXPECT_EQ(styleFromIdentifier(text), std::nullopt) << text.toStdString();
    }
}

TEST(SchemeColors, ArithmeticPerStyle) {
    struct Case {
        const char* what;
        double h, s, l;
        SchemeStyle style;
        QStringList hexes; // Header, Accent, Background, Surface, Text
    };
    const Case cases[] = {
        // h + 30 = 380 and h + 15 = 365 wrap to 20 and 5.
        {"hue 350 under warm",
         350,
         1.0,
         0.5,
         SchemeStyle::warm,
         {u"#800015"_s, u"#FF5500"_s, u"#F8F6F6"_s, u"#EFEBEB"_s, u"#450812"_s}},
        // h - 30 = -20 and h - 15 = -5 wrap to 340 and 355.
        {"cool below zero",
         10,
         1.0,
         0.5,
         SchemeStyle::cool,
         {u"#801500"_s, u"#FF0055"_s, u"#F8F6F7"_s, u"#EFEBEC"_s, u"#451208"_s}},
        {"cool, dark start",
         5,
         0.5,
         0.3,
         SchemeStyle::cool,
         {u"#63231D"_s, u"#99335E"_s, u"#F8F6F7"_s, u"#EFEBEC"_s, u"#361917"_s}},
        // Saturation floor 0.3 on the opposite hue, lightness floor 0.4, fixed grey text.
        {"neutral, dull dark start",
         200,
         0.2,
         0.1,
         SchemeStyle::neutral,
         {u"#32444E"_s, u"#855C47"_s, u"#F7F7F8"_s, u"#ECEDEE"_s, u"#22282A"_s}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const QList<GeneratedColor> colors = schemeColors(u"#abcdef"_s, c.h, c.s, c.l, c.style);
        ASSERT_EQ(colors.size(), roleCount);
        EXPECT_EQ(colors.at(primary).hex, u"#abcdef"_s);
        EXPECT_EQ(hexesOf(colors).mid(1), c.hexes);
        for (qsizetype i = 0; i < roleCount; ++i) {
            EXPECT_EQ(colors.at(i).role, roles()[static_cast<std::size_t>(i)]);
            EXPECT_TRUE(colors.at(i).name.isEmpty());
            EXPECT_FALSE(colors.at(i).id.isNull());
        }
    }
}

TEST(GenerateScheme, FromStartingColours) {
    struct Case {
        const char* what;
        QString primary;
        SchemeStyle style;
        QStringList hexes;
        QStringList names;
    };
    const Case cases[] = {
        // A grey reads h = 0, s = 0: header and text stay grey; three roles look alike.
        {"grey, warm",
         u"#808080"_s,
         SchemeStyle::warm,
         {u"#808080"_s, u"#404040"_s, u"#808080"_s, u"#F8F7F6"_s, u"#EFECEB"_s, u"#262626"_s},
         {u"Gray"_s, u"Gray 2"_s, u"Gray 3"_s, u"Ivory"_s, u"Off White"_s, u"Dark Gray"_s}},
        // Neutral's accent: hue 180 and saturation 0.3 from the floor.
        {"grey, neutral",
         u"#808080"_s,
         SchemeStyle::neutral,
         {u"#808080"_s, u"#404040"_s, u"#5AA6A6"_s, u"#F8F7F7"_s, u"#EEECEC"_s, u"#2A2222"_s},
         {u"Gray"_s, u"Gray 2"_s, u"Dusty Cyan"_s, u"White"_s, u"Off White"_s, u"Dark Red"_s}},
        // s * 1.1 is clamped to 1: an unclamped header would not even be a colour.
        {"saturated red, warm",
         u"#FF0000"_s,
         SchemeStyle::warm,
         {u"#FF0000"_s, u"#800000"_s, u"#FF8000"_s, u"#F8F7F6"_s, u"#EFECEB"_s, u"#450808"_s},
         {u"Ruby"_s, u"Maroon"_s, u"Copper"_s, u"Ivory"_s, u"Off White"_s, u"Maroon 2"_s}},
        // The accent gets its lightness 0.4 from the floor.
        {"black, warm",
         u"#000000"_s,
         SchemeStyle::warm,
         {u"#000000"_s, u"#404040"_s, u"#666666"_s, u"#F8F7F6"_s, u"#EFECEB"_s, u"#262626"_s},
         {u"Black"_s, u"Gray"_s, u"Gray 2"_s, u"Ivory"_s, u"Off White"_s, u"Dark Gray"_s}},
        {"black, neutral",
         u"#000000"_s,
         SchemeStyle::neutral,
         {u"#000000"_s, u"#404040"_s, u"#478585"_s, u"#F8F7F7"_s, u"#EEECEC"_s, u"#2A2222"_s},
         {u"Black"_s, u"Gray"_s, u"Muted Cyan"_s, u"White"_s, u"Off White"_s, u"Dark Red"_s}},
        // Primary keeps the text as typed; the accent is named after it with a number.
        {"typed lower case",
         u"3b82f6"_s,
         SchemeStyle::warm,
         {u"3b82f6"_s, u"#003080"_s, u"#513BF6"_s, u"#F6F7F8"_s, u"#EBECEF"_s, u"#0A2042"_s},
         {u"Bold Blue"_s, u"Navy"_s, u"Bold Blue 2"_s, u"Off White"_s, u"Off White 2"_s,
          u"Deep Blue"_s}},
        {"hue near 350, warm",
         u"#F20D35"_s,
         SchemeStyle::warm,
         {u"#F20D35"_s, u"#7F0117"_s, u"#F2580D"_s, u"#F8F6F6"_s, u"#EFEBEB"_s, u"#420B14"_s},
         {u"Bold Pink"_s, u"Maroon"_s, u"Copper"_s, u"Off White"_s, u"Off White 2"_s,
          u"Maroon 2"_s}},
        // The header (#808000 at 4.2:1 on the background) is darkened by the contrast pass.
        {"yellow, header fixed",
         u"#FFFF00"_s,
         SchemeStyle::warm,
         {u"#FFFF00"_s, u"#707000"_s, u"#80FF00"_s, u"#F8F8F6"_s, u"#EEEFEB"_s, u"#454508"_s},
         {u"Bold Yellow"_s, u"Olive"_s, u"Bold Lime"_s, u"Ivory"_s, u"Off White"_s,
          u"Deep Yellow"_s}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const std::optional<GeneratedScheme> scheme = generateScheme(c.primary, c.style);
        ASSERT_TRUE(scheme);
        EXPECT_EQ(hexesOf(scheme->colors), c.hexes);
        EXPECT_EQ(namesOf(scheme->colors), c.names);
        EXPECT_TRUE(scheme->allReadable);
    }
}

TEST(GenerateScheme, UnreadableStartGivesNothing) {
    for (const QString& text : {u""_s, u"#abc"_s, u"rgb(1, 2, 3)"_s, u"blue"_s}) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_FALSE(generateScheme(text, SchemeStyle::warm));
    }
}

TEST(ContrastPass, SecondPairStartsFromTheFirstResult) {
    struct Case {
        const char* what;
        QStringList before;
        QStringList after;
    };
    const Case cases[] = {
        // Grey text is darkened for white (#767676), then lightened for pure blue, which reads as
        // a dark background: the blue pair wins and the white pair is lost again. In the
        // opposite order the text would end #767676.
        {"the later pair wins",
         {u"#3B82F6"_s, u"#808080"_s, u"#FF8800"_s, u"#FFFFFF"_s, u"#0000FF"_s, u"#808080"_s},
         {u"#3B82F6"_s, u"#BCBCBC"_s, u"#FF8800"_s, u"#FFFFFF"_s, u"#0000FF"_s, u"#BCBCBC"_s}},
        // #3333FF is a light background that no darker grey reaches; the search runs back to the
        // grey it started from, which is the first pair's #767676, not the typed #808080.
        {"the second search starts from the first result",
         {u"#3B82F6"_s, u"#404040"_s, u"#FF8800"_s, u"#FFFFFF"_s, u"#3333FF"_s, u"#808080"_s},
         {u"#3B82F6"_s, u"#404040"_s, u"#FF8800"_s, u"#FFFFFF"_s, u"#3333FF"_s, u"#767676"_s}},
        // Readable pairs and colours outside any pair are left alone, unreadable ones too.
        {"nothing to fix",
         {u"nope"_s, u"#000000"_s, u"#123"_s, u"#FFFFFF"_s, u"#EEEEEE"_s, u"#111111"_s},
         {u"nope"_s, u"#000000"_s, u"#123"_s, u"#FFFFFF"_s, u"#EEEEEE"_s, u"#111111"_s}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(hexesOf(withContrastPass(rolesWith(c.before))), c.after);
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
