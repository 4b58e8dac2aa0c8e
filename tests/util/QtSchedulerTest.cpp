#include "util/QtScheduler.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

QCoreApplication& application() {
    static int argc = 1;
    static char name[] = "hueshelf_util_tests";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
    return app;
}

// Zero-delay work runs from the event loop, never inside the call that scheduled it, and work
// cancelled before the loop comes round never runs at all.
TEST(QtScheduler, RunsFromTheEventLoopAndHonoursCancellation) {
    application();
    QtScheduler scheduler;
    QEventLoop loop;
    std::vector<int> ran;

    TaskHandle cancelled = scheduler.scheduleAfter(0.0, [&] { ran.push_back(1); });
    scheduler.scheduleAfter(0.0, [&] { ran.push_back(2); });
    scheduler.scheduleAfter(0.0, [&] {
        ran.push_back(3);
        loop.quit();
    });
    cancelled.cancel();
    EXPECT_TRUE(ran.empty());

    loop.exec();
    EXPECT_EQ(ran, (std::vector<int>{2, 3}));
    EXPECT_FALSE(cancelled.isActive());
}

TEST(QtScheduler, RepeatingWorkStopsWhenCancelledFromInside) {
    application();
    QtScheduler scheduler;
    QEventLoop loop;
    int runs = 0;
    TaskHandle handle;
    handle = scheduler.scheduleRepeating(0.0, [&] {
        if (++runs == 3) {
            handle.cancel();
            scheduler.scheduleAfter(0.0, [&] { loop.quit(); });
        }
    });
    loop.exec();
    EXPECT_EQ(runs, 3);
    EXPECT_FALSE(handle.isActive());
}

} // namespace
} // namespace hueshelf
