#include "exchange/PaletteLink.h"

#include "PaletteLinkTestSupport.h"
#include "exchange/LinkPercentEncoding.h"
#include "exchange/LinkShare.h"
#include "model/ContentHash.h"
#include "util/UserCharacters.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace PaletteLink;

// Random palettes of every script, links in every form they may arrive in and mangled links
// are compared with an independent codec through the command line. Here the order between
// refusals, what the codec does with text no palette gives it, and the share toast.
TEST(LinkPercentEncoding, TextWithoutAUtf8FormAndMarksAtTheStart) {
    const std::pair<QString, QString> cases[] = {
        {u"Café e\u0301 ½Ⅻ٣\U0001D400"_s, u"Café%20e\u0301%20½Ⅻ٣\U0001D400"_s},
        {u"\u203F\u00A0😀\u200D"_s, u"%E2%80%BF%C2%A0%F0%9F%98%80%E2%80%8D"_s}};
    for (const auto& [text, encoded] : cases) {
        EXPECT_EQ(LinkPercentEncoding::encode(text), encoded) << text.toStdString();
        EXPECT_EQ(LinkPercentEncoding::decode(encoded), text) << text.toStdString();
    }
    const QString lone = u"a:"_s + QChar(0xD800);
    EXPECT_EQ(LinkPercentEncoding::encode(lone), lone);
    EXPECT_EQ(LinkPercentEncoding::decode(lone), std::nullopt);
    EXPECT_EQ(LinkPercentEncoding::decode(u"a+b%EF%BB%BF"_s), u"a+b\uFEFF"_s);
    // Behind a separator in the link, a mark must not join the separator.
    const Palette marks{u"\u0301x"_s, {{u"\u0301y"_s, u"#000001"_s, true, u"\u0301"_s}}};
    EXPECT_EQ(decode(*encode(marks.name, marks.colors)), marks);
}

TEST(PaletteLink, AnEscapedPipeIsAPipeOnlyAtTheHeadOfAField) {
    const std::pair<QString, Result<Palette>> cases[] = {
        {u"|a%7Cb|Name:FF0000"_s, Palette{u"P"_s, {{u"Name"_s, u"#FF0000"_s, true, u"a|b"_s}}}},
        {u"Sky%7C:87CEEB"_s, Palette{u"P"_s, {{u"Sky|"_s, u"#87CEEB"_s, false, {}}}}},
        {u"%7cSky:87CEEB"_s, Palette{u"P"_s, {{u"Sky"_s, u"#87CEEB"_s, true, {}}}}},
        {u"%7CSky%7c:87CEEB"_s, LinkError::emptyName}}; // "|Sky|:" has a label and no name
    for (const auto& [field, result] : cases)
        EXPECT_EQ(decode(u"#1;P;"_s + field), result) << field.toStdString();
    // So a colour name that begins with a pipe comes back as a divider before the rest.
    const auto link = encode(u"P"_s, {{u"|x"_s, u"#000000"_s, false, {}}});
    EXPECT_EQ(decode(*link), (Palette{u"P"_s, {{u"x"_s, u"#000000"_s, true, {}}}}));
}

TEST(PaletteLink, RefusalsComeInTheirOrder) {
    const QString fortyOne = QStringList(41, u"C:000000"_s).join(u',');
    const QString longName = u"n"_s.repeated(61);
    const std::pair<QString, LinkError> cases[] = {
        {QString(), LinkError::empty},
        {u"#2;A"_s, LinkError::malformed}, // the field count before the version
        {u"#2;;"_s, LinkError::unknownVersion},
        {u"#1;%zz;B:GG"_s, LinkError::malformed},
        {u"#1;;B:GG"_s, LinkError::emptyName},
        {u"#1;A;"_s, LinkError::malformed},
        {u"#1;A;||Sky:87CEEB"_s, LinkError::malformed},
        {u"#1;A;|Soft|x|Sky:87CEEB"_s, LinkError::malformed},
        {u"#1;A;:GG"_s, LinkError::emptyName},
        {u"#1;A;B:%23FF0000"_s, LinkError::badHex}, // an escaped hash is not decoded
        {u"1;A;B:#FF0000"_s, LinkError::malformed}, // bare payload: the code's # starts it
        {u"#1;A;"_s + fortyOne + u",Z:GG"_s, LinkError::badHex}, // colours before the limits
        {u"#1;"_s + longName + u';' + fortyOne, LinkError::tooManyColors},
        {u"#1;"_s + longName + u";"_s + u"c"_s.repeated(41) + u":000000"_s,
         LinkError::paletteNameTooLong},
        {u"#1;A;|"_s + u"l"_s.repeated(41) + u"|B:000000"_s, LinkError::colorNameTooLong},
        {u"#2;"_s + u"x"_s.repeated(1998), LinkError::tooLong}}; // told before anything else
    for (const auto& [text, error] : cases)
        EXPECT_EQ(decode(text), error) << text.left(40).toStdString();
    const Color ok{u"c"_s, u"#000000"_s, false, {}}, unnamed{{}, u"#000000"_s, false, {}};
    const Color staleLabel{u"c"_s, u"nope"_s, false, u"l"_s.repeated(41)};
    EXPECT_EQ(validate(QString(), QList<Color>(41, unnamed)), LinkError::tooManyColors);
    EXPECT_EQ(validate(QString(), {}), LinkError::malformed);
    EXPECT_EQ(validate(u"P"_s, {ok, unnamed, staleLabel}), LinkError::emptyName);
    EXPECT_EQ(validate(u"P"_s, {staleLabel}), LinkError::colorNameTooLong); // sent or not
    EXPECT_EQ(encode(u"P"_s, {{u"c"_s, u"#12345"_s, false, {}}}), LinkError::badHex);
    EXPECT_EQ(encode(QString(), {{u"c"_s, u"#12345"_s, false, {}}}), LinkError::emptyName);
}

// Names of an exact length in user-perceived characters of every kind are compared with the
// independent codec; here the link's own length, which counts characters too, not code units.
TEST(PaletteLink, TheLinkLengthCountsCharactersAsWritten) {
    const QString family = u"👨\u200D👩\u200D👧"_s; // one character, 54 when escaped
    EXPECT_FALSE(encode(family.repeated(60), {{u"c"_s, u"#000000"_s, false, {}}}));
    // Forty names of 40 'a', and a palette name making up the rest: 2000 characters fit.
    const QList<Color> full(40, Color{u"a"_s.repeated(40), u"#000000"_s, false, {}});
    const Result<QString> atLimit = encode(u"n"_s.repeated(54), full);
    ASSERT_TRUE(atLimit);
    EXPECT_EQ(atLimit->size(), 2000);
    EXPECT_EQ(encode(u"n"_s.repeated(55), full), LinkError::tooLong);
    QString over = *atLimit;
    EXPECT_EQ(decode(over.insert(linkPrefix().size(), u'n')), LinkError::tooLong);
    // Marks stay raw: three code units a character, but counted as the characters they make.
    const QList<Color> marked(40, Color{u"e\u0301\u0302"_s.repeated(40), u"#000000"_s, false, {}});
    const Result<QString> link = encode(u"P"_s, marked);
    ASSERT_TRUE(link);
    EXPECT_GT(link->size(), 2000);
    EXPECT_EQ(decode(*link), (Palette{u"P"_s, marked}));
}

TEST(PaletteLink, TemplatesLeaveStaleLabelsBehindAndComeBackUnderAFreeName) {
    ColorItem stale = ColorItem::make(u"Plain"_s, u"#000000"_s, false);
    stale.dividerLabel = u"l"_s.repeated(41); // too long, but it isn't sent
    ColorItem grouped = ColorItem::make(u"Grouped"_s, u"#ffffff"_s, true);
    grouped.dividerBefore = true;
    grouped.dividerLabel = u"Soft"_s;
    const ColorTemplate palette = ColorTemplate::makeNew(u"T"_s, {stale, grouped}, 0.0);
    const LinkShare::Outcome shared = LinkShare::share(palette);
    EXPECT_EQ(shared.link, linkPrefix() + u"T;Plain:000000,|Soft|Grouped:FFFFFF"_s);
    EXPECT_EQ(shared.toast,
              (LinkToast{u"Link copied \u2014 anyone can open it in HueShelf"_s, u"link"_s, 2.0}));
    stale.dividerBefore = true; // now the label is sent, and is too long
    EXPECT_EQ(LinkShare::share(ColorTemplate::makeNew(u"T"_s, {stale}, 0.0)).toast,
              (LinkToast{u"A color name is too long for a link (40 characters max)"_s,
                         u"exclamationmark.triangle"_s, 2.5}));

    const Palette brand{u"Brand"_s, {{u"Sky"_s, u"#87CEEB"_s, true, u"Soft"_s}}};
    EXPECT_EQ(makeTemplate(brand, {u"Brand"_s}, 5.0).name, u"Brand (1)"_s);
    const ColorTemplate made = makeTemplate(brand, {}, 1234.5);
    EXPECT_EQ(std::tuple(made.name, made.createdAt), std::tuple(brand.name, 1234.5));
    EXPECT_EQ(made.contentHash, computeContentHash(made.name, made.colors));
    EXPECT_FALSE(made.colors.at(0).isAutoNamed);
    EXPECT_EQ((Color{made.colors[0].name, made.colors[0].hex, made.colors[0].dividerBefore,
                     made.colors[0].dividerLabel}),
              brand.colors.at(0));
}

} // namespace
} // namespace hueshelf::testing
