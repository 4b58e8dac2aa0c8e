// When a pull starts: folder events with their debounce and echo window, the poll, the store's
// timer, and the back-off while the folder is away. All on the manual clock.

#include "SyncEngineTestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace hueshelf::testing {
namespace {

class SyncTriggers : public SyncEngineFixture {
protected:
    // A device whose folder events are counted instead of pulled.
    void startCounting() {
        startDevice({makePalette(u"One"_s, {makeColor(u"A"_s, u"#010101"_s)})});
        sync->setOnSyncFolderChanged([this] { pulls.push_back(clock.nowMs()); });
    }

    void takeFolderAway() { ASSERT_TRUE(QDir().rename(syncFolder(), syncFolder() + u"~"_s)); }
    void bringFolderBack() { ASSERT_TRUE(QDir().rename(syncFolder() + u"~"_s, syncFolder())); }

    double sinceStart(double ms) const { return ms - kStart; }

    std::vector<double> pulls;
};

TEST_F(SyncTriggers, ABurstOfEventsEndsInOnePullHalfASecondAfterTheLast) {
    startCounting();
    // Every 0.3 s for 5 s: the debounce never runs out until the burst ends.
    for (int i = 0; i * 300 <= 5'000; ++i) {
        watch->fire();
        scheduler.advance(0.3);
        EXPECT_TRUE(pulls.empty()) << i;
    }
    scheduler.advance(2.0);
    ASSERT_EQ(pulls.size(), 1u);
    EXPECT_EQ(sinceStart(pulls.front()), 4'800.0 + 500.0);
    EXPECT_EQ(sync->syncStatus(), SyncStatus::syncing());
    EXPECT_EQ(sync->lastSyncTime(), pulls.front());
}

struct EchoCase {
    double eventAfterWriteMs;
    bool pulls;
};

class EchoWindow : public SyncTriggers, public ::testing::WithParamInterface<EchoCase> {};

TEST_P(EchoWindow, OwnWritesAreNotTakenForForeignOnes) {
    startCounting();
    const ColorTemplate palette = store->templates().constFirst();
    ASSERT_FALSE(sync->writeTemplate(syncableFrom(palette, sync->deviceId())).has_value());
    EXPECT_EQ(sync->lastLocalWriteTime(), kStart);

    scheduler.advance(GetParam().eventAfterWriteMs / 1000.0);
    watch->fire();
    scheduler.advance(1.0);

    EXPECT_EQ(pulls.size(), GetParam().pulls ? 1u : 0u);
    EXPECT_EQ(sync->syncStatus(), GetParam().pulls ? SyncStatus::syncing() : SyncStatus::synced());
}

// The debounce adds 0.5 s: an event 1.5 s after the write is handled exactly 2.0 s after it.
INSTANTIATE_TEST_SUITE_P(
    SyncTriggers, EchoWindow,
    ::testing::Values(EchoCase{0.0, false}, EchoCase{1'000.0, false}, EchoCase{1'499.0, false},
                      EchoCase{1'500.0, true}, EchoCase{4'000.0, true}),
    [](const auto& testParam) {
        return "event_" + std::to_string(static_cast<int>(testParam.param.eventAfterWriteMs)) +
               "ms_after_the_write";
    });

TEST_F(SyncTriggers, ManifestAndSettingsWritesAreNoEchoes) {
    startCounting();
    ASSERT_FALSE(sync->writeSettings(SyncableSettings{u"system"_s, {}, 1.0, u"x"_s}).has_value());
    EXPECT_FALSE(sync->lastLocalWriteTime().has_value());
    watch->fire();
    scheduler.advance(0.5);
    EXPECT_EQ(pulls.size(), 1u);
}

TEST_F(SyncTriggers, ThreeFailedChecksStartTheBackOffAndOneSuccessEndsIt) {
    startCounting();
    takeFolderAway();
    EXPECT_FALSE(sync->checkFolderAvailability());
    scheduler.advance(1.0);
    EXPECT_FALSE(sync->checkFolderAvailability());
    EXPECT_EQ(sync->pollBackoff().consecutiveFailures, 2);
    EXPECT_FALSE(sync->pollBackoff().backoffUntil.has_value());

    scheduler.advance(1.0);
    EXPECT_FALSE(sync->checkFolderAvailability());
    EXPECT_EQ(sync->pollBackoff().backoffUntil, kStart + 2'000.0 + 300'000.0);

    // Each further failure pushes the moment on, from its own time.
    scheduler.advance(10.0);
    EXPECT_FALSE(sync->checkFolderAvailability());
    EXPECT_EQ(sync->pollBackoff().consecutiveFailures, 4);
    EXPECT_EQ(sync->pollBackoff().backoffUntil, kStart + 12'000.0 + 300'000.0);

    bringFolderBack();
    EXPECT_TRUE(sync->checkFolderAvailability());
    EXPECT_EQ(sync->pollBackoff(), SyncPollBackoff{});
}

TEST_F(SyncTriggers, ThePollPullsEveryThirtySecondsExceptInBackOff) {
    startCounting();
    scheduler.advance(30.0);
    EXPECT_TRUE(pulls.empty()); // the tick starts the debounce like an event
    scheduler.advance(0.5);
    ASSERT_EQ(pulls.size(), 1u);
    EXPECT_EQ(sinceStart(pulls.back()), 30'500.0);

    takeFolderAway();
    for (int i = 0; i < 3; ++i)
        sync->checkFolderAvailability(); // at 30.5 s: back-off until 330.5 s
    scheduler.advance(299.0);            // ticks at 60, 90, ... 300 s
    EXPECT_EQ(pulls.size(), 1u);

    // At 330 s the back-off still holds; the tick at 360 s passes.
    scheduler.advance(40.0);
    ASSERT_EQ(pulls.size(), 2u);
    EXPECT_EQ(sinceStart(pulls.back()), 360'500.0);
}

TEST_F(SyncTriggers, OfflineGivesWayToSyncedButAnErrorStays) {
    startCounting();
    takeFolderAway();
    sync->checkFolderAvailability();
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced()); // deferred
    scheduler.runDue();
    EXPECT_EQ(sync->syncStatus(), SyncStatus::offline());

    bringFolderBack();
    sync->checkFolderAvailability();
    scheduler.runDue();
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());

    sync->updateStatusAfterPush(2);
    const SyncStatus error = sync->syncStatus();
    sync->checkFolderAvailability();
    scheduler.runDue();
    EXPECT_EQ(sync->syncStatus(), error);
}

TEST_F(SyncTriggers, ADeferredOfflineStepLooksAgainBeforeItActs) {
    startCounting();
    takeFolderAway();
    sync->checkFolderAvailability();
    bringFolderBack();
    sync->checkFolderAvailability();
    scheduler.runDue();
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
}

TEST_F(SyncTriggers, WithoutAFolderPathNothingCounts) {
    startDevice({}, false);
    EXPECT_FALSE(sync->checkFolderAvailability());
    EXPECT_EQ(sync->pollBackoff(), SyncPollBackoff{});
}

TEST_F(SyncTriggers, AFolderThatCantBeWatchedHasNoPollEither) {
    startCounting();
    EXPECT_TRUE(sync->isWatchingFolder());
    EXPECT_EQ(watch->watchedPath, templatesFolder());
    EXPECT_TRUE(sync->isPolling());

    watch->refuse = true;
    sync->startMonitoring();
    EXPECT_FALSE(sync->isWatchingFolder());
    EXPECT_FALSE(sync->isPolling());
    scheduler.advance(100.0);
    EXPECT_TRUE(pulls.empty());
}

TEST_F(SyncTriggers, DisablingStopsTheWatchThePollAndAWaitingEvent) {
    startCounting();
    watch->fire();
    sync->disableSync();
    EXPECT_FALSE(sync->isWatchingFolder());
    EXPECT_FALSE(sync->isPolling());
    scheduler.advance(100.0);
    EXPECT_TRUE(pulls.empty());
    EXPECT_EQ(sync->syncStatus(), SyncStatus::disabled());
}

// --- The store's side ------------------------------------------------------------------------

class StoreTriggers : public SyncTriggers {
protected:
    void startStore() {
        startDevice({makePalette(u"One"_s, {makeColor(u"A"_s, u"#010101"_s)})});
        storeSync->start();
        io.flush(); // the full sync at start
        completeWrites();
    }
};

TEST_F(StoreTriggers, StartRunsAFullSyncAndHandsFolderChangesToThePull) {
    startStore();
    EXPECT_TRUE(recordOf(store->templates().constFirst().id).has_value()); // uploaded
    EXPECT_TRUE(storeSync->hasCloudSyncTimer());

    scheduler.advance(5.0); // past the echo of the upload
    watch->fire();
    scheduler.advance(0.5);
    EXPECT_TRUE(store->isSyncing());
    EXPECT_EQ(io.pending(), 1u);
    io.flush();
    EXPECT_FALSE(store->isSyncing());
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::synced());
}

TEST_F(StoreTriggers, TheTimerPullsEveryTenSeconds) {
    startStore();
    scheduler.advance(10.0);
    EXPECT_EQ(io.pending(), 1u);
    // A pass still reading: the next tick stands back.
    scheduler.advance(10.0);
    EXPECT_EQ(io.pending(), 1u);
    io.flush();
    scheduler.advance(10.0);
    EXPECT_EQ(io.pending(), 1u);
}

TEST_F(StoreTriggers, TheTimerStandsBackInBackOffAndWhileSyncIsOff) {
    startStore();
    // The store's timer alone: without a watch there is no poll.
    watch->refuse = true;
    sync->startMonitoring();
    takeFolderAway();
    for (int i = 0; i < 3; ++i)
        sync->checkFolderAvailability();
    const SyncPollBackoff backoff = sync->pollBackoff();
    scheduler.advance(290.0);
    // No tick looked at the folder: the count would have grown.
    EXPECT_EQ(sync->pollBackoff(), backoff);
    EXPECT_EQ(io.pending(), 0u);

    // Past the back-off the next tick checks, fails, and a new 300 s start.
    scheduler.advance(20.0);
    EXPECT_EQ(sync->pollBackoff().consecutiveFailures, 4);
    EXPECT_EQ(sync->pollBackoff().backoffUntil, kStart + 300'000.0 + 300'000.0);

    bringFolderBack();
    sync->disableSync();
    const SyncPollBackoff before = sync->pollBackoff();
    scheduler.advance(600.0);
    EXPECT_TRUE(storeSync->hasCloudSyncTimer()); // not stopped, its ticks end at once
    EXPECT_EQ(sync->pollBackoff(), before);
    EXPECT_EQ(io.pending(), 0u);
}

TEST_F(StoreTriggers, NoTimerForADeviceThatTurnsSyncOnLater) {
    startDevice({makePalette(u"One"_s, {makeColor(u"A"_s, u"#010101"_s)})}, false);
    storeSync->start();
    EXPECT_FALSE(storeSync->hasCloudSyncTimer());
    ASSERT_FALSE(sync->setupSync(root, std::nullopt).has_value());
    scheduler.advance(25.0);
    EXPECT_EQ(io.pending(), 0u);
    // It lives on the folder events and the poll.
    scheduler.advance(10.0);
    EXPECT_EQ(io.pending(), 1u);
}

TEST_F(StoreTriggers, APullRefusedForASaveInFlightLeavesTheStatusSyncing) {
    startStore();
    scheduler.advance(5.0);
    store->saveTemplates(); // held by the fake writer
    watch->fire();
    scheduler.advance(0.5);
    EXPECT_EQ(io.pending(), 0u);
    EXPECT_FALSE(store->isSyncing());
    EXPECT_EQ(sync->syncStatus(), SyncStatus::syncing());

    // The save's own push ends it.
    completeWrites();
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
}

TEST_F(StoreTriggers, DeletingAPaletteLeavesADeletionRecord) {
    startDevice({makePalette(u"One"_s, {makeColor(u"A"_s, u"#010101"_s)}),
                 makePalette(u"Two"_s, {makeColor(u"B"_s, u"#020202"_s)}),
                 makePalette(u"Three"_s, {makeColor(u"C"_s, u"#030303"_s)})});
    const QList<ColorTemplate> palettes = store->templates();
    storeSync->pushToCloud();
    const qint64 revision = recordOf(palettes.at(0).id)->revision;

    ASSERT_TRUE(store->confirmDeleteTemplate(palettes.at(0).id));
    const SyncableTemplate record = recordOf(palettes.at(0).id).value();
    EXPECT_TRUE(record.deleted);
    EXPECT_EQ(record.deletedBy, sync->deviceId());
    EXPECT_EQ(record.deletedAt, clock.nowMs());
    EXPECT_EQ(record.revision, revision + 1);
    ASSERT_EQ(sync->recentlyDeletedTemplates().size(), 1);
    EXPECT_EQ(sync->recentlyDeletedTemplates().constFirst().id, palettes.at(0).id);

    // The folder away: the palette goes here and leaves nothing behind.
    storeSync->pushToCloud();
    takeFolderAway();
    ASSERT_TRUE(store->confirmDeleteTemplate(palettes.at(1).id));
    bringFolderBack();
    EXPECT_FALSE(recordOf(palettes.at(1).id)->deleted);
    EXPECT_EQ(sync->recentlyDeletedTemplates().size(), 1);
}

TEST_F(StoreTriggers, DeletingAPaletteThatNeverReachedTheFolderIsQuiet) {
    startDevice({makePalette(u"One"_s, {makeColor(u"A"_s, u"#010101"_s)}),
                 makePalette(u"Two"_s, {makeColor(u"B"_s, u"#020202"_s)})});
    const QUuid id = store->templates().constFirst().id;
    EXPECT_EQ(sync->markTemplateDeleted(id), SyncError::templateNotFound());
    EXPECT_TRUE(store->confirmDeleteTemplate(id));
    EXPECT_FALSE(recordOf(id).has_value());
    EXPECT_EQ(store->templates().size(), 1);
}

} // namespace
} // namespace hueshelf::testing
