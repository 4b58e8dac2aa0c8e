#include "AppTestSupport.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "app/BarTooltip.h"
#include "app/BarTooltipController.h"
#include "app/BarTooltipPlacement.h"
#include "app/ToastManager.h"
#include "app/ToastWindow.h"
#include "app/TooltipWindow.h"

#include <QEnterEvent>
#include <QMouseEvent>
#include <QWidget>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <optional>
#include <vector>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::ManualClock;
using testing::ManualScheduler;

// Every appearance ("A@450", a card "[Synced]@450") and removal ("-@1000") with its moment in
// milliseconds from the start. The pointer's x is that moment too, so a tooltip must appear where
// the pointer is when it appears, not where the hover began.
class RecordingPresenter final : public TooltipPresenter {
public:
    explicit RecordingPresenter(const ManualClock& clock) : m_clock(clock) {}
    void present(const QString& text, const QPoint& pointer) override {
        EXPECT_EQ(pointer.x(), elapsed());
        log << text + u'@' + QString::number(elapsed());
    }
    void presentCard(const SyncStatusCard& card, const QPoint& pointer) override {
        EXPECT_EQ(pointer.x(), elapsed());
        log << u'[' + card.title + u"]@"_s + QString::number(elapsed());
    }
    void dismiss() override { log << u"-@"_s + QString::number(elapsed()); }
    int elapsed() const { return int(std::lround(m_clock.nowMs() - m_start)); }
    QStringList log;

private:
    const ManualClock& m_clock;
    const double m_start = m_clock.nowMs();
};

// Runs a script of "seconds action" steps: a capital letter hovers a control with that text
// ("B/0.2" with an explicit delay), "sync" hovers the sync button's card, "-" leaves it,
// "down"/"up" press and release a button, "mute"/"unmute" suppress tooltips, and "overflow"
// opens the overflow list as the bar does (suppress, then hide). Returns the log 5 s after the
// last step.
QString run(const QString& script) {
    ManualClock clock;
    ManualScheduler scheduler(clock);
    RecordingPresenter presenter(clock);
    BarTooltipController controller(scheduler, clock, presenter,
                                    [&] { return QPoint(presenter.elapsed(), 0); });
    double elapsed = 0.0;
    for (const QString& step : script.split(u';')) {
        const QStringList parts = step.trimmed().split(u' ');
        scheduler.advance(parts[0].toDouble() - elapsed);
        elapsed = parts[0].toDouble();
        const QString& action = parts[1];
        if (action == u"-"_s)
            controller.hide();
        else if (action == u"down"_s || action == u"up"_s)
            action == u"down"_s ? controller.mouseDown() : controller.mouseUp();
        else if (action == u"mute"_s || action == u"unmute"_s)
            controller.setSuppressed(action == u"mute"_s);
        else if (action == u"overflow"_s) {
            controller.setSuppressed(true);
            controller.hide();
        } else if (action == u"sync"_s)
            controller.show(SyncStatusCard::make(SyncStatus::Kind::synced, std::nullopt, 0.0));
        else if (action.contains(u'/'))
            controller.show(action.section(u'/', 0, 0), action.section(u'/', 1).toDouble());
        else
            controller.show(action);
    }
    scheduler.advance(5.0);
    return presenter.log.join(u' ');
}

TEST(BarTooltipController, FollowsTheHoverRules) {
    const struct {
        const char* name;
        QString script;
        QString expected;
    } cases[] = {
        {"leaving before it appears cancels it", u"0 A; 0.44 -"_s, u""_s},
        {"a second hover restarts the wait", u"0 A; 0.3 B"_s, u"B@750"_s},
        {"while showing, the next text comes at once", u"0 A; 1 B"_s, u"A@450 B@1000"_s},
        {"hand-off open at 0.29 s after a real hide", u"0 A; 1 -; 1.29 B"_s,
         u"A@450 -@1000 B@1290"_s},
        {"hand-off closed at 0.31 s", u"0 A; 1 -; 1.31 B"_s, u"A@450 -@1000 B@1760"_s},
        {"a hide that hid nothing opens no hand-off", u"0 A; 0.2 -; 0.3 B"_s, u"B@750"_s},
        {"a second hide keeps the first moment", u"0 A; 1 -; 1.2 -; 1.35 B"_s,
         u"A@450 -@1000 B@1800"_s},
        {"suppressed: nothing, then the full delay", u"0 mute; 0.1 A; 1 unmute; 1.1 B"_s,
         u"B@1550"_s},
        {"suppression begun while pending stops it", u"0 A; 0.2 mute"_s, u""_s},
        {"a press cancels a pending one", u"0 A; 0.2 down"_s, u""_s},
        {"a press hides; none starts while held", u"0 A; 1 down; 1.1 B; 2 up; 2.1 C"_s,
         u"A@450 -@1000 C@2550"_s},
        {"an explicit delay ignores a showing tooltip and the hand-off",
         u"0 A; 1 B/0.2; 2 -; 2.1 C/1"_s, u"A@450 B@1200 -@2000 C@3100"_s},
        // The sync button's card goes to the presenter as a card, under the same rules.
        {"a card waits the full delay", u"0 sync"_s, u"[Synced]@450"_s},
        {"a card takes over a showing text at once", u"0 A; 1 sync"_s, u"A@450 [Synced]@1000"_s},
        {"a text takes over a card within the hand-off", u"0 sync; 1 -; 1.2 A"_s,
         u"[Synced]@450 -@1000 A@1200"_s},
        {"the overflow list hides a showing card and keeps it away",
         u"0 sync; 1 overflow; 1.1 sync"_s, u"[Synced]@450 -@1000"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(run(c.script).toStdString(), c.expected.toStdString()) << c.name;
}

TEST(BarTooltipPlacement, StaysOnTheScreenOfThePointer) {
    const QRect screen(0, 25, 1000, 775); // visible area: y 25 to 800
    const QSize label(100, 20);
    const struct {
        const char* name;
        QPoint pointer;
        QSize size;
        std::optional<QRect> frame;
        QPoint expected;
    } cases[] = {
        {"centred 16 below the pointer", {500, 300}, label, screen, {450, 316}},
        {"held 4 inside the right edge", {990, 300}, label, screen, {896, 316}},
        {"held 4 inside the left edge", {10, 300}, label, screen, {4, 316}},
        {"bottom exactly 4 above the bottom stays below", {500, 760}, label, screen, {450, 776}},
        {"one lower: 18 above the pointer", {500, 761}, label, screen, {450, 723}},
        {"wider than the screen: right edge wins",
         {100, 300},
         {300, 20},
         QRect(0, 0, 200, 800),
         {-104, 316}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(BarTooltipPlacement::topLeft(c.pointer, c.size, c.frame), c.expected) << c.name;
}

void send(QWidget* widget, QEvent::Type type) {
    if (type == QEvent::Enter) {
        QEnterEvent event(QPointF(1, 1), QPointF(1, 1), QPointF(200, 200));
        QCoreApplication::sendEvent(widget, &event);
        return;
    }
    const bool down = type == QEvent::MouseButtonPress;
    QMouseEvent event(type, QPointF(1, 1), QPointF(200, 200), Qt::LeftButton,
                      down ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

// The whole road on widgets: hover, the one shared window, the hand-over between texts and a
// card, a press anywhere, a hovered control that goes away. A card is made at the hover, drawn on
// the card's width, taller with its last-synced line; its control keeps its own name.
TEST(BarTooltip, HoverShowsTheSharedWindowAndAPressHidesIt) {
    testing::ensureApplication();
    ManualClock clock;
    ManualScheduler scheduler(clock);
    TooltipWindow window;
    BarTooltipController controller(scheduler, clock, window, [] { return QPoint(200, 200); });
    BarTooltip tooltips(controller);
    QWidget share;
    auto save = std::make_unique<QWidget>();
    BarTooltip::attach(&share, u"Share palette link"_s);
    BarTooltip::attach(save.get(), u"Save palette file"_s);
    std::optional<double> lastSync;
    QWidget sync;
    sync.setAccessibleName(u"Synced - Click to sync now"_s);
    BarTooltip::attachCard(&sync, [&] {
        return SyncStatusCard::make(SyncStatus::Kind::synced, lastSync, clock.nowMs());
    });
    EXPECT_EQ(sync.accessibleName(), u"Synced - Click to sync now"_s);
    EXPECT_TRUE(BarTooltip::textOf(&sync).isEmpty());
    QEvent leave(QEvent::Leave);

    send(&share, QEvent::Enter);
    scheduler.advance(BarTooltipController::kDelay);
    ASSERT_TRUE(window.isVisible());
    QWidget* const made = window.window();
    EXPECT_TRUE(made->windowFlags().testFlag(Qt::WindowTransparentForInput));
    EXPECT_EQ(made->geometry().top(), 200 + BarTooltipPlacement::kBelowPointer);
    QCoreApplication::sendEvent(&share, &leave);
    send(&sync, QEvent::Enter); // handed over at once, in the same window
    ASSERT_TRUE(window.card().has_value());
    EXPECT_TRUE(window.text().isEmpty());
    EXPECT_EQ(window.window(), made);
    EXPECT_EQ(made->width(), SyncStatusCard::width);
    const int withoutLastSync = made->height();

    QCoreApplication::sendEvent(&sync, &leave);
    lastSync = clock.nowMs();
    scheduler.advance(3 * 60.0);
    send(&sync, QEvent::Enter);
    scheduler.advance(BarTooltipController::kDelay);
    ASSERT_TRUE(window.card().has_value());
    EXPECT_EQ(window.card()->lastSynced, u"Last synced 3 minutes ago"_s);
    EXPECT_EQ(made->width(), SyncStatusCard::width);
    EXPECT_GT(made->height(), withoutLastSync);
    QCoreApplication::sendEvent(&sync, &leave);
    send(save.get(), QEvent::Enter); // a plain text takes its own size again
    EXPECT_EQ(window.text(), u"Save palette file"_s);
    EXPECT_FALSE(window.card().has_value());
    EXPECT_LT(made->height(), withoutLastSync);

    send(&share, QEvent::MouseButtonPress);
    EXPECT_FALSE(window.isVisible());
    send(&share, QEvent::MouseButtonRelease);
    scheduler.advance(1.0);
    send(save.get(), QEvent::Enter);
    scheduler.advance(BarTooltipController::kDelay);
    ASSERT_TRUE(window.isVisible());
    save.reset();
    EXPECT_FALSE(window.isVisible());

    // A text put on the control takes the card's place.
    BarTooltip::attach(&sync, u"Plain"_s);
    EXPECT_EQ(BarTooltip::contentOf(&sync), std::optional<TooltipContent>(u"Plain"_s));
}

struct ToastFixture : ::testing::Test {
    // What is shown at each moment, in seconds from the first call on; "" means no toast.
    void expectTimeline(const std::vector<std::pair<double, const char*>>& moments) {
        double elapsed = 0.0;
        for (const auto& [at, message] : moments) {
            scheduler.advance(at - elapsed);
            elapsed = at;
            EXPECT_EQ(manager.current() ? manager.current()->message : QString(),
                      QString::fromUtf8(message))
                << "at " << at << " s";
        }
    }

    testing::ManualClock clock;
    testing::ManualScheduler scheduler{clock};
    ToastManager::BarState bar{QRect(100, 50, 400, 40), true};
    ToastManager manager{scheduler, [this] { return bar; }};
};

// A second toast replaces the first and runs its own time: the first one's end passes by. The
// window follows the manager.
TEST_F(ToastFixture, SecondToastReplacesFirstAndOutlivesItsTimer) {
    testing::ensureApplication();
    ToastWindow window(manager);
    manager.show(u"Link copied"_s, u"link"_s, QRect(10, 10, 20, 20), ToastManager::kNoticeDuration);
    scheduler.advance(1.0);
    manager.showAnchored(QRect(40, 10, 20, 20), u"Copied #FF0000"_s, u"doc.on.doc"_s,
                         ToastManager::kCopiedDuration);
    EXPECT_EQ(manager.current()->sourceFrame, QRect(40, 10, 20, 20));
    EXPECT_EQ(window.text(), u"Copied #FF0000"_s);
    EXPECT_EQ(window.iconName(), u"doc.on.doc"_s);
    expectTimeline({{1.05, "Copied #FF0000"}, {1.19, "Copied #FF0000"}, {1.2, ""}});
    EXPECT_EQ(scheduler.pendingCount(), 0);
    EXPECT_FALSE(window.isVisible());
}

// Announcements wait 0.25 s, then stay 1.5 s. One made 0.1 s later replaces the first when its
// own wait is over, and the first's end (1.65 s on) doesn't cut it short. An empty one shows
// nothing. Without a source a toast points at the bar's middle; without a visible bar none
// appears.
TEST_F(ToastFixture, AnnouncementsWaitThenReplaceEachOther) {
    int changes = 0;
    QObject::connect(&manager, &ToastManager::currentChanged, [&] { ++changes; });
    manager.announce(QString(), u"lock.fill"_s);
    EXPECT_EQ(scheduler.pendingCount(), 0);
    manager.announce(u"First"_s, {});
    scheduler.advance(0.1);
    manager.announce(u"Second"_s, {});
    expectTimeline({{0.149, ""}, {0.15, "First"}, {0.25, "Second"}, {1.749, "Second"}, {1.75, ""}});
    EXPECT_EQ(changes, 3);

    manager.show(u"Palette saved"_s, {}, std::nullopt, ToastManager::kPaletteSavedDuration);
    // Bar from x 100 to 500, y 50 to 90: centre (300, 70), a 28-point square around it.
    EXPECT_EQ(manager.current().value().sourceRect, QRect(286, 56, 28, 28));
    bar.isVisible = false;
    manager.announce(u"Palette deleted"_s, {});
    scheduler.advance(ToastManager::kAnnounceDelay);
    EXPECT_FALSE(manager.current());
    EXPECT_EQ(scheduler.pendingCount(), 0);
}

TEST(ToastPlacement, CentredAboveAndKeptOnScreen) {
    const QRect screen(0, 0, 1000, 800);
    const QSize size(120, 30);
    const struct {
        const char* name;
        QRect source;
        std::optional<QRect> screen;
        QPoint expected;
    } cases[] = {
        {"centred above", QRect(400, 300, 28, 28), screen, QPoint(354, 264)},
        {"held off the right edge", QRect(980, 300, 20, 28), screen, QPoint(876, 264)},
        {"4 from the top: still above", QRect(400, 40, 28, 28), screen, QPoint(354, 4)},
        {"3 from the top: under the source", QRect(400, 39, 28, 28), screen, QPoint(354, 73)},
        {"no room above or below: held over the bottom edge", QRect(400, 20, 28, 770), screen,
         QPoint(354, 766)},
        {"a toast taller than the screen: its top on screen", QRect(400, 20, 28, 770),
         QRect(0, 0, 1000, 30), QPoint(354, 4)},
        {"no screen: as computed", QRect(980, 20, 20, 28), std::nullopt, QPoint(930, -16)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ToastWindow::placement(c.source, size, c.screen), c.expected) << c.name;
}

} // namespace
} // namespace hueshelf::app
