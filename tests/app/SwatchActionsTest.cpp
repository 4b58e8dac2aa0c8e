#include "BarTestSupport.h"
#include "GroupNotation.h"
#include "color/PaletteCheck.h"

#include <QFile>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::BarHarness;
using testing::numberedColors;
using testing::palette;

QStringList names(const QList<ColorItem>& colors) {
    QStringList result;
    for (const ColorItem& color : colors)
        result.append(color.name);
    return result;
}

TEST(SwatchActions, ACopyPastesRecordsAndSaysExactlyWhatWasCopied) {
    BarHarness bar(
        {palette(u"P"_s, {{u"Sea Glass"_s, u"#3b8077"_s}, {u"Ink"_s, u"#101010"_s, true}},
                 /*locked=*/true)});
    SwatchActions& actions = bar.model->swatchActions();
    const QList<ColorItem> colors = bar.colors();
    // The format as read from the settings file is the shell's test; here, what a copy does.
    bar.settings.setValue(u"defaultCopyFormat"_s, u"rgb"_s);
    EXPECT_EQ(actions.copyColor(colors[0].id, QRect(10, 10, 28, 28)), u"rgb(59, 128, 119)"_s);
    EXPECT_EQ(bar.platform.clipboardText(), u"rgb(59, 128, 119)"_s);
    EXPECT_EQ(bar.toastText(), u"Copied rgb(59, 128, 119)"_s);
    EXPECT_EQ(bar.toast()->icon, u"doc.on.doc.fill"_s);
    EXPECT_EQ(bar.toast()->sourceFrame, QRect(10, 10, 28, 28));
    // A locked palette and a locked colour still copy; locks guard changes only.
    EXPECT_EQ(actions.copyColor(colors[1].id, std::nullopt), u"rgb(16, 16, 16)"_s);
    EXPECT_EQ(bar.recent.recentHexes(), (QStringList{u"#101010"_s, u"#3B8077"_s}));
    EXPECT_EQ(actions.copyColor(QUuid::createUuid(), std::nullopt), std::nullopt);
}

TEST(SwatchActions, TheCheckMarkGoesWithTheFirstClicksTimer) {
    BarHarness bar({palette(u"P"_s, numberedColors(2))});
    SwatchActions& actions = bar.model->swatchActions();
    const QUuid id = bar.colors()[0].id;
    actions.copyColor(id, QRect(0, 0, 28, 28));
    bar.store.scheduler.advance(0.4);
    actions.copyColor(id, QRect(0, 0, 28, 28));
    EXPECT_TRUE(actions.showsCopiedFeedback(id));
    bar.store.scheduler.advance(0.19);
    EXPECT_TRUE(actions.showsCopiedFeedback(id));
    bar.store.scheduler.advance(0.02); // 0.61 s after the first click
    EXPECT_FALSE(actions.showsCopiedFeedback(id));
    // The second click restarted the toast: it stays 1.2 s after that click, not the first.
    bar.store.scheduler.advance(0.98);
    EXPECT_TRUE(bar.toast().has_value());
    bar.store.scheduler.advance(0.02);
    EXPECT_FALSE(bar.toast().has_value());
}

// The refusals, in their order, and the silent ones.
TEST(SwatchActions, DropsAreRefusedInTheirOrder) {
    const QString paletteRefusal = u"Unlock this palette to move colors"_s;
    const QString colorRefusal = u"Unlock this color to move it"_s;
    struct Case {
        bool paletteLocked;
        QList<int> lockedColors;
        int target;
        QStringList items;
        QString toast; // empty: none
        bool taken;
    };
    const Case cases[] = {
        // The palette's lock speaks before a locked target and before reading the payload.
        {true, {2}, 2, {u"garbage"_s}, paletteRefusal, false},
        {false, {2}, 2, {u"SWATCH-0"_s}, colorRefusal, false},
        {false, {}, 2, {}, {}, false},
        {false, {}, 2, {u""_s}, {}, false},
        {false, {}, 2, {u"LOCKED"_s}, {}, false},
        {false, {}, 2, {u"swatch-1"_s}, {}, false},
        {false, {}, 2, {u"SWATCH-"_s}, {}, false},
        {false, {}, 2, {u"SWATCH-x1"_s}, {}, false},
        // A forged payload naming a locked colour is refused like a drag from it.
        {false, {0}, 2, {u"SWATCH-0"_s}, colorRefusal, false},
        {false, {}, 2, {u"SWATCH-99"_s}, {}, false},
        {false, {}, 2, {u"SWATCH-5"_s}, {}, false}, // one past the last of five
        {false, {}, 2, {u"SWATCH-2"_s}, {}, false}, // onto itself
        {false, {}, 3, {u"SWATCH-0"_s, u"SWATCH-9"_s}, {}, true},
        {false, {}, 1, {u"SWATCH-+4-7"_s}, {}, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.items.join(u',').toStdString());
        BarHarness bar({palette(u"P"_s, numberedColors(5, c.lockedColors), c.paletteLocked)});
        const QStringList before = names(bar.colors());
        EXPECT_EQ(bar.model->swatchActions().handleSwatchDrop(c.target, c.items, std::nullopt),
                  c.taken);
        EXPECT_EQ(bar.toastText(), c.toast);
        if (!c.toast.isEmpty()) {
            EXPECT_EQ(bar.toast()->icon, u"lock.fill"_s);
            EXPECT_DOUBLE_EQ(bar.toast()->duration, 2.0);
        }
        EXPECT_EQ(names(bar.colors()) != before, c.taken);
    }
}

TEST(SwatchActions, AnExchangeSwapsAndGroupsTravelWithTheirColours) {
    BarHarness bar({ColorTemplate::makeNew(u"P"_s, testing::colorsFrom(u"a b c Brand|d e"_s), 0)});
    EXPECT_TRUE(bar.model->swatchActions().handleSwatchDrop(3, {u"SWATCH-0"_s}, std::nullopt));
    const QList<ColorItem> after = bar.colors();
    EXPECT_EQ(names(after), (QStringList{u"d"_s, u"b"_s, u"c"_s, u"a"_s, u"e"_s}));
    EXPECT_TRUE(after[0].dividerBefore);
    EXPECT_EQ(after[0].dividerLabel, u"Brand"_s);
    EXPECT_EQ(bar.store.saves(), 1u);
}

TEST(SwatchActions, DraggingNeedsBothLocksOpen) {
    BarHarness open({palette(u"P"_s, numberedColors(2, {1}))});
    EXPECT_TRUE(open.model->swatchActions().canDrag(open.colors()[0]));
    EXPECT_FALSE(open.model->swatchActions().canDrag(open.colors()[1]));
    BarHarness locked({palette(u"P"_s, numberedColors(2), true)});
    EXPECT_FALSE(locked.model->swatchActions().canDrag(locked.colors()[0]));
    EXPECT_EQ(SwatchActions::dragPayload(12), u"SWATCH-12"_s);
}

// A new colour opens its editor 0.15 s later; one beyond the sixth opens the list for it first.
// The list opened for a new colour hushes the bar's tooltips until it closes.
TEST(BarModel, NewColoursOpenTheirEditor) {
    BarHarness bar({palette(u"P"_s, numberedColors(6))});
    bar.tooltips.show(u"Groups"_s);
    bar.store.scheduler.advance(app::BarTooltipController::kDelay);
    ASSERT_EQ(bar.tooltipPresenter.shown, 1);
    bar.model->addColor();
    EXPECT_EQ(bar.tooltipPresenter.dismissed, 1);
    EXPECT_EQ(bar.store.store->colorAwaitingEdit(), std::nullopt); // taken at once
    EXPECT_TRUE(bar.model->hover().showingOverflow());
    EXPECT_TRUE(bar.model->hover().overflowPinned());
    bar.store.scheduler.advance(0.14);
    EXPECT_TRUE(bar.editors.isEmpty());
    bar.store.scheduler.advance(0.02);
    EXPECT_EQ(bar.editors, QList<QUuid>{bar.colors()[6].id});

    // The list closes when nothing is left behind the sixth swatch.
    bar.tooltips.show(u"Groups"_s);
    bar.store.scheduler.advance(app::BarTooltipController::kDelay);
    EXPECT_EQ(bar.tooltipPresenter.shown, 1);
    bar.store.store->deleteColor(bar.colors()[6].id);
    EXPECT_FALSE(bar.model->hover().showingOverflow());
    bar.tooltips.show(u"Groups"_s);
    bar.store.scheduler.advance(app::BarTooltipController::kDelay);
    EXPECT_EQ(bar.tooltipPresenter.shown, 2);

    BarHarness few({palette(u"P"_s, numberedColors(2))});
    few.model->addColor();
    few.store.scheduler.advance(0.15);
    EXPECT_EQ(few.editors.size(), 1);
    EXPECT_FALSE(few.model->hover().showingOverflow());
}

TEST(BarModel, TheEyedropperPicksOnceAndIsRefusedInALockedPalette) {
    BarHarness bar({palette(u"P"_s, numberedColors(6))});
    BarEyedropper& dropper = bar.model->eyedropper();
    EXPECT_EQ(dropper.tooltip(), u"Pick a color from the screen"_s);
    dropper.click();
    dropper.click(); // one sampler at a time
    EXPECT_EQ(bar.platform.pickRequestCount(), 1);
    bar.platform.finishPick(std::nullopt); // cancelled
    EXPECT_FALSE(dropper.isPicking());
    EXPECT_EQ(bar.colors().size(), 6);

    dropper.click();
    bar.platform.finishPick(SampledColor{1.0, 0.5, 0.0});
    ASSERT_EQ(bar.colors().size(), 7);
    EXPECT_EQ(bar.colors()[6].hex, u"#FF8000"_s);
    EXPECT_TRUE(bar.model->hover().overflowPinned()); // the seventh lands in the list

    bar.model->toggleLock();
    EXPECT_EQ(dropper.tooltip(), u"Unlock this palette to add colors"_s);
    dropper.click();
    EXPECT_EQ(bar.platform.pickRequestCount(), 2);
    EXPECT_EQ(bar.toastText(), u"Unlock this palette to add colors"_s);
    EXPECT_EQ(bar.toast()->icon, u"lock.fill"_s);
    bar.model->addColor(); // the add button does nothing either
    EXPECT_EQ(bar.colors().size(), 7);
}

TEST(BarModel, SavingWritesAPaletteFileAndSaysSo) {
    BarHarness bar({palette(u"Brand: Main"_s, numberedColors(2))});
    EXPECT_EQ(bar.model->suggestedFileName(), u"Brand- Main.hueshelf"_s);
    const QString path = bar.dir.filePath(u"out.json"_s);
    EXPECT_EQ(bar.model->saveActivePalette(path, QRect(1, 2, 24, 24)), std::nullopt);
    EXPECT_TRUE(QFile::exists(bar.dir.filePath(u"out.hueshelf"_s)));
    EXPECT_EQ(bar.toastText(), u"Palette saved"_s);
    const auto failure = bar.model->saveActivePalette(bar.dir.filePath(u"missing/dir/x"_s), {});
    ASSERT_TRUE(failure.has_value());
    EXPECT_FALSE(failure->isEmpty());
}

// The share button's toast stands at the button, and the link is what went on the clipboard.
TEST(BarModel, SharingPinsItsToastToTheButton) {
    BarHarness bar({palette(u"Brand"_s, numberedColors(2))});
    bar.model->share(QRect(5, 6, 24, 24));
    EXPECT_TRUE(bar.platform.clipboardText().contains(u"Brand"_s));
    ASSERT_TRUE(bar.toast().has_value());
    EXPECT_EQ(bar.toast()->sourceFrame, QRect(5, 6, 24, 24));
    bar.store.scheduler.advance(1.0);
    EXPECT_TRUE(bar.store.announcements.empty()); // not announced a second time
}

// The check's count follows every edit.
TEST(BarModel, TheCheckCountFollowsThePalette) {
    BarHarness bar({palette(u"P"_s, {{u"Ink"_s, u"#101010"_s}, {u"Paper"_s, u"#FAFAFA"_s}})});
    EXPECT_EQ(bar.model->checkLabel(), u"Check \u2014 everything reads well"_s);
    bar.model->addPickedColor(u"#FAFAFB"_s); // a near-duplicate of Paper
    EXPECT_GT(bar.model->issueCount(), 0);
    EXPECT_EQ(bar.model->checkLabel(), PaletteCheck::checkButtonTooltip(bar.model->issueCount()));
    EXPECT_TRUE(bar.model->checkLabel().endsWith(
        bar.model->issueCount() == 1 ? u"1 thing to fix"_s : u" things to fix"_s));
}

} // namespace
} // namespace hueshelf::app
