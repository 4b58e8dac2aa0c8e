// Writing every palette to the folder at the end of a save.

#include "SyncEngineTestSupport.h"
#include "model/TemplateJson.h"
#include "sync/SyncDefaults.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

class PushToCloud : public SyncEngineFixture {
protected:
    void SetUp() override {
        for (const QString& name : {u"One"_s, u"Two"_s, u"Three"_s})
            palettes.append(makePalette(name, {makeColor(name, u"#123456"_s)}));
        startDevice(palettes);
    }

    QSet<QUuid> idsOf(std::initializer_list<qsizetype> indexes) const {
        QSet<QUuid> ids;
        for (qsizetype i : indexes)
            ids.insert(palettes.at(i).id);
        return ids;
    }

    QList<ColorTemplate> palettes;
};

TEST_F(PushToCloud, OneFailedWriteOfThreeWritesTheOtherTwo) {
    // A directory where the second palette's file belongs: its atomic write can't land.
    ASSERT_TRUE(QDir().mkpath(fileOf(palettes.at(1).id)));
    clock.advanceMs(10.0);

    storeSync->pushToCloud();

    EXPECT_TRUE(recordOf(palettes.at(0).id).has_value());
    EXPECT_TRUE(recordOf(palettes.at(2).id).has_value());
    EXPECT_EQ(sync->pendingTemplateChanges(), idsOf({1}));
    EXPECT_TRUE(sync->hasPendingLocalChanges());
    EXPECT_EQ(SyncDefaults::loadPendingTemplateChanges(*settings), idsOf({1}));
    EXPECT_EQ(sync->syncStatus().text(),
              u"Error: 1 palette hasn't synced yet — HueShelf will keep retrying"_s);
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::failed(kStart + 10.0));
    EXPECT_TRUE(store->shadowState().contains(palettes.at(0).id));
    EXPECT_FALSE(store->shadowState().contains(palettes.at(1).id));
    EXPECT_EQ(sync->lastSyncTime(), kStart + 10.0);

    // The next push retries everything, and one success clears the id.
    ASSERT_TRUE(QDir(fileOf(palettes.at(1).id)).removeRecursively());
    storeSync->pushToCloud();
    EXPECT_TRUE(sync->pendingTemplateChanges().isEmpty());
    EXPECT_FALSE(sync->hasPendingLocalChanges());
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::synced());
}

TEST_F(PushToCloud, StatusTextCountsTheFailures) {
    struct Row {
        int failures;
        QString text;
    };
    const Row rows[] = {
        {2, u"Error: 2 palettes haven't synced yet — HueShelf will keep retrying"_s},
        {0, u"Synced"_s},
        {12, u"Error: 12 palettes haven't synced yet — HueShelf will keep retrying"_s},
        {1, u"Error: 1 palette hasn't synced yet — HueShelf will keep retrying"_s},
    };
    for (const Row& row : rows) {
        sync->updateStatusAfterPush(row.failures);
        EXPECT_EQ(sync->syncStatus().text(), row.text) << row.failures;
    }
}

TEST_F(PushToCloud, KeepsTheFoldersCreationStampsAndSignsAsThisDevice) {
    SyncableTemplate earlier = remoteRecord(palettes.at(0), 99.0, kDeviceB);
    earlier.createdAt = 42.5;
    earlier.createdBy = kDeviceA;
    putRecord(earlier);
    // A deletion record of a palette that still lives here is overwritten without a look.
    putRecord(deletionRecord(remoteRecord(palettes.at(1), 99.0), 100.0));
    clock.advanceMs(3.0);

    storeSync->pushToCloud();

    const SyncableTemplate kept = recordOf(palettes.at(0).id).value();
    EXPECT_EQ(kept.createdAt, 42.5);
    EXPECT_EQ(kept.createdBy, kDeviceA);
    EXPECT_EQ(kept.modifiedBy, sync->deviceId());
    EXPECT_EQ(kept.lastModified, kStart + 3.0);
    EXPECT_EQ(store->templateLastModified().value(palettes.at(0).id), kStart + 3.0);

    const SyncableTemplate revived = recordOf(palettes.at(1).id).value();
    EXPECT_FALSE(revived.deleted);
    EXPECT_FALSE(revived.deletedAt.has_value());

    // New to the folder: created here, at the palette's own creation.
    const SyncableTemplate fresh = recordOf(palettes.at(2).id).value();
    EXPECT_EQ(fresh.createdBy, sync->deviceId());
    EXPECT_EQ(fresh.createdAt, palettes.at(2).createdAt);
}

TEST_F(PushToCloud, OfTwoFilesWithOneIdTheLaterInFileOrderGivesTheCreation) {
    // Files named after other ids, sorting before and after the palette's own file.
    const auto stray = [this](const QString& name, double createdAt, const QString& device) {
        SyncableTemplate record = remoteRecord(palettes.at(0), 99.0);
        record.createdAt = createdAt;
        record.createdBy = device;
        writeBytes(QDir(templatesFolder()).filePath(name + u".json"_s),
                   SyncFolder::encode(record.toJson()));
    };
    stray(u"00000000-0000-4000-8000-000000000000"_s, 1.0, kDeviceA);
    stray(u"FFFFFFFF-FFFF-4FFF-8FFF-FFFFFFFFFFFF"_s, 2.0, kDeviceB);

    storeSync->pushToCloud();
    SyncableTemplate written = recordOf(palettes.at(0).id).value();
    EXPECT_EQ(written.createdAt, 2.0);
    EXPECT_EQ(written.createdBy, kDeviceB);

    // With the later stray gone, the palette's own file, which kept that stamp, is the later
    // of the two.
    ASSERT_TRUE(QFile::remove(
        QDir(templatesFolder()).filePath(u"FFFFFFFF-FFFF-4FFF-8FFF-FFFFFFFFFFFF.json"_s)));
    storeSync->pushToCloud();
    written = recordOf(palettes.at(0).id).value();
    EXPECT_EQ(written.createdAt, 2.0);
    EXPECT_EQ(written.createdBy, kDeviceB);
}

TEST_F(PushToCloud, StoresTheShadowStateOnceWithEveryWrittenPalette) {
    struct Row {
        const char* label;
        QList<qsizetype> blocked; // palettes with a directory where their file belongs
        std::size_t writes;
    };
    const Row rows[] = {
        {"all written", {}, 1u},
        {"one failed", {1}, 1u},
        {"none written", {0, 1, 2}, 0u},
    };
    for (const Row& row : rows) {
        const QMap<QUuid, ShadowTemplateState> before = store->shadowState();
        writer.shadowWrites.clear();
        for (qsizetype i : row.blocked) {
            QFile::remove(fileOf(palettes.at(i).id));
            ASSERT_TRUE(QDir().mkpath(fileOf(palettes.at(i).id)));
        }
        clock.advanceMs(5.0);

        storeSync->pushToCloud();

        ASSERT_EQ(writer.shadowWrites.size(), row.writes) << row.label;
        for (qsizetype i = 0; i < palettes.size(); ++i) {
            const QUuid& id = palettes.at(i).id;
            if (row.blocked.contains(i))
                EXPECT_EQ(store->shadowState().value(id), before.value(id)) << row.label << i;
            else
                EXPECT_EQ(store->shadowState().value(id).syncedAt, clock.nowMs()) << row.label << i;
        }
        if (row.writes > 0) {
            EXPECT_EQ(TemplateJson::decodeShadowStates(writer.shadowWrites.back()),
                      store->shadowState())
                << row.label;
        }
        for (qsizetype i : row.blocked)
            ASSERT_TRUE(QDir(fileOf(palettes.at(i).id)).removeRecursively());
    }
}

TEST_F(PushToCloud, WritesTheHashOfWhatItWritesNotOfTheLastStamp) {
    store->editTemplate(palettes.at(0).id, [](ColorTemplate& p) { p.name = u"Renamed"_s; });
    storeSync->pushToCloud();
    const SyncableTemplate written = recordOf(palettes.at(0).id).value();
    EXPECT_EQ(written.name, u"Renamed"_s);
    EXPECT_EQ(written.contentHash, computeContentHash(u"Renamed"_s, palettes.at(0).colors));
    EXPECT_EQ(store->shadowState().value(palettes.at(0).id).contentHash, written.contentHash);
}

TEST_F(PushToCloud, EveryCompletedSavePushes) {
    store->saveTemplates();
    EXPECT_FALSE(recordOf(palettes.at(0).id).has_value()); // not before the write completes
    completeWrites();
    EXPECT_TRUE(recordOf(palettes.at(0).id).has_value());
    EXPECT_TRUE(recordOf(palettes.at(2).id).has_value());
}

TEST_F(PushToCloud, IsSkippedWhileAPassRunsAndLeavesPendingIdsAlone) {
    sync->addPendingChange(palettes.at(2).id);
    store->setSyncing(true);
    store->saveTemplates();
    completeWrites();
    EXPECT_FALSE(recordOf(palettes.at(0).id).has_value());
    EXPECT_EQ(sync->pendingTemplateChanges(), idsOf({2}));

    // A pass that starts while the write is under way holds the push back as well.
    store->setSyncing(false);
    store->saveTemplates();
    store->setSyncing(true);
    completeWrites();
    EXPECT_FALSE(recordOf(palettes.at(0).id).has_value());

    // The next save outside a pass pushes everything.
    store->setSyncing(false);
    store->saveTemplates();
    completeWrites();
    EXPECT_TRUE(recordOf(palettes.at(0).id).has_value());
    EXPECT_TRUE(sync->pendingTemplateChanges().isEmpty());
}

TEST_F(PushToCloud, WithTheFolderAwayEveryPaletteIsPending) {
    ASSERT_TRUE(QDir().rename(syncFolder(), syncFolder() + u" moved"_s));
    clock.advanceMs(20.0);

    storeSync->pushToCloud();

    EXPECT_EQ(sync->pendingTemplateChanges(), idsOf({0, 1, 2}));
    EXPECT_EQ(SyncDefaults::loadPendingTemplateChanges(*settings), idsOf({0, 1, 2}));
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::failed(kStart + 20.0));
    EXPECT_EQ(sync->lastSyncTime(), kStart); // from the set-up, not this push
    // The status follows a moment later, not under the caller's feet.
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
    scheduler.runDue();
    EXPECT_EQ(sync->syncStatus(), SyncStatus::offline());
}

TEST_F(PushToCloud, WritesTheSettingsWithTheAppearanceMode) {
    storeSync->pushToCloud();
    const QJsonObject first = readObject(SyncFolder::settingsPath(syncFolder()));
    EXPECT_EQ(first.value(u"appearanceMode"_s).toString(), u"system"_s);
    EXPECT_EQ(first.value(u"activeTemplateId"_s).toString(), uuidText(palettes.at(0).id));
    EXPECT_EQ(first.value(u"modifiedBy"_s).toString(), sync->deviceId());

    settings->setValue(u"appearanceMode"_s, u"dark"_s);
    storeSync->pushToCloud();
    EXPECT_EQ(readObject(SyncFolder::settingsPath(syncFolder())).value(u"appearanceMode"_s),
              u"dark"_s);
}

TEST_F(PushToCloud, DoesNothingWithSyncOff) {
    sync->disableSync();
    storeSync->pushToCloud();
    EXPECT_FALSE(recordOf(palettes.at(0).id).has_value());
    EXPECT_TRUE(sync->pendingTemplateChanges().isEmpty());
    EXPECT_EQ(store->cloudSyncStatus(), CloudSyncStatus::synced());
}

} // namespace
} // namespace hueshelf::testing
