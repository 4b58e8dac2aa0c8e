// The real folder watch on inotify: what a palette file's atomic replacement looks like to it.

#include "sync/QtFolderWatch.h"

#include "SyncEngineTestSupport.h"

#include <QDeadlineTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

// Lets the event loop deliver the watcher's notices until `done` holds. The bound only stops a
// broken run; a healthy one ends as soon as the notice arrives.
bool spinUntil(const std::function<bool()>& done) {
    const QDeadlineTimer deadline(10'000);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

class QtFolderWatchTest : public ::testing::Test {
protected:
    QtFolderWatchTest() { ensureSyncTestApplication(); }

    QTemporaryDir dir;
    QtFolderWatch watch;
    int events = 0;
};

TEST_F(QtFolderWatchTest, ReportsAFileReplacedAtomically) {
    ASSERT_TRUE(watch.start(dir.path(), [this] { ++events; }));
    EXPECT_TRUE(watch.isWatching());
    ASSERT_FALSE(
        SyncFolder::writeFileAtomically(QDir(dir.path()).filePath(u"A.json"_s), "{}").has_value());
    EXPECT_TRUE(spinUntil([this] { return events > 0; }));

    // Replacing the same file again is a new entry all the same.
    const int before = events;
    ASSERT_FALSE(
        SyncFolder::writeFileAtomically(QDir(dir.path()).filePath(u"A.json"_s), "[]").has_value());
    EXPECT_TRUE(spinUntil([&] { return events > before; }));
}

TEST_F(QtFolderWatchTest, RefusesWhatIsNoFolder) {
    EXPECT_FALSE(watch.start(QDir(dir.path()).filePath(u"missing"_s), [] {}));
    writeBytes(QDir(dir.path()).filePath(u"file"_s), "x");
    EXPECT_FALSE(watch.start(QDir(dir.path()).filePath(u"file"_s), [] {}));
    EXPECT_FALSE(watch.start(QString(), [] {}));
    EXPECT_FALSE(watch.isWatching());
    ASSERT_TRUE(watch.start(dir.path(), [] {}));
    watch.stop();
    EXPECT_FALSE(watch.isWatching());
}

} // namespace
} // namespace hueshelf::testing
