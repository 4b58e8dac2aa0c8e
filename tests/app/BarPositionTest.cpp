#include "app/BarPosition.h"

#include "AppTestSupport.h"
#include "TempHome.h"
#include "app/AppSettingsKeys.h"
#include "app/BarModel.h"
#include "app/BarPositionStore.h"
#include "app/FloatingWindow.h"
#include "app/WindowDragView.h"
#include "platform/fake/FakePlatform.h"

#include <QFile>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QSettings>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using BarPosition::Screens;
using BarPosition::StoredPosition;

// A main screen with a 28-point panel at its top, and a second screen to its right.
const QRect kMain(0, 28, 1920, 1052);
const QRect kRight(1920, 0, 1280, 1024);
const QSize kBar(600, 44);

struct LaunchCase {
    const char* name;
    Screens screens;
    StoredPosition stored;
    QPoint expected;
};

TEST(BarPositionTest, LaunchPlacesAndClampsTheStoredOrigin) {
    const Screens both{kMain, {kMain, kRight}};
    const Screens mainOnly{kMain, {kMain}};
    const LaunchCase cases[] = {
        {"bottom edge 150 below the top", mainOnly, {}, {660, 28 + 150 - 44}},
        {"right edge keeps a 60-point grip", mainOnly, {1919.0, 300.0}, {1860, 300}},
        {"unplugged display: main screen, clamped", mainOnly, {3000.0, 200.0}, {1860, 200}},
        {"second screen kept as it is", both, {2500.0, 400.0}, {2500, 400}},
        {"x alone keeps the default y", mainOnly, {100.0, std::nullopt}, {100, 134}},
        {"y alone keeps the default x", mainOnly, {std::nullopt, 500.0}, {660, 500}},
        {"off the left edge", mainOnly, {-200.0, 300.0}, {0, 300}},
        // The bottom edge (top-left y + 44) stays 60 below the top and 60 above the bottom.
        {"above the top", mainOnly, {500.0, -500.0}, {500, 28 + 60 - 44}},
        {"at the bottom", mainOnly, {500.0, 1070.0}, {500, 1080 - 60 - 44}},
        {"fractions rounded", mainOnly, {100.4, 300.6}, {100, 301}},
        {"no screen at all: 1920 by 1080", {std::nullopt, {}}, {}, {660, 106}},
    };
    for (const LaunchCase& c : cases)
        EXPECT_EQ(BarPosition::launchOrigin(c.screens, kBar, c.stored), c.expected) << c.name;
}

TEST(BarPositionTest, DragKeepsTheWindowBelowTheTopAndAGripOnScreen) {
    const struct {
        QPoint origin;
        QPoint expected;
    } cases[] = {
        {{500, 500}, {500, 500}},   {{-50, 500}, {0, 500}},      {{1900, 500}, {1860, 500}},
        {{1860, 500}, {1860, 500}}, {{500, 0}, {500, 28}},       {{500, 976}, {500, 976}},
        {{500, 977}, {500, 976}},   {{5000, 5000}, {1860, 976}}, {{-5000, -5000}, {0, 28}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(BarPosition::clampForDrag(c.origin, kMain, kBar.height()), c.expected)
            << c.origin.x();

    // The pointer's travel moves the window; the window's own screen wins over the main one.
    EXPECT_EQ(BarPosition::draggedOrigin({100, 100}, {110, 120}, {60, 50}, kMain, 44),
              QPoint(50, 30));
    EXPECT_EQ(BarPosition::draggedOrigin({2000, 100}, {0, 0}, {-500, 0}, kRight, 44),
              QPoint(1920, 100));
    EXPECT_EQ(BarPosition::frameForDrag(kRight, kMain), kRight);
    EXPECT_EQ(BarPosition::frameForDrag(std::nullopt, kMain), kMain);
    EXPECT_EQ(BarPosition::frameForDrag(std::nullopt, std::nullopt), QRect(0, 0, 1920, 1080));
    EXPECT_EQ(BarPosition::resetOrigin(kMain, kBar), QPoint(660, 134));
    EXPECT_EQ(BarPosition::resetOrigin(std::nullopt, kBar), QPoint(660, 106));
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

TEST_F(BarPositionStoreTest, ReadsWhatItCanAndTreatsTheRestAsAbsent) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* name;
        QVariant value;
        StoredPosition expected;
    } cases[] = {
        {"both", QVariantMap{{u"x"_s, 12.5}, {u"y"_s, -40.0}}, {12.5, -40.0}},
        {"integers", QVariantMap{{u"x"_s, 12}, {u"y"_s, 7}}, {12.0, 7.0}},
        {"x only", QVariantMap{{u"x"_s, 12.5}}, {12.5, std::nullopt}},
        {"y a text", QVariantMap{{u"x"_s, 3.0}, {u"y"_s, u"40"_s}}, {3.0, std::nullopt}},
        {"not finite", QVariantMap{{u"x"_s, nan}, {u"y"_s, 9.0}}, {std::nullopt, 9.0}},
        {"a list", QVariantList{1.0, 2.0}, {}},
        {"a text", u"100,200"_s, {}},
    };
    for (const auto& c : cases) {
        {
            QSettings settings(file(), QSettings::IniFormat);
            settings.setValue(AppSettingsKeys::barPosition, c.value);
        }
        EXPECT_EQ(reread(), c.expected) << c.name;
    }
}

TEST_F(BarPositionStoreTest, AHandWrittenFileIsReadWithoutHarm) {
    QFile raw(file());
    ASSERT_TRUE(raw.open(QIODevice::WriteOnly));
    raw.write("[General]\nHueShelfPosition=@Variant(garbage)\nother=1\n");
    raw.close();
    EXPECT_EQ(reread(), StoredPosition());
}

TEST_F(BarPositionStoreTest, SavesRemovesAndNeverWritesInAnIsolatedRun) {
    QSettings settings(file(), QSettings::IniFormat);
    BarPositionStore store(settings, false);
    store.save({-30, 200});
    settings.sync();
    EXPECT_EQ(reread(), (StoredPosition{-30.0, 200.0}));
    store.remove();
    settings.sync();
    EXPECT_EQ(reread(), StoredPosition());

    BarPositionStore isolated(settings, true);
    isolated.save({10, 10});
    settings.sync();
    EXPECT_FALSE(settings.contains(AppSettingsKeys::barPosition));
}

QPoint globalOf(QWidget* widget, QPoint local) {
    return widget->mapToGlobal(local);
}

void sendMouse(QWidget* widget, QEvent::Type type, QPoint global, Qt::MouseButtons buttons) {
    const QPointF local = widget->mapFromGlobal(QPointF(global));
    QMouseEvent event(type, local, QPointF(global), Qt::LeftButton, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

// The real bar on the offscreen screen: launched with an unplugged display's origin, it sits on
// the main screen without the key changing; only the grip drags, clamped; the end of a drag and
// the reset's move are remembered, and in an isolated run nothing is.
class BarWindowTest : public BarPositionStoreTest {
protected:
    void SetUp() override { testing::ensureApplication(); }
    QRect available() const { return QGuiApplication::primaryScreen()->availableGeometry(); }
    Screens screens() const { return {available(), {available()}}; }
    void settle() { QCoreApplication::processEvents(); }

    testing::TestStore store{{testing::palette(u"One"_s, {{u"Ink"_s, u"#101010"_s}})}};
    FakePlatform platform;
    QSettings settings{file(), QSettings::IniFormat};
    BarModel model{*store.store, platform, settings};
};

TEST_F(BarWindowTest, LaunchesOnTheMainScreenAndDragsOnlyByTheGrip) {
    BarPositionStore positions(settings, false);
    positions.save({5000, 5000});
    FloatingWindow window(model);
    window.adjustSize();
    window.move(BarPosition::launchOrigin(screens(), window.size(), positions.load()));
    window.setPositionStore(&positions);
    window.show();
    settle();
    const QRect frame = available();
    const QPoint launched(frame.x() + frame.width() - 60,
                          frame.y() + frame.height() - 60 - window.height());
    EXPECT_EQ(window.pos(), launched);
    EXPECT_EQ(positions.load(), (StoredPosition{5000.0, 5000.0})); // until the next move

    // The chrome beside the swatches no longer moves the bar.
    const QPoint chrome = globalOf(&window, {window.width() - 3, window.height() / 2});
    sendMouse(&window, QEvent::MouseButtonPress, chrome, Qt::LeftButton);
    sendMouse(&window, QEvent::MouseMove, chrome + QPoint(-200, -200), Qt::LeftButton);
    sendMouse(&window, QEvent::MouseButtonRelease, chrome + QPoint(-200, -200), Qt::NoButton);
    EXPECT_EQ(window.pos(), launched);

    WindowDragView* grip = window.dragView();
    ASSERT_NE(grip, nullptr);
    EXPECT_LT(grip->x(), 20); // at the bar's left end
    QEnterEvent enter(QPointF(3, 3), QPointF(3, 3), QPointF(globalOf(grip, {3, 3})));
    QCoreApplication::sendEvent(grip, &enter);
    EXPECT_EQ(grip->cursor().shape(), Qt::OpenHandCursor);
    const QPoint start = globalOf(grip, grip->rect().center());
    sendMouse(grip, QEvent::MouseButtonPress, start, Qt::LeftButton);
    EXPECT_EQ(grip->cursor().shape(), Qt::ClosedHandCursor);
    sendMouse(grip, QEvent::MouseMove, start + QPoint(-300, -200), Qt::LeftButton);
    EXPECT_EQ(window.pos(), launched + QPoint(-300, -200));
    // Far up and left: held at the frame's left edge and below its top.
    sendMouse(grip, QEvent::MouseMove, start + QPoint(-9000, -9000), Qt::LeftButton);
    EXPECT_EQ(window.pos(), frame.topLeft());
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(grip, &leave); // no effect while dragging
    EXPECT_EQ(grip->cursor().shape(), Qt::ClosedHandCursor);
    sendMouse(grip, QEvent::MouseButtonRelease, start + QPoint(-9000, -9000), Qt::NoButton);
    EXPECT_EQ(grip->cursor().shape(), Qt::ArrowCursor); // released outside the grip
    EXPECT_EQ(positions.load(), (StoredPosition{double(frame.x()), double(frame.y())}));

    // Reset: the key goes, and the move the reset causes brings it back with the new origin.
    positions.remove();
    const QPoint middle = BarPosition::resetOrigin(frame, window.size());
    window.move(middle);
    EXPECT_EQ(positions.load(), StoredPosition()); // stored on the next turn of the loop
    settle();
    EXPECT_EQ(positions.load(), (StoredPosition{double(middle.x()), double(middle.y())}));
}

TEST_F(BarWindowTest, AnIsolatedRunRemembersNothing) {
    BarPositionStore positions(settings, true);
    FloatingWindow window(model);
    window.setPositionStore(&positions);
    window.show();
    settle();
    WindowDragView* grip = window.dragView();
    const QPoint start = globalOf(grip, grip->rect().center());
    sendMouse(grip, QEvent::MouseButtonPress, start, Qt::LeftButton);
    sendMouse(grip, QEvent::MouseMove, start + QPoint(30, 30), Qt::LeftButton);
    sendMouse(grip, QEvent::MouseButtonRelease, start + QPoint(30, 30), Qt::NoButton);
    window.move(window.pos() + QPoint(5, 5));
    settle();
    settings.sync();
    EXPECT_FALSE(settings.contains(AppSettingsKeys::barPosition));
}

} // namespace
} // namespace hueshelf::app
