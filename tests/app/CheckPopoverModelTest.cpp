#include "CheckPopoverTestSupport.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::CheckColor;
using testing::checkPalette;
using testing::CheckPopoverHarness;
using testing::rowIds;

// White and a dark yellow at 1.8:1: one readability issue, fixed by #7A7A00 at 4.55:1.
ColorTemplate yellowOnWhite(bool yellowLocked = false, bool paletteLocked = false) {
    return checkPalette({{u"White"_s, u"#FFFFFF"_s},
                         {u"Olive"_s, u"#C7C700"_s, yellowLocked},
                         {u"Tan"_s, u"#AA7134"_s}},
                        paletteLocked);
}

TEST(CheckPopoverFix, ChangesOnlyTheIssuesColorSavesAndRecords) {
    CheckPopoverHarness h(yellowOnWhite());
    h.model->open();
    const QString issueId = h.readId(u"Olive"_s);
    ASSERT_EQ(h.issueIds(), QStringList{issueId});
    const qint64 revision = h.active().revision;
    int animated = 0;
    QObject::connect(h.model.get(), &CheckPopoverModel::paletteChangeAnimated,
                     [&animated] { ++animated; });

    ASSERT_TRUE(h.model->fix(issueId));
    EXPECT_EQ(animated, 1);

    EXPECT_EQ(h.hexes(), (QStringList{u"#FFFFFF"_s, u"#7A7A00"_s, u"#AA7134"_s}));
    ASSERT_EQ(h.writer.requests.size(), 1u);
    EXPECT_EQ(h.writer.lastSavedHexes(h.active().id), h.hexes());
    EXPECT_EQ(h.active().revision, revision + 1);

    ASSERT_TRUE(h.model->fixes().contains(issueId));
    const FixRecord record = h.model->fixes().value(issueId);
    EXPECT_EQ(record.colorID, h.idOf(u"Olive"_s));
    EXPECT_EQ(record.beforeHex, u"#C7C700"_s);
    EXPECT_EQ(record.afterHex, u"#7A7A00"_s);
    EXPECT_EQ(record.cost, std::nullopt);
    EXPECT_EQ(record.at, h.store.clock.nowMs());
    EXPECT_TRUE(h.issueIds().isEmpty());
    EXPECT_EQ(h.model->rowOrder(), QStringList{issueId});
}

TEST(CheckPopoverFix, LookAlikeFixMovesTheSearchedColor) {
    CheckPopoverHarness h(checkPalette({{u"Rust"_s, u"#AA7134"_s}, {u"Brick"_s, u"#D25834"_s}}));
    h.model->open();
    const QString issueId = h.pairId("look-", u"Rust"_s, u"Brick"_s);
    ASSERT_EQ(h.issueIds(), QStringList{issueId});

    ASSERT_TRUE(h.model->fix(issueId));
    EXPECT_EQ(h.hexes(), (QStringList{u"#AA7134"_s, u"#DE856A"_s}));
    EXPECT_EQ(h.model->fixes().value(issueId).colorID, h.idOf(u"Brick"_s));
    EXPECT_TRUE(h.issueIds().isEmpty());
}

// The cost's wording is the fix engine's; here it reaches the record and the settled row.
TEST(CheckPopoverFix, CostNamesTheNewLookAlikePartner) {
    CheckPopoverHarness h(checkPalette(
        {{u"White"_s, u"#FFFFFF"_s}, {u"Ochre"_s, u"#B5A109"_s}, {u"Plum"_s, u"#8E5AB5"_s}}));
    const QString readId = h.openAndFix(u"Ochre"_s);
    const QString cost = u"Now the same as Plum to blue‑yellow vision."_s;
    EXPECT_EQ(h.hexOf(u"Ochre"_s), u"#867707"_s);
    EXPECT_EQ(h.model->fixes().value(readId).cost, cost);
    const QString lookId = h.pairId("look-", u"Ochre"_s, u"Plum"_s);
    // The new look-alike joins below the row that stays where it was.
    EXPECT_EQ(h.model->rowOrder(), (QStringList{readId, lookId}));

    const QList<CheckRow> rows = h.model->verdictPage().rows;
    ASSERT_EQ(rows.size(), 2);
    EXPECT_TRUE(rows[0].isSettled);
    EXPECT_EQ(rows[0].cost, cost);
    EXPECT_FALSE(rows[1].isSettled);
}

TEST(CheckPopoverFix, RefusalsLeaveThePaletteAndTheFileAlone) {
    struct Case {
        const char* name;
        ColorTemplate palette;
        QString issueColor;
    };
    const Case cases[] = {
        {"palette locked", yellowOnWhite(false, true), u"Olive"_s},
        {"colour locked", yellowOnWhite(true, false), u"Olive"_s},
        {"near-duplicate has no fix",
         checkPalette({{u"Gray"_s, u"#808080"_s}, {u"Slate"_s, u"#80808E"_s}}), QString()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CheckPopoverHarness h(c.palette);
        h.model->open();
        ASSERT_EQ(h.issueIds().size(), 1);
        const QStringList before = h.hexes();
        EXPECT_FALSE(h.model->fix(h.issueIds().constFirst()));
        EXPECT_EQ(h.hexes(), before);
        EXPECT_TRUE(h.writer.requests.empty());
        EXPECT_TRUE(h.model->fixes().isEmpty());
        EXPECT_EQ(h.store.scheduler.pendingCount(), 0);
    }
}

TEST(CheckPopoverFix, UnknownIssuesAndAClosedPopoverDoNothing) {
    CheckPopoverHarness h(yellowOnWhite());
    EXPECT_FALSE(h.model->fix(h.readId(u"Olive"_s))); // not open
    h.model->open();
    EXPECT_FALSE(h.model->fix(u"read-00000000-0000-0000-0000-000000000000"_s));
    EXPECT_TRUE(h.writer.requests.empty());
}

TEST(CheckPopoverFix, ALockTakenWhileOpenStopsTheFix) {
    CheckPopoverHarness h(yellowOnWhite());
    h.model->open();
    const QString issueId = h.readId(u"Olive"_s);
    ASSERT_TRUE(h.storage().setColorLocked(h.idOf(u"Olive"_s), true));
    // The issue is read again from the palette: it can't be fixed any more.
    ASSERT_EQ(h.issueIds(), QStringList{issueId});
    EXPECT_FALSE(h.model->issues().front().canFix);
    const std::size_t saves = h.writer.requests.size();
    EXPECT_FALSE(h.model->fix(issueId));
    EXPECT_EQ(h.hexOf(u"Olive"_s), u"#C7C700"_s);
    EXPECT_EQ(h.writer.requests.size(), saves);
}

// --- Undo and its guard ----------------------------------------------------------------------

TEST(CheckPopoverUndo, GuardIsTheLongerOfDoubleClickAndPointThreeFive) {
    struct Case {
        double doubleClick;
        double refusedAtMs;
        double allowedAtMs;
    };
    const Case cases[] = {
        {0.2, 349.0, 350.0},
        {0.35, 349.0, 350.0},
        {0.5, 499.0, 500.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.doubleClick);
        CheckPopoverHarness h(yellowOnWhite(), c.doubleClick);
        const QString issueId = h.openAndFix(u"Olive"_s);
        const double fixedAt = h.store.clock.nowMs();
        EXPECT_DOUBLE_EQ(h.model->undoGuardSeconds(), std::max(c.doubleClick, 0.35));

        EXPECT_FALSE(h.model->isUndoEnabled(issueId));
        EXPECT_FALSE(h.model->undoFix(issueId));
        h.store.clock.setNowMs(fixedAt + c.refusedAtMs);
        EXPECT_FALSE(h.model->isUndoEnabled(issueId));
        EXPECT_FALSE(h.model->undoFix(issueId));
        EXPECT_EQ(h.hexOf(u"Olive"_s), u"#7A7A00"_s);
        EXPECT_EQ(h.writer.requests.size(), 1u);

        h.store.clock.setNowMs(fixedAt + c.allowedAtMs);
        EXPECT_TRUE(h.model->isUndoEnabled(issueId));
        ASSERT_TRUE(h.model->undoFix(issueId));
        EXPECT_EQ(h.hexOf(u"Olive"_s), u"#C7C700"_s);
        EXPECT_EQ(h.writer.lastSavedHexes(h.active().id), h.hexes());
        EXPECT_TRUE(h.model->fixes().isEmpty());
        // The issue is back, in its old place.
        EXPECT_EQ(h.issueIds(), QStringList{issueId});
        EXPECT_EQ(h.model->rowOrder(), QStringList{issueId});
    }
}

TEST(CheckPopoverUndo, SettleTickComesJustAfterTheGuard) {
    struct Case {
        double doubleClick;
        double notYet;
        double due;
    };
    const Case cases[] = {{0.2, 0.39, 0.4}, {0.5, 0.54, 0.55}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.doubleClick);
        CheckPopoverHarness h(yellowOnWhite(), c.doubleClick);
        h.model->open();
        const QString issueId = h.readId(u"Olive"_s);
        int changes = 0;
        QObject::connect(h.model.get(), &CheckPopoverModel::changed, [&changes] { ++changes; });
        ASSERT_TRUE(h.model->fix(issueId));
        const int changesAfterFix = changes;
        EXPECT_EQ(h.model->settleTick(), 0);
        EXPECT_FALSE(h.model->verdictPage().rows.at(0).isUndoEnabled);

        h.store.scheduler.advance(c.notYet);
        EXPECT_EQ(h.model->settleTick(), 0);
        h.store.scheduler.advance(c.due - c.notYet);
        EXPECT_EQ(h.model->settleTick(), 1);
        EXPECT_GT(changes, changesAfterFix);
        EXPECT_TRUE(h.model->verdictPage().rows.at(0).isUndoEnabled);
        EXPECT_EQ(h.store.scheduler.pendingCount(), 0);
    }
}

TEST(CheckPopoverUndo, DoubleClickOnFixLeavesTheFixInPlace) {
    CheckPopoverHarness h(yellowOnWhite(), 0.3);
    const QString issueId = h.openAndFix(u"Olive"_s);
    // The second click lands where "Undo" now stands, well inside the interval.
    h.store.clock.advanceMs(180.0);
    EXPECT_FALSE(h.model->fix(issueId));
    EXPECT_FALSE(h.model->undoFix(issueId));
    EXPECT_EQ(h.hexOf(u"Olive"_s), u"#7A7A00"_s);
    EXPECT_TRUE(h.model->fixes().contains(issueId));
    EXPECT_EQ(h.writer.requests.size(), 1u);
}

TEST(CheckPopoverUndo, RestoresBeforeHexEvenAfterAHandEdit) {
    CheckPopoverHarness h(yellowOnWhite());
    const QString issueId = h.openAndFix(u"Olive"_s);
    const QUuid olive = h.idOf(u"Olive"_s);
    ASSERT_TRUE(h.storage().updateColor(olive, u"Olive"_s, u"#123456"_s, false));
    h.store.scheduler.advance(1.0);
    ASSERT_TRUE(h.model->undoFix(issueId));
    EXPECT_EQ(h.hexOf(u"Olive"_s), u"#C7C700"_s);
}

TEST(CheckPopoverUndo, AColorThatIsGoneChangesNothing) {
    CheckPopoverHarness h(yellowOnWhite());
    const QString issueId = h.openAndFix(u"Olive"_s);
    const QUuid olive = h.idOf(u"Olive"_s);
    h.storage().editTemplate(h.active().id, [olive](ColorTemplate& palette) {
        palette.colors.removeIf([olive](const ColorItem& color) { return color.id == olive; });
    });
    h.store.scheduler.advance(1.0);
    const std::size_t saves = h.writer.requests.size();
    EXPECT_FALSE(h.model->undoFix(issueId));
    EXPECT_EQ(h.hexes(), (QStringList{u"#FFFFFF"_s, u"#AA7134"_s}));
    EXPECT_TRUE(h.model->fixes().contains(issueId));
    EXPECT_EQ(h.writer.requests.size(), saves);
}

TEST(CheckPopoverUndo, ClosingForgetsFixesAndCancelsTheSettle) {
    CheckPopoverHarness h(yellowOnWhite());
    const QString issueId = h.openAndFix(u"Olive"_s);
    h.model->showDetails();
    h.model->close();
    EXPECT_EQ(h.store.scheduler.pendingCount(), 0);
    h.store.scheduler.advance(1.0);
    EXPECT_EQ(h.model->settleTick(), 0);

    h.model->open();
    EXPECT_FALSE(h.model->showingDetails());
    EXPECT_TRUE(h.model->fixes().isEmpty());
    EXPECT_FALSE(h.model->undoFix(issueId));
    EXPECT_EQ(h.hexOf(u"Olive"_s), u"#7A7A00"_s);
    EXPECT_EQ(h.model->verdictPage().state, CheckVerdictPage::State::looksGood);
}

// --- Row order -------------------------------------------------------------------------------

// Six issues: two readability rows, then four look-alikes; fixing the second readability row
// leaves the other five as they were.
ColorTemplate sixIssues() {
    return checkPalette({{u"White"_s, u"#FFFFFF"_s},
                         {u"Ink"_s, u"#2422C8"_s},
                         {u"Stone"_s, u"#90896F"_s},
                         {u"Teal"_s, u"#208683"_s},
                         {u"Moss"_s, u"#648657"_s},
                         {u"Lagoon"_s, u"#2E8981"_s}});
}

TEST(CheckPopoverRows, AFixedRowKeepsItsPlaceAndTheVerdictHidesTheRest) {
    CheckPopoverHarness h(sixIssues());
    h.model->open();
    const QStringList expected{
        h.readId(u"Teal"_s),
        h.readId(u"Lagoon"_s),
        h.pairId("look-", u"Stone"_s, u"Moss"_s),
        h.pairId("look-", u"Teal"_s, u"Lagoon"_s),
        h.pairId("look-", u"Stone"_s, u"Teal"_s),
        h.pairId("look-", u"Stone"_s, u"Lagoon"_s),
    };
    ASSERT_EQ(h.issueIds(), expected);
    EXPECT_EQ(h.model->rowOrder(), expected);

    CheckVerdictPage page = h.model->verdictPage();
    EXPECT_EQ(page.title, u"6 things to fix"_s);
    EXPECT_EQ(rowIds(page.rows), expected.mid(0, 3));
    EXPECT_EQ(page.moreRowsText, u"and 3 more in Details"_s);

    ASSERT_TRUE(h.model->fix(expected.at(1)));
    EXPECT_EQ(h.hexOf(u"Lagoon"_s), u"#2C837C"_s);
    EXPECT_EQ(h.model->rowOrder(), expected);
    page = h.model->verdictPage();
    EXPECT_EQ(page.title, u"5 things to fix"_s);
    EXPECT_EQ(rowIds(page.rows), expected.mid(0, 4));
    EXPECT_TRUE(page.rows.at(1).isSettled);
    EXPECT_EQ(page.moreRowsText, u"and 2 more in Details"_s);
    EXPECT_EQ(rowIds(h.model->detailsPage().rows), expected);

    h.store.scheduler.advance(0.4);
    ASSERT_TRUE(h.model->undoFix(expected.at(1)));
    EXPECT_EQ(h.model->rowOrder(), expected);
}

TEST(CheckPopoverRows, IssuesThatAFixRemovesLeaveTheOrder) {
    // Darkening Lime for white also parts it from Orange.
    CheckPopoverHarness h(checkPalette(
        {{u"White"_s, u"#FFFFFF"_s}, {u"Lime"_s, u"#82B70E"_s}, {u"Orange"_s, u"#EE7F1A"_s}}));
    h.model->open();
    const QString readId = h.readId(u"Lime"_s);
    const QString lookId = h.pairId("look-", u"Lime"_s, u"Orange"_s);
    ASSERT_EQ(h.model->rowOrder(), (QStringList{readId, lookId}));

    ASSERT_TRUE(h.model->fix(readId));
    EXPECT_EQ(h.hexOf(u"Lime"_s), u"#5D820A"_s);
    EXPECT_TRUE(h.issueIds().isEmpty());
    EXPECT_EQ(h.model->rowOrder(), QStringList{readId});
    const CheckVerdictPage page = h.model->verdictPage();
    EXPECT_EQ(page.state, CheckVerdictPage::State::issues);
    EXPECT_EQ(page.title, u"Nothing to fix"_s);
    EXPECT_EQ(rowIds(page.rows), QStringList{readId});
    EXPECT_EQ(page.moreRowsText, std::nullopt);
}

TEST(CheckPopoverRows, EditsElsewhereMergeNewIssuesAtTheEnd) {
    CheckPopoverHarness h(yellowOnWhite());
    h.model->open();
    const QString oliveId = h.readId(u"Olive"_s);
    ASSERT_TRUE(h.model->fix(oliveId));
    // Tan is edited by hand into a dark colour that fails on white.
    const QUuid tan = h.idOf(u"Tan"_s);
    ASSERT_TRUE(h.storage().updateColor(tan, u"Tan"_s, u"#C7C700"_s, false));
    EXPECT_EQ(h.model->rowOrder(), (QStringList{oliveId, h.readId(u"Tan"_s)}));
}

} // namespace
} // namespace hueshelf::app
