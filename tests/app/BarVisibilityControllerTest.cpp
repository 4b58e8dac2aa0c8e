#include "app/BarVisibilityController.h"

#include "AppTestSupport.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "app/ShortcutKeyFilter.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QStringList>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

const QRect kScreen(0, 0, 1920, 1080);
const QRect kIcon(1700, 2, 22, 22);

// A desktop played by hand: each effect leaves a word in the log, animations end when the test
// says so.
struct FakeBar {
    FakeBar() {
        BarVisibilityController::Effects effects;
        effects.isBarVisible = [this] { return visible; };
        effects.orderFront = [this] {
            visible = true;
            log << u"front"_s;
        };
        effects.orderOut = [this] {
            visible = false;
            log << u"out"_s;
        };
        effects.reduceMotion = [this] { return reduceMotion; };
        effects.trayIconGeometry = [this] { return icon; };
        effects.screenGeometries = [] { return QList<QRect>{kScreen}; };
        effects.takeSnapshot = [this] {
            log << u"snapshot"_s;
            return snapshot;
        };
        effects.animateGrow = [this](QRect at, std::function<void()> done) {
            log << u"grow"_s;
            animatedIcon = at;
            finishAnimation = std::move(done);
        };
        effects.animateShrink = [this](QRect at, std::function<void()> done) {
            log << u"shrink"_s;
            animatedIcon = at;
            finishAnimation = std::move(done);
        };
        effects.showHiddenToast = [this] { log << u"toast"_s; };
        effects.afterShow = [this] { log << u"decide"_s; };
        effects.setIconHighlighted = [this](bool on) {
            log << (on ? u"highlight"_s : u"unhighlight"_s);
        };
        controller = std::make_unique<BarVisibilityController>(std::move(effects), scheduler);
    }
    // Leaves the bar shrunk into the icon, the log cleared.
    void shrinkIntoIcon() {
        controller->hideToMenuBar();
        finishAnimation();
        scheduler.advance(1.0);
        log.clear();
    }

    bool visible = true;
    bool reduceMotion = false;
    std::optional<QRect> icon = kIcon;
    bool snapshot = true;
    QStringList log;
    std::optional<QRect> animatedIcon;
    std::function<void()> finishAnimation;
    testing::ManualClock clock;
    testing::ManualScheduler scheduler{clock};
    std::unique_ptr<BarVisibilityController> controller;
};

TEST(BarVisibilityControllerTest, HideShrinksIntoAVisibleIconAndHighlightsItBriefly) {
    FakeBar bar;
    bar.controller->hideToMenuBar();
    EXPECT_EQ(bar.log, (QStringList{u"snapshot"_s, u"out"_s, u"shrink"_s}));
    EXPECT_EQ(bar.animatedIcon, kIcon);
    EXPECT_TRUE(bar.controller->cameFromTheMenuBar());
    bar.log.clear();
    bar.finishAnimation();
    bar.scheduler.advance(0.17);
    EXPECT_EQ(bar.log, QStringList{u"highlight"_s});
    bar.scheduler.advance(0.01);
    EXPECT_EQ(bar.log, (QStringList{u"highlight"_s, u"unhighlight"_s}));
}

// Each hide that can't be seen going shows the toast, and the flag stays what it was, both ways.
TEST(BarVisibilityControllerTest, AHideThatCantBeSeenShowsTheToastAndKeepsTheFlag) {
    const struct {
        const char* name;
        void (*set)(FakeBar&);
    } cases[] = {
        {"reduced motion", [](FakeBar& b) { b.reduceMotion = true; }},
        {"no tray icon", [](FakeBar& b) { b.icon.reset(); }},
        {"tray doesn't tell", [](FakeBar& b) { b.icon = QRect(); }},
        {"no height", [](FakeBar& b) { b.icon = QRect(1700, 2, 22, 0); }},
        {"off every screen", [](FakeBar& b) { b.icon = QRect(5000, 5000, 22, 22); }},
        {"no snapshot", [](FakeBar& b) { b.snapshot = false; }},
    };
    for (const auto& c : cases) {
        for (const bool shrunkBefore : {false, true}) {
            FakeBar bar;
            if (shrunkBefore) {
                bar.shrinkIntoIcon();
                bar.visible = true;
            }
            c.set(bar);
            bar.controller->hideToMenuBar();
            EXPECT_EQ(bar.log.mid(bar.log.indexOf(u"out"_s)), (QStringList{u"out"_s, u"toast"_s}))
                << c.name;
            EXPECT_FALSE(bar.log.contains(u"shrink"_s)) << c.name;
            EXPECT_EQ(bar.controller->cameFromTheMenuBar(), shrunkBefore) << c.name;
            EXPECT_FALSE(bar.visible) << c.name;
        }
    }
}

TEST(BarVisibilityControllerTest, ShowGrowsOnlyOutOfTheIconItShrankInto) {
    const struct {
        const char* name;
        bool shrunk;
        bool plain;
        void (*set)(FakeBar&);
        QStringList log;
        bool flagAfter;
    } cases[] = {
        {"never shrank", false, false, nullptr, {u"front"_s, u"decide"_s}, false},
        {"plain asked", true, true, nullptr, {u"front"_s, u"decide"_s}, true},
        {"reduced motion",
         true,
         false,
         [](FakeBar& b) { b.reduceMotion = true; },
         {u"front"_s, u"decide"_s},
         true},
        {"tray gone",
         true,
         false,
         [](FakeBar& b) { b.icon.reset(); },
         {u"front"_s, u"decide"_s},
         true},
        {"tray doesn't tell",
         true,
         false,
         [](FakeBar& b) { b.icon = QRect(); },
         {u"front"_s, u"decide"_s},
         false},
        {"icon off screen",
         true,
         false,
         [](FakeBar& b) { b.icon = QRect(-90, -90, 22, 22); },
         {u"front"_s, u"decide"_s},
         false},
        {"no snapshot",
         true,
         false,
         [](FakeBar& b) { b.snapshot = false; },
         {u"front"_s, u"snapshot"_s, u"decide"_s},
         false},
        {"animated", true, false, nullptr, {u"front"_s, u"snapshot"_s, u"grow"_s}, false},
    };
    for (const auto& c : cases) {
        FakeBar bar;
        if (c.shrunk)
            bar.shrinkIntoIcon();
        else
            bar.controller->toggle();
        bar.log.clear();
        if (c.set)
            c.set(bar);
        bar.controller->showBar(c.plain);
        EXPECT_EQ(bar.log, c.log) << c.name;
        EXPECT_EQ(bar.controller->cameFromTheMenuBar(), c.flagAfter) << c.name;
        if (bar.log.contains(u"grow"_s)) {
            EXPECT_EQ(bar.animatedIcon, kIcon);
            bar.finishAnimation();
            EXPECT_EQ(bar.log.last(), u"decide"_s) << "the decision follows the animation";
        }
    }
}

TEST(BarVisibilityControllerTest, ShortcutTogglesPlainlyAndTheTrayGrowsBack) {
    FakeBar bar;
    bar.shrinkIntoIcon();
    bar.controller->toggle(); // shortcut: plain, the flag kept for the icon
    EXPECT_EQ(bar.log, (QStringList{u"front"_s, u"decide"_s}));
    EXPECT_TRUE(bar.controller->cameFromTheMenuBar());
    bar.controller->toggle();
    EXPECT_EQ(bar.log.last(), u"out"_s);
    EXPECT_FALSE(bar.log.contains(u"toast"_s));
    bar.log.clear();
    bar.controller->toggleFromMenuBar();
    EXPECT_EQ(bar.log, (QStringList{u"front"_s, u"snapshot"_s, u"grow"_s}));
    bar.controller->toggleFromMenuBar();
    EXPECT_EQ(bar.log.last(), u"out"_s);
    EXPECT_FALSE(bar.visible);
}

// Records the key presses that got through to it.
class KeyRecorder final : public QLineEdit {
public:
    QList<int> pressed;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        pressed.append(event->key());
        QLineEdit::keyPressEvent(event);
    }
};

TEST(ShortcutKeyFilterTest, TakesControlShiftBWithOtherModifiersAndNothingElse) {
    testing::ensureApplication();
    int toggles = 0;
    ShortcutKeyFilter filter([&toggles] { ++toggles; });
    qApp->installEventFilter(&filter);
    KeyRecorder field;
    const struct {
        Qt::KeyboardModifiers modifiers;
        int key;
        bool taken;
    } cases[] = {
        {Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_B, true},
        {Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier, Qt::Key_B, true},
        {Qt::ControlModifier | Qt::ShiftModifier | Qt::MetaModifier, Qt::Key_B, true},
        {Qt::ControlModifier, Qt::Key_B, false},
        {Qt::ShiftModifier, Qt::Key_B, false},
        {Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_N, false},
    };
    for (const auto& c : cases) {
        field.pressed.clear();
        const int before = toggles;
        QKeyEvent press(QEvent::KeyPress, c.key, c.modifiers);
        QCoreApplication::sendEvent(&field, &press);
        QKeyEvent release(QEvent::KeyRelease, c.key, c.modifiers);
        QCoreApplication::sendEvent(&field, &release);
        EXPECT_EQ(toggles - before, c.taken ? 1 : 0) << c.modifiers.toInt();
        EXPECT_EQ(field.pressed.isEmpty(), c.taken) << c.modifiers.toInt();
    }
    qApp->removeEventFilter(&filter);
}

} // namespace
} // namespace hueshelf::app
