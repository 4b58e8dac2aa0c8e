#include "PaletteTestSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::testing_palette;
using ColorUtils::ContrastLevel;
using ColorVisionSimulation::SimulationType;
using PaletteCheck::Band;
using PaletteCheck::Issue;

namespace {

std::vector<Issue> readabilityIssues(const QList<ColorItem>& colors) {
    std::vector<Issue> result;
    for (const Issue& issue : PaletteCheck::detect(colors)) {
        if (PaletteCheck::isReadability(issue.kind)) {
            result.push_back(issue);
        }
    }
    return result;
}

// Detection of ordinary palettes, its sentences included, is compared with an independent model
// through the command line. Here the limits, the orders, and what a command can't hand over:
// locks, issue ids across edits, and codes that can't be read.
TEST(PaletteCheckBands, LightnessBoundariesAtPointFourAndPointSix) {
    const std::pair<QString, Band> cases[] = {
        {u"#999999"_s, Band::light},   // l = 153/255 = 0.6 exactly
        {u"#FF3333"_s, Band::light},   // (255 + 51) / 510 = 0.6, saturated
        {u"#989898"_s, Band::midTone}, // 0.596
        {u"#666666"_s, Band::midTone}, // l = 102/255 = 0.4 exactly
        {u"#656565"_s, Band::dark},    // 0.396
        {u"#FFF"_s, Band::dark},       // three digits are no colour to the check
        {u"nope"_s, Band::dark},
    };
    for (const auto& [hex, band] : cases)
        EXPECT_EQ(PaletteCheck::bandOf(hex), band) << hex.toStdString();
}

TEST(PaletteCheckBands, ListsKeepPaletteOrderAndPutUnreadableColorsInDarkOnly) {
    const QList<ColorItem> colors =
        palette({u"#999999"_s, u"nope"_s, u"#666666"_s, u"#989898"_s, u"#656565"_s, u"#FFFFFF"_s});
    const auto ids = [](const QList<ColorItem>& items) {
        QList<QUuid> result;
        for (const ColorItem& item : items) {
            result.append(item.id);
        }
        return result;
    };
    EXPECT_EQ(ids(PaletteCheck::lightColors(colors)), (QList<QUuid>{idFor(0), idFor(5)}));
    EXPECT_EQ(ids(PaletteCheck::midToneColors(colors)), (QList<QUuid>{idFor(2), idFor(3)}));
    EXPECT_EQ(ids(PaletteCheck::darkColors(colors)), (QList<QUuid>{idFor(1), idFor(4)}));
}

TEST(PaletteCheckBands, LightestColorIsTheFirstOfTheHighestLightness) {
    const std::pair<QString, std::optional<int>> cases[] = {
        {u"#999999 #FFFFFF #FFFFFF"_s, 1},
        {u"#E0E0FF #FFFF66"_s, 0}, // lightness 0.94 beats 0.70 whatever the luminance
        {u"#FFFF66 #E0E0FF"_s, 1},
        {u"#666666 #000000 nope"_s, std::nullopt},
        {u""_s, std::nullopt},
    };
    for (const auto& [hexes, index] : cases) {
        SCOPED_TRACE(hexes.toStdString());
        const std::optional<ColorItem> lightest =
            PaletteCheck::lightestColor(palette(words(hexes)));
        ASSERT_EQ(lightest.has_value(), index.has_value());
        if (lightest) {
            EXPECT_EQ(lightest->id, idFor(*index));
        }
    }
}

TEST(PaletteCheckReadability, OnlyDarkColorsAreTestedAndOnlyOnLightOnes) {
    struct Expected {
        QString id;
        ContrastLevel level;
        QString text;
    };
    struct Case {
        const char* name;
        QStringList hexes;
        std::vector<Expected> issues;
    };
    const Case cases[] = {
        {"an unreadable code is dark and hard to read",
         {u"#FFFFFF"_s, u"nope"_s},
         {{readId(1), ContrastLevel::poor, u"C1 is hard to read on C0."_s}}},
        // Lavender is the lightest; yellow has the higher luminance. #808000 reaches 3.9:1 on
        // yellow, 3.3:1 on lavender; #6B6B00 passes on yellow (5.3:1) but not on lavender
        // (4.4:1); the sentences still name lavender.
        {"the best light colour counts, the lightest is named",
         {u"#E0E0FF"_s, u"#FFFF66"_s, u"#808000"_s, u"#6B6B00"_s, u"#C7C700"_s},
         {{readId(2), ContrastLevel::lowContrast, u"C2 only works for headings on C0."_s},
          {readId(4), ContrastLevel::poor, u"C4 is hard to read on C0."_s}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QList<ColorItem> colors = palette(c.hexes);
        const std::vector<Issue> issues = readabilityIssues(colors);
        ASSERT_EQ(issues.size(), c.issues.size());
        for (std::size_t k = 0; k < issues.size(); ++k) {
            EXPECT_EQ(issues[k].id, c.issues[k].id);
            EXPECT_EQ(std::get<PaletteCheck::Readability>(issues[k].kind).level, c.issues[k].level);
            EXPECT_EQ(issues[k].text, c.issues[k].text);
            EXPECT_EQ(issues[k].other.id, PaletteCheck::lightestColor(colors)->id);
            EXPECT_TRUE(issues[k].canFix);
            EXPECT_FALSE(issues[k].move);
        }
    }
}

TEST(PaletteCheckReadability, IssueCarriesFullCopiesAndALockedColorCannotBeFixed) {
    QList<ColorItem> colors = palette({u"#FFFFFF"_s, u"#C7C700"_s, u"#808000"_s});
    colors[2].isLocked = true;
    colors[1].dividerLabel = u"Text"_s;
    const std::vector<Issue> issues = PaletteCheck::detect(colors);
    ASSERT_EQ(issues.size(), 2u);
    EXPECT_EQ(issues[0].id, u"read-C0DE0000-0000-4000-8ABC-000000000001"_s);
    EXPECT_TRUE(issues[0].canFix);
    EXPECT_EQ(issues[0].color.dividerLabel, u"Text"_s);
    EXPECT_EQ(issues[0].other.hex, u"#FFFFFF"_s);
    EXPECT_EQ(issues[1].id, u"read-C0DE0000-0000-4000-8ABC-000000000002"_s);
    EXPECT_FALSE(issues[1].canFix);
    EXPECT_TRUE(issues[1].color.isLocked);
}

TEST(PaletteCheckReadability, IdSurvivesRenameAndLevelChangeButTextFollowsName) {
    QList<ColorItem> colors = palette({u"#FFFFFF"_s, u"#808000"_s});
    const std::vector<Issue> before = PaletteCheck::detect(colors);
    colors[1].name = u"Olive"_s;
    colors[0].name = u"Paper"_s;
    colors[1].hex = u"#C7C700"_s;
    const std::vector<Issue> after = PaletteCheck::detect(colors);
    ASSERT_EQ(before.size(), 1u);
    ASSERT_EQ(after.size(), 1u);
    EXPECT_EQ(before[0].id, after[0].id);
    EXPECT_EQ(std::get<PaletteCheck::Readability>(before[0].kind).level,
              ContrastLevel::lowContrast);
    EXPECT_EQ(std::get<PaletteCheck::Readability>(after[0].kind).level, ContrastLevel::poor);
    EXPECT_EQ(after[0].text, u"Olive is hard to read on Paper."_s);
}

TEST(PaletteCheckNearDuplicates, ManhattanDistanceUnderFifteen) {
    // 14 and 15 in one channel, then spread over channels: 5 + 5 + 4 and 5 + 6 + 4.
    const std::pair<QString, bool> cases[] = {
        {u"#808080 #80808E"_s, true},  {u"#808080 #80808F"_s, false}, {u"#102030 #15252C"_s, true},
        {u"#102030 #151A34"_s, false}, {u"nope nope"_s, false},       {u"#808080"_s, false},
    };
    for (const auto& [hexes, duplicate] : cases) {
        EXPECT_EQ(idsOf(PaletteCheck::detect(palette(words(hexes)))),
                  duplicate ? QStringList{dupeId(0, 1)} : QStringList{})
            << hexes.toStdString();
    }
}

TEST(PaletteCheckNearDuplicates, ANearDuplicateIsNeverAlsoALookAlike) {
    // Saturated enough to be a look-alike, too: both collapse under every type.
    const QList<ColorItem> colors = palette({u"#CC3333"_s, u"#CC3340"_s});
    ASSERT_FALSE(
        ColorVisionSimulation::lookAlikePairs(colors, SimulationType::deuteranopia, 30.0).empty());
    const std::vector<Issue> issues = PaletteCheck::detect(colors);
    ASSERT_EQ(issues.size(), 1u);
    EXPECT_EQ(issues[0].id, dupeId(0, 1));
    EXPECT_TRUE(PaletteCheck::isNearDuplicate(issues[0].kind));
    EXPECT_FALSE(issues[0].canFix);
}

TEST(PaletteCheckLookAlikes, ReportedUnderTheFirstTypeAndSkippedWhenMeaningless) {
    struct Case {
        const char* name;
        QString hexes;
        std::optional<SimulationType> vision; // absent: no issue at all
        SimulationType collapsesUnder;        // so the case is about the skip, not the distance
    };
    using enum SimulationType;
    const Case cases[] = {
        {"deuteranopia and protanopia: the first wins", u"#AA7134 #D25834"_s, deuteranopia,
         protanopia},
        {"protanopia only", u"#EFCB04 #48C81B"_s, protanopia, protanopia},
        {"tritanopia only", u"#32C05B #0CAE3E"_s, tritanopia, tritanopia},
        {"one light, one not", u"#A1CB8C #21F58D"_s, deuteranopia, deuteranopia},
        {"both light", u"#84DF9A #D7C5B3"_s, std::nullopt, deuteranopia},
        {"both very dark", u"#050743 #4C0A54"_s, std::nullopt, protanopia},
        {"both nearly grey, 36 apart", u"#808080 #8C8C8C"_s, std::nullopt, deuteranopia},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QList<ColorItem> colors = palette(words(c.hexes));
        ASSERT_EQ(ColorVisionSimulation::lookAlikePairs(colors, c.collapsesUnder, 30.0).size(), 1u);
        const std::vector<Issue> issues = PaletteCheck::detect(colors);
        if (!c.vision) {
            EXPECT_TRUE(issues.empty());
            continue;
        }
        ASSERT_EQ(issues.size(), 1u);
        EXPECT_EQ(issues[0].id, lookId(0, 1));
        EXPECT_EQ(std::get<PaletteCheck::LookAlike>(issues[0].kind).vision, *c.vision);
        EXPECT_FALSE(issues[0].canFix);
        EXPECT_FALSE(issues[0].move);
    }
}

TEST(PaletteCheckDetect, ReadabilityThenDuplicatesThenLookAlikesByTypeBeforeIndex) {
    // The tritanopia pair (0, 1) has the lowest indices but comes last: types go first.
    const QList<ColorItem> colors =
        palette({u"#32C05B"_s, u"#0CAE3E"_s, u"#FFFFFF"_s, u"#AA7134"_s, u"#D25834"_s, u"#C7C700"_s,
                 u"#808080"_s, u"#80808E"_s});
    const QStringList expected = {
        readId(1), readId(5), dupeId(6, 7), lookId(1, 3), lookId(1, 4), lookId(3, 4), lookId(0, 1),
    };
    EXPECT_EQ(idsOf(PaletteCheck::detect(colors)), expected);
}

TEST(PaletteCheckTexts, FixCountTooltipAndIcon) {
    const std::pair<int, QString> cases[] = {
        {0, u"Nothing to fix"_s},
        {1, u"1 thing to fix"_s},
        {2, u"2 things to fix"_s},
        {12, u"12 things to fix"_s},
    };
    for (const auto& [count, summary] : cases) {
        EXPECT_EQ(PaletteCheck::fixCountText(count), summary);
        EXPECT_EQ(PaletteCheck::checkButtonIcon(count).symbol,
                  count == 0 ? u"checkmark.circle.fill"_s : u"exclamationmark.circle.fill"_s);
    }
    EXPECT_EQ(PaletteCheck::checkButtonTooltip(0), u"Check — everything reads well"_s);
    EXPECT_EQ(PaletteCheck::checkButtonTooltip(2), u"Check — 2 things to fix"_s);
}

TEST(PaletteCheckTexts, MidToneNotesAgainstTheBestLightColor) {
    const QString headings = u" works for headings on your light colors, not body text."_s;
    const QString fills =
        u" won’t carry even a heading on your light colors. Keep it for fills and lines."_s;
    // On #E0E0E0: #CC3333 3.9:1, #33CC33 1.6:1, #2E2EB8 7.4:1.
    EXPECT_EQ(PaletteCheck::midToneNotes(palette(words(u"#E0E0E0 #CC3333 #33CC33 #2E2EB8"_s))),
              (QStringList{u"C1"_s + headings, u"C2"_s + fills}));
    // White lifts #CC3333 to 5.1:1; #33CC33 stays at 2.1:1.
    EXPECT_EQ(PaletteCheck::midToneNotes(palette(words(u"#E0E0E0 #CC3333 #33CC33 #FFFFFF"_s))),
              QStringList{u"C2"_s + fills});
}

} // namespace
