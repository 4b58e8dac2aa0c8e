// Setting up, joining and leaving a sync folder, the start from a stored configuration, and
// the manager's own writes of deletion records.

#include "SyncEngineTestSupport.h"
#include "sync/SyncDefaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

namespace hueshelf::testing {
namespace {

class SyncManagerSetup : public SyncEngineFixture {
protected:
    SyncManagerSetup() { makeManager(); }

    void storeConfiguration(const SyncConfiguration& configuration) {
        SyncDefaults::storeConfiguration(*settings, configuration);
    }
    SyncConfiguration enabledConfiguration(const QString& service = u"Dropbox"_s) const {
        SyncConfiguration configuration;
        configuration.isEnabled = true;
        configuration.cloudService = service;
        configuration.syncFolderPath = syncFolder();
        configuration.deviceId = kDeviceA;
        configuration.deviceName = u"Studio"_s;
        return configuration;
    }
    void restart() {
        sync.reset();
        makeManager();
    }
    SyncManifest manifest() const { return SyncFolder::readManifest(syncFolder()).value(); }
};

TEST_F(SyncManagerSetup, SetUpMakesTheFolderAndRegistersThisDevice) {
    const DetectedCloudService dropbox{CloudService::dropbox, root};
    sync->setAvailableServices(
        {DetectedCloudService{CloudService::iCloud, u"/elsewhere"_s}, dropbox});

    ASSERT_FALSE(sync->setupSync(root, u"Dropbox"_s).has_value());

    EXPECT_TRUE(QFileInfo(templatesFolder()).isDir());
    const SyncManifest written = manifest();
    EXPECT_EQ(written.version, u"1.0"_s);
    EXPECT_EQ(written.schemaVersion, 2);
    EXPECT_EQ(written.lastSyncedAt, kStart);
    ASSERT_EQ(written.devices.size(), 1);
    EXPECT_EQ(written.devices.value(sync->deviceId()),
              (SyncManifest::DeviceInfo{u"Test Machine"_s, u"linux"_s, kStart, u"1.2.3"_s}));

    const SyncConfiguration stored = SyncDefaults::loadConfiguration(*settings).value();
    EXPECT_EQ(stored, sync->configuration());
    EXPECT_TRUE(stored.isEnabled);
    EXPECT_EQ(stored.cloudService, u"Dropbox"_s);
    EXPECT_EQ(stored.syncFolderPath, syncFolder());
    EXPECT_FALSE(stored.securityBookmark.has_value());

    EXPECT_TRUE(sync->isEnabled());
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
    EXPECT_EQ(sync->lastSyncTime(), kStart);
    EXPECT_EQ(sync->selectedService(), dropbox);
    EXPECT_EQ(sync->securityScopedPath(), root);
    EXPECT_TRUE(sync->isWatchingFolder());
    EXPECT_TRUE(sync->isPolling());
}

TEST_F(SyncManagerSetup, SetUpInAnExistingFolderJoinsIt) {
    ASSERT_TRUE(QDir().mkpath(syncFolder()));
    SyncManifest existing;
    existing.version = u"0.9"_s;
    existing.schemaVersion = 1;
    existing.lastSyncedAt = 5.0;
    existing.devices.insert(kDeviceB, {u"Laptop"_s, u"macos"_s, 4.0, std::nullopt});
    ASSERT_FALSE(SyncFolder::writeManifest(existing, syncFolder()).has_value());

    ASSERT_FALSE(sync->setupSync(root, std::nullopt).has_value());

    const SyncManifest joined = manifest();
    EXPECT_EQ(joined.version, u"0.9"_s);
    EXPECT_EQ(joined.schemaVersion, 1);
    EXPECT_EQ(joined.lastSyncedAt, kStart);
    EXPECT_EQ(joined.devices.value(kDeviceB), existing.devices.value(kDeviceB));
    EXPECT_TRUE(joined.devices.contains(sync->deviceId()));
    EXPECT_FALSE(sync->selectedService().has_value());
}

TEST_F(SyncManagerSetup, PickingTheSyncFolderItselfNestsAnother) {
    ASSERT_TRUE(QDir().mkpath(syncFolder()));
    ASSERT_FALSE(sync->setupSync(syncFolder(), std::nullopt).has_value());
    EXPECT_EQ(sync->syncFolderPath(), QDir(syncFolder()).filePath(SyncFolder::folderName));
}

TEST_F(SyncManagerSetup, LeavingAndSettingUpAgainKeepsTheDevice) {
    ASSERT_FALSE(sync->setupSync(root, u"Dropbox"_s).has_value());
    const QString device = sync->deviceId();
    sync->addPendingChange(QUuid::createUuid());

    clock.advanceMs(100.0);
    sync->disableSync();

    const SyncConfiguration stored = SyncDefaults::loadConfiguration(*settings).value();
    EXPECT_FALSE(stored.isEnabled);
    EXPECT_FALSE(stored.cloudService.has_value());
    EXPECT_FALSE(stored.syncFolderPath.has_value());
    EXPECT_EQ(stored.deviceId, device);
    EXPECT_EQ(stored.deviceName, u"Test Machine"_s);
    EXPECT_EQ(sync->syncStatus().text(), u"Sync disabled"_s);
    EXPECT_FALSE(sync->selectedService().has_value());
    EXPECT_FALSE(sync->isWatchingFolder());
    EXPECT_TRUE(sync->hasPendingLocalChanges());
    EXPECT_TRUE(QFileInfo::exists(SyncFolder::manifestPath(syncFolder())));

    // Another run, then set-up again: the same entry, replaced.
    restart();
    EXPECT_EQ(sync->deviceId(), device);
    ASSERT_FALSE(sync->setupSync(root, u"Dropbox"_s).has_value());
    EXPECT_EQ(manifest().devices.size(), 1);
    EXPECT_EQ(manifest().devices.value(device).lastSeen, kStart + 100.0);
}

struct RefusalCase {
    const char* label;
    // Prepares the folder under `root` and answers the folder to pick.
    std::function<QString(const QString& root)> prepare;
    QString text;
};

class Refusals : public SyncManagerSetup, public ::testing::WithParamInterface<RefusalCase> {};

TEST_P(Refusals, LeaveEverythingAsItWas) {
    const QString picked = GetParam().prepare(root);
    const std::optional<SyncError> error = sync->connectToExisting(picked, u"Dropbox"_s);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->description(), GetParam().text);
    EXPECT_FALSE(sync->isEnabled());
    EXPECT_EQ(sync->syncStatus(), SyncStatus::disabled());
    EXPECT_FALSE(SyncDefaults::loadConfiguration(*settings).has_value());
    EXPECT_FALSE(sync->isAccessingSecurityScopedResource());
    EXPECT_FALSE(QFileInfo::exists(QDir(picked).filePath(u"HueShelf Sync/templates"_s)));
}

INSTANTIATE_TEST_SUITE_P(
    SyncManagerSetup, Refusals,
    ::testing::Values(RefusalCase{"folder missing",
                                  [](const QString& r) { return QDir(r).filePath(u"nowhere"_s); },
                                  u"Failed to write: Failed to access the selected folder"_s},
                      RefusalCase{"no sync folder inside", [](const QString& r) { return r; },
                                  u"Sync folder not found"_s},
                      RefusalCase{"broken manifest",
                                  [](const QString& r) {
                                      const QString folder = QDir(r).filePath(u"HueShelf Sync"_s);
                                      QDir().mkpath(folder);
                                      writeBytes(QDir(folder).filePath(u"manifest.json"_s),
                                                 "{\"devices\": [");
                                      return r;
                                  },
                                  u"Invalid sync folder - no manifest found"_s},
                      RefusalCase{"manifest missing",
                                  [](const QString& r) {
                                      QDir().mkpath(QDir(r).filePath(u"HueShelf Sync"_s));
                                      return r;
                                  },
                                  u"Invalid sync folder - no manifest found"_s}),
    [](const auto& testParam) {
        std::string name = testParam.param.label;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

TEST_F(SyncManagerSetup, ConnectChangesOnlyThisDevicesEntry) {
    ASSERT_TRUE(QDir().mkpath(templatesFolder()));
    SyncManifest existing;
    existing.lastSyncedAt = 5.0;
    existing.devices.insert(kDeviceB, {u"Laptop"_s, u"macos"_s, 4.0, u"2.0"_s});
    ASSERT_FALSE(SyncFolder::writeManifest(existing, syncFolder()).has_value());

    ASSERT_FALSE(sync->connectToExisting(root, u"Dropbox"_s).has_value());

    EXPECT_EQ(manifest().lastSyncedAt, 5.0);
    EXPECT_EQ(manifest().devices.size(), 2);
    EXPECT_FALSE(sync->lastSyncTime().has_value());
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
    EXPECT_TRUE(sync->isWatchingFolder());
}

TEST_F(SyncManagerSetup, StartsFromTheStoredConfiguration) {
    ASSERT_TRUE(QDir().mkpath(templatesFolder()));
    storeConfiguration(enabledConfiguration());
    SyncDefaults::storePendingTemplateChanges(*settings, {QUuid::createUuid()});
    restart();
    EXPECT_TRUE(sync->isEnabled());
    EXPECT_EQ(sync->deviceId(), kDeviceA);
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
    // The service's folder is the one holding the sync folder.
    EXPECT_EQ(sync->selectedService(), (DetectedCloudService{CloudService::dropbox, root}));
    EXPECT_TRUE(sync->hasPendingLocalChanges());
    EXPECT_TRUE(sync->isWatchingFolder());
    // No bookmarks here: the path is used as it stands.
    EXPECT_FALSE(sync->restoreSecurityAccess());
}

TEST_F(SyncManagerSetup, StartsOfflineWhenTheFolderIsAway) {
    storeConfiguration(enabledConfiguration());
    restart();
    EXPECT_TRUE(sync->isEnabled());
    EXPECT_EQ(sync->syncStatus().text(), u"Offline"_s);
    EXPECT_FALSE(sync->selectedService().has_value());
    EXPECT_FALSE(sync->isWatchingFolder());
    EXPECT_FALSE(sync->isPolling());
}

TEST_F(SyncManagerSetup, AnUnknownServiceNameSelectsNothing) {
    ASSERT_TRUE(QDir().mkpath(templatesFolder()));
    SyncConfiguration configuration = enabledConfiguration(u"Floppy Disk"_s);
    // A bookmark a build for another platform left behind can't be resolved here.
    configuration.securityBookmark = QByteArray("bookmark");
    storeConfiguration(configuration);
    restart();
    EXPECT_EQ(sync->syncStatus(), SyncStatus::synced());
    EXPECT_FALSE(sync->selectedService().has_value());
    EXPECT_FALSE(sync->restoreSecurityAccess());
}

TEST_F(SyncManagerSetup, ANewConfigurationIsNotStoredUntilSetUp) {
    const QString first = sync->deviceId();
    EXPECT_EQ(sync->configuration().deviceName, u"Test Machine"_s);
    EXPECT_FALSE(SyncDefaults::loadConfiguration(*settings).has_value());
    restart();
    EXPECT_NE(sync->deviceId(), first);
    EXPECT_EQ(sync->deviceId(), sync->deviceId().toUpper());
    EXPECT_EQ(sync->syncStatus(), SyncStatus::disabled());

    // A machine without a name.
    SyncManager unnamed(clock, scheduler, *settings, QString(), QString(),
                        std::make_unique<FakeFolderWatch>());
    EXPECT_EQ(unnamed.configuration().deviceName, u"Unknown Mac"_s);
}

TEST_F(SyncManagerSetup, DeletionRecordsAndTheirRestoration) {
    ASSERT_FALSE(sync->setupSync(root, std::nullopt).has_value());
    const ColorTemplate palette = makePalette(u"Brand"_s, {makeColor(u"Ink"_s, u"#101010"_s)});
    SyncableTemplate record = remoteRecord(palette, 10.0);
    record.revision = 3;
    putRecord(record);
    EXPECT_EQ(sync->restoreTemplate(QUuid::createUuid()), SyncError::templateNotFound());

    clock.advanceMs(1'000.0);
    ASSERT_FALSE(sync->markTemplateDeleted(palette.id).has_value());
    SyncableTemplate deleted = recordOf(palette.id).value();
    EXPECT_TRUE(deleted.deleted);
    EXPECT_EQ(deleted.deletedAt, kStart + 1'000.0);
    EXPECT_EQ(deleted.deletedBy, sync->deviceId());
    EXPECT_EQ(deleted.revision, 4);
    EXPECT_EQ(deleted.lastModified, 10.0); // nothing else changes
    EXPECT_EQ(deleted.modifiedBy, kDeviceB);
    EXPECT_EQ(sync->lastLocalWriteTime(), kStart + 1'000.0);
    ASSERT_EQ(sync->recentlyDeletedTemplates().size(), 1);
    EXPECT_EQ(sync->recentlyDeletedTemplates().constFirst(), deleted);

    clock.advanceMs(1'000.0);
    ASSERT_FALSE(sync->restoreTemplate(palette.id).has_value());
    const SyncableTemplate restored = recordOf(palette.id).value();
    EXPECT_FALSE(restored.deleted);
    EXPECT_FALSE(restored.deletedAt.has_value());
    EXPECT_FALSE(restored.deletedBy.has_value());
    EXPECT_EQ(restored.lastModified, kStart + 2'000.0);
    EXPECT_EQ(restored.modifiedBy, sync->deviceId());
    EXPECT_EQ(restored.revision, 5);
    EXPECT_TRUE(sync->recentlyDeletedTemplates().isEmpty());
}

TEST_F(SyncManagerSetup, WritesNeedAConfiguredFolder) {
    const ColorTemplate palette = makePalette(u"Brand"_s, {makeColor(u"Ink"_s, u"#101010"_s)});
    EXPECT_EQ(sync->writeTemplate(syncableFrom(palette, sync->deviceId())),
              SyncError::notConfigured());
    EXPECT_FALSE(sync->lastLocalWriteTime().has_value());
    EXPECT_TRUE(sync->readTemplatesFolder().isEmpty());
}

} // namespace
} // namespace hueshelf::testing
