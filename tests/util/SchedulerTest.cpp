#include "ManualScheduler.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

// Every timed test leans on the manual scheduler: work runs in due order with the clock at its
// own time, ties in the order scheduled, work scheduled by work in the same advance when due,
// and cancelled work never.
TEST(ManualScheduler, RunsDueWorkInOrderAtItsTimeAndNeverCancelledWork) {
    ManualClock clock(1000.0);
    ManualScheduler scheduler(clock);
    std::vector<std::pair<int, double>> ran;
    const auto record = [&](int n) {
        return [&ran, &clock, n] { ran.emplace_back(n, clock.nowMs()); };
    };
    scheduler.scheduleAfter(0.5, record(2));
    scheduler.scheduleAfter(0.25, [&] {
        record(1)();
        scheduler.scheduleAfter(0.3, record(4));
    });
    scheduler.scheduleAfter(0.5, record(3));
    TaskHandle cancelled = scheduler.scheduleAfter(0.1, record(0));
    TaskHandle repeating = scheduler.scheduleRepeating(0.4, record(5));
    EXPECT_TRUE(cancelled.isActive());
    cancelled.cancel();
    cancelled.cancel();
    EXPECT_FALSE(cancelled.isActive());
    scheduler.advance(0.49);
    EXPECT_EQ(ran.size(), 2u);
    scheduler.advance(0.1);
    repeating.cancel();
    scheduler.advance(1.0);
    EXPECT_EQ(ran, (std::vector<std::pair<int, double>>{
                       {1, 1250.0}, {5, 1400.0}, {2, 1500.0}, {3, 1500.0}, {4, 1550.0}}));
    EXPECT_EQ(clock.nowMs(), 2590.0);
    EXPECT_EQ(scheduler.pendingCount(), 0);

    TaskHandle once = scheduler.scheduleAfter(0.0, [] {});
    scheduler.runDue();
    EXPECT_FALSE(once.isActive());
    EXPECT_FALSE(TaskHandle().isActive());
}

} // namespace
} // namespace hueshelf::testing
