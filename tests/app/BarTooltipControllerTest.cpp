#include "app/BarTooltipController.h"

#include "AppTestSupport.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "app/BarTooltip.h"
#include "app/BarTooltipPlacement.h"
#include "app/TooltipWindow.h"

#include <QEnterEvent>
#include <QMouseEvent>
#include <QWidget>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::ManualClock;
using testing::ManualScheduler;

// Every appearance ("A") and removal ("-") with its moment in milliseconds from the start.
struct Shown {
    long long atMs;
    std::string what;
    friend bool operator==(const Shown&, const Shown&) = default;
};

void PrintTo(const Shown& shown, std::ostream* out) {
    *out << shown.what << "@" << shown.atMs;
}

class RecordingPresenter final : public TooltipPresenter {
public:
    explicit RecordingPresenter(const ManualClock& clock)
        : m_clock(clock), m_start(clock.nowMs()) {}
    void present(const QString& text, const QPoint& pointer) override {
        log.push_back({elapsed(), text.toStdString()});
        lastPointer = pointer;
    }
    void dismiss() override { log.push_back({elapsed(), "-"}); }

    std::vector<Shown> log;
    QPoint lastPointer;

private:
    long long elapsed() const { return std::llround(m_clock.nowMs() - m_start); }
    const ManualClock& m_clock;
    double m_start;
};

enum class Op { Show, Hide, MouseDown, MouseUp, Suppress, Unsuppress };

struct Step {
    double at; // seconds from the start
    Op op;
    const char* text = "";
    std::optional<double> delay = std::nullopt;
};

struct Case {
    const char* name;
    std::vector<Step> steps;
    std::vector<Shown> expected;
};

std::vector<Shown> run(const std::vector<Step>& steps) {
    ManualClock clock;
    ManualScheduler scheduler(clock);
    RecordingPresenter presenter(clock);
    BarTooltipController controller(scheduler, clock, presenter, [] { return QPoint(7, 9); });
    double elapsed = 0.0;
    for (const Step& step : steps) {
        scheduler.advance(step.at - elapsed);
        elapsed = step.at;
        switch (step.op) {
        case Op::Show:
            controller.show(QString::fromUtf8(step.text), step.delay);
            break;
        case Op::Hide:
            controller.hide();
            break;
        case Op::MouseDown:
            controller.mouseDown();
            break;
        case Op::MouseUp:
            controller.mouseUp();
            break;
        case Op::Suppress:
            controller.setSuppressed(true);
            break;
        case Op::Unsuppress:
            controller.setSuppressed(false);
            break;
        }
    }
    scheduler.advance(5.0);
    return presenter.log;
}

TEST(BarTooltipController, FollowsTheHoverRules) {
    const Case cases[] = {
        {"first hover waits the full delay", {{0.0, Op::Show, "A"}}, {{450, "A"}}},
        {"leaving before it appears cancels it", {{0.0, Op::Show, "A"}, {0.44, Op::Hide}}, {}},
        {"a second hover restarts the wait",
         {{0.0, Op::Show, "A"}, {0.3, Op::Show, "B"}},
         {{750, "B"}}},
        {"while showing, the next control's text comes at once",
         {{0.0, Op::Show, "A"}, {1.0, Op::Show, "B"}},
         {{450, "A"}, {1000, "B"}}},
        {"hand-off open at 0.29 s after a real hide",
         {{0.0, Op::Show, "A"}, {1.0, Op::Hide}, {1.29, Op::Show, "B"}},
         {{450, "A"}, {1000, "-"}, {1290, "B"}}},
        {"hand-off closed at 0.31 s: waits the full delay",
         {{0.0, Op::Show, "A"}, {1.0, Op::Hide}, {1.31, Op::Show, "B"}},
         {{450, "A"}, {1000, "-"}, {1760, "B"}}},
        {"a hide that hid nothing opens no hand-off",
         {{0.0, Op::Show, "A"}, {0.2, Op::Hide}, {0.3, Op::Show, "B"}},
         {{750, "B"}}},
        {"a second hide keeps the first moment of disappearance",
         {{0.0, Op::Show, "A"}, {1.0, Op::Hide}, {1.2, Op::Hide}, {1.35, Op::Show, "B"}},
         {{450, "A"}, {1000, "-"}, {1800, "B"}}},
        {"suppressed: hovering shows nothing and schedules nothing",
         {{0.0, Op::Suppress}, {0.1, Op::Show, "A"}, {1.0, Op::Unsuppress}},
         {}},
        {"after suppression the next hover waits the full delay",
         {{0.0, Op::Suppress}, {0.1, Op::Show, "A"}, {1.0, Op::Unsuppress}, {1.1, Op::Show, "B"}},
         {{1550, "B"}}},
        {"after suppression an open hand-off still applies",
         {{0.0, Op::Show, "A"},
          {1.0, Op::Hide},
          {1.05, Op::Suppress},
          {1.1, Op::Unsuppress},
          {1.2, Op::Show, "B"}},
         {{450, "A"}, {1000, "-"}, {1200, "B"}}},
        {"suppression that begins while pending stops the appearance",
         {{0.0, Op::Show, "A"}, {0.2, Op::Suppress}},
         {}},
        {"a press cancels the pending tooltip", {{0.0, Op::Show, "A"}, {0.2, Op::MouseDown}}, {}},
        {"a press hides a showing tooltip; none starts while held",
         {{0.0, Op::Show, "A"},
          {1.0, Op::MouseDown},
          {1.1, Op::Show, "B"},
          {2.0, Op::MouseUp},
          {2.1, Op::Show, "C"}},
         {{450, "A"}, {1000, "-"}, {2550, "C"}}},
        {"an explicit delay ignores a showing tooltip",
         {{0.0, Op::Show, "A"}, {1.0, Op::Show, "B", 0.2}},
         {{450, "A"}, {1200, "B"}}},
        {"an explicit delay ignores the hand-off",
         {{0.0, Op::Show, "A"}, {1.0, Op::Hide}, {1.1, Op::Show, "B", 1.0}},
         {{450, "A"}, {1000, "-"}, {2100, "B"}}},
        {"an explicit delay of zero still goes through the queue",
         {{0.0, Op::Show, "A", 0.0}},
         {{0, "A"}}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(run(c.steps), c.expected) << c.name;
}

TEST(BarTooltipController, PresentsAtThePointerAndStampsOnlyRealHides) {
    ManualClock clock;
    ManualScheduler scheduler(clock);
    RecordingPresenter presenter(clock);
    QPoint pointer(10, 20);
    BarTooltipController controller(scheduler, clock, presenter, [&] { return pointer; });

    controller.show(u"Share"_s);
    EXPECT_TRUE(controller.hasPending());
    controller.hide();
    EXPECT_FALSE(controller.lastHiddenAt());

    controller.show(u"Share"_s);
    pointer = QPoint(300, 40); // the pointer moved on during the wait
    scheduler.advance(BarTooltipController::kDelay);
    EXPECT_TRUE(controller.isShowing());
    EXPECT_EQ(presenter.lastPointer, QPoint(300, 40));
    controller.mouseDown();
    EXPECT_TRUE(controller.isMouseDown());
    EXPECT_FALSE(controller.isShowing());
    EXPECT_EQ(controller.lastHiddenAt(), clock.nowMs());
}

TEST(BarTooltipPlacement, StaysOnTheScreenOfThePointer) {
    const QRect screen(0, 25, 1000, 775); // visible area: y 25 to 800
    const QSize label(100, 20);
    struct PlacementCase {
        const char* name;
        QPoint pointer;
        QSize size;
        std::optional<QRect> frame;
        QPoint expected;
    };
    const PlacementCase cases[] = {
        {"centred 16 below the pointer", {500, 300}, label, screen, {450, 316}},
        {"held 4 inside the right edge", {990, 300}, label, screen, {896, 316}},
        {"held 4 inside the left edge", {10, 300}, label, screen, {4, 316}},
        {"bottom exactly 4 above the screen's bottom stays below",
         {500, 760},
         label,
         screen,
         {450, 776}},
        {"near the bottom: 18 above the pointer", {500, 761}, label, screen, {450, 723}},
        {"screen to the right of another",
         {1925, 300},
         label,
         QRect(1920, 0, 1280, 1024),
         {1924, 316}},
        {"wider than the screen: the right edge wins",
         {100, 300},
         QSize(300, 20),
         QRect(0, 0, 200, 800),
         {-104, 316}},
        {"no screen: used as computed", {990, 5000}, label, std::nullopt, {940, 5016}},
    };
    for (const PlacementCase& c : cases)
        EXPECT_EQ(BarTooltipPlacement::topLeft(c.pointer, c.size, c.frame), c.expected) << c.name;
}

// The whole road on a widget: hover, the shared window, a press anywhere, leaving.
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
    EXPECT_EQ(share.accessibleName(), u"Share palette link"_s);
    EXPECT_EQ(window.window(), nullptr); // nothing is made before the first tooltip

    auto enter = [](QWidget* widget) {
        QEnterEvent event(QPointF(1, 1), QPointF(1, 1), QPointF(200, 200));
        QCoreApplication::sendEvent(widget, &event);
    };
    auto leave = [](QWidget* widget) {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(widget, &event);
    };

    enter(&share);
    scheduler.advance(0.44);
    EXPECT_FALSE(window.isVisible());
    scheduler.advance(0.01);
    ASSERT_TRUE(window.isVisible());
    EXPECT_EQ(window.text(), u"Share palette link"_s);
    QWidget* const made = window.window();
    EXPECT_TRUE(made->windowFlags().testFlag(Qt::WindowTransparentForInput));
    EXPECT_EQ(made->geometry().top(), 200 + BarTooltipPlacement::kBelowPointer);

    leave(&share);
    enter(save.get());
    EXPECT_EQ(window.text(), u"Save palette file"_s); // handed over at once
    EXPECT_EQ(window.window(), made);                 // one window for every tooltip

    QMouseEvent press(QEvent::MouseButtonPress, QPointF(1, 1), QPointF(200, 200), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&share, &press);
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(controller.isMouseDown());
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(1, 1), QPointF(200, 200),
                        Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&share, &release);
    EXPECT_FALSE(controller.isMouseDown());

    // A control that goes away while hovered takes its tooltip with it.
    scheduler.advance(1.0);
    enter(save.get());
    scheduler.advance(BarTooltipController::kDelay);
    ASSERT_TRUE(window.isVisible());
    save.reset();
    EXPECT_FALSE(window.isVisible());
    EXPECT_FALSE(controller.isShowing());
}

} // namespace
} // namespace hueshelf::app
