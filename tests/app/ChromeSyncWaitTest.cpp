// The wait for the browser helper at start: how long the bar stays invisible, what ends the
// wait early, and that its end also ends the store's start-up poll.

#include "app/ChromeSyncWait.h"

#include "AppTestSupport.h"
#include "TempHome.h"
#include "model/ExternalChangeMonitor.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/TemplateJson.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::palette;

constexpr double kLoadedStamp = 1'600'000'000'000.0;

// A store loaded from a file that holds `first`, its monitor started, and the wait begun.
struct StartedWait {
    StartedWait() {
        prefsPath = home.paths().configDir + u"/io.hueshelf.Hueshelf.json"_s;
        write({first}, kLoadedStamp);
        const qint64 hash = PreferencesFile::dataHash(
            PreferencesFile::templatesData(*PreferencesFile::read(prefsPath)).value_or(""));
        store = std::make_unique<ColorStorage>(
            clock, scheduler, LoadedTemplates{{first}, first.id, kLoadedStamp, hash, {}});
        store->setWriter(&writer);
        monitor = std::make_unique<ExternalChangeMonitor>(*store, clock, scheduler, prefsPath,
                                                          home.paths().configDir);
        monitor->start();
        wait = std::make_unique<ChromeSyncWait>(*store, *monitor, scheduler);
        startMs = clock.nowMs();
        wait->start([this] {
            ++shownCount;
            shownAfterMs = clock.nowMs() - startMs;
        });
    }
    void write(const QList<ColorTemplate>& templates, double stamp) {
        const QJsonObject object{
            {PreferencesKeys::templates, TemplateJson::templatesToJson(templates)},
            {PreferencesKeys::activeTemplateId, uuidText(templates.constLast().id)},
            {PreferencesKeys::lastModified, stamp}};
        ASSERT_TRUE(PreferencesFile::write(prefsPath, object));
    }

    testing::TempHome home;
    testing::ManualClock clock;
    testing::ManualScheduler scheduler{clock};
    testing::RecordingWriter writer;
    QString prefsPath;
    const ColorTemplate first = palette(u"First"_s, {{u"Ink"_s, u"#101010"_s}});
    const ColorTemplate fromHelper = palette(u"From the extension"_s, {{u"Sky"_s, u"#87CEEB"_s}});
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<ExternalChangeMonitor> monitor;
    std::unique_ptr<ChromeSyncWait> wait;
    double startMs = 0;
    int shownCount = 0;
    double shownAfterMs = -1;
};

class BrowserHelperWait : public ::testing::Test, public StartedWait {};

TEST_F(BrowserHelperWait, WithNothingWrittenTheBarAppearsAfterFortyTicks) {
    scheduler.advance(1.95);
    EXPECT_EQ(shownCount, 0);
    EXPECT_EQ(wait->ticks(), 39);
    EXPECT_TRUE(wait->isRunning());
    scheduler.advance(0.05);
    EXPECT_EQ(shownCount, 1);
    EXPECT_DOUBLE_EQ(shownAfterMs, 2000.0);
    EXPECT_FALSE(wait->isRunning());
    scheduler.advance(5.0);
    EXPECT_EQ(shownCount, 1) << "the wait ends once";
    EXPECT_EQ(wait->ticks(), 40);
}

// The write lands between two ticks; the tick after it ends the wait, with the helper's palette
// already in the store. Odd ticks fall between the start-up poll's own checks.
TEST_F(BrowserHelperWait, AChangeEndsTheWaitAtTheTickThatSeesIt) {
    for (const int k : {1, 3, 17, 39}) {
        StartedWait run;
        run.scheduler.advance(ChromeSyncWait::tickIntervalSeconds * (k - 1));
        ASSERT_EQ(run.shownCount, 0) << k;
        run.write({run.first, run.fromHelper}, kLoadedStamp + 1000.0 + k);
        run.scheduler.advance(ChromeSyncWait::tickIntervalSeconds);
        EXPECT_EQ(run.shownCount, 1) << k;
        EXPECT_EQ(run.wait->ticks(), k);
        EXPECT_DOUBLE_EQ(run.shownAfterMs, 50.0 * k);
        ASSERT_EQ(run.store->templates().size(), 2) << k;
        EXPECT_EQ(run.store->activeTemplateId(), run.fromHelper.id) << "taken as the file says";
    }
}

// The stamp or another key alone is no change of the palettes.
TEST_F(BrowserHelperWait, AWriteOfTheSamePalettesDoesNotEndIt) {
    write({first}, kLoadedStamp + 5000.0);
    scheduler.advance(1.0);
    EXPECT_EQ(shownCount, 0);
    EXPECT_TRUE(wait->isRunning());
}

TEST_F(BrowserHelperWait, ItsEndEndsTheStartupPoll) {
    scheduler.advance(0.25);
    EXPECT_TRUE(monitor->isStartupPollRunning());
    EXPECT_FALSE(monitor->initialSyncComplete());
    write({first, fromHelper}, kLoadedStamp + 1000.0);
    scheduler.advance(0.05);
    ASSERT_EQ(shownCount, 1);
    EXPECT_TRUE(monitor->initialSyncComplete());
    EXPECT_FALSE(monitor->isStartupPollRunning()) << "would have run until 3 s after start";
}

TEST_F(BrowserHelperWait, StoppedItNeverShowsTheBar) {
    scheduler.advance(0.5);
    wait->stop();
    scheduler.advance(3.0);
    EXPECT_EQ(shownCount, 0);
    EXPECT_FALSE(wait->isRunning());
}

} // namespace
} // namespace hueshelf::app
