#include "color/ColorUtils.h"

#include "PaletteTestSupport.h"
#include "color/ColorVisionSimulation.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::testing_palette;
using namespace hueshelf::ColorUtils;
using namespace hueshelf::ColorVisionSimulation;

namespace {

using Pairs = std::vector<std::pair<int, int>>;

// Colour arithmetic, names, formats, roles and harmony of canonical codes are compared with an
// independent model through the command line. Here stored text as typed, names a person gave,
// typed previews, and the bar's own pairs, labels and words.
TEST(HexReaders, StrictLenientAndDisplayReadersOfStoredText) {
    const std::tuple<QString, std::optional<QString>, QString> cases[] = {
        // text, normalizedDigits, canonicalHex
        {u" #abcdef\n"_s, u"ABCDEF"_s, u"#ABCDEF"_s},
        {u"  #abc "_s, std::nullopt, u"#AABBCC"_s},   // short codes are no colour to compute with
        {u"##abcdef"_s, std::nullopt, u"##abcdef"_s}, // only one hash comes off
        {u"# abcdef"_s, std::nullopt, u"# abcdef"_s}, // the trim comes before the hash
        {u"#abcdeg"_s, std::nullopt, u"#abcdeg"_s},
        {u" hello "_s, std::nullopt, u" hello "_s} // not a code: handed back untrimmed
    };
    for (const auto& [text, strict, lenient] : cases) {
        EXPECT_EQ(normalizedDigits(text), strict) << text.toStdString();
        EXPECT_EQ(canonicalHex(text), lenient) << text.toStdString();
    }
    const std::pair<QString, std::optional<DisplayColor>> display[] = {
        {u"80FF0000"_s, DisplayColor{1.0, 0.0, 0.0, 128 / 255.0}}, // alpha first
        {u"--#f0a;;"_s, DisplayColor{1.0, 0.0, 170 / 255.0, 1.0}}, // ends trimmed
        {u"#ab-cdef"_s, std::nullopt}};
    for (const auto& [text, color] : display) {
        const auto got = parseDisplayColor(text);
        ASSERT_EQ(got.has_value(), color.has_value()) << text.toStdString();
        if (got) {
            EXPECT_EQ(std::tie(got->red, got->green, got->blue, got->alpha),
                      std::tie(color->red, color->green, color->blue, color->alpha));
        }
    }
}

TEST(ColorNamesAndFormats, UniqueNamesNamesGivenAndTextThatIsntACode) {
    const std::tuple<QString, QStringList, QString> names[] = {
        {u"Blue"_s, {u"blue"_s, u"BLUE 2"_s}, u"Blue 3"_s},
        {u"  Blue\t"_s, {u"  Red"_s}, u"Blue"_s}, // trimmed, own case kept
        {u""_s, {u"color"_s}, u"Color 2"_s},
        {u"blue"_s, {u"  Blue  "_s, u"\tblue 2"_s}, u"blue 3"_s}, // existing names trimmed too
        {u"Blue\n"_s, {u"Blue"_s}, u"Blue\n"_s},                  // a newline isn't a blank
        {u"Grün"_s, {u"GRÜN"_s}, u"Grün 2"_s}};
    for (const auto& [wanted, existing, result] : names)
        EXPECT_EQ(uniqueName(wanted, existing), result) << wanted.toStdString();
    EXPECT_EQ(colorName(u"#FFF"_s), u"New Color"_s);
    const std::tuple<QString, CopyFormat, QString, QString> formats[] = {
        {u"#abc"_s, CopyFormat::rgb, u""_s, u"rgb(170, 187, 204)"_s},
        {u"#abc"_s, CopyFormat::cssVar, u"  --Deep   Navy 2!! "_s, u"--deep-navy-2: #AABBCC"_s},
        {u"#abc"_s, CopyFormat::cssVar, u"日本"_s, u"--color: #AABBCC"_s},
        {u"nope"_s, CopyFormat::hexNoHash, u""_s, u"ope"_s}}; // the first character goes anyway
    for (const auto& [hex, format, name, output] : formats)
        EXPECT_EQ(formattedCode(hex, format, name), output);
    for (const QString& text : {u"cmyk"_s, u"RGB"_s}) // case-sensitive; unknown is hex
        EXPECT_EQ(copyFormatFromIdentifier(text), CopyFormat::hex) << text.toStdString();
}

TEST(RolePreview, TypedCodeReplacesTheColourForEveryone) {
    QList<ColorItem> colors = palette({u"#FF0000"_s, u"#111111"_s, u"nope"_s});
    const QUuid dark = colors[1].id;
    EXPECT_EQ(roleFor(colors[2].id, colors), std::nullopt);
    // Typed as a vivid red, the dark colour finds "Primary" taken by the first.
    EXPECT_EQ(rolePreviewText(*rolePreview(u"e53935"_s, dark, colors)),
              u"Accent as this color's name"_s);
    EXPECT_EQ(rolePreview(u"#fff"_s, dark, colors)->role, u"Background"_s);
    for (const QString& text : {u"#FF000"_s, u"FF0000FF"_s, u"##FF0000"_s, u"rgb(255, 0, 0)"_s})
        EXPECT_FALSE(rolePreview(text, dark, colors)) << text.toStdString();
    EXPECT_FALSE(rolePreview(u"#abc"_s, QUuid::createUuid(), colors));
    colors[1].name = u"Text Dark"_s;
    EXPECT_EQ(rolePreviewText(*rolePreview(u"#111"_s, dark, colors)),
              u"This color is already named for its role"_s);
    colors[1].name = u"text dark"_s; // exact: another case is another name
    EXPECT_FALSE(rolePreview(u"#111"_s, dark, colors)->isCurrentName);
    EXPECT_EQ(roleFor(dark, colors), u"Text Dark"_s); // the palette itself is untouched
}

TEST(HarmonyMessages, LeaveOutAllLightWhenNothingIsDark) {
    const QList<ColorItem> light = palette({u"#FFB3B3"_s, u"#B3FFFF"_s});
    ASSERT_EQ(analyzeHarmony(light).notes.size(), 1u); // the check says "No dark color" itself
    EXPECT_EQ(harmonyMessages(light), QStringList{});
    // An unreadable code sits in the dark band, so the message stays.
    EXPECT_EQ(harmonyMessages(palette({u"#FFB3B3"_s, u"#B3FFFF"_s, u"nope"_s})),
              QStringList{u"All your colors are light. Adding a darker color would give you "
                          u"better options for text and headings."_s});
}

TEST(SwatchPairs, LimitsAreStrictAndUnreadableCodesPairWithNothing) {
    EXPECT_EQ(similarPairs(palette(words(u"#101010 #151514"_s)), 15), (Pairs{{0, 1}})); // 14
    EXPECT_EQ(similarPairs(palette(words(u"#101010 #151515"_s)), 15), Pairs{});         // 15
    const QList<ColorItem> mixed = palette(words(u"#101010 nope #121212 #abc #111111"_s));
    EXPECT_EQ(similarPairs(mixed, 15), (Pairs{{0, 2}, {0, 4}, {2, 4}}));
    EXPECT_EQ(lookAlikePairs(mixed, SimulationType::tritanopia, 1000),
              (Pairs{{0, 2}, {0, 4}, {2, 4}}));
    EXPECT_EQ(lookAlikePairs(mixed, SimulationType::normal, 1000), Pairs{});
    // Greys survive every type unchanged; #000000 to #0A0A0A is sqrt(300) as computed.
    const QList<ColorItem> greys = palette({u"#000000"_s, u"#0A0A0A"_s});
    EXPECT_EQ(lookAlikePairs(greys, SimulationType::protanopia, std::sqrt(300.0)), Pairs{});
    EXPECT_EQ(
        lookAlikePairs(greys, SimulationType::protanopia, std::nextafter(std::sqrt(300.0), 99)),
        (Pairs{{0, 1}}));
    EXPECT_EQ(shadeLadder(u"#3366ff"_s).at(4), (ShadeStep{400, u"#3366ff"_s, true})); // as typed
    EXPECT_TRUE(swatchLabelIsDark(u"#9A9A9A"_s));                                     // 0.6039
    EXPECT_FALSE(swatchLabelIsDark(u"#999999"_s));                                    // exactly 0.6
    EXPECT_TRUE(swatchLabelIsDark(u"not a colour"_s));
}

TEST(ColorVisionSimulation, UnreadableTextAndTheLensWords) {
    for (const SimulationType type : allSimulationTypes())
        EXPECT_EQ(simulated(u" #abc\n"_s, type), u" #abc\n"_s);
    EXPECT_EQ(simulated(u" #ff0000\n"_s, SimulationType::normal), u" #ff0000\n"_s);
    EXPECT_FALSE(simulationTypeFromIdentifier(u"Protanopia"_s)); // identifiers are exact
    EXPECT_EQ(lensTooltip(SimulationType::deuteranopia),
              u"Seeing as Red-green (most common) — click to change"_s);
    EXPECT_EQ(detailsAccessibleText(SimulationType::protanopia),
              u"Red-green color blindness (less common) — Protanopia"_s);
}

} // namespace
