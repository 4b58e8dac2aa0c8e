#include "ModelTestSupport.h"
#include "color/ColorUtils.h"
#include "model/AutoNaming.h"
#include "model/FirstLaunchTemplates.h"
#include "model/TemplateNaming.h"

#include <QSet>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// --- Palette names -------------------------------------------------------------------------

struct UniqueNameCase {
    const char16_t* wanted;
    QStringList existing;
    const char16_t* expected;
};

class UniqueTemplateName : public ::testing::TestWithParam<UniqueNameCase> {};

TEST_P(UniqueTemplateName, CountsUpFromTwoComparingExactly) {
    const UniqueNameCase& c = GetParam();
    EXPECT_EQ(TemplateNaming::uniqueTemplateName(QString::fromUtf16(c.wanted), c.existing),
              QString::fromUtf16(c.expected));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UniqueTemplateName,
    ::testing::Values(
        UniqueNameCase{u"Palette 4", {}, u"Palette 4"},
        UniqueNameCase{u"Palette 4", {u"Palette 4"_s}, u"Palette 4 2"},
        UniqueNameCase{u"Palette 4", {u"Palette 4"_s, u"Palette 4 2"_s}, u"Palette 4 3"},
        // A gap is filled; "Palette 4 3" alone doesn't push past 2.
        UniqueNameCase{u"Palette 4", {u"Palette 4"_s, u"Palette 4 3"_s}, u"Palette 4 2"},
        // Case and blanks count: these are all different names.
        UniqueNameCase{
            u"Palette 4", {u"palette 4"_s, u" Palette 4"_s, u"Palette 4 "_s}, u"Palette 4"},
        UniqueNameCase{u" x ", {u" x "_s}, u" x  2"}));

TEST(TemplateNaming, TrimsBlanksButNotLineEnds) {
    EXPECT_EQ(TemplateNaming::trimmedOfBlanks(u" \t Name \t"_s), u"Name"_s);
    EXPECT_EQ(TemplateNaming::trimmedOfBlanks(u"\u00A0in between\u2003"_s), u"in between"_s);
    EXPECT_EQ(TemplateNaming::trimmedOfBlanks(u"   "_s), QString());
    EXPECT_EQ(TemplateNaming::trimmedOfBlanks(u"Name\n"_s), u"Name\n"_s);
}

// --- Automatic colour names ----------------------------------------------------------------

TEST(AutoNaming, ACodeChangeRenamesOnlyWhileAutoNamed) {
    ColorItem automatic = ColorItem::make(u"Off White"_s, u"#F5F5F5"_s, true);
    AutoNaming::applyCodeChange(automatic, u"#000000"_s);
    EXPECT_EQ(automatic.name, ColorUtils::colorName(u"#000000"_s));
    EXPECT_EQ(automatic.name, u"Black"_s);
    EXPECT_TRUE(automatic.isAutoNamed);

    ColorItem named = ColorItem::make(u"Ink"_s, u"#F5F5F5"_s, false);
    AutoNaming::applyCodeChange(named, u"#000000"_s);
    EXPECT_EQ(named.name, u"Ink"_s);
    EXPECT_EQ(named.hex, u"#000000"_s);
}

struct TypingCase {
    const char* what;
    bool autoNamedBefore;
    const char16_t* typed;
    bool autoNamedAfter;
};

class AutoNamingTyping : public ::testing::TestWithParam<TypingCase> {};

TEST_P(AutoNamingTyping, FlagFollowsTheGeneratedName) {
    const TypingCase& c = GetParam();
    ColorItem color = ColorItem::make(u"Black"_s, u"#000000"_s, c.autoNamedBefore);
    AutoNaming::applyTypedName(color, QString::fromUtf16(c.typed));
    EXPECT_EQ(color.isAutoNamed, c.autoNamedAfter) << c.what;
    EXPECT_EQ(color.name, QString::fromUtf16(c.typed));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, AutoNamingTyping,
    ::testing::Values(TypingCase{"typed the generated name", true, u"Black", true},
                      TypingCase{"typed another name", true, u"Ink", false},
                      TypingCase{"case differs", true, u"black", false},
                      TypingCase{"trailing blank differs", true, u"Black ", false},
                      TypingCase{"once off, stays off", false, u"Black", false}));

// --- First launch --------------------------------------------------------------------------

TEST(FirstLaunchTemplates, AreStarterThenExampleWithTheirColours) {
    SteppingClock clock(500.0);
    const QList<ColorTemplate> templates = firstLaunchTemplates(clock);
    ASSERT_EQ(templates.size(), 2);
    EXPECT_EQ(namesOf(templates), (QStringList{u"Starter"_s, u"Example"_s}));
    EXPECT_EQ(namesOf(templates.at(0).colors),
              (QStringList{u"Primary"_s, u"Secondary"_s, u"Accent"_s}));
    EXPECT_EQ(namesOf(templates.at(1).colors),
              (QStringList{u"Deep Coral"_s, u"Warm Sand"_s, u"Dusty Teal"_s}));
    const QStringList hexes{u"#FFA69E"_s, u"#FAF3DD"_s, u"#B8F2E6"_s,
                            u"#E07A5F"_s, u"#F4E8C1"_s, u"#81B29A"_s};
    qsizetype n = 0;
    for (const ColorTemplate& palette : templates) {
        // Each palette read the clock for itself.
        EXPECT_EQ(palette.createdAt, 500.0 + static_cast<double>(n / 3));
        EXPECT_EQ(palette.updatedAt, palette.createdAt);
        EXPECT_EQ(palette.revision, 1);
        EXPECT_FALSE(palette.isLocked);
        EXPECT_FALSE(palette.updatedByDeviceId.has_value());
        EXPECT_EQ(palette.contentHash, computeContentHash(palette.name, palette.colors));
        for (const ColorItem& color : palette.colors) {
            EXPECT_EQ(color.hex, hexes.at(n++));
            EXPECT_FALSE(color.isAutoNamed || color.isLocked || color.dividerBefore);
            EXPECT_TRUE(color.dividerLabel.isEmpty());
        }
    }
    EXPECT_EQ(clock.reads(500.0), 2);
}

TEST(FirstLaunchTemplates, IdsAreFreshOnEveryStart) {
    SteppingClock clock(0.0);
    const QList<ColorTemplate> first = firstLaunchTemplates(clock);
    const QList<ColorTemplate> second = firstLaunchTemplates(clock);
    QSet<QUuid> ids;
    for (const auto* list : {&first, &second}) {
        for (const ColorTemplate& palette : *list) {
            ids.insert(palette.id);
            for (const ColorItem& color : palette.colors)
                ids.insert(color.id);
        }
    }
    EXPECT_EQ(ids.size(), 16);
    EXPECT_FALSE(ids.contains(QUuid()));
}

} // namespace
} // namespace hueshelf::testing
