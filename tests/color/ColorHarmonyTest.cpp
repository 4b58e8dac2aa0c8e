#include "PaletteTestSupport.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::testing_palette;
using namespace hueshelf::ColorUtils;

namespace {

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
const QString hue140 = u"#00B43C"_s; // 140
const QString hue150 = u"#00B45A"_s; // 150
const QString hue151 = u"#00B45D"_s; // 151
const QString hue175 = u"#00B4A5"_s; // 175
const QString hue200 = u"#0078B4"_s; // 200
const QString hue255 = u"#2D00B4"_s; // 255
const QString hue350 = u"#B4001E"_s; // 350

// The limits of each scheme and the clustering rules; ordinary palettes are compared with an
// independent model through the command line.
TEST(HarmonyScheme, LimitsAndClustering) {
    const std::pair<QStringList, QString> cases[] = {
        {{red, u"#FFF"_s}, u"none"_s},                     // one of two unreadable
        {{red, u"#808080"_s, u"#FFFFFF"_s}, u"neutral"_s}, // one chromatic among greys
        // Saturation 0.0999... is not above 0.1; 0.104 is.
        {{u"#6E5A5A"_s, u"#5A6E5A"_s}, u"neutral"_s},
        {{u"#6F5A5A"_s, u"#5A6F5A"_s}, u"split"_s},
        {{red, hue30}, u"monochromatic"_s}, // 30 degrees exactly
        {{red, yellow}, u"analogous"_s},    // 60 exactly
        {{red, hue65}, u"split"_s},
        {{red, hue150}, u"complementary"_s},    // 150 exactly
        {{hue350, hue140}, u"complementary"_s}, // across 0
        {{hue10, hue350, red}, u"monochromatic"_s},
        {{red, u"#808080"_s, cyan}, u"complementary"_s}, // greys don't count as a third
        {{red, hue90, blue}, u"triadic"_s},              // triad limits 90 and 150 inclusive
        {{red, hue151, hue255}, u"none"_s},              // one distance 151
        {{red, red, hue140}, u"complementary"_s},        // two clusters 140 apart
        {{red, hue10, hue140}, u"split"_s},              // 135 apart
        {{red, hue30, hue65}, u"none"_s},                // 50 apart
        // 30 from the opening hue still joins; a strict test would make three clusters.
        {{red, hue30, cyan}, u"complementary"_s},
        // 45 is 15 from 30 but 45 from the opener 0: it opens its own cluster, and the three
        // centres 15, 45, 200 are no triad. Measured from the last member it would have
        // joined, giving two clusters 175 apart.
        {{red, hue30, hue45, hue200}, u"none"_s},
        // 350 and 10 average to 180, right next to 175: no complement. A circular mean (0)
        // would have called this complementary.
        {{hue350, hue10, hue175}, u"none"_s},
        {{red, hue90, cyan, u"#8000FF"_s}, u"none"_s}, // four clusters
    };
    for (const auto& [hexes, scheme] : cases)
        EXPECT_EQ(analyzeHarmony(palette(hexes)).scheme, scheme) << hexes.join(u' ').toStdString();
}

TEST(HarmonyNotes, InTheirOrder) {
    struct Case {
        QString hexes;
        QString scheme;
        QString notes;
    };
    const Case cases[] = {
        // Hues 0, 151, 255 at lightness 0.5, 0.353, 0.353: within 0.2 of each other.
        {u"#FF0000 #00B45D #2D00B4"_s, u"none"_s, u"noConnection brightness"_s},
        // Scheme none but M only 65: no note about connection. Lightness 0.5, 0.353, 0.47.
        {u"#FF0000 #B45A00 #DCF000"_s, u"none"_s, u"brightness"_s},
        // #669966 has saturation 0.2, the primaries 1.0; all at lightness 0.5.
        {u"#FF0000 #669966 #0000FF"_s, u"triadic"_s, u"energy brightness"_s},
        // A grey or an unreadable code makes the chromatic count differ: no brightness note.
        {u"#FF0000 #669966 #0000FF #808080"_s, u"triadic"_s, u"energy"_s},
        {u"#FF0000 #00FF00 #0000FF nope"_s, u"triadic"_s, u""_s},
        {u"#FF0000 #669966"_s, u"split"_s, u""_s}, // a pair gets no energy or brightness
        // Lightness 0.25, 0.5, 0.5, 0.75, hues 112 to 128: four are needed.
        {u"#008000 #00FF20 #20FF00 #80FF80"_s, u"monochromatic"_s, u"variety"_s},
        {u"#008000 #00FF20 #20FF00"_s, u"monochromatic"_s, u""_s},
        // Hues 10 and 175 at lightness 0.353; greys count, 0.4 isn't dark.
        {u"#B41E00 #00B4A5"_s, u"complementary"_s, u"allDark"_s},
        {u"#B41E00 #00B4A5 #000000"_s, u"complementary"_s, u"allDark"_s},
        {u"#B41E00 #00B4A5 #666666"_s, u"complementary"_s, u""_s},
        {u"#FFB3B3 #B3FFFF"_s, u"complementary"_s, u"allLight"_s},
        {u"#FFB3B3 #B3FFFF #FFFFFF"_s, u"complementary"_s, u"allLight"_s},
        {u"#FFB3B3 #B3FFFF #999999"_s, u"complementary"_s, u""_s}, // 0.6 isn't light
        {u"#000000 #111111"_s, u"neutral"_s, u""_s},
    };
    for (const Case& c : cases) {
        const HarmonyAnalysis analysis = analyzeHarmony(palette(words(c.hexes)));
        EXPECT_EQ(analysis.scheme, c.scheme) << c.hexes.toStdString();
        EXPECT_EQ(noteTypes(analysis), words(c.notes)) << c.hexes.toStdString();
    }
}

TEST(HarmonyMessages, LeaveOutAllLightWhenNothingIsDark) {
    // The check says "No dark color" itself then; the analysis still has the note.
    const QList<ColorItem> light = palette({u"#FFB3B3"_s, u"#B3FFFF"_s});
    EXPECT_EQ(noteTypes(analyzeHarmony(light)), QStringList{u"allLight"_s});
    EXPECT_EQ(harmonyMessages(light), QStringList{});
    // An unreadable code sits in the dark band, so the message stays.
    const QList<ColorItem> withUnreadable = palette({u"#FFB3B3"_s, u"#B3FFFF"_s, u"nope"_s});
    EXPECT_EQ(harmonyMessages(withUnreadable),
              QStringList{u"All your colors are light. Adding a darker color would give you "
                          u"better options for text and headings."_s});
    // Other notes pass unchanged and in order.
    const QList<ColorItem> triad = palette({red, u"#669966"_s, blue});
    const HarmonyAnalysis analysis = analyzeHarmony(triad);
    ASSERT_EQ(analysis.notes.size(), 2u);
    EXPECT_EQ(harmonyMessages(triad),
              (QStringList{analysis.notes[0].message, analysis.notes[1].message}));
    EXPECT_EQ(harmonyMessages({}), QStringList{});
}

TEST(SchemeDisplayName, NoneAndUnknownKeysHaveNoName) {
    EXPECT_EQ(schemeDisplayName(u"none"_s), std::nullopt);
    EXPECT_EQ(schemeDisplayName(u"Triadic"_s), std::nullopt);
    EXPECT_EQ(schemeDisplayName(palette({red})), std::nullopt);
    EXPECT_EQ(schemeDisplayName(palette({red, green, blue})), u"Triadic palette"_s);
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
