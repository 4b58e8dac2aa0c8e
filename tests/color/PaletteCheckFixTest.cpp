#include "PaletteTestSupport.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;
using namespace hueshelf;
using namespace hueshelf::testing_palette;
using ColorVisionSimulation::SimulationType;
using PaletteCheck::Issue;
using PaletteCheck::LightnessMove;

namespace {

QList<ColorItem> lockedAt(QList<ColorItem> colors, std::initializer_list<int> indices) {
    for (const int i : indices) {
        colors[i].isLocked = true;
    }
    return colors;
}

const Issue& onlyLookAlike(const std::vector<Issue>& issues) {
    const Issue* found = nullptr;
    for (const Issue& issue : issues) {
        if (PaletteCheck::isLookAlike(issue.kind)) {
            EXPECT_EQ(found, nullptr) << "more than one look-alike";
            found = &issue;
        }
    }
    EXPECT_NE(found, nullptr);
    return *found;
}

// A look-alike issue of the pair (i, j) made by hand, for searches the detection wouldn't ask.
Issue handMadeLookAlike(const QList<ColorItem>& colors, int i, int j) {
    Issue issue;
    issue.id = lookId(i, j);
    issue.kind = PaletteCheck::LookAlike{SimulationType::deuteranopia};
    issue.color = colors.at(i);
    issue.other = colors.at(j);
    return issue;
}

// Moves of unlocked palettes, the ties among them included, are compared with an independent
// model through the command line, and with a plain search on random palettes; here locks,
// issues made by hand, and what the popover does with a move.
TEST(PaletteFixSearch, SmallestSeparatingStepOfAnUnlockedColor) {
    struct Case {
        const char* name;
        QString hexes;
        std::initializer_list<int> locked;
        std::optional<LightnessMove> move;
    };
    const LightnessMove lighterOther{idFor(1), u"C1"_s, u"#D25834"_s, u"#DE856A"_s, 0.13};
    const Case cases[] = {
        {"other lightens 13 steps, colour would need 15", u"#AA7134 #D25834"_s, {}, lighterOther},
        {"colour locked: other alone is tried", u"#AA7134 #D25834"_s, {0}, lighterOther},
        {"other locked: colour alone is tried",
         u"#AA7134 #D25834"_s,
         {1},
         LightnessMove{idFor(0), u"C0"_s, u"#AA7134"_s, u"#CD975D"_s, 0.15}},
        {"both locked: no move", u"#AA7134 #D25834"_s, {0, 1}, std::nullopt},
        // Other: 13 darker or 13 lighter; the darker stays.
        {"darker first on a tie",
         u"#968F89 #BE8285 #FFFFFF"_s,
         {},
         LightnessMove{idFor(1), u"C1"_s, u"#BE8285"_s, u"#A7575B"_s, -0.13}},
        // Colour darker, colour lighter and other darker all need 12 steps.
        {"colour before other on a tie",
         u"#E75973 #358576"_s,
         {},
         LightnessMove{idFor(0), u"C0"_s, u"#E75973"_s, u"#DF2446"_s, -0.12}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QList<ColorItem> colors = lockedAt(palette(words(c.hexes)), c.locked);
        const std::vector<Issue> issues = PaletteCheck::detect(colors);
        const std::optional<LightnessMove> move =
            PaletteCheck::findLightnessMove(onlyLookAlike(issues), colors, issues);
        ASSERT_EQ(move.has_value(), c.move.has_value());
        if (!move) {
            continue;
        }
        EXPECT_EQ(std::tie(move->colorID, move->name, move->fromHex, move->toHex),
                  std::tie(c.move->colorID, c.move->name, c.move->fromHex, c.move->toHex));
        EXPECT_NEAR(move->lightnessChange, c.move->lightnessChange, 1e-9);
    }
}

TEST(PaletteFixSearch, AStepThatMakesANewIssueIsPassedOver) {
    // Darkening the green by 0.08 already separates the pair, but it drops below lightness 0.4
    // and fails on white; the search goes on until it reads, at 0.12.
    const QList<ColorItem> colors = palette({u"#21BA68"_s, u"#56BB7A"_s, u"#FFFFFF"_s});
    const std::vector<Issue> issues = PaletteCheck::detect(colors);
    ASSERT_EQ(idsOf(issues), QStringList{lookId(0, 1)});
    QList<ColorItem> nearer = colors; // 0.08 darker: separated, but no longer readable
    nearer[0].hex = u"#1B9755"_s;
    ASSERT_EQ(idsOf(PaletteCheck::detect(nearer)), QStringList{readId(0)});
    const std::optional<LightnessMove> move =
        PaletteCheck::findLightnessMove(issues.front(), colors, issues);
    ASSERT_TRUE(move);
    EXPECT_EQ(move->toHex, u"#18864B"_s);
    EXPECT_NEAR(move->lightnessChange, -0.12, 1e-9);
}

TEST(PaletteFixSearch, LightnessStaysStrictlyBetweenPointZeroThreeAndPointNineSeven) {
    // One step outward would separate each pair (62.4 apart), but it leaves the range, so the
    // colour has to go all the way past its locked partner instead.
    struct Case {
        const char* name;
        QString hexes;
        QString toHex;
        double change;
    };
    const Case cases[] = {
        {"0.961 has no lighter step", u"#F5F5F5 #D4D4D4"_s, u"#B0B0B0"_s, -0.27},
        {"0.039 has no darker step", u"#0A0A0A #2B2B2B"_s, u"#4F4F4F"_s, 0.27},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QList<ColorItem> colors = lockedAt(palette(words(c.hexes)), {1});
        const std::vector<Issue> issues = PaletteCheck::detect(colors);
        const std::optional<LightnessMove> move =
            PaletteCheck::findLightnessMove(handMadeLookAlike(colors, 0, 1), colors, issues);
        ASSERT_TRUE(move);
        EXPECT_EQ(move->toHex, c.toHex);
        EXPECT_NEAR(move->lightnessChange, c.change, 1e-9);
    }
}

TEST(PaletteFixSearch, OnlyLookAlikesAreSearched) {
    const QList<ColorItem> colors = palette({u"#FFFFFF"_s, u"#C7C700"_s});
    const std::vector<Issue> issues = PaletteCheck::detect(colors);
    ASSERT_EQ(issues.size(), 1u);
    EXPECT_FALSE(PaletteCheck::findLightnessMove(issues.front(), colors, issues));
}

TEST(PaletteFixSearch, IssuesWithMovesSettlesLookAlikesOnly) {
    const QList<ColorItem> colors = palette(
        {u"#FFFFFF"_s, u"#C7C700"_s, u"#AA7134"_s, u"#D25834"_s, u"#808080"_s, u"#80808E"_s});
    const std::vector<Issue> detected = PaletteCheck::detect(colors);
    const std::vector<Issue> settled = PaletteCheck::issuesWithMoves(colors);
    ASSERT_EQ(idsOf(settled), idsOf(detected));
    for (const Issue& issue : settled) {
        SCOPED_TRACE(issue.id.toStdString());
        if (PaletteCheck::isLookAlike(issue.kind)) {
            EXPECT_EQ(issue.canFix, issue.move.has_value());
        } else {
            EXPECT_FALSE(issue.move);
        }
    }
    EXPECT_TRUE(settled.at(0).canFix);  // readability keeps its own verdict
    EXPECT_FALSE(settled.at(1).canFix); // near-duplicate: never
    const QList<ColorItem> bothLocked = lockedAt(palette({u"#AA7134"_s, u"#D25834"_s}), {0, 1});
    const std::vector<Issue> locked = PaletteCheck::issuesWithMoves(bothLocked);
    ASSERT_EQ(locked.size(), 1u);
    EXPECT_FALSE(locked[0].canFix);
    EXPECT_FALSE(locked[0].move);
}

TEST(PaletteFixApply, ChangesOnlyTheHexOfTheRightColor) {
    const QList<ColorItem> colors = palette({u"#FFFFFF"_s, u"#C7C700"_s, u"#AA7134"_s});
    const std::vector<Issue> issues = PaletteCheck::detect(colors);
    ASSERT_EQ(idsOf(issues), QStringList{readId(1)});
    const Issue& readability = issues.front();

    QList<ColorItem> renamedColors = colors;
    renamedColors[1].isAutoNamed = true;
    const QList<ColorItem> fixed = PaletteCheck::applyFix(readability, renamedColors);
    ASSERT_EQ(fixed.size(), 3);
    // The nearest lightness of the same hue that reaches 4.5:1 on white.
    EXPECT_EQ(fixed[1].hex, u"#7A7A00"_s);
    EXPECT_EQ(fixed[1].name, u"C1"_s);
    EXPECT_TRUE(fixed[1].isAutoNamed);
    EXPECT_EQ(fixed[0].hex, u"#FFFFFF"_s);
    EXPECT_EQ(fixed[2].hex, u"#AA7134"_s);

    Issue cannotFix = readability;
    cannotFix.canFix = false;
    EXPECT_EQ(PaletteCheck::applyFix(cannotFix, colors)[1].hex, u"#C7C700"_s);

    // Locked since the check: the lock as it is now wins.
    EXPECT_EQ(PaletteCheck::applyFix(readability, lockedAt(colors, {1}))[1].hex, u"#C7C700"_s);

    // The colour is gone: nothing to return.
    QList<ColorItem> without = colors;
    without.removeAt(1);
    EXPECT_TRUE(PaletteCheck::applyFix(readability, without).isEmpty());
}

TEST(PaletteFixApply, NothingToApplyWithoutAMoveOrForANearDuplicate) {
    const QList<ColorItem> colors = palette({u"#AA7134"_s, u"#D25834"_s});
    Issue withoutMove = PaletteCheck::issuesWithMoves(colors).at(0);
    ASSERT_TRUE(withoutMove.move);
    withoutMove.move.reset();
    EXPECT_EQ(PaletteCheck::applyFix(withoutMove, colors), colors);

    const QList<ColorItem> twins = palette({u"#808080"_s, u"#80808E"_s});
    Issue duplicate = PaletteCheck::detect(twins).at(0);
    duplicate.canFix = true; // even so, there is nothing to apply
    EXPECT_EQ(PaletteCheck::applyFix(duplicate, twins), twins);
}

TEST(PaletteFixCost, NamesTheNewLookAlikePartnerOfTheMovedColor) {
    struct Case {
        QString hexes;
        std::optional<QString> cost;
    };
    const Case cases[] = {
        // The moved colour is the first of the new pair, then the second.
        {u"#7C990C #A65820 #FFFFFF"_s, u"Now the same as C1 to red‑green vision."_s},
        {u"#8B4A24 #5EB119 #FFFFFF"_s, u"Now the same as C0 to red‑green vision."_s},
        {u"#18909E #0A8D1F #FFFFFF"_s, u"Now the same as C1 to blue‑yellow vision."_s},
        {u"#FFFFFF #C7C700"_s, std::nullopt}, // no side effect
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hexes.toStdString());
        const QList<ColorItem> before = palette(words(c.hexes));
        const std::vector<Issue> issues = PaletteCheck::issuesWithMoves(before);
        ASSERT_FALSE(issues.empty());
        ASSERT_TRUE(PaletteCheck::isReadability(issues.front().kind));
        const QList<ColorItem> after = PaletteCheck::applyFix(issues.front(), before);
        EXPECT_EQ(PaletteCheck::fixCost(issues.front(), before, after), c.cost);
    }
}

TEST(PaletteFixCost, TheMoveDecidesWhichColorMoved) {
    const QList<ColorItem> before = palette({u"#7C990C"_s, u"#A65820"_s, u"#FFFFFF"_s});
    const Issue readability = PaletteCheck::detect(before).front();
    const QList<ColorItem> after = PaletteCheck::applyFix(readability, before);
    ASSERT_TRUE(PaletteCheck::fixCost(readability, before, after));
    // Pretend the move was on white, which takes no part in the new pair.
    Issue movedWhite = readability;
    movedWhite.move = LightnessMove{idFor(2), u"C2"_s, u"#FFFFFF"_s, u"#FFFFFF"_s, 0.0};
    EXPECT_FALSE(PaletteCheck::fixCost(movedWhite, before, after));
}

TEST(PaletteFixRows, MergedRowOrderKeepsPlacesAndAppendsFixedSorted) {
    struct Case {
        QString old, current, fixed, merged;
    };
    const Case cases[] = {
        {u"a b c"_s, u"c d b"_s, u""_s, u"b c d"_s}, // gone rows drop, new rows append
        {u"a b c"_s, u"c"_s, u"a"_s, u"a c"_s},      // a fixed row keeps its place
        {u""_s, u"x y"_s, u"q p"_s, u"x y p q"_s},   // fixed rows not yet placed go last, sorted
        {u"b"_s, u"b"_s, u"c a b"_s, u"b a c"_s},    // no duplicates
        {u"a"_s, u""_s, u""_s, u""_s},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(PaletteCheck::mergedRowOrder(words(c.old), words(c.current), words(c.fixed)),
                  words(c.merged))
            << c.old.toStdString() << " / " << c.current.toStdString();
    }
}

TEST(PaletteFixRows, VerdictShowsFixedRowsAndThreeOpenOnes) {
    struct Case {
        QString ids, fixed, shown;
        int hidden;
    };
    const Case cases[] = {
        {u"o1 o2 f o3 o4 o5"_s, u"f"_s, u"o1 o2 f o3"_s, 2},
        {u"o1 o2 o3 o4 f"_s, u"f"_s, u"o1 o2 o3 f"_s, 1}, // a fixed row after the limit is shown
        {u"o1 o2 o3"_s, u""_s, u"o1 o2 o3"_s, 0},
        {u""_s, u""_s, u""_s, 0},
    };
    for (const Case& c : cases) {
        const PaletteCheck::VerdictRows rows =
            PaletteCheck::splitVerdictRows(words(c.ids), words(c.fixed));
        EXPECT_EQ(rows.shown, words(c.shown)) << c.ids.toStdString();
        EXPECT_EQ(rows.hiddenCount, c.hidden) << c.ids.toStdString();
    }
    EXPECT_FALSE(PaletteCheck::moreRowsText(0));
    EXPECT_FALSE(PaletteCheck::moreRowsText(-1));
    EXPECT_EQ(PaletteCheck::moreRowsText(1), u"and 1 more in Details"_s);
    EXPECT_EQ(PaletteCheck::moreRowsText(2), u"and 2 more in Details"_s);
}

TEST(PaletteFixTexts, MoveAndButtonWording) {
    struct Case {
        double change;
        QString moveText;
        QString button;
    };
    const Case cases[] = {
        {-0.13, u"Teal is 13% darker, same hue."_s, u"Fix: darken Teal"_s},
        {0.15000000000000002, u"Teal is 15% lighter, same hue."_s, u"Fix: lighten Teal"_s},
        {-0.125, u"Teal is 13% darker, same hue."_s, u"Fix: darken Teal"_s}, // half away from 0
        {0.0, u"Teal is 0% lighter, same hue."_s, u"Fix: lighten Teal"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.change);
        const LightnessMove move{idFor(1), u"Teal"_s, u"#008080"_s, u"#00A0A0"_s, c.change};
        EXPECT_EQ(PaletteCheck::moveText(move), c.moveText);
        EXPECT_EQ(PaletteCheck::fixButtonText(move), c.button);
    }
    EXPECT_EQ(PaletteCheck::fixButtonText(std::nullopt), u"Fix"_s);
}

TEST(PaletteFixTexts, LookAlikeNoteTellsWhyThereIsNoFix) {
    const QList<ColorItem> colors = palette({u"#AA7134"_s, u"#D25834"_s});
    Issue issue = handMadeLookAlike(colors, 0, 1);
    const LightnessMove darker{idFor(1), u"Rust"_s, u"#D25834"_s, u"#A0401F"_s, -0.1};
    const LightnessMove lighter{idFor(1), u"Rust"_s, u"#D25834"_s, u"#DE856A"_s, 0.13};

    Issue withDarker = issue;
    withDarker.move = darker;
    Issue withLighter = issue;
    withLighter.move = lighter;
    Issue oneLocked = issue;
    oneLocked.other.isLocked = true;
    Issue bothLocked = oneLocked;
    bothLocked.color.isLocked = true;

    struct Case {
        const char* name;
        const Issue* issue;
        bool paletteLocked;
        QString note;
    };
    const Case cases[] = {
        {"palette locked", &withDarker, true,
         u"Shown as they see them. Unlock the palette to fix."_s},
        {"darker move", &withDarker, false,
         u"Shown as they see them. Fix darkens Rust a little."_s},
        {"lighter move", &withLighter, false,
         u"Shown as they see them. Fix lightens Rust a little."_s},
        {"nothing acceptable", &issue, false,
         u"Shown as they see them. Any change would cause another problem, so make one lighter "
         u"or darker by hand."_s},
        {"one locked", &oneLocked, false,
         u"Shown as they see them. Fix won't change a locked color, so adjust one by hand."_s},
        {"both locked", &bothLocked, false,
         u"Shown as they see them. Fix won't change a locked color, so adjust one by hand."_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(PaletteCheck::lookAlikeNote(*c.issue, c.paletteLocked), c.note);
    }
}

TEST(PaletteFixTexts, RatioTextRoundsToOneDecimalButJudgesTheExactRatio) {
    struct Case {
        double ratio;
        QString text;
    };
    const Case cases[] = {
        {21.0, u"21.0:1 readable"_s},       {4.5, u"4.5:1 readable"_s},
        {4.49, u"4.5:1 OK for headings"_s}, {3.0, u"3.0:1 OK for headings"_s},
        {2.99, u"3.0:1 hard to read"_s},    {1.0, u"1.0:1 hard to read"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.ratio);
        EXPECT_EQ(PaletteCheck::ratioText(c.ratio), c.text);
    }
}

} // namespace

namespace {

TEST(PaletteFixRoles, NamedByRoleLeavesLockedAndUnreadableColorsAlone) {
    QList<ColorItem> colors = palette({u"#3366FF"_s, u"#FF3366"_s, u"#FAFAFA"_s, u"nope"_s});
    colors[0].isLocked = true;
    for (ColorItem& color : colors) {
        color.isAutoNamed = true;
    }
    const QList<ColorItem> named = PaletteCheck::namedByRole(colors);
    ASSERT_EQ(named.size(), 4);
    // The locked colour keeps its name yet holds "Primary", so the next vivid one is "Accent".
    EXPECT_EQ(named[0].name, u"C0"_s);
    EXPECT_TRUE(named[0].isAutoNamed);
    EXPECT_EQ(named[1].name, u"Accent"_s);
    EXPECT_FALSE(named[1].isAutoNamed);
    EXPECT_EQ(named[2].name, u"Background"_s);
    EXPECT_EQ(named[3].name, u"C3"_s);
    EXPECT_TRUE(named[3].isAutoNamed);
    EXPECT_EQ(named[3].hex, u"nope"_s);
    for (qsizetype i = 0; i < named.size(); ++i) {
        EXPECT_EQ(named[i].hex, colors[i].hex);
        EXPECT_EQ(named[i].id, colors[i].id);
    }
}

} // namespace
