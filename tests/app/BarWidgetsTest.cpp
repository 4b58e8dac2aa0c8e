#include "AppTestSupport.h"
#include "TempHome.h"
#include "app/AppDelegate.h"
#include "app/BarModel.h"
#include "app/CompactColorSwatch.h"
#include "app/FloatingWindow.h"
#include "app/MenuFiller.h"
#include "platform/fake/FakePlatform.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QSettings>
#include <QSystemTrayIcon>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::palette;
using testing::TestStore;

void sendMouse(QWidget* widget, QEvent::Type type, QPoint local, Qt::MouseButton button,
               Qt::MouseButtons buttons) {
    QMouseEvent event(type, QPointF(local), QPointF(widget->mapToGlobal(local)), button, buttons,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

void click(QWidget* widget) {
    const QPoint middle = widget->rect().center();
    sendMouse(widget, QEvent::MouseButtonPress, middle, Qt::LeftButton, Qt::LeftButton);
    sendMouse(widget, QEvent::MouseButtonRelease, middle, Qt::LeftButton, Qt::NoButton);
}

QMenu* rightClickForMenu(QWidget* widget) {
    const QPoint at(4, 4);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, widget->mapToGlobal(at));
    QCoreApplication::sendEvent(widget, &event);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

QStringList actionTexts(const QMenu& menu) {
    QStringList texts;
    for (const QAction* action : menu.actions())
        texts << (action->isSeparator() ? u"---"_s : action->text());
    return texts;
}

class BarWidgetsTest : public ::testing::Test {
protected:
    void SetUp() override { testing::ensureApplication(); }
    void TearDown() override {
        if (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_F(BarWidgetsTest, FillingAMenuReplacesItsEntriesAndKeepsAmpersands) {
    int triggered = 0;
    const QList<MenuEntry> entries{
        MenuEntry{MenuEntry::Kind::action,
                  u"Salt & Pepper"_s,
                  true,
                  true,
                  [&triggered] { ++triggered; },
                  {}},
        MenuEntry::separator(),
        MenuEntry{MenuEntry::Kind::submenu,
                  u"Palettes"_s,
                  false,
                  false,
                  {},
                  {MenuEntry{MenuEntry::Kind::action, u"Inner"_s, true, false, {}, {}}}},
    };
    QMenu menu;
    fillMenu(menu, entries);
    fillMenu(menu, entries);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    EXPECT_EQ(actionTexts(menu), (QStringList{u"Salt && Pepper"_s, u"---"_s, u"Palettes"_s}));
    EXPECT_EQ(menu.findChildren<QMenu*>(Qt::FindDirectChildrenOnly).size(), 1);
    QAction* first = menu.actions().first();
    EXPECT_TRUE(first->isCheckable());
    EXPECT_TRUE(first->isChecked());
    first->trigger();
    EXPECT_EQ(triggered, 1);
    QMenu* submenu = menu.actions().last()->menu();
    ASSERT_NE(submenu, nullptr);
    EXPECT_EQ(actionTexts(*submenu), QStringList{u"Inner"_s});
}

class FloatingWindowTest : public BarWidgetsTest {
protected:
    FloatingWindowTest()
        : small(palette(u"Small"_s, {{u"Blush"_s, u"#FFA69E"_s}, {u"Cream"_s, u"#FAF3DD"_s}})),
          large(palette(u"Large"_s, {{u"A"_s, u"#111111"_s},
                                     {u"B"_s, u"#222222"_s},
                                     {u"C"_s, u"#333333"_s},
                                     {u"D"_s, u"#444444"_s},
                                     {u"E"_s, u"#555555"_s}})),
          store({small, large}),
          settings(home.paths().configDir + u"/hueshelf.conf", QSettings::IniFormat) {}

    void SetUp() override {
        BarWidgetsTest::SetUp();
        model = std::make_unique<BarModel>(*store.store, platform, settings);
        window = std::make_unique<FloatingWindow>(*model);
        window->move(200, 100);
        window->show();
    }

    ColorTemplate small, large;
    TestStore store;
    testing::TempHome home;
    QSettings settings;
    FakePlatform platform;
    std::unique_ptr<BarModel> model;
    std::unique_ptr<FloatingWindow> window;
};

TEST_F(FloatingWindowTest, FloatsWithoutTakingTheFocus) {
    const Qt::WindowFlags flags = window->windowFlags();
    for (const Qt::WindowType flag : {Qt::Tool, Qt::FramelessWindowHint, Qt::WindowStaysOnTopHint,
                                      Qt::WindowDoesNotAcceptFocus})
        EXPECT_TRUE(flags.testFlag(flag)) << flag;
    EXPECT_TRUE(window->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_EQ(window->focusPolicy(), Qt::NoFocus);
}

TEST_F(FloatingWindowTest, ShowsTheActivePaletteAndLaysOutAgainWhenItChanges) {
    EXPECT_EQ(window->shownPaletteName(), u"Small"_s);
    ASSERT_EQ(window->swatchWidgets().size(), 2);
    EXPECT_EQ(window->swatchWidgets()[1]->toolTip(), u"Cream"_s);
    EXPECT_EQ(window->swatchWidgets()[1]->size(), QSize(28, 28));
    const int smallWidth = window->width();

    store.store->selectTemplate(large.id);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window->shownPaletteName(), u"Large"_s);
    EXPECT_EQ(window->swatchWidgets().size(), 5);
    EXPECT_EQ(window->findChildren<CompactColorSwatch*>().size(), 5);
    EXPECT_GT(window->width(), smallWidth + 3 * 28);

    store.store->selectTemplate(small.id);
    EXPECT_EQ(window->width(), smallWidth);
}

TEST_F(FloatingWindowTest, ALongPaletteNameIsCutAndReadableInItsTooltip) {
    const QString longName = u"An extraordinarily long palette name that would stretch the bar"_s;
    store.store->renameActiveTemplate(longName);
    EXPECT_NE(window->shownPaletteName(), longName);
    EXPECT_TRUE(window->shownPaletteName().endsWith(u'…'));
    EXPECT_LT(window->width(), window->fontMetrics().horizontalAdvance(longName) + 2 * 28);
}

TEST_F(FloatingWindowTest, AClickOnASwatchCopiesItsCode) {
    click(window->swatchWidgets()[0]);
    EXPECT_EQ(platform.clipboardHistory(), QStringList{u"#FFA69E"_s});
}

TEST_F(FloatingWindowTest, DraggingTheEmptyAreaMovesTheWindow) {
    const QPoint start = window->pos();
    const QPoint grip(3, window->height() / 2);
    sendMouse(window.get(), QEvent::MouseButtonPress, grip, Qt::LeftButton, Qt::LeftButton);
    sendMouse(window.get(), QEvent::MouseMove, grip + QPoint(40, 25), Qt::NoButton, Qt::LeftButton);
    sendMouse(window.get(), QEvent::MouseButtonRelease, grip + QPoint(40, 25), Qt::LeftButton,
              Qt::NoButton);
    EXPECT_EQ(window->pos(), start + QPoint(40, 25));

    // Once released, moving the pointer leaves the window where it is.
    sendMouse(window.get(), QEvent::MouseMove, grip + QPoint(90, 90), Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(window->pos(), start + QPoint(40, 25));
}

TEST_F(FloatingWindowTest, ARightClickOpensTheStatusMenuOnlyWhenTheBarCarriesIt) {
    EXPECT_EQ(rightClickForMenu(window.get()), nullptr);

    int builds = 0;
    window->setMenuProvider([&builds] {
        ++builds;
        return QList<MenuEntry>{
            MenuEntry{MenuEntry::Kind::action, u"Quit HueShelf"_s, false, false, {}, {}}};
    });
    QMenu* menu = rightClickForMenu(window.get());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(actionTexts(*menu), QStringList{u"Quit HueShelf"_s});
    menu->close();
    rightClickForMenu(window.get());
    EXPECT_EQ(builds, 2);
}

TEST_F(BarWidgetsTest, TheShellStartsWithTheFirstLaunchPalettesAndAReachableMenu) {
    if (QSystemTrayIcon::isSystemTrayAvailable())
        GTEST_SKIP() << "this desktop has a tray; the bar does not carry the menu";
    testing::TempHome home;
    auto platform = std::make_unique<FakePlatform>();
    FakePlatform* clipboard = platform.get();
    AppDelegate delegate(home.paths(), std::move(platform));
    delegate.start();

    EXPECT_FALSE(delegate.hasTrayIcon());
    EXPECT_TRUE(delegate.window().isVisible());
    EXPECT_EQ(delegate.window().shownPaletteName(), u"Starter"_s);
    ASSERT_EQ(delegate.window().swatchWidgets().size(), 3);

    click(delegate.window().swatchWidgets()[0]);
    EXPECT_EQ(clipboard->clipboardText(), u"#FFA69E"_s);

    QMenu* menu = rightClickForMenu(&delegate.window());
    ASSERT_NE(menu, nullptr);
    // Hiding would strand the bar with no tray to bring it back.
    EXPECT_EQ(actionTexts(*menu), (QStringList{u"Palettes"_s, u"---"_s, u"Quit HueShelf"_s}));
    QMenu* palettes = menu->actions().first()->menu();
    ASSERT_NE(palettes, nullptr);
    EXPECT_EQ(actionTexts(*palettes), (QStringList{u"Starter"_s, u"Example"_s}));
    palettes->actions().last()->trigger();
    menu->close();
    EXPECT_EQ(delegate.window().shownPaletteName(), u"Example"_s);
}

} // namespace
} // namespace hueshelf::app
