#include "util/QtScheduler.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <algorithm>

namespace hueshelf {
namespace {

// Zero-delay work runs from the event loop, never inside the call that scheduled it; work
// cancelled before the loop comes round never runs, and repeating work cancelled from inside
// stops.
TEST(QtScheduler, RunsFromTheEventLoopAndHonoursCancellation) {
    static int argc = 1;
    static char name[] = "hueshelf_util_tests";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
    QtScheduler scheduler;
    QEventLoop loop;
    std::vector<int> ran;
    TaskHandle cancelled = scheduler.scheduleAfter(0.0, [&] { ran.push_back(0); });
    TaskHandle once = scheduler.scheduleAfter(0.0, [&] { ran.push_back(1); });
    TaskHandle repeating;
    repeating = scheduler.scheduleRepeating(0.0, [&] {
        ran.push_back(2);
        if (std::count(ran.begin(), ran.end(), 2) == 3) {
            repeating.cancel();
            scheduler.scheduleAfter(0.0, [&] { loop.quit(); });
        }
    });
    cancelled.cancel();
    EXPECT_TRUE(ran.empty());
    loop.exec();
    EXPECT_EQ(ran, (std::vector<int>{1, 2, 2, 2}));
    EXPECT_FALSE(cancelled.isActive() || once.isActive() || repeating.isActive());
}

} // namespace
} // namespace hueshelf
