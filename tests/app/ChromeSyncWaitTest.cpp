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
        wait->start([this] {
            ++shownCount;
            shownAtMs = clock.nowMs() - startMs;
        });
    }
    void write(const QList<ColorTemplate>& templates, double stamp) {
        ASSERT_TRUE(PreferencesFile::write(
            prefsPath, {{PreferencesKeys::templates, TemplateJson::templatesToJson(templates)},
                        {PreferencesKeys::activeTemplateId, uuidText(templates.constLast().id)},
                        {PreferencesKeys::lastModified, stamp}}));
    }

    testing::TempHome home;
    const QString prefsPath = home.paths().configDir + u"/io.hueshelf.Hueshelf.json"_s;
    testing::ManualClock clock;
    testing::ManualScheduler scheduler{clock};
    const double startMs = clock.nowMs();
    testing::RecordingWriter writer;
    const ColorTemplate first = palette(u"First"_s, {{u"Ink"_s, u"#101010"_s}});
    const ColorTemplate fromHelper = palette(u"From the extension"_s, {{u"Sky"_s, u"#87CEEB"_s}});
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<ExternalChangeMonitor> monitor;
    std::unique_ptr<ChromeSyncWait> wait;
    int shownCount = 0;
    double shownAtMs = -1;
};

// The stamp alone is no change of the palettes: only the fortieth tick ends the wait, once.
TEST(BrowserHelperWait, WithoutAChangeTheBarAppearsAfterFortyTicks) {
    StartedWait run;
    run.write({run.first}, kLoadedStamp + 5000.0);
    run.scheduler.advance(1.95);
    EXPECT_EQ(run.shownCount, 0);
    run.scheduler.advance(5.0);
    EXPECT_EQ(run.shownCount, 1);
    EXPECT_DOUBLE_EQ(run.shownAtMs, 2000.0);
    EXPECT_FALSE(run.monitor->isStartupPollRunning());
}

// The write lands between two ticks; the tick after it ends the wait, with the helper's palette
// already in the store and the start-up poll over. Odd ticks fall between the poll's own checks.
TEST(BrowserHelperWait, AChangeEndsTheWaitAtTheTickThatSeesIt) {
    for (const int k : {1, 3, 39}) {
        SCOPED_TRACE(k);
        StartedWait run;
        run.scheduler.advance(ChromeSyncWait::tickIntervalSeconds * (k - 1));
        ASSERT_EQ(run.shownCount, 0);
        run.write({run.first, run.fromHelper}, kLoadedStamp + 1000.0 + k);
        run.scheduler.advance(ChromeSyncWait::tickIntervalSeconds);
        EXPECT_EQ(run.shownCount, 1);
        EXPECT_DOUBLE_EQ(run.shownAtMs, 50.0 * k);
        ASSERT_EQ(run.store->templates().size(), 2);
        EXPECT_EQ(run.store->activeTemplateId(), run.fromHelper.id) << "taken as the file says";
        EXPECT_TRUE(run.monitor->initialSyncComplete());
        EXPECT_FALSE(run.monitor->isStartupPollRunning()) << "would run until 3 s after start";
    }
}

} // namespace
} // namespace hueshelf::app
