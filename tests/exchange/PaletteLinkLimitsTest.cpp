#include "../color/QtPrinters.h"
#include "PaletteLinkTestSupport.h"
#include "exchange/LinkPercentEncoding.h"
#include "exchange/PaletteLink.h"
#include "util/UserCharacters.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using PaletteLink::Color;
using PaletteLink::LinkError;
using PaletteLink::Palette;

// One user-perceived character, however many code points it takes.
struct Unit {
    const char* what;
    QString text;
    // Whether 60 of them as a palette name still fit a link once escaped.
    bool sixtyFitEscaped;
};

const Unit units[] = {
    {"letter", u"a"_s, true},
    {"emoji", u"😀"_s, true},
    {"family (ZWJ sequence)", u"👨\u200D👩\u200D👧"_s, false}, // 54 characters escaped
    {"flag", u"🇩🇪"_s, true},
    {"letter with two combining marks", u"e\u0301\u0323"_s, true},
    {"Hangul syllable of jamo", u"\u1100\u1161\u11A8"_s, true},
};

// The link text with names and labels written raw: the decoder takes them that way too, so the
// name limits can be reached with characters whose escaped form would pass 2000.
QString rawLink(const QString& name, const QString& colorName, const QString& label) {
    return linkOf(name + u";|"_s + label + u'|' + colorName + u":000000"_s);
}

TEST(PaletteLinkLimits, NamesCountUserPerceivedCharacters) {
    for (const Unit& unit : units) {
        SCOPED_TRACE(unit.what);
        ASSERT_EQ(UserCharacters::count(unit.text.repeated(7)), 7);
        const QString sixty = unit.text.repeated(60);
        const QString forty = unit.text.repeated(40);
        const QString sixtyOne = unit.text.repeated(61);
        const QString fortyOne = unit.text.repeated(41);

        const Palette atLimit{sixty, {{forty, u"#000000"_s, true, forty}}};
        EXPECT_EQ(PaletteLink::validate(atLimit.name, atLimit.colors), std::nullopt);
        EXPECT_EQ(PaletteLink::decode(rawLink(sixty, forty, forty)), atLimit);

        EXPECT_EQ(PaletteLink::decode(rawLink(sixtyOne, forty, forty)),
                  LinkError::paletteNameTooLong);
        EXPECT_EQ(PaletteLink::decode(rawLink(sixty, fortyOne, forty)),
                  LinkError::colorNameTooLong);
        EXPECT_EQ(PaletteLink::decode(rawLink(sixty, forty, fortyOne)),
                  LinkError::colorNameTooLong);

        const Color one{u"c"_s, u"#000000"_s, false, {}};
        EXPECT_EQ(PaletteLink::encode(sixtyOne, {one}), LinkError::paletteNameTooLong);
        EXPECT_EQ(PaletteLink::encode(u"P"_s, {{fortyOne, u"#000000"_s, false, {}}}),
                  LinkError::colorNameTooLong);
        EXPECT_EQ(PaletteLink::encode(u"P"_s, {{u"c"_s, u"#000000"_s, true, fortyOne}}),
                  LinkError::colorNameTooLong);
        const auto sixtyName = PaletteLink::encode(sixty, {one});
        if (unit.sixtyFitEscaped)
            EXPECT_EQ(PaletteLink::decode(*sixtyName), (Palette{sixty, {one}}));
        else
            EXPECT_EQ(sixtyName, LinkError::tooLong);
    }
}

// A palette whose link, escaped as the encoder writes it, has exactly `length` characters:
// full colours of twenty "%" (67 characters each) and one last colour that makes up the rest.
struct SizedLink {
    Palette palette;
    QString text;
};

SizedLink linkOfLength(int length) {
    const QString fullName = u"%"_s.repeated(20);
    SizedLink sized{{u"L"_s, {}}, QString()};
    const int rest = length - UserCharacters::count(linkOf(u"L;"_s));
    int fullColors = 0;
    int lastField = rest;
    while (lastField > 100) {
        ++fullColors;
        lastField = rest - fullColors * (67 + 1);
    }
    QStringList fields;
    for (int i = 0; i < fullColors; ++i) {
        sized.palette.colors.append({fullName, u"#000000"_s, false, {}});
        fields.append(LinkPercentEncoding::encode(fullName) + u":000000"_s);
    }
    const int nameLength = lastField - 7;
    const QString lastName = u"%"_s.repeated(nameLength / 3) + u"a"_s.repeated(nameLength % 3);
    sized.palette.colors.append({lastName, u"#FFFFFF"_s, false, {}});
    fields.append(LinkPercentEncoding::encode(lastName) + u":FFFFFF"_s);
    sized.text = linkOf(u"L;"_s + fields.join(u','));
    return sized;
}

TEST(PaletteLinkLimits, TheWholeLinkHoldsTwoThousandCharactersBothWays) {
    const SizedLink fits = linkOfLength(2000);
    ASSERT_EQ(UserCharacters::count(fits.text), 2000);
    ASSERT_LE(fits.palette.colors.size(), 40);
    EXPECT_EQ(PaletteLink::encode(fits.palette.name, fits.palette.colors), fits.text);
    EXPECT_EQ(PaletteLink::decode(fits.text), fits.palette);

    const SizedLink over = linkOfLength(2001);
    ASSERT_EQ(UserCharacters::count(over.text), 2001);
    EXPECT_EQ(PaletteLink::validate(over.palette.name, over.palette.colors), std::nullopt);
    EXPECT_EQ(PaletteLink::encode(over.palette.name, over.palette.colors), LinkError::tooLong);
    EXPECT_EQ(PaletteLink::decode(over.text), LinkError::tooLong);
    // Too long is told on entry, before anything else is looked at.
    EXPECT_EQ(PaletteLink::decode(u"#2;"_s + u"x"_s.repeated(1998)), LinkError::tooLong);
}

TEST(PaletteLinkLimits, TheLinkIsCountedAsWrittenNotInCodeUnits) {
    // Letters with marks stay raw: 40 names of 40 such characters are three times as many code
    // units as characters.
    const QString name = u"e\u0301\u0302"_s.repeated(40);
    const Palette palette{u"P"_s, QList<Color>(40, Color{name, u"#000000"_s, false, {}})};
    const auto link = PaletteLink::encode(palette.name, palette.colors);
    ASSERT_TRUE(link) << PaletteLink::caseName(link.error()).toStdString();
    EXPECT_GT(link->size(), 2000);
    EXPECT_LE(UserCharacters::count(*link), 2000);
    EXPECT_EQ(PaletteLink::decode(*link), palette);
}

} // namespace
} // namespace hueshelf::testing
