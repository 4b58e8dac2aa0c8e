#include "exchange/PaletteLink.h"

#include "../color/QtPrinters.h"
#include "PaletteLinkTestSupport.h"
#include "model/ContentHash.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using PaletteLink::Color;
using PaletteLink::LinkError;
using PaletteLink::Palette;

// The link of the description's example, host aside.
const Palette brand{
    u"Brand"_s,
    {{u"Primary"_s, u"#FF0000"_s, false, {}}, {u"Sky"_s, u"#87CEEB"_s, true, u"Soft"_s}}};

// Random palettes of every script, links in every form they may arrive in (the app's scheme,
// other hosts, bare payloads, lower-case escapes) and mangled links are compared with an
// independent codec through the command line. Here the order of the refusals, the repair of
// an escaped pipe, and what a command can't hand over.
TEST(PaletteLink, ANameBeginningWithAMarkSurvivesTheRoundTrip) {
    // Behind a separator in the link, a mark must not join the separator.
    const Palette palette{u"\u0301x"_s, {{u"\u0301y"_s, u"#000001"_s, true, u"\u0301"_s}}};
    const auto link = PaletteLink::encode(palette.name, palette.colors);
    ASSERT_TRUE(link) << PaletteLink::caseName(link.error()).toStdString();
    EXPECT_EQ(PaletteLink::decode(*link), palette);
}

TEST(PaletteLink, AnEscapedPipeIsAPipeOnlyAtTheHeadOfAField) {
    const std::pair<QString, Color> cases[] = {
        {u"|a%7Cb|Name:FF0000"_s, {u"Name"_s, u"#FF0000"_s, true, u"a|b"_s}},
        {u"Sky%7C:87CEEB"_s, {u"Sky|"_s, u"#87CEEB"_s, false, {}}},
        {u"%7cSky:87CEEB"_s, {u"Sky"_s, u"#87CEEB"_s, true, {}}},
    };
    for (const auto& [field, color] : cases) {
        SCOPED_TRACE(field.toStdString());
        const auto decoded = PaletteLink::decode(u"#1;P;"_s + field);
        ASSERT_TRUE(decoded) << PaletteLink::caseName(decoded.error()).toStdString();
        EXPECT_EQ(decoded->colors, QList<Color>{color});
    }
    // "%7CSky%7c:..." repairs to "|Sky|:...": the label is "Sky" and the name is empty.
    EXPECT_EQ(PaletteLink::decode(u"#1;P;%7CSky%7C:87CEEB"_s), LinkError::emptyName);
}

// The repair of an escaped pipe can't tell an escaped divider from a name that begins with a
// pipe, so such a name comes back as a divider before the rest of the name.
TEST(PaletteLink, AColourNameBeginningWithAPipeComesBackAsADivider) {
    const auto link = PaletteLink::encode(u"P"_s, {{u"|x"_s, u"#000000"_s, false, {}}});
    ASSERT_EQ(link, linkOf(u"P;%7Cx:000000"_s));
    EXPECT_EQ(PaletteLink::decode(*link), (Palette{u"P"_s, {{u"x"_s, u"#000000"_s, true, {}}}}));
}

struct ErrorCase {
    const char* what;
    QString text;
    LinkError error;
};

TEST(PaletteLink, DecodingRefusesInTheDescribedOrder) {
    const QString fortyOne = colorFields(41);
    const ErrorCase cases[] = {
        {"nothing", QString(), LinkError::empty},
        {"no payload separators", u"hueshelf://import"_s, LinkError::malformed},
        {"two fields", u"#1;A"_s, LinkError::malformed},
        {"four fields", u"#1;A;B:000000;x"_s, LinkError::malformed},
        {"field count before version", u"#2;A"_s, LinkError::malformed},
        {"version 2", u"#2;A;B:000000"_s, LinkError::unknownVersion},
        {"version 01", u"#01;A;B:000000"_s, LinkError::unknownVersion},
        {"version before the name", u"#2;;"_s, LinkError::unknownVersion},
        {"bad escape in the name", u"#1;%zz;B:GG"_s, LinkError::malformed},
        {"empty name before empty colours", u"#1;;"_s, LinkError::emptyName},
        {"empty name before bad code", u"#1;;B:GG"_s, LinkError::emptyName},
        {"empty colour list", u"#1;A;"_s, LinkError::malformed},
        {"trailing comma", u"#1;A;B:000000,"_s, LinkError::malformed},
        {"no code", u"#1;A;B"_s, LinkError::malformed},
        {"raw colon in a name", u"#1;A;a:b:FF0000"_s, LinkError::malformed},
        {"two pipes, no label", u"#1;A;||Sky:87CEEB"_s, LinkError::malformed},
        {"escaped two pipes", u"#1;A;%7c%7CSky:87CEEB"_s, LinkError::malformed},
        {"pipe in the raw name", u"#1;A;|Soft|x|Sky:87CEEB"_s, LinkError::malformed},
        {"bad escape in a label", u"#1;A;|%zz|Sky:87CEEB"_s, LinkError::malformed},
        {"bad escape in a name", u"#1;A;%E2%82:87CEEB"_s, LinkError::malformed},
        {"empty colour name before bad code", u"#1;A;:GG"_s, LinkError::emptyName},
        {"short code", u"#1;A;B:FFF"_s, LinkError::badHex},
        {"seven digits", u"#1;A;B:FF00000"_s, LinkError::badHex},
        {"not hex", u"#1;A;B:GG0000"_s, LinkError::badHex},
        {"escaped hash is not decoded", u"#1;A;B:%23FF0000"_s, LinkError::badHex},
        {"two hashes", u"#1;A;B:##FF0000"_s, LinkError::badHex},
        {"first colour first", u"#1;A;B:GG,:000000"_s, LinkError::badHex},
        {"bare payload: the code's # starts it", u"1;A;B:#FF0000"_s, LinkError::malformed},
        {"41 colours", u"#1;A;"_s + fortyOne, LinkError::tooManyColors},
        {"colours decode before the limits", u"#1;A;"_s + fortyOne + u",Z:GG"_s, LinkError::badHex},
        {"colour count before the name's length", u"#1;"_s + repeated(u"n"_s, 61) + u';' + fortyOne,
         LinkError::tooManyColors},
        {"61-character name", u"#1;"_s + repeated(u"n"_s, 61) + u";B:000000"_s,
         LinkError::paletteNameTooLong},
        {"name length before colour names",
         u"#1;"_s + repeated(u"n"_s, 61) + u";"_s + repeated(u"c"_s, 41) + u":000000"_s,
         LinkError::paletteNameTooLong},
        {"41-character colour name", u"#1;A;"_s + repeated(u"c"_s, 41) + u":000000"_s,
         LinkError::colorNameTooLong},
        {"41-character label", u"#1;A;|"_s + repeated(u"l"_s, 41) + u"|B:000000"_s,
         LinkError::colorNameTooLong},
    };
    for (const ErrorCase& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(PaletteLink::decode(c.text), c.error);
    }
}

struct ValidateCase {
    const char* what;
    QString name;
    QList<Color> colors;
    std::optional<LinkError> error;
};

TEST(PaletteLink, ValidationTakesTheFirstBrokenRule) {
    const Color ok{u"c"_s, u"#000000"_s, false, {}};
    const Color unnamed{QString(), u"#000000"_s, false, {}};
    const Color longName{repeated(u"c"_s, 41), u"#000000"_s, false, {}};
    const Color staleLongLabel{u"c"_s, u"#000000"_s, false, repeated(u"l"_s, 41)};
    const Color badCode{u"c"_s, u"nope"_s, false, {}};
    const ValidateCase cases[] = {
        {"fine", u"P"_s, {ok}, std::nullopt},
        {"forty colours", u"P"_s, QList<Color>(40, ok), std::nullopt},
        {"no colours", QString(), {}, LinkError::malformed},
        {"41 colours and no name", QString(), QList<Color>(41, unnamed), LinkError::tooManyColors},
        {"empty name before long name", QString(), {longName}, LinkError::emptyName},
        {"61 characters", repeated(u"n"_s, 61), {unnamed}, LinkError::paletteNameTooLong},
        {"60 characters", repeated(u"n"_s, 60), {ok}, std::nullopt},
        {"unnamed colour", u"P"_s, {ok, unnamed, longName}, LinkError::emptyName},
        {"long colour name", u"P"_s, {longName, unnamed}, LinkError::colorNameTooLong},
        {"label without its divider still counts",
         u"P"_s,
         {staleLongLabel},
         LinkError::colorNameTooLong},
        {"codes aren't validation's business", u"P"_s, {badCode}, std::nullopt},
    };
    for (const ValidateCase& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(PaletteLink::validate(c.name, c.colors), c.error);
    }
}

TEST(PaletteLink, EncodingValidatesBeforeItReadsCodes) {
    const Color badCode{u"c"_s, u"#12345"_s, false, {}};
    EXPECT_EQ(PaletteLink::encode(u"P"_s, {badCode}), LinkError::badHex);
    EXPECT_EQ(PaletteLink::encode(u"P"_s, QList<Color>(41, badCode)), LinkError::tooManyColors);
    EXPECT_EQ(PaletteLink::encode(QString(), {badCode}), LinkError::emptyName);
    EXPECT_EQ(PaletteLink::encode(u"P"_s, {{u"c"_s, u"#abcdef"_s, false, {}}}),
              linkOf(u"P;c:ABCDEF"_s));
}

TEST(PaletteLink, ATemplateLeavesStaleDividerLabelsBehind) {
    ColorItem stale = ColorItem::make(u"Plain"_s, u"#000000"_s, false);
    stale.dividerLabel = repeated(u"l"_s, 41); // too long, but it isn't sent
    ColorItem grouped = ColorItem::make(u"Grouped"_s, u"#ffffff"_s, true);
    grouped.dividerBefore = true;
    grouped.dividerLabel = u"Soft"_s;
    const ColorTemplate palette = ColorTemplate::makeNew(u"T"_s, {stale, grouped}, 0.0);
    EXPECT_EQ(PaletteLink::encode(palette), linkOf(u"T;Plain:000000,|Soft|Grouped:FFFFFF"_s));
}

TEST(PaletteLink, MakesANewPaletteUnderAFreeName) {
    // The naming rule itself is the import's; a link keeps what it carried.
    EXPECT_EQ(PaletteLink::makeTemplate(brand, {u"Brand"_s}, 5.0).name, u"Brand (1)"_s);
    const ColorTemplate made = PaletteLink::makeTemplate(brand, {}, 1234.5);
    EXPECT_EQ(made.name, u"Brand"_s);
    EXPECT_EQ(made.createdAt, 1234.5);
    EXPECT_EQ(made.contentHash, computeContentHash(made.name, made.colors));
    QList<Color> carried;
    for (const ColorItem& item : made.colors) {
        EXPECT_FALSE(item.isAutoNamed);
        carried.append({item.name, item.hex, item.dividerBefore, item.dividerLabel});
    }
    EXPECT_EQ(carried, brand.colors);
    EXPECT_NE(made.colors.at(0).id, made.colors.at(1).id);
}

} // namespace
} // namespace hueshelf::testing
