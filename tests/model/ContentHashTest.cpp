#include "model/ContentHash.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

ColorItem colorWithId(const QString& id, const QString& name, const QString& hex, bool autoNamed,
                      bool locked, bool divider, const QString& label) {
    return ColorItem{QUuid::fromString(id), name, hex, autoNamed, locked, divider, label};
}

const QString kFirstId = u"11111111-2222-4333-8444-555555555555"_s;
const QString kSecondId = u"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee"_s;

TEST(ContentHash, WorkedExampleGivesTheAgreedTextAndDigest) {
    const QList<ColorItem> colors{
        colorWithId(kFirstId, u"Primary"_s, u"#FFA69E"_s, false, false, false, QString()),
        colorWithId(kSecondId, u"Accent"_s, u"#B8F2E6"_s, true, false, true, u"Brand"_s)};
    EXPECT_EQ(contentHashText(u"Starter"_s, colors),
              u"Starter|11111111-2222-4333-8444-555555555555:Primary:#FFA69E:false:false"
              u"|AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE:Accent:#B8F2E6:true:false|d:Brand"_s);
    EXPECT_EQ(computeContentHash(u"Starter"_s, colors), u"6244534425de9ae5"_s);
}

TEST(ContentHash, AnEmptyListHashesTheNameAlone) {
    EXPECT_EQ(contentHashText(u"Starter"_s, {}), u"Starter"_s);
    EXPECT_EQ(computeContentHash(u"Starter"_s, {}), u"262b4ff6afdd7baa"_s);
    EXPECT_EQ(computeContentHash(QString(), {}), u"e3b0c44298fc1c14"_s);
}

struct DividerCase {
    const char* what;
    bool dividerBefore;
    const char16_t* label;
    const char16_t* expectedSuffix;
};

class ContentHashDivider : public ::testing::TestWithParam<DividerCase> {};

TEST_P(ContentHashDivider, SuffixFollowsTheGroupRule) {
    const DividerCase& c = GetParam();
    const ColorItem color = colorWithId(kFirstId, u"Primary"_s, u"#FFA69E"_s, false, false,
                                        c.dividerBefore, QString::fromUtf16(c.label));
    const QString text = contentHashText(u"P"_s, {color});
    EXPECT_EQ(text, u"P|11111111-2222-4333-8444-555555555555:Primary:#FFA69E:false:false"_s +
                        QString::fromUtf16(c.expectedSuffix))
        << c.what;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ContentHashDivider,
    ::testing::Values(DividerCase{"no divider", false, u"", u""},
                      DividerCase{"stale label without divider", false, u"Old", u""},
                      DividerCase{"divider without label", true, u"", u"|d"},
                      DividerCase{"divider with label", true, u"Brand", u"|d:Brand"},
                      DividerCase{"label with separators", true, u"a|b:c", u"|d:a|b:c"}));

TEST(ContentHash, ClearingAStaleLabelLeavesTheHashAlone) {
    ColorItem color = makeColor(u"Primary"_s, u"#FFA69E"_s);
    color.dividerLabel = u"Left behind"_s;
    const QString before = computeContentHash(u"P"_s, {color});
    color.dividerLabel.clear();
    EXPECT_EQ(computeContentHash(u"P"_s, {color}), before);
}

// Each change must move the hash away from the base palette's.
struct ChangeCase {
    const char* what;
    void (*change)(QString& name, QList<ColorItem>& colors);
};

class ContentHashChange : public ::testing::TestWithParam<ChangeCase> {};

TEST_P(ContentHashChange, ChangesTheHash) {
    QString name = u"Palette"_s;
    QList<ColorItem> colors{
        colorWithId(kFirstId, u"Primary"_s, u"#FFA69E"_s, false, false, false, QString()),
        colorWithId(kSecondId, u"Accent"_s, u"#B8F2E6"_s, true, false, true, u"Brand"_s)};
    const QString before = computeContentHash(name, colors);
    GetParam().change(name, colors);
    EXPECT_NE(computeContentHash(name, colors), before) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ContentHashChange,
    ::testing::Values(
        ChangeCase{"palette name", [](QString& n, QList<ColorItem>&) { n += u'!'; }},
        ChangeCase{"hex case", [](QString&, QList<ColorItem>& c) { c[0].hex = u"#ffa69e"_s; }},
        ChangeCase{"colour lock", [](QString&, QList<ColorItem>& c) { c[0].isLocked = true; }},
        ChangeCase{"auto-named", [](QString&, QList<ColorItem>& c) { c[1].isAutoNamed = false; }},
        ChangeCase{"divider off",
                   [](QString&, QList<ColorItem>& c) { c[1].dividerBefore = false; }},
        ChangeCase{"label", [](QString&, QList<ColorItem>& c) { c[1].dividerLabel = u"B"_s; }},
        ChangeCase{"order", [](QString&, QList<ColorItem>& c) { c.swapItemsAt(0, 1); }},
        ChangeCase{"colour id",
                   [](QString&, QList<ColorItem>& c) { c[0].id = QUuid::createUuid(); }},
        ChangeCase{"colour removed", [](QString&, QList<ColorItem>& c) { c.removeLast(); }}));

TEST(ContentHash, PaletteFieldsOutsideTheContentTakeNoPart) {
    ColorTemplate palette = makePalette(u"Palette"_s, {makeColor(u"A"_s, u"#000000"_s)});
    const QString before = palette.contentHash;
    palette.isLocked = true;
    palette.revision = 9;
    palette.updatedByDeviceId = u"device"_s;
    palette.id = QUuid::createUuid();
    EXPECT_EQ(computeContentHash(palette.name, palette.colors), before);
}

} // namespace
} // namespace hueshelf::testing
