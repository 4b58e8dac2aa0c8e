#include "QtPrinters.h"
#include "color/ColorUtils.h"
#include "model/ColorItem.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::ColorUtils;

namespace {

QList<ColorItem> items(const QStringList& hexes) {
    QList<ColorItem> colors;
    for (const QString& hex : hexes)
        colors << ColorItem::make(u"c"_s, hex, false);
    return colors;
}

QStringList noteTypes(const HarmonyAnalysis& analysis) {
    QStringList types;
    for (const HarmonyNote& note : analysis.notes)
        types << note.type;
    return types;
}

// Colours whose hue comes out of hexToHSL as an exact whole number of degrees, so that limits
// are met exactly: the pure primaries and secondaries at lightness 0.5, and 180-level colours
// (lightness 0.353, in the dark band) for the angles between.
const QString red = u"#FF0000"_s;    // 0
const QString yellow = u"#FFFF00"_s; // 60
const QString green = u"#00FF00"_s;  // 120
const QString cyan = u"#00FFFF"_s;   // 180
const QString blue = u"#0000FF"_s;   // 240
const QString hue10 = u"#B41E00"_s;  // 10
const QString hue30 = u"#B45A00"_s;  // 30
const QString hue45 = u"#B48700"_s;  // 45
const QString hue65 = u"#DCF000"_s;  // 65, lightness 0.47
const QString hue90 = u"#5AB400"_s;  // 90
const QString hue100 = u"#3CB400"_s; // 100
const QString hue140 = u"#00B43C"_s; // 140
const QString hue150 = u"#00B45A"_s; // 150
const QString hue151 = u"#00B45D"_s; // 151
const QString hue175 = u"#00B4A5"_s; // 175
const QString hue200 = u"#0078B4"_s; // 200
const QString hue255 = u"#2D00B4"_s; // 255
const QString hue350 = u"#B4001E"_s; // 350

struct SchemeCase {
    const char* what;
    QStringList hexes;
    QString scheme;
};

void PrintTo(const SchemeCase& c, std::ostream* os) {
    *os << c.what;
}

class HarmonyScheme : public ::testing::TestWithParam<SchemeCase> {};

TEST_P(HarmonyScheme, Classifies) {
    const SchemeCase& c = GetParam();
    EXPECT_EQ(analyzeHarmony(items(c.hexes)).scheme, c.scheme);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, HarmonyScheme,
    ::testing::Values(
        SchemeCase{"empty", {}, u"none"_s}, SchemeCase{"one colour", {red}, u"none"_s},
        SchemeCase{"one of two unreadable", {red, u"#FFF"_s}, u"none"_s},
        SchemeCase{"greys only", {u"#000000"_s, u"#FFFFFF"_s, u"#808080"_s}, u"neutral"_s},
        SchemeCase{"one chromatic among greys", {red, u"#808080"_s, u"#FFFFFF"_s}, u"neutral"_s},
        // Saturation 0.0999... is not above 0.1; 0.104 is.
        SchemeCase{"saturation just under 0.1", {u"#6E5A5A"_s, u"#5A6E5A"_s}, u"neutral"_s},
        SchemeCase{"saturation just over 0.1", {u"#6F5A5A"_s, u"#5A6F5A"_s}, u"split"_s},
        SchemeCase{"30 degrees exactly", {red, hue30}, u"monochromatic"_s},
        SchemeCase{"45 degrees", {red, hue45}, u"analogous"_s},
        SchemeCase{"60 degrees exactly", {red, yellow}, u"analogous"_s},
        SchemeCase{"0, 10 and 350: M is 20", {hue10, hue350, red}, u"monochromatic"_s},
        SchemeCase{"pair 175 apart", {red, hue175}, u"complementary"_s},
        SchemeCase{"pair 150 apart exactly", {red, hue150}, u"complementary"_s},
        SchemeCase{"pair 100 apart", {red, hue100}, u"split"_s},
        SchemeCase{"pair 65 apart", {red, hue65}, u"split"_s},
        SchemeCase{"pair across 0: 350 and 140", {hue350, hue140}, u"complementary"_s},
        SchemeCase{"greys don't count as a third", {red, u"#808080"_s, cyan}, u"complementary"_s},
        SchemeCase{"0, 120, 240", {red, green, blue}, u"triadic"_s},
        SchemeCase{"triad limits 90 and 150 inclusive", {red, hue90, blue}, u"triadic"_s},
        SchemeCase{"0, 151, 255: one distance 151", {red, hue151, hue255}, u"none"_s},
        SchemeCase{"two clusters 175 apart", {red, hue10, cyan}, u"complementary"_s},
        SchemeCase{"two clusters 140 apart", {red, red, hue140}, u"complementary"_s},
        SchemeCase{"two clusters 135 apart", {red, hue10, hue140}, u"split"_s},
        SchemeCase{"two clusters 50 apart", {red, hue30, hue65}, u"none"_s},
        // 30 from the opening hue still joins; a strict test would make three clusters.
        SchemeCase{"join at exactly 30", {red, hue30, cyan}, u"complementary"_s},
        // 45 is 15 from 30 but 45 from the opener 0: it opens its own cluster, and the three
        // centres 15, 45, 200 are no triad. Measured from the last member it would have
        // joined, giving two clusters 175 apart.
        SchemeCase{"distance from the opener", {red, hue30, hue45, hue200}, u"none"_s},
        // 350 and 10 average to 180, right next to 175: no complement. A circular mean (0)
        // would have called this complementary.
        SchemeCase{"plain mean across 0", {hue350, hue10, hue175}, u"none"_s},
        SchemeCase{"four clusters", {red, hue90, cyan, u"#8000FF"_s}, u"none"_s}));

struct NotesCase {
    const char* what;
    QStringList hexes;
    QString scheme;
    QStringList notes;
};

void PrintTo(const NotesCase& c, std::ostream* os) {
    *os << c.what;
}

class HarmonyNotes : public ::testing::TestWithParam<NotesCase> {};

TEST_P(HarmonyNotes, InTheirOrder) {
    const NotesCase& c = GetParam();
    const HarmonyAnalysis analysis = analyzeHarmony(items(c.hexes));
    EXPECT_EQ(analysis.scheme, c.scheme);
    EXPECT_EQ(noteTypes(analysis), c.notes);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, HarmonyNotes,
    ::testing::Values(
        // Lightness 0.5, 0.353, 0.353: within 0.2 of each other, and not all dark.
        NotesCase{"no connection, same brightness",
                  {red, hue151, hue255},
                  u"none"_s,
                  {u"noConnection"_s, u"brightness"_s}},
        // Scheme none but M only 65: no note about connection. Lightness 0.5, 0.353, 0.47.
        NotesCase{"none with M at 65", {red, hue30, hue65}, u"none"_s, {u"brightness"_s}},
        // #669966 has saturation 0.2, the primaries 1.0; all at lightness 0.5.
        NotesCase{"energy and brightness",
                  {red, u"#669966"_s, blue},
                  u"triadic"_s,
                  {u"energy"_s, u"brightness"_s}},
        // A grey makes the chromatic count differ from the palette's: no brightness note.
        NotesCase{"grey stops brightness",
                  {red, u"#669966"_s, blue, u"#808080"_s},
                  u"triadic"_s,
                  {u"energy"_s}},
        NotesCase{"unreadable stops brightness", {red, green, blue, u"nope"_s}, u"triadic"_s, {}},
        // Two chromatic colours never get energy or brightness.
        NotesCase{"a pair is spared", {red, u"#669966"_s}, u"split"_s, {}},
        // Lightness 0.25, 0.5, 0.5, 0.75, hues 112 to 128.
        NotesCase{"four of one hue",
                  {u"#008000"_s, u"#00FF20"_s, u"#20FF00"_s, u"#80FF80"_s},
                  u"monochromatic"_s,
                  {u"variety"_s}},
        NotesCase{
            "three of one hue", {u"#008000"_s, u"#00FF20"_s, u"#20FF00"_s}, u"monochromatic"_s, {}},
        NotesCase{
            "all dark with a named scheme", {hue10, hue175}, u"complementary"_s, {u"allDark"_s}},
        NotesCase{"greys count for all dark",
                  {hue10, hue175, u"#000000"_s},
                  u"complementary"_s,
                  {u"allDark"_s}},
        NotesCase{
            "lightness 0.4 isn't dark", {hue10, hue175, u"#666666"_s}, u"complementary"_s, {}},
        NotesCase{"all light", {u"#FFB3B3"_s, u"#B3FFFF"_s}, u"complementary"_s, {u"allLight"_s}},
        NotesCase{"white counts for all light",
                  {u"#FFB3B3"_s, u"#B3FFFF"_s, u"#FFFFFF"_s},
                  u"complementary"_s,
                  {u"allLight"_s}},
        NotesCase{"lightness 0.6 isn't light",
                  {u"#FFB3B3"_s, u"#B3FFFF"_s, u"#999999"_s},
                  u"complementary"_s,
                  {}},
        NotesCase{"greys alone get no notes", {u"#000000"_s, u"#111111"_s}, u"neutral"_s, {}}));

TEST(HarmonyNotes, MessagesWordForWord) {
    const std::map<QString, QString> expected{
        {u"noConnection"_s,
         u"Your colors don't have an obvious connection to each other. Try picking colors that "
         u"sit next to each other or directly across from each other on a color wheel."_s},
        {u"energy"_s, u"Some of your colors are bold and bright while others are soft and faded. "
                      u"Palettes tend to look more polished when colors share a similar energy "
                      u"level."_s},
        {u"brightness"_s, u"Your colors are all about the same brightness. Adding some lighter or "
                          u"darker shades will help important things stand out."_s},
        {u"variety"_s, u"Your palette is mostly variations of the same color. Adding one different "
                       u"color as a pop can make your design more interesting."_s},
        {u"allDark"_s, u"All your colors are dark. Adding a lighter color would create more "
                       u"contrast and make the palette more versatile."_s},
        {u"allLight"_s, u"All your colors are light. Adding a darker color would give you better "
                        u"options for text and headings."_s},
    };
    std::set<QString> seen;
    for (const QStringList& hexes :
         {QStringList{red, hue151, hue255}, QStringList{red, u"#669966"_s, blue},
          QStringList{u"#008000"_s, u"#00FF20"_s, u"#20FF00"_s, u"#80FF80"_s},
          QStringList{hue10, hue175}, QStringList{u"#FFB3B3"_s, u"#B3FFFF"_s}}) {
        for (const HarmonyNote& note : analyzeHarmony(items(hexes)).notes) {
            ASSERT_TRUE(expected.contains(note.type)) << note.type.toStdString();
            EXPECT_EQ(note.message, expected.at(note.type));
            seen.insert(note.type);
        }
    }
    EXPECT_EQ(seen.size(), expected.size());
}

TEST(HarmonyMessages, LeaveOutAllLightWhenNothingIsDark) {
    // The check says "No dark color" itself then; the analysis still has the note.
    const QList<ColorItem> light = items({u"#FFB3B3"_s, u"#B3FFFF"_s});
    EXPECT_EQ(noteTypes(analyzeHarmony(light)), QStringList{u"allLight"_s});
    EXPECT_EQ(harmonyMessages(light), QStringList{});
    // An unreadable code sits in the dark band, so the message stays.
    const QList<ColorItem> withUnreadable = items({u"#FFB3B3"_s, u"#B3FFFF"_s, u"nope"_s});
    EXPECT_EQ(harmonyMessages(withUnreadable),
              QStringList{u"All your colors are light. Adding a darker color would give you "
                          u"better options for text and headings."_s});
    // Other notes pass unchanged and in order.
    const QList<ColorItem> triad = items({red, u"#669966"_s, blue});
    const HarmonyAnalysis analysis = analyzeHarmony(triad);
    ASSERT_EQ(analysis.notes.size(), 2u);
    EXPECT_EQ(harmonyMessages(triad),
              (QStringList{analysis.notes[0].message, analysis.notes[1].message}));
    EXPECT_EQ(harmonyMessages({}), QStringList{});
}

TEST(SchemeDisplayName, NamesEveryKeyButNone) {
    const std::pair<QString, std::optional<QString>> table[] = {
        {u"monochromatic"_s, u"Monochromatic palette"_s},
        {u"analogous"_s, u"Analogous palette"_s},
        {u"complementary"_s, u"Complementary palette"_s},
        {u"triadic"_s, u"Triadic palette"_s},
        {u"split"_s, u"Split-complementary palette"_s},
        {u"neutral"_s, u"Mostly neutral palette"_s},
        {u"none"_s, std::nullopt},
        {u"Triadic"_s, std::nullopt},
    };
    for (const auto& [key, name] : table)
        EXPECT_EQ(schemeDisplayName(key), name) << key.toStdString();
    EXPECT_EQ(schemeDisplayName(items({red, green, blue})), u"Triadic palette"_s);
    EXPECT_EQ(schemeDisplayName(items({red})), std::nullopt);
}

TEST(HueDistance, AroundTheCircle) {
    EXPECT_EQ(hueDistance(350.0, 10.0), 20.0);
    EXPECT_EQ(hueDistance(10.0, 350.0), 20.0);
    EXPECT_EQ(hueDistance(0.0, 180.0), 180.0);
    EXPECT_EQ(hueDistance(0.0, 181.0), 179.0);
    EXPECT_EQ(hueDistance(0.0, 540.0), 180.0); // 540 mod 360
    EXPECT_EQ(hueDistance(45.0, 45.0), 0.0);
}

} // namespace
