#include "BarTestSupport.h"
#include "GroupNotation.h"
#include "app/BarTooltip.h"
#include "app/CompactButton.h"
#include "app/CompactColorSwatch.h"
#include "app/ExtractPaletteModel.h"
#include "app/ExtractPalettePopover.h"
#include "app/FloatingHueShelfView.h"
#include "app/FloatingWindow.h"
#include "app/OverflowButton.h"
#include "app/OverflowPopover.h"
#include "app/SwatchGutter.h"
#include "model/RecentColorsManager.h"
#include "platform/fake/FakePlatform.h"
#include "sync/QtFolderWatch.h"
#include "sync/SyncManager.h"

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::BarHarness;
using testing::click;
using testing::numberedColors;
using testing::palette;

class BarView : public ::testing::Test {
protected:
    void SetUp() override { testing::ensureApplication(); }
    static void settle() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    // A drag of `mime` over `widget` and a drop there; answers whether it was accepted.
    static bool drop(QWidget* widget, QMimeData& mime) {
        const QPoint at = widget->rect().center();
        QDragEnterEvent enter(at, Qt::MoveAction | Qt::CopyAction, &mime, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &enter);
        QDropEvent dropped(QPointF(at), Qt::MoveAction | Qt::CopyAction, &mime, Qt::LeftButton,
                           Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &dropped);
        return dropped.isAccepted();
    }
};

// The window takes the width rule's value, at once, whenever the palette changes; the seventh
// colour brings the overflow button.
TEST_F(BarView, TheWindowFollowsTheWidthRuleAndTheOverflowButtonCounts) {
    BarHarness bar({palette(u"Brand"_s, numberedColors(6))});
    FloatingWindow window(*bar.model);
    const auto expected = [&] { return bar.model->barWidth(BarLayout::systemTextWidth()); };
    EXPECT_EQ(window.width(), expected());
    EXPECT_EQ(window.swatchWidgets().size(), 6);
    EXPECT_TRUE(window.view().overflowButton()->isHidden());
    const int six = window.width();

    bar.model->addColor();
    settle();
    EXPECT_EQ(window.width(), six + 34);
    EXPECT_EQ(window.swatchWidgets().size(), 6);
    EXPECT_FALSE(window.view().overflowButton()->isHidden());
    EXPECT_EQ(window.view().overflowButton()->text(), u"+1"_s);
    EXPECT_EQ(window.view().overflowButton()->accessibleName(), u"1 more color"_s);

    bar.store.store->renameActiveTemplate(QString(80, u'W'));
    EXPECT_EQ(window.width(), expected());
    EXPECT_TRUE(window.shownPaletteName().endsWith(u'\u2026'));
}

TEST_F(BarView, AClickCopiesAndTheCheckMarkComesAndGoes) {
    BarHarness bar({palette(u"P"_s, numberedColors(3))});
    FloatingWindow window(*bar.model);
    CompactColorSwatch* second = window.swatchWidgets().at(1);
    EXPECT_EQ(second->accessibleName(), u"C1, "_s + bar.colors()[1].hex);
    click(second);
    EXPECT_EQ(bar.platform.clipboardText(), bar.colors()[1].hex);
    EXPECT_TRUE(second->state().showingCopiedFeedback); // its timing is the actions' test

    // Assistive technology sees one button that copies, with its hint and an edit action.
    QList<QUuid> edited;
    QObject::connect(&window.view(), &FloatingHueShelfView::editorRequested,
                     [&](const QUuid& id, QWidget*) { edited.append(id); });
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(second);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Description),
              u"Copies the color code. Right-click to edit."_s);
    QAccessibleActionInterface* actions = accessible->actionInterface();
    ASSERT_NE(actions, nullptr);
    EXPECT_EQ(actions->actionNames(),
              (QStringList{QAccessibleActionInterface::pressAction(), u"Edit C1"_s}));
    actions->doAction(u"Edit C1"_s);
    EXPECT_EQ(edited, QList<QUuid>{bar.colors()[1].id});
}

TEST_F(BarView, ASwatchDroppedOnAnotherExchangesThem) {
    BarHarness bar({palette(u"P"_s, numberedColors(4, {2}))});
    FloatingWindow window(*bar.model);
    QMimeData payload;
    payload.setText(u"SWATCH-0"_s);
    EXPECT_TRUE(drop(window.swatchWidgets().at(3), payload));
    EXPECT_EQ(bar.colors()[3].name, u"C0"_s);
    settle();
    // Onto a locked colour: refused with its toast, nothing moves.
    payload.setText(u"SWATCH-1"_s);
    EXPECT_FALSE(drop(window.swatchWidgets().at(2), payload));
    EXPECT_EQ(bar.toastText(), u"Unlock this color to move it"_s);
    EXPECT_EQ(bar.colors()[1].name, u"C1"_s);
}

TEST_F(BarView, FilesDroppedOnTheBar) {
    BarHarness bar({palette(u"P"_s, numberedColors(2))});
    FloatingWindow window(*bar.model);
    QMimeData files;
    files.setUrls(
        {QUrl::fromLocalFile(u"/x/a.hueshelf"_s), QUrl::fromLocalFile(u"/x/b.hueshelf"_s)});
    EXPECT_TRUE(drop(&window, files));
    EXPECT_EQ(bar.imported, QStringList{u"/x/a.hueshelf +more"_s});

    files.setUrls(
        {QUrl::fromLocalFile(u"/x/notes.txt"_s), QUrl::fromLocalFile(u"/x/a.hueshelf"_s)});
    EXPECT_FALSE(drop(&window, files));
    EXPECT_EQ(bar.toastText(), u"Please drop an image or .hueshelf file"_s);
    EXPECT_EQ(bar.shakes, 1);
    EXPECT_FALSE(window.isBarDropHover());
    bar.reduceMotion = true;
    EXPECT_FALSE(drop(&window, files));
    EXPECT_EQ(bar.shakes, 1); // the toast alone

    files.setUrls({QUrl::fromLocalFile(u"/x/A.PNG"_s), QUrl::fromLocalFile(u"/x/b.png"_s)});
    EXPECT_TRUE(drop(&window, files));
    EXPECT_EQ(bar.toastText(), u"One file at a time"_s);
    EXPECT_EQ(bar.extracted, QStringList{u"/x/A.PNG"_s});
}

// Hovering a divider whose group reaches past the bar lights the group, dims the rest and, after
// the peek, shows the list with the hidden colours in their sections.
TEST_F(BarView, AHoveredGroupPeeksIntoTheList) {
    BarHarness bar(
        {ColorTemplate::makeNew(u"P"_s, testing::colorsFrom(u"a b c d Tail|e f g h"_s), 0)});
    FloatingWindow window(*bar.model);
    window.show();
    const QList<SwatchGutter*> gutters = window.view().gutters();
    ASSERT_EQ(gutters.size(), 5);
    SwatchGutter* divider = gutters.at(3);
    EXPECT_TRUE(divider->showsDivider());
    EXPECT_EQ(divider->width(), 14);
    QEnterEvent enter(QPointF(2, 2), QPointF(2, 2), QPointF(2, 2));
    QCoreApplication::sendEvent(divider, &enter);
    EXPECT_TRUE(window.swatchWidgets().at(0)->state().isDimmed);
    EXPECT_TRUE(window.swatchWidgets().at(4)->state().isEmphasized);
    bar.store.scheduler.advance(0.32);
    OverflowPopover* list = window.view().overflowPopover();
    EXPECT_TRUE(list->isVisible());
    ASSERT_EQ(list->swatchWidgets().size(), 2);
    EXPECT_EQ(list->swatchWidgets().at(0)->swatch().name, u"g"_s);
    EXPECT_EQ(list->width(), BarLayout::overflowPopoverWidth(2));

    // A click in the list copies like the bar; a press elsewhere dismisses it.
    click(list->swatchWidgets().at(1));
    EXPECT_EQ(bar.platform.clipboardText(), bar.colors()[7].hex);
    // An edit while the list is open refills it: the new colour pushes one more behind the bar.
    bar.model->addColor();
    settle();
    EXPECT_EQ(list->swatchWidgets().size(), 3);
    click(window.swatchWidgets().at(0));
    EXPECT_FALSE(list->isVisible());
    EXPECT_FALSE(window.swatchWidgets().at(0)->state().isDimmed);
}

// The lens menu lists "Off" and the three types under its heading; a choice redraws the swatches,
// the button and its tooltip, and a click still copies the real code.
TEST_F(BarView, TheLensMenuRedrawsButCopiesTheRealCode) {
    BarHarness bar({palette(u"P"_s, {{u"Red"_s, u"#FF0000"_s}, {u"Sky"_s, u"#3B82F6"_s}})});
    FloatingWindow window(*bar.model);
    window.show();
    CompactButton* lens = window.view().tool(u"eye"_s);
    ASSERT_NE(lens, nullptr);
    EXPECT_EQ(BarTooltip::textOf(lens), u"How others see it"_s);
    click(lens);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QStringList texts;
    for (const QAction* action : menu->actions())
        texts << (action->isSeparator() && action->text().isEmpty() ? u"---"_s : action->text());
    ASSERT_EQ(texts.size(), 7);
    EXPECT_EQ(texts.first(), u"How others see it"_s);
    EXPECT_EQ(texts.at(1), u"Off"_s);
    EXPECT_TRUE(menu->actions().at(1)->isChecked());
    EXPECT_EQ(texts.last(),
              u"Draws the bar as they see it. Copying still copies the real color."_s);
    const QColor before = window.swatchWidgets().at(0)->swatch().displayColor;
    menu->actions().at(3)->trigger(); // deuteranopia
    menu->close();
    settle();
    EXPECT_NE(window.swatchWidgets().at(0)->swatch().displayColor, before);
    EXPECT_NE(window.view().tool(u"eye.fill"_s), nullptr);
    EXPECT_EQ(
        BarTooltip::textOf(lens),
        u"How others see it, showing "_s +
            ColorVisionSimulation::lensLabel(ColorVisionSimulation::SimulationType::deuteranopia) +
            u" \u2014 click to change"_s);
    click(window.swatchWidgets().at(0));
    EXPECT_EQ(bar.platform.clipboardText(), u"#FF0000"_s);
}

// What an image drop found: the popover opens a moment later with the colours under their names;
// a blank palette name can't be created, a renamed colour keeps its new name, and "Create
// palette" adds the palette and closes.
TEST_F(BarView, TheExtractPopoverTurnsFoundColoursIntoAPalette) {
    BarHarness bar({palette(u"P"_s, numberedColors(2))});
    ExtractPaletteModel extract(*bar.store.store, bar.store.scheduler);
    ExtractPalettePopover popover(extract);
    popover.setAnchor([] { return QRect(100, 100, 600, 44); });
    extract.present(QStringList{u"#FF0000"_s, u"#00FF00"_s, u"#0000FF"_s});
    EXPECT_FALSE(popover.isVisible());
    bar.store.scheduler.advance(ExtractPaletteModel::openDelaySeconds);
    ASSERT_TRUE(popover.isVisible());
    ASSERT_EQ(popover.swatchNameFields().size(), 3);
    EXPECT_EQ(popover.paletteNameField()->text(), u"Extracted palette"_s);

    // Typing goes to the model as it happens.
    const auto type = [](QLineEdit* field, const QString& text) {
        field->setText(text);
        Q_EMIT field->textEdited(text);
    };
    type(popover.paletteNameField(), u"   "_s);
    EXPECT_FALSE(popover.createButton()->isEnabled());
    type(popover.paletteNameField(), u"Sunset"_s);
    type(popover.swatchNameFields().at(1), u"Leaf"_s);
    popover.createButton()->click();
    EXPECT_FALSE(popover.isVisible());
    const ColorTemplate made = bar.store.active();
    EXPECT_EQ(made.name, u"Sunset"_s);
    ASSERT_EQ(made.colors.size(), 3);
    EXPECT_EQ(made.colors.at(1).name, u"Leaf"_s);

    // A click outside (the popup hidden) cancels without touching the store.
    extract.present(QStringList{u"#123456"_s});
    bar.store.scheduler.advance(ExtractPaletteModel::openDelaySeconds);
    ASSERT_TRUE(popover.isVisible());
    popover.hide();
    EXPECT_FALSE(extract.isOpen());
    EXPECT_EQ(bar.store.store->templates().size(), 2);
}

// The sync button is named by its short label for assistive technology, and hovering it asks for
// the card, made at that moment by the bar's own clock.
TEST_F(BarView, TheSyncButtonKeepsItsShortNameAndShowsTheCardByTheBarsClock) {
    testing::TestStore store({palette(u"P"_s, numberedColors(2))});
    FakePlatform platform;
    QTemporaryDir dir;
    QSettings settings{dir.filePath(u"hueshelf.conf"_s), QSettings::IniFormat};
    RecentColorsManager recent{settings};
    ToastManager toasts{store.scheduler, [] {
                            return ToastManager::BarState{{100, 600, 700, 44}, true};
                        }};
    SyncManager sync(store.clock, store.scheduler, settings, u"Test Machine"_s, u"0.1.0"_s,
                     std::make_unique<QtFolderWatch>());
    BarModel::Services services{
        {*store.store, platform, settings, recent, toasts, store.scheduler}};
    services.sync = &sync;
    services.clock = &store.clock;
    BarModel model(services);
    FloatingHueShelfView view(model);
    CompactButton* button = view.syncButton();
    // The card's title and last line as the hover would show them; empty when it's no card.
    const auto card = [button] {
        const TooltipContent content = BarTooltip::contentOf(button).value_or(QString());
        const auto* made = std::get_if<SyncStatusCard>(&content);
        return made ? made->title + u": "_s + made->lastSynced.value_or(QString()) : QString();
    };

    sync.setSyncStatus(SyncStatus::error(u"The folder is read-only"_s));
    sync.setLastSyncTime(store.clock.nowMs() - 2 * 3'600'000.0);
    EXPECT_EQ(button->accessibleName(), u"Sync error - Click to retry"_s);
    EXPECT_EQ(card(), u"Sync Error: Last synced 2 hours ago"_s);
    store.clock.advanceMs(3'600'000.0);
    sync.setSyncStatus(SyncStatus::offline());
    EXPECT_EQ(button->accessibleName(), u"Offline - Click to retry"_s);
    EXPECT_EQ(card(), u"Offline: Last synced 3 hours ago"_s);
}

} // namespace
} // namespace hueshelf::app
