#include "AppTestSupport.h"
#include "BarTestSupport.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TempHome.h"
#include "app/AppSettingsKeys.h"
#include "app/BarModel.h"
#include "app/BarPosition.h"
#include "app/BarPositionStore.h"
#include "app/BarVisibilityController.h"
#include "app/FloatingWindow.h"
#include "app/HiddenToastWindow.h"
#include "app/ShortcutKeyFilter.h"
#include "app/WindowDragView.h"
#include "platform/fake/FakePlatform.h"

#include <QFile>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QSettings>
#include <QStringList>

#include <gtest/gtest.h>

#include <limits>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using BarPosition::Screens;
using BarPosition::StoredPosition;

const QRect kIcon(1700, 2, 22, 22);

// A desktop played by hand: each effect leaves a word in the log; an animation ends at once.
struct FakeBar {
    explicit FakeBar(bool canHighlight = true) {
        BarVisibilityController::Effects effects;
        const auto note = [this](const QString& word) {
            return [this, word] {
                visible = word == u"front"_s || (visible && word != u"out"_s);
                log << word;
            };
        };
        effects.isBarVisible = [this] { return visible; };
        effects.orderFront = note(u"front"_s);
        effects.orderOut = note(u"out"_s);
        effects.reduceMotion = [this] { return reduceMotion; };
        effects.trayIconGeometry = [this] { return icon; };
        effects.screenGeometries = [] { return QList<QRect>{QRect(0, 0, 1920, 1080)}; };
        effects.takeSnapshot = [this] {
            log << u"snapshot"_s;
            return snapshot;
        };
        const auto animate = [this](const QString& word) {
            return [this, word](QRect at, const std::function<void()>& done) {
                log << word;
                EXPECT_EQ(at, kIcon);
                done();
            };
        };
        effects.animateGrow = animate(u"grow"_s);
        effects.animateShrink = animate(u"shrink"_s);
        effects.showHiddenToast = note(u"toast"_s);
        effects.afterShow = note(u"decide"_s);
        if (canHighlight) {
            effects.setIconHighlighted = [note](bool on) {
                note(on ? u"highlight"_s : u"unhighlight"_s)();
            };
        }
        controller = std::make_unique<BarVisibilityController>(std::move(effects), scheduler);
    }

    bool visible = true;
    bool reduceMotion = false;
    std::optional<QRect> icon = kIcon;
    bool snapshot = true;
    QStringList log;
    testing::ManualClock clock;
    testing::ManualScheduler scheduler{clock};
    std::unique_ptr<BarVisibilityController> controller;
};

enum class From { visible, shownAfterShrinking, hidden, shrunk };
enum class Op { hide, show, showPlain, toggle, toggleFromMenuBar };

// Every branch of showing and hiding: what the desktop is asked for, and whether the bar still
// remembers that it went into the tray icon (so that a later show grows out of it).
TEST(BarVisibilityControllerTest, ShowsAndHidesByEveryBranch) {
    using enum From;
    using enum Op;
    const auto setReduce = [](FakeBar& b) { b.reduceMotion = true; };
    const auto noIcon = [](FakeBar& b) { b.icon.reset(); };
    const auto unknownIcon = [](FakeBar& b) { b.icon = QRect(); };
    const auto offScreen = [](FakeBar& b) { b.icon = QRect(-90, -90, 22, 22); };
    // On screen, but of no area: the tray placed nothing there to grow from or shrink into.
    const auto flatIcon = [](FakeBar& b) { b.icon = QRect(1700, 2, 22, 0); };
    const auto thinIcon = [](FakeBar& b) { b.icon = QRect(1700, 2, 0, 22); };
    const auto noSnapshot = [](FakeBar& b) { b.snapshot = false; };
    const struct {
        const char* name;
        From from;
        Op op;
        void (*set)(FakeBar&);
        QString log; // as it is 0.17 s after the call
        bool flag;
    } cases[] = {
        {"hide shrinks", visible, hide, nullptr, u"snapshot out shrink highlight"_s, true},
        {"hide, reduced motion", shownAfterShrinking, hide, setReduce, u"out toast"_s, true},
        {"hide, no tray", visible, hide, noIcon, u"out toast"_s, false},
        {"hide, icon of no height", visible, hide, flatIcon, u"out toast"_s, false},
        {"hide, icon off screen", visible, hide, offScreen, u"out toast"_s, false},
        {"hide, no snapshot", shownAfterShrinking, hide, noSnapshot, u"snapshot out toast"_s, true},
        {"show, never shrank", hidden, show, nullptr, u"front decide"_s, false},
        {"show plainly", shrunk, showPlain, nullptr, u"front decide"_s, true},
        {"show, reduced motion keeps the flag", shrunk, show, setReduce, u"front decide"_s, true},
        {"show, tray doesn't tell", shrunk, show, unknownIcon, u"front decide"_s, false},
        {"show, icon of no width", shrunk, show, thinIcon, u"front decide"_s, false},
        {"show, no snapshot", shrunk, show, noSnapshot, u"front snapshot decide"_s, false},
        {"shortcut shows plainly", shrunk, toggle, nullptr, u"front decide"_s, true},
        {"shortcut hides without a toast", shownAfterShrinking, toggle, nullptr, u"out"_s, true},
        {"tray shows by growing", shrunk, toggleFromMenuBar, nullptr,
         u"front snapshot grow decide"_s, false},
        {"tray hides", visible, toggleFromMenuBar, nullptr, u"out"_s, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FakeBar bar;
        if (c.from == shrunk || c.from == shownAfterShrinking)
            bar.controller->hideToMenuBar();
        if (c.from == shownAfterShrinking)
            bar.visible = true;
        if (c.from == hidden)
            bar.controller->toggle(); // a hide that never sets the flag
        bar.scheduler.advance(1.0);
        bar.log.clear();
        if (c.set)
            c.set(bar);
        switch (c.op) {
        case hide:
            bar.controller->hideToMenuBar();
            break;
        case show:
            bar.controller->showBar(false);
            break;
        case showPlain:
            bar.controller->showBar(true);
            break;
        case toggle:
            bar.controller->toggle();
            break;
        case toggleFromMenuBar:
            bar.controller->toggleFromMenuBar();
            break;
        }
        bar.scheduler.advance(0.17);
        EXPECT_EQ(bar.log.join(u' ').toStdString(), c.log.toStdString());
        EXPECT_EQ(bar.controller->cameFromTheMenuBar(), c.flag);
        EXPECT_EQ(bar.visible, c.log.contains(u"front"_s));
        bar.scheduler.advance(0.01);
        EXPECT_EQ(bar.log.endsWith(u"unhighlight"_s), c.log.endsWith(u"highlight"_s));
    }
}

// A tray that can't highlight its icon leaves that effect empty: the shrink still runs to its
// end, and so does the moment after it.
TEST(BarVisibilityControllerTest, ShrinksIntoAnIconThatCantBeHighlighted) {
    FakeBar bar(false);
    EXPECT_NO_THROW({
        bar.controller->hideToMenuBar();
        bar.scheduler.advance(1.0);
    });
    EXPECT_EQ(bar.log.join(u' ').toStdString(), "snapshot out shrink");
    EXPECT_TRUE(bar.controller->cameFromTheMenuBar());
}

// The hidden toast stands its fade in and 2.6 s, by the scheduler's clock, before it leaves.
TEST(HiddenToastWindowTest, StaysItsTimeThenLeaves) {
    testing::ensureApplication();
    testing::ManualClock clock;
    testing::ManualScheduler scheduler(clock);
    auto* toast = new HiddenToastWindow(scheduler);
    toast->present();
    EXPECT_TRUE(toast->isVisible());
    scheduler.advance(2.79); // a 0.2 s fade in, then 2.6 s
    EXPECT_FALSE(toast->isLeaving());
    scheduler.advance(0.01);
    EXPECT_TRUE(toast->isLeaving());
    delete toast;
    scheduler.advance(10.0); // a toast gone early leaves nothing behind to fire
}

// Control-Shift-B with any further modifier is taken, press only; anything else goes through.
TEST(ShortcutKeyFilterTest, TakesControlShiftBWithOtherModifiersAndNothingElse) {
    testing::ensureApplication();
    int toggles = 0;
    ShortcutKeyFilter filter([&toggles] { ++toggles; });
    QObject target; // handles no key itself: delivery reports only what the filter took
    target.installEventFilter(&filter);
    const struct {
        Qt::KeyboardModifiers modifiers;
        int key;
        bool taken;
    } cases[] = {
        {Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier, Qt::Key_B, true},
        {Qt::ControlModifier, Qt::Key_B, false},
        {Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_N, false},
    };
    for (const auto& c : cases) {
        const int before = toggles;
        QKeyEvent press(QEvent::KeyPress, c.key, c.modifiers);
        QKeyEvent release(QEvent::KeyRelease, c.key, c.modifiers);
        EXPECT_EQ(QCoreApplication::sendEvent(&target, &press), c.taken) << c.modifiers.toInt();
        EXPECT_FALSE(QCoreApplication::sendEvent(&target, &release));
        EXPECT_EQ(toggles - before, c.taken ? 1 : 0) << c.modifiers.toInt();
    }
}

// A main screen with a 28-point panel at its top, and a second screen to its right.
const QRect kMain(0, 28, 1920, 1052);
const QRect kRight(1920, 0, 1280, 1024);
const QSize kBar(600, 44);

// At launch the bar's bottom edge stays 60 below the top and 60 above the bottom; dragged, its
// top stays below the top. Either way 60 points stay on screen at the right. Each limit is
// tried exactly on it and one beyond.
TEST(BarPositionTest, LaunchAndDragClampOnBothSides) {
    const struct {
        bool drag;
        QPoint origin;
        QPoint expected;
    } limits[] = {
        {false, {1860, 300}, {1860, 300}}, {false, {1861, 300}, {1860, 300}},
        {false, {0, 300}, {0, 300}},       {false, {-1, 300}, {0, 300}},
        {false, {500, 44}, {500, 44}},     {false, {500, 43}, {500, 44}},
        {false, {500, 976}, {500, 976}},   {false, {500, 977}, {500, 976}},
        {true, {1860, 500}, {1860, 500}},  {true, {1861, 500}, {1860, 500}},
        {true, {0, 500}, {0, 500}},        {true, {-1, 500}, {0, 500}},
        {true, {500, 28}, {500, 28}},      {true, {500, 27}, {500, 28}},
        {true, {500, 976}, {500, 976}},    {true, {500, 977}, {500, 976}},
    };
    const Screens mainOnly{kMain, {kMain}};
    for (const auto& c : limits) {
        const StoredPosition stored{double(c.origin.x()), double(c.origin.y())};
        EXPECT_EQ(c.drag ? BarPosition::clampForDrag(c.origin, kMain, kBar.height())
                         : BarPosition::launchOrigin(mainOnly, kBar, stored),
                  c.expected)
            << (c.drag ? "drag " : "launch ") << c.origin.x() << "," << c.origin.y();
    }
    const struct {
        const char* name;
        Screens screens;
        StoredPosition stored;
        QPoint expected;
    } launches[] = {
        {"default: bottom edge 150 below the top", mainOnly, {}, {660, 28 + 150 - 44}},
        {"x alone keeps the default y", mainOnly, {100.0, std::nullopt}, {100, 134}},
        {"unplugged display: main screen, clamped", mainOnly, {3000.0, 200.0}, {1860, 200}},
        {"second screen kept as it is", {kMain, {kMain, kRight}}, {2500.0, 400.0}, {2500, 400}},
        {"fractions rounded", mainOnly, {100.4, 300.6}, {100, 301}},
        {"no screen at all: 1920 by 1080", {std::nullopt, {}}, {}, {660, 106}},
    };
    for (const auto& c : launches)
        EXPECT_EQ(BarPosition::launchOrigin(c.screens, kBar, c.stored), c.expected) << c.name;
    // The pointer's travel moves the window, within the window's own screen.
    EXPECT_EQ(BarPosition::draggedOrigin({2000, 100}, {0, 0}, {-500, 0}, kRight, 44),
              QPoint(1920, 100));
}

class BarPositionStoreTest : public ::testing::Test {
protected:
    QString file() const { return home.path() + u"/hueshelf.conf"_s; }
    // What a fresh reader of the file sees, as at the next launch.
    StoredPosition reread() const {
        QSettings settings(file(), QSettings::IniFormat);
        return BarPositionStore(settings, false).load();
    }

    testing::TempHome home;
};

// Numbers only; what another writer or a hand left there reads as absent, field by field.
TEST_F(BarPositionStoreTest, ReadsWhatItCanAndTreatsTheRestAsAbsent) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* name;
        QVariant value;
        StoredPosition expected;
    } cases[] = {
        {"integers", QVariantMap{{u"x"_s, 12}, {u"y"_s, 7}}, {12.0, 7.0}},
        {"y a text", QVariantMap{{u"x"_s, 3.0}, {u"y"_s, u"40"_s}}, {3.0, std::nullopt}},
        {"not finite", QVariantMap{{u"x"_s, nan}, {u"y"_s, 9.0}}, {std::nullopt, 9.0}},
    };
    for (const auto& c : cases) {
        {
            QSettings settings(file(), QSettings::IniFormat);
            settings.setValue(AppSettingsKeys::barPosition, c.value);
        }
        EXPECT_EQ(reread(), c.expected) << c.name;
    }
    QFile raw(file());
    ASSERT_TRUE(raw.open(QIODevice::WriteOnly));
    raw.write("[General]\nHueShelfPosition=@Variant(garbage)\n");
    raw.close();
    EXPECT_EQ(reread(), StoredPosition());
}

// The real bar on the offscreen screen: launched with an unplugged display's origin it sits on
// the main screen without the key changing; only the grip drags, clamped; the end of a drag and
// the reset's move are remembered, and an isolated run writes nothing.
TEST_F(BarPositionStoreTest, TheBarLaunchesDragsAndRemembers) {
    testing::ensureApplication();
    testing::BarHarness bar{{testing::palette(u"One"_s, {{u"Ink"_s, u"#101010"_s}})}};
    BarModel& model = *bar.model;
    QSettings settings{file(), QSettings::IniFormat};
    BarPositionStore positions(settings, false);
    positions.save({5000, 5000});
    const QRect frame = QGuiApplication::primaryScreen()->availableGeometry();
    FloatingWindow window(model);
    window.adjustSize();
    window.move(BarPosition::launchOrigin({frame, {frame}}, window.size(), positions.load()));
    window.setPositionStore(&positions);
    window.show();
    QCoreApplication::processEvents();
    const QPoint launched(frame.right() + 1 - 60, frame.bottom() + 1 - 60 - window.height());
    EXPECT_EQ(window.pos(), launched);
    EXPECT_EQ(positions.load(), (StoredPosition{5000.0, 5000.0})); // until the next move

    // Only the grip drags, and only within the frame.
    WindowDragView* grip = window.dragView();
    ASSERT_NE(grip, nullptr);
    const QPoint start = grip->mapToGlobal(grip->rect().center());
    testing::mouseAt(grip, QEvent::MouseButtonPress, start, Qt::LeftButton);
    testing::mouseAt(grip, QEvent::MouseMove, start - QPoint(300, 200), Qt::LeftButton);
    EXPECT_EQ(window.pos(), launched - QPoint(300, 200));
    testing::mouseAt(grip, QEvent::MouseMove, start - QPoint(9000, 9000), Qt::LeftButton);
    EXPECT_EQ(window.pos(), frame.topLeft());
    testing::mouseAt(grip, QEvent::MouseButtonRelease, start - QPoint(9000, 9000), Qt::NoButton);
    EXPECT_EQ(grip->cursor().shape(), Qt::ArrowCursor); // released outside the grip
    EXPECT_EQ(positions.load(), (StoredPosition{double(frame.x()), double(frame.y())}));

    // Reset: the key goes, and the move the reset causes brings it back on the next turn.
    positions.remove();
    const QPoint middle = BarPosition::resetOrigin(frame, window.size());
    window.move(middle);
    EXPECT_EQ(positions.load(), StoredPosition());
    QCoreApplication::processEvents();
    EXPECT_EQ(positions.load(), (StoredPosition{double(middle.x()), double(middle.y())}));

    BarPositionStore isolated(settings, true);
    positions.remove();
    isolated.save({10, 10});
    settings.sync();
    EXPECT_FALSE(settings.contains(AppSettingsKeys::barPosition));
}

} // namespace
} // namespace hueshelf::app
