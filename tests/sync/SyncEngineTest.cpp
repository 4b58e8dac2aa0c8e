// The sync engine's rules: the decision on one palette, the merge's special cases, doubles, the
// push, deletion records, and when a pull starts (debounce, echo window, poll, store timer,
// back-off), all on the manual clock.

#include "SyncTestSupport.h"
#include "sync/QtFolderWatch.h"
#include "sync/SyncDefaults.h"
#include "sync/SyncLimits.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <tuple>
#include <vector>

namespace hueshelf::testing {
namespace {

using Kind = SyncResult::Kind;

TEST(ResolveSync, HashesAgainstTheShadowDecideAndWithoutOneTheClocks) {
    const QString s = u"aaaaaaaaaaaaaaaa"_s, o = u"bbbbbbbbbbbbbbbb"_s, t = u"cccccccccccccccc"_s;
    // Hashes, whether a shadow holds s, clocks (the wrong way round where a shadow decides).
    const std::tuple<QString, QString, bool, double, double, Kind> rows[] = {
        {s, s, true, 9'000.0, 1'000.0, Kind::noChange},
        {s, o, true, 9'000.0, 1'000.0, Kind::acceptRemote},
        {o, s, true, 1'000.0, 9'000.0, Kind::acceptLocal},
        {o, o, true, 9'000.0, 1'000.0, Kind::noChange},
        {o, t, true, 9'000.0, 1'000.0, Kind::conflict},
        {s.toUpper(), s, true, 1.0, 1.0, Kind::acceptLocal}, // compared as text
        {s, o, false, 2'000.0, 1'999.5, Kind::acceptLocal},
        {s, s, false, 1'999.5, 2'000.0, Kind::acceptRemote},
        {s, s, false, 2'000.0, 2'000.0, Kind::noChange},
        {s, o, false, 2'000.0, 2'000.0, Kind::conflict},
    };
    for (const auto& [localHash, remoteHash, shadow, localTime, remoteTime, expected] : rows) {
        SCOPED_TRACE(QString(localHash + u' ' + remoteHash + u' ' + QString::number(localTime))
                         .toStdString());
        ColorTemplate local = paletteOf(u"Brand"_s, u"Ink:#101010"_s);
        local.contentHash = localHash;
        local.updatedAt = localTime;
        SyncableTemplate remote = remoteRecord(local, remoteTime);
        remote.contentHash = remoteHash;
        remote.revision = 99; // revisions take no part
        const auto agreed = shadow ? std::optional(ShadowTemplateState{s, 1, 0.0}) : std::nullopt;
        EXPECT_EQ(StoreSync::resolveSync(local, remote, agreed).kind, expected);
    }
}

class ApplyRemoteTemplates : public SyncEngineFixture {
protected:
    void SetUp() override {
        brand = paletteOf(u"Brand"_s, u"Ink:#101010 Paper:#FAFAFA"_s);
        brand.revision = 4;
        other = paletteOf(u"Other"_s, u"Moss:#4A6B3A"_s);
        other.revision = 9;
        startDevice({brand, other});
        // Both palettes last agreed with the folder as they stand.
        for (const ColorTemplate& palette : {brand, other})
            store->setShadowState(palette.id,
                                  ShadowTemplateState{palette.contentHash, palette.revision, 1.0});
        writer.shadowWrites.clear();
    }

    ColorTemplate brand;
    ColorTemplate other;
};

TEST_F(ApplyRemoteTemplates, DeletionRecordsWinOverLocalEdits) {
    // Edited here since the last agreement, as a save stamps it.
    store->editTemplate(brand.id, [](ColorTemplate& p) {
        p.colors[0].hex = u"#202020"_s;
        p.contentHash = computeContentHash(p.name, p.colors);
    });
    const ColorTemplate stranger = paletteOf(u"Gone"_s, u"X:#000000"_s);
    storeSync->applyRemoteTemplates(
        {deletionRecord(stranger, kStart), deletionRecord(brand, kStart)});
    EXPECT_EQ(namesOf(store->templates()), QStringList{u"Other"_s});
    EXPECT_FALSE(store->shadowState().contains(brand.id));
    // Unstamped: the merge raises no revision.
    ASSERT_FALSE(writer.requests.empty());
    EXPECT_EQ(writer.requests.back().kind, SaveRequest::Kind::withoutStamping);
    EXPECT_EQ(writer.requests.back().templates.constFirst().revision, 9);
    // With every palette gone a fresh id becomes the active one.
    storeSync->applyRemoteTemplates({deletionRecord(other, kStart)});
    EXPECT_TRUE(store->templates().isEmpty());
    EXPECT_FALSE(store->activeTemplateId().isNull());
    EXPECT_NE(store->activeTemplateId(), other.id);
}

TEST_F(ApplyRemoteTemplates, AConflictKeepsTheLocalAndAddsACopyOfTheRemote) {
    store->editTemplate(brand.id, [](ColorTemplate& p) {
        p.name = u"Brand (mine)"_s;
        p.contentHash = u"1111111111111111"_s;
    });
    const ColorTemplate local = store->templates().at(0);
    ColorTemplate theirs = brand;
    theirs.name = u"Brand (theirs)"_s;
    const SyncableTemplate record = remoteRecord(theirs, kStart - 5'000.0);
    clock.advanceMs(777.0);
    storeSync->applyRemoteTemplates({record});
    ASSERT_EQ(store->templates().size(), 3);
    EXPECT_EQ(store->templates().at(0).name, u"Brand (mine)"_s);
    const ColorTemplate& copy = store->templates().at(2);
    EXPECT_EQ(copy.name, u"Brand (theirs) (Conflict)"_s);
    EXPECT_EQ(copy.colors, brand.colors);
    EXPECT_EQ(std::tuple(copy.updatedAt, copy.revision, copy.contentHash),
              std::tuple(kStart + 777.0, 1, computeContentHash(copy.name, copy.colors)));
    EXPECT_EQ(store->shadowState().value(brand.id).contentHash, record.contentHash);
    ASSERT_EQ(store->pendingConflicts().size(), 1);
    // The next look at the same two versions finds only the local one changed.
    EXPECT_EQ(storeSync->resolveSync(local, record).kind, Kind::acceptLocal);
}

TEST_F(ApplyRemoteTemplates, ANewcomerThatDoublesAPaletteHereIsSkipped) {
    // Name and colours of a newcomer, and whether it is taken beside "Brand".
    const std::tuple<QString, QString, bool> rows[] = {
        {u"Brand"_s, u"Ink:#101010 Paper:#FAFAFA"_s, false},
        {u"Brand"_s, u"Paper:#FAFAFA Ink:#101010 Ink:#101010"_s, false}, // order, repeats
        {u"Brand 2"_s, u"Ink:#101010 Paper:#FAFAFA"_s, true},
        {u"Brand"_s, u"Ink:#101010 Sheet:#FAFAFA"_s, true},
        {u"Brand"_s, u"Ink:#101010"_s, true}};
    for (const auto& [name, colors, taken] : rows) {
        SCOPED_TRACE(QString(name + u' ' + colors).toStdString());
        const ColorTemplate theirs = paletteOf(name, colors);
        const qsizetype before = store->templates().size();
        storeSync->applyRemoteTemplates({remoteRecord(theirs, kStart)});
        EXPECT_EQ(store->templates().size(), before + (taken ? 1 : 0));
        EXPECT_EQ(store->shadowState().contains(theirs.id), taken);
    }
}

TEST_F(ApplyRemoteTemplates, ALockOnlyChangeMovesTheShadowButNotThePalette) {
    ColorTemplate locked = brand;
    locked.colors[1].isLocked = true;
    locked.colors[0].dividerBefore = true;
    const SyncableTemplate record = remoteRecord(locked, kStart + 50.0);
    ASSERT_NE(record.contentHash, brand.contentHash);
    storeSync->applyRemoteTemplates({record});
    EXPECT_TRUE(writer.requests.empty());
    EXPECT_FALSE(store->templates().at(0).colors.at(1).isLocked);
    EXPECT_EQ(store->shadowState().value(brand.id).contentHash, record.contentHash);
}

TEST_F(ApplyRemoteTemplates, OfDoublesTheOldestSurvivesAndOfEqualAgesTheLater) {
    // Times of three doubles in list order, and which of them survives.
    const std::pair<std::array<double, 3>, int> rows[] = {
        {{100.0, 50.0, 200.0}, 1}, {{10.0, 50.0, 200.0}, 0}, {{70.0, 70.0, 70.0}, 2}};
    for (const auto& [times, survivor] : rows) {
        SCOPED_TRACE(survivor);
        // The same colours in another order are a double too; repeated colours are not.
        const QList<ColorTemplate> doubles = {
            paletteOf(u"Brand"_s, u"Ink:#111111 Paper:#222222"_s),
            paletteOf(u"Brand"_s, u"Paper:#222222 Ink:#111111"_s),
            paletteOf(u"Brand"_s, u"Ink:#111111 Paper:#222222"_s)};
        const ColorTemplate repeated =
            paletteOf(u"Brand"_s, u"Ink:#111111 Ink:#111111 Paper:#222222"_s);
        storeSync.reset();
        startDevice({doubles[0], other, doubles[1], repeated, doubles[2]}, false);
        for (int i = 0; i < 3; ++i)
            store->setTemplateLastModified(doubles[i].id, times[std::size_t(i)]);
        storeSync->removeDuplicateTemplates();
        QList<QUuid> expected = {other.id, repeated.id};
        expected.insert(survivor, doubles[survivor].id);
        QList<QUuid> ids;
        for (const ColorTemplate& palette : store->templates())
            ids.append(palette.id);
        EXPECT_EQ(ids, expected);
    }
}

class SyncTriggers : public SyncEngineFixture {
protected:
    // A device whose folder events are counted instead of pulled.
    void startCounting() {
        startDevice({paletteOf(u"One"_s, u"A:#010101"_s)});
        sync->setOnSyncFolderChanged([this] { pulls.push_back(clock.nowMs() - kStart); });
    }
    // The store's side as well: the full sync at start, its timer, its pulls.
    void startStore() {
        startDevice({paletteOf(u"One"_s, u"A:#010101"_s)});
        storeSync->start();
        io.flush();
        completeWrites();
    }
    void failChecks(int count) {
        for (int i = 0; i < count; ++i)
            sync->checkFolderAvailability();
    }

    std::vector<double> pulls; // ms after the start
};

TEST_F(SyncTriggers, AnEventWithinTwoSecondsOfAnOwnWriteIsItsEcho) {
    // The debounce adds 0.5 s: an event 1.5 s after the write is handled exactly 2.0 s after.
    for (const auto& [afterMs, pulled] : {std::pair{0.0, false}, std::pair{1'499.0, false},
                                          std::pair{1'500.0, true}, std::pair{4'000.0, true}}) {
        SCOPED_TRACE(afterMs);
        pulls.clear();
        startCounting();
        ASSERT_FALSE(sync->writeTemplate(remoteRecord(store->templates().constFirst(), 1.0)));
        scheduler.advance(afterMs / 1000.0);
        watch->fire();
        scheduler.advance(1.0);
        EXPECT_EQ(pulls.size(), pulled ? 1u : 0u);
        EXPECT_EQ(sync->syncStatus(), pulled ? SyncStatus::syncing() : SyncStatus::synced());
        storeSync.reset();
    }
}

TEST_F(SyncTriggers, EventsAndThePollPullAfterTheDebounceExceptInBackOff) {
    startCounting();
    EXPECT_EQ(watch->watched, templatesFolder());
    // A burst of events ends in one pull half a second after the last.
    for (int i = 0; i * 300 <= 5'000; ++i) {
        watch->fire();
        scheduler.advance(0.3);
    }
    scheduler.advance(25.0); // the poll's tick at 30 s starts the debounce like an event
    EXPECT_EQ(pulls, std::vector<double>{5'300.0});
    EXPECT_EQ(sync->syncStatus(), SyncStatus::syncing());
    scheduler.advance(0.4);
    EXPECT_EQ(pulls, (std::vector<double>{5'300.0, 30'500.0}));
    // Three failed checks in a row, not two, start a back-off of 300 s.
    takeFolderAway();
    failChecks(2);
    EXPECT_FALSE(sync->pollBackoff().backoffUntil.has_value());
    failChecks(1);
    EXPECT_EQ(sync->pollBackoff().backoffUntil, kStart + 30'500.0 + 300'000.0);
    scheduler.advance(299.0); // ticks at 60 ... 300 s stand back
    EXPECT_EQ(pulls.size(), 2u);
    scheduler.advance(40.0); // at 330 s it still holds; the tick at 360 s passes
    EXPECT_EQ(pulls.back(), 360'500.0);
    // One successful check clears it all.
    bringFolderBack();
    EXPECT_TRUE(sync->checkFolderAvailability());
    EXPECT_EQ(sync->pollBackoff(), SyncPollBackoff{});
}

TEST_F(SyncTriggers, TheStoresTimerPullsEveryTenSecondsUnlessInBackOff) {
    startStore();
    // The store's timer alone: without a watch there is no poll.
    watch->refuse = true;
    sync->startMonitoring();
    scheduler.advance(9.0);
    EXPECT_EQ(io.pending(), 0u);
    scheduler.advance(1.0);
    EXPECT_EQ(io.pending(), 1u);
    scheduler.advance(10.0); // a pass still reading: the next tick stands back
    EXPECT_EQ(io.pending(), 1u);
    io.flush();
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
    takeFolderAway();
    failChecks(3); // at 20 s: back-off until 320 s
    scheduler.advance(290.0);
    EXPECT_EQ(sync->pollBackoff().consecutiveFailures, 3); // no tick looked
    // Past the back-off the next tick checks, fails, and a new 300 s start from then.
    scheduler.advance(20.0);
    EXPECT_EQ(sync->pollBackoff().consecutiveFailures, 4);
    EXPECT_EQ(sync->pollBackoff().backoffUntil, kStart + 320'000.0 + 300'000.0);
    // Turned off, the timer goes on ticking but its ticks end at once; turned on again in
    // another run, the device keeps its id and its one entry in the manifest.
    bringFolderBack();
    const QString device = sync->deviceId();
    sync->disableSync();
    scheduler.advance(600.0);
    EXPECT_EQ(sync->pollBackoff().consecutiveFailures, 4);
    storeSync.reset();
    makeManager();
    ASSERT_FALSE(sync->setupSync(root, u"Dropbox"_s).has_value());
    EXPECT_EQ(SyncFolder::readManifest(syncFolder())->devices.keys(), QStringList{device});
}

TEST(QtFolderWatch, ReportsAnAtomicWriteAndRefusesWhatIsNoFolder) {
    ensureCoreApplication();
    const QTemporaryDir dir;
    QtFolderWatch watch;
    int events = 0;
    EXPECT_FALSE(watch.start(dir.filePath(u"missing"_s), [] {}));
    ASSERT_TRUE(watch.start(dir.path(), [&events] { ++events; }));
    ASSERT_FALSE(SyncFolder::writeFileAtomically(dir.filePath(u"A.json"_s), "{}"));
    EXPECT_TRUE(spinUntil([&events] { return events > 0; }));
}

class PushToCloud : public SyncEngineFixture {
protected:
    void SetUp() override {
        palettes = {paletteOf(u"One"_s, u"One:#123456"_s), paletteOf(u"Two"_s, u"Two:#123456"_s),
                    paletteOf(u"Three"_s, u"Three:#123456"_s)};
        startDevice(palettes);
    }
    QList<ColorTemplate> palettes;
};
TEST_F(PushToCloud, AFailedWriteKeepsItsIdPendingAndTheStatusCountsThem) {
    // A directory where the second palette's file belongs: its atomic write can't land.
    ASSERT_TRUE(QDir().mkpath(fileOf(palettes.at(1).id)));
    clock.advanceMs(10.0);
    storeSync->pushToCloud();
    EXPECT_TRUE(recordOf(palettes.at(0).id) && recordOf(palettes.at(2).id));
    EXPECT_EQ(SyncDefaults::loadPendingTemplateChanges(*settings), QSet{palettes.at(1).id});
    EXPECT_EQ(sync->syncStatus().text(),
              u"Error: 1 palette hasn't synced yet — HueShelf will keep retrying"_s);
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::failed(kStart + 10.0));
    EXPECT_FALSE(store->shadowState().contains(palettes.at(1).id));
    // A check that finds the folder leaves an error alone.
    sync->updateStatusAfterPush(2);
    sync->checkFolderAvailability();
    scheduler.runDue();
    EXPECT_EQ(sync->syncStatus().text(),
              u"Error: 2 palettes haven't synced yet — HueShelf will keep retrying"_s);
    // The next push retries everything, and its success clears the id.
    ASSERT_TRUE(QDir(fileOf(palettes.at(1).id)).removeRecursively());
    storeSync->pushToCloud();
    EXPECT_FALSE(sync->hasPendingLocalChanges());
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
    // With the folder away every palette is pending, and a moment later the status is offline,
    // until a check finds the folder again.
    takeFolderAway();
    storeSync->pushToCloud();
    EXPECT_EQ(sync->pendingTemplateChanges().size(), 3);
    scheduler.runDue();
    EXPECT_EQ(sync->syncStatus().text(), u"Offline"_s);
    bringFolderBack();
    sync->checkFolderAvailability();
    scheduler.runDue();
    EXPECT_EQ(sync->syncStatus().text(), u"Synced"_s);
}

TEST_F(PushToCloud, KeepsTheFoldersCreationAndOverwritesADeletionRecord) {
    SyncableTemplate earlier = remoteRecord(palettes.at(0), 99.0);
    earlier.createdAt = 42.5;
    earlier.createdBy = kDeviceA;
    putRecord(earlier);
    putRecord(deletionRecord(palettes.at(1), 100.0));
    clock.advanceMs(3.0);
    storeSync->pushToCloud();
    const SyncableTemplate kept = recordOf(palettes.at(0).id).value();
    EXPECT_EQ(std::pair(kept.createdAt, kept.createdBy), std::pair(42.5, kDeviceA));
    EXPECT_EQ(std::pair(kept.lastModified, kept.modifiedBy),
              std::pair(clock.nowMs(), sync->deviceId()));
    EXPECT_FALSE(recordOf(palettes.at(1).id)->deleted); // a palette alive here comes back
    EXPECT_EQ(recordOf(palettes.at(2).id)->createdBy, sync->deviceId());
}

TEST_F(PushToCloud, AFullSyncMergesAndUploadsOnlyWhatTheFolderLacks) {
    const SyncableTemplate shared = remoteRecord(palettes.at(0), kStart - 10.0);
    const ColorTemplate theirs = makePalette(u"Theirs"_s, {makeColor(u"T"_s, u"#0F0F0F"_s)});
    putRecord(shared);
    putRecord(remoteRecord(theirs, kStart - 20.0));
    putRecord(deletionRecord(palettes.at(1), 2.0));
    storeSync->fullSync();
    io.flush();
    EXPECT_EQ(namesOf(store->templates()), (QStringList{u"One"_s, u"Three"_s, u"Theirs"_s}));
    EXPECT_EQ(recordOf(palettes.at(0).id), shared); // known to the folder: not rewritten
    EXPECT_EQ(recordOf(palettes.at(2).id)->lastModified, palettes.at(2).updatedAt);
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::synced());
}

TEST_F(PushToCloud, DeletionRecordsAndTheirRestoration) {
    const QUuid id = palettes.at(0).id;
    // Never in the folder: the palette goes here and leaves no record.
    EXPECT_EQ(sync->markTemplateDeleted(id), SyncError::templateNotFound());
    storeSync->pushToCloud();
    const qint64 revision = recordOf(id)->revision;
    clock.advanceMs(1'000.0);
    ASSERT_TRUE(store->confirmDeleteTemplate(id));
    const SyncableTemplate deleted = recordOf(id).value();
    EXPECT_EQ(std::tuple(deleted.deleted, deleted.deletedAt, deleted.deletedBy, deleted.revision),
              std::tuple(true, clock.nowMs(), sync->deviceId(), revision + 1));
    EXPECT_EQ(sync->recentlyDeletedTemplates(), QList{deleted});
    clock.advanceMs(1'000.0);
    ASSERT_FALSE(sync->restoreTemplate(id).has_value());
    const SyncableTemplate restored = recordOf(id).value();
    EXPECT_FALSE(restored.deleted || restored.deletedAt || restored.deletedBy);
    EXPECT_EQ(std::pair(restored.lastModified, restored.revision),
              std::pair(clock.nowMs(), revision + 2));
    EXPECT_TRUE(sync->recentlyDeletedTemplates().isEmpty());
}

// A palette file grown past the size limit, by another program or an accident, counts as
// unreadable to the single-file reader too: deleting or restoring it finds no palette and
// leaves the file as it is, while one of exactly the limit is still taken.
TEST_F(PushToCloud, AFileOverTheSizeLimitIsNotFoundForDeletionOrRestoring) {
    storeSync->pushToCloud();
    const std::tuple<ColorTemplate, qint64, bool> rows[] = {
        {palettes.at(0), SyncLimits::maxTemplateFileSize, true},
        {palettes.at(1), SyncLimits::maxTemplateFileSize + 1, false}};
    for (const auto& [palette, size, readable] : rows) {
        SCOPED_TRACE(size);
        QFile file(fileOf(palette.id));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        const QByteArray bytes = file.readAll();
        // Trailing white space keeps the JSON valid whatever the length.
        ASSERT_EQ(file.write(QByteArray(size - bytes.size(), ' ')), size - bytes.size());
        file.close();
        EXPECT_EQ(recordOf(palette.id).has_value(), readable);
        const std::optional<SyncError> error = sync->markTemplateDeleted(palette.id);
        EXPECT_EQ(error, readable ? std::nullopt : std::optional(SyncError::templateNotFound()));
        EXPECT_EQ(sync->restoreTemplate(palette.id),
                  readable ? std::nullopt : std::optional(SyncError::templateNotFound()));
        if (!readable) {
            EXPECT_EQ(QFileInfo(file).size(), size);
        }
    }
}

} // namespace
} // namespace hueshelf::testing
