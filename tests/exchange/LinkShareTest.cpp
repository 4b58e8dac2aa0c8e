#include "exchange/LinkShare.h"

#include "../color/QtPrinters.h"
#include "PaletteLinkTestSupport.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

ColorTemplate paletteOf(const QString& name, int count, const QString& colorName = u"c"_s) {
    return ColorTemplate::makeNew(
        name, QList<ColorItem>(count, ColorItem::make(colorName, u"#112233"_s, false)), 0.0);
}

TEST(LinkShare, ThreeLimitsHaveTheirOwnWordsAndEverythingElseTheGenericOnes) {
    const QString generic = u"Couldn't make a link for this palette"_s;
    ColorTemplate longLabel = paletteOf(u"P"_s, 1);
    longLabel.colors[0].dividerBefore = true;
    longLabel.colors[0].dividerLabel = u"l"_s.repeated(41);
    ColorTemplate badCode = paletteOf(u"P"_s, 1);
    badCode.colors[0].hex = u"#12"_s;

    struct Case {
        const char* what;
        ColorTemplate palette;
        QString message;
    };
    const Case cases[] = {
        {"41 colours", paletteOf(u"P"_s, 41), u"Links hold up to 40 colors"_s},
        {"61-character name", paletteOf(u"n"_s.repeated(61), 1),
         u"The palette name is too long for a link (60 characters max)"_s},
        {"41-character colour name", paletteOf(u"P"_s, 1, u"c"_s.repeated(41)),
         u"A color name is too long for a link (40 characters max)"_s},
        {"41-character label", longLabel,
         u"A color name is too long for a link (40 characters max)"_s},
        // Forty colours are allowed, but not at this length: the generic words, not the count.
        {"40 long escaped names", paletteOf(u"P"_s, 40, u"%"_s.repeated(40)), generic},
        {"bad code", badCode, generic},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const LinkShare::Outcome outcome = LinkShare::share(c.palette);
        EXPECT_EQ(outcome.link, std::nullopt);
        EXPECT_EQ(outcome.toast, (LinkToast{c.message, u"exclamationmark.triangle"_s, 2.5}));
    }
}

TEST(LinkShare, ASharedLinkIsCopiedWithItsToast) {
    const LinkShare::Outcome outcome = LinkShare::share(paletteOf(u"Sun set"_s, 2));
    EXPECT_EQ(outcome.link, linkOf(u"Sun%20set;c:112233,c:112233"_s));
    EXPECT_EQ(outcome.toast,
              (LinkToast{u"Link copied \u2014 anyone can open it in HueShelf"_s, u"link"_s, 2.0}));
}

} // namespace
} // namespace hueshelf::testing
