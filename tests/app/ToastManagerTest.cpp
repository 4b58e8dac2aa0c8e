#include "app/ToastManager.h"

#include "AppTestSupport.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "app/ToastWindow.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <vector>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

using testing::ManualClock;
using testing::ManualScheduler;

struct ToastFixture : ::testing::Test {
    ManualClock clock;
    ManualScheduler scheduler{clock};
    ToastManager::BarState bar{QRect(100, 50, 400, 40), true};
    ToastManager manager{scheduler, [this] { return bar; }};

    QString shownMessage() const {
        return manager.current() ? manager.current()->message : QString();
    }
};

// What is shown at each moment, from the first call on; an empty text means no toast.
struct Moment {
    double at;
    const char* message;
};

void expectTimeline(ManualScheduler& scheduler, const ToastManager& manager,
                    const std::vector<Moment>& moments) {
    double elapsed = 0.0;
    for (const Moment& moment : moments) {
        scheduler.advance(moment.at - elapsed);
        elapsed = moment.at;
        const QString shown = manager.current() ? manager.current()->message : QString();
        EXPECT_EQ(shown, QString::fromUtf8(moment.message)) << "at " << moment.at << " s";
    }
}

TEST_F(ToastFixture, SecondToastReplacesFirstAndOutlivesItsTimer) {
    manager.show(u"Link copied"_s, u"link"_s, QRect(10, 10, 20, 20), ToastManager::kNoticeDuration);
    const QUuid first = manager.current()->id;
    scheduler.advance(1.0);
    manager.show(u"Copied #FF0000"_s, u"doc.on.doc"_s, QRect(40, 10, 20, 20),
                 ToastManager::kCopiedDuration);
    EXPECT_NE(manager.current()->id, first);
    EXPECT_EQ(manager.current()->sourceRect, QRect(40, 10, 20, 20));
    // Times from the second toast: the first one's end (1.0 s on) passes, and the second
    // runs its own 1.2 s.
    expectTimeline(scheduler, manager,
                   {{1.05, "Copied #FF0000"}, {1.19, "Copied #FF0000"}, {1.2, ""}});
    EXPECT_EQ(scheduler.pendingCount(), 0);
}

TEST_F(ToastFixture, AnnouncementWaitsThenStaysItsDuration) {
    manager.announce(u"Palette deleted"_s, u"trash"_s);
    expectTimeline(scheduler, manager,
                   {{0.0, ""},
                    {0.249, ""},
                    {0.25, "Palette deleted"},
                    {1.749, "Palette deleted"},
                    {1.75, ""}});
}

TEST_F(ToastFixture, AnnouncementsInQuickSuccessionEachReplaceTheLast) {
    manager.announce(u"First"_s, {});
    scheduler.advance(0.1);
    manager.announce(u"Second"_s, {});
    // Second appears at 0.35 s and ends 1.5 s later; the first's end at 1.75 s must not cut it.
    expectTimeline(scheduler, manager,
                   {{0.15, "First"}, {0.25, "Second"}, {1.74, "Second"}, {1.75, ""}});
}

TEST_F(ToastFixture, EmptyAnnouncementShowsNothing) {
    int changes = 0;
    QObject::connect(&manager, &ToastManager::currentChanged, [&] { ++changes; });
    manager.announce(QString(), u"lock.fill"_s);
    EXPECT_EQ(scheduler.pendingCount(), 0);
    scheduler.advance(2.0);
    EXPECT_FALSE(manager.current());
    EXPECT_EQ(changes, 0);
}

TEST_F(ToastFixture, WithoutSourcePointsAtMiddleOfBar) {
    manager.show(u"Palette saved"_s, {}, std::nullopt, ToastManager::kPaletteSavedDuration);
    ASSERT_TRUE(manager.current());
    // Bar from x 100 to 500, y 50 to 90: centre (300, 70), a 28-point square around it.
    EXPECT_EQ(manager.current()->sourceRect, QRect(286, 56, 28, 28));
    EXPECT_FALSE(manager.current()->sourceFrame);
}

TEST_F(ToastFixture, WithoutVisibleBarNoToastAppearsAndTheOldOneGoes) {
    manager.show(u"Copied"_s, {}, std::nullopt, ToastManager::kCopiedDuration);
    ASSERT_TRUE(manager.current());
    bar.isVisible = false;
    manager.announce(u"Palette deleted"_s, {});
    scheduler.advance(ToastManager::kAnnounceDelay);
    EXPECT_FALSE(manager.current());
    EXPECT_EQ(scheduler.pendingCount(), 0);
}

TEST_F(ToastFixture, AnchoredToastKeepsItsAnchor) {
    const QRect anchor(320, 60, 28, 28);
    manager.showAnchored(anchor, u"Copied #00FF00"_s, u"checkmark"_s,
                         ToastManager::kCopiedDuration);
    ASSERT_TRUE(manager.current());
    EXPECT_EQ(manager.current()->sourceRect, anchor);
    EXPECT_EQ(manager.current()->sourceFrame, anchor);
    EXPECT_EQ(manager.current()->icon, u"checkmark"_s);
    EXPECT_DOUBLE_EQ(manager.current()->duration, ToastManager::kCopiedDuration);
}

TEST_F(ToastFixture, DismissClearsAndStopsTheTimer) {
    int changes = 0;
    QObject::connect(&manager, &ToastManager::currentChanged, [&] { ++changes; });
    manager.show(u"Copied"_s, {}, std::nullopt, ToastManager::kCopiedDuration);
    manager.show(u"Copied again"_s, {}, std::nullopt, ToastManager::kCopiedDuration);
    EXPECT_EQ(changes, 2); // one change per toast, none for the replaced one's removal
    manager.dismiss();
    manager.dismiss();
    EXPECT_EQ(changes, 3);
    EXPECT_FALSE(manager.current());
    EXPECT_EQ(scheduler.pendingCount(), 0);
}

TEST(ToastPlacement, CentredAboveAndKeptOnScreen) {
    const QRect screen(0, 0, 1000, 800);
    const QSize size(120, 30);
    struct Case {
        const char* name;
        QRect source;
        std::optional<QRect> screen;
        QPoint expected;
    };
    const Case cases[] = {
        {"centred above", QRect(400, 300, 28, 28), screen, QPoint(354, 264)},
        {"held off the left edge", QRect(0, 300, 28, 28), screen, QPoint(4, 264)},
        {"held off the right edge", QRect(980, 300, 20, 28), screen, QPoint(876, 264)},
        {"no room above: under the source", QRect(400, 20, 28, 28), screen, QPoint(354, 54)},
        {"no screen: as computed", QRect(980, 20, 20, 28), std::nullopt, QPoint(930, -16)},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ToastWindow::placement(c.source, size, c.screen), c.expected) << c.name;
}

TEST_F(ToastFixture, WindowShowsAboveItsSourceAndGoesAfterTheDuration) {
    testing::ensureApplication();
    ToastWindow window(manager);
    EXPECT_FALSE(window.isVisible());
    const QScreen* screen = QGuiApplication::primaryScreen();
    ASSERT_NE(screen, nullptr);
    const QRect area = screen->availableGeometry();
    const QRect source(area.center().x() - 14, area.center().y(), 28, 28);

    manager.show(u"Copied #3B8077"_s, u"doc.on.doc"_s, source, ToastManager::kCopiedDuration);
    ASSERT_TRUE(window.isVisible());
    EXPECT_EQ(window.text(), u"Copied #3B8077"_s);
    EXPECT_EQ(window.iconName(), u"doc.on.doc"_s);
    const QRect frame = window.geometry();
    EXPECT_LE(frame.bottom(), source.top() - ToastWindow::kGap);
    EXPECT_LE(std::abs(frame.center().x() - source.center().x()), 1);
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));

    scheduler.advance(1.19);
    EXPECT_TRUE(window.isVisible());
    scheduler.advance(0.01);
    EXPECT_FALSE(window.isVisible());
}

} // namespace
} // namespace hueshelf::app
