#include "ManualScheduler.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

TEST(ManualScheduler, RunsTasksInDueOrderWithTheClockAtTheirTime) {
    ManualClock clock(1000.0);
    ManualScheduler scheduler(clock);
    std::vector<std::pair<int, double>> ran;
    scheduler.scheduleAfter(0.5, [&] { ran.emplace_back(2, clock.nowMs()); });
    scheduler.scheduleAfter(0.25, [&] { ran.emplace_back(1, clock.nowMs()); });
    scheduler.scheduleAfter(0.5, [&] { ran.emplace_back(3, clock.nowMs()); });

    scheduler.advance(0.4);
    ASSERT_EQ(ran.size(), 1u);
    scheduler.advance(0.1);
    ASSERT_EQ(ran.size(), 3u);
    EXPECT_EQ(ran[0], std::make_pair(1, 1250.0));
    EXPECT_EQ(ran[1], std::make_pair(2, 1500.0));
    EXPECT_EQ(ran[2], std::make_pair(3, 1500.0));
    EXPECT_EQ(clock.nowMs(), 1500.0);
}

TEST(ManualScheduler, CancelledWorkNeverRuns) {
    ManualClock clock;
    ManualScheduler scheduler(clock);
    int runs = 0;
    TaskHandle handle = scheduler.scheduleAfter(1.0, [&] { ++runs; });
    EXPECT_TRUE(handle.isActive());
    handle.cancel();
    handle.cancel();
    EXPECT_FALSE(handle.isActive());
    scheduler.advance(5.0);
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(scheduler.pendingCount(), 0);
}

TEST(ManualScheduler, RepeatingWorkRunsEachIntervalUntilCancelled) {
    ManualClock clock(0.0);
    ManualScheduler scheduler(clock);
    std::vector<double> at;
    TaskHandle handle = scheduler.scheduleRepeating(0.1, [&] { at.push_back(clock.nowMs()); });
    scheduler.advance(0.35);
    EXPECT_EQ(at, (std::vector<double>{100.0, 200.0, 300.0}));
    handle.cancel();
    scheduler.advance(1.0);
    EXPECT_EQ(at.size(), 3u);
}

TEST(ManualScheduler, WorkScheduledByWorkRunsInTheSameAdvanceWhenDue) {
    ManualClock clock(0.0);
    ManualScheduler scheduler(clock);
    std::vector<double> at;
    scheduler.scheduleAfter(0.1, [&] {
        at.push_back(clock.nowMs());
        scheduler.scheduleAfter(0.2, [&] { at.push_back(clock.nowMs()); });
    });
    scheduler.advance(0.25);
    EXPECT_EQ(at, (std::vector<double>{100.0}));
    scheduler.advance(0.05);
    EXPECT_EQ(at, (std::vector<double>{100.0, 300.0}));
}

TEST(ManualScheduler, AHandleIsInactiveOnceItsOneShotWorkRan) {
    ManualClock clock;
    ManualScheduler scheduler(clock);
    TaskHandle handle = scheduler.scheduleAfter(0.0, [] {});
    scheduler.runDue();
    EXPECT_FALSE(handle.isActive());
    EXPECT_FALSE(TaskHandle().isActive());
}

} // namespace
} // namespace hueshelf::testing
