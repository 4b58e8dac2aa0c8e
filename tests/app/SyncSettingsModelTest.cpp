// The cloud sync settings window as a model: its two faces, the set-up and connect sheets with
// their folder panels, auto-detection, disabling and restoring, on real folders in a temporary
// home.

#include "app/SyncSettingsModel.h"

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TempHome.h"
#include "app/RelativeTime.h"
#include "sync/FolderWatch.h"
#include "sync/SyncFolder.h"
#include "sync/SyncManager.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <variant>

using namespace Qt::StringLiterals;

namespace hueshelf::app {
// Readable failures for the records compared whole.
inline void PrintTo(const FolderPanelRequest& request, std::ostream* out) {
    *out << request.message.toStdString() << " @ "
         << request.startDirectory.value_or(u"-"_s).toStdString();
}
} // namespace hueshelf::app

namespace hueshelf::testing {
namespace {

using app::FolderPanelPurpose;
using app::FolderPanelRequest;
using app::SyncOffFace;
using app::SyncOnFace;
using app::SyncSettingsModel;

constexpr double kStart = 1'700'000'000'000.0;
constexpr double kSecond = 1000.0;
constexpr double kMinute = 60 * kSecond;
constexpr double kHour = 60 * kMinute;
constexpr double kDay = 24 * kHour;

// --- Relative times ------------------------------------------------------------------------

struct RelativeCase {
    const char* label;
    double elapsedMs;
    const char16_t* ago;
    const char16_t* span;
};

void PrintTo(const RelativeCase& c, std::ostream* out) {
    *out << c.label;
}

class RelativeTimeBoundaries : public ::testing::TestWithParam<RelativeCase> {};

TEST_P(RelativeTimeBoundaries, NameEachSpan) {
    const RelativeCase& c = GetParam();
    EXPECT_EQ(app::RelativeTime::ago(kStart - c.elapsedMs, kStart), QString::fromUtf16(c.ago));
    EXPECT_EQ(app::RelativeTime::span(kStart - c.elapsedMs, kStart), QString::fromUtf16(c.span));
}

INSTANTIATE_TEST_SUITE_P(
    Units, RelativeTimeBoundaries,
    ::testing::Values(
        RelativeCase{"future", -5 * kMinute, u"just now", u"less than a minute"},
        RelativeCase{"now", 0, u"just now", u"less than a minute"},
        RelativeCase{"justUnderAMinute", kMinute - 1, u"just now", u"less than a minute"},
        RelativeCase{"oneMinute", kMinute, u"1 minute ago", u"1 minute"},
        RelativeCase{"justUnderTwoMinutes", 2 * kMinute - 1, u"1 minute ago", u"1 minute"},
        RelativeCase{"twoMinutes", 2 * kMinute, u"2 minutes ago", u"2 minutes"},
        RelativeCase{"justUnderAnHour", kHour - 1, u"59 minutes ago", u"59 minutes"},
        RelativeCase{"oneHour", kHour, u"1 hour ago", u"1 hour"},
        RelativeCase{"justUnderADay", kDay - 1, u"23 hours ago", u"23 hours"},
        RelativeCase{"oneDay", kDay, u"yesterday", u"1 day"},
        RelativeCase{"justUnderTwoDays", 2 * kDay - 1, u"yesterday", u"1 day"},
        RelativeCase{"twoDays", 2 * kDay, u"2 days ago", u"2 days"},
        RelativeCase{"justUnderAWeek", 7 * kDay - 1, u"6 days ago", u"6 days"},
        RelativeCase{"oneWeek", 7 * kDay, u"last week", u"1 week"},
        RelativeCase{"twoWeeks", 14 * kDay, u"2 weeks ago", u"2 weeks"},
        RelativeCase{"justUnderAMonth", 30 * kDay - 1, u"4 weeks ago", u"4 weeks"},
        RelativeCase{"oneMonth", 30 * kDay, u"last month", u"1 month"},
        RelativeCase{"twoMonths", 60 * kDay, u"2 months ago", u"2 months"},
        // 360 days would make 12 months of 30 days; a year is still a year away.
        RelativeCase{"justUnderAYear", 365 * kDay - 1, u"11 months ago", u"11 months"},
        RelativeCase{"oneYear", 365 * kDay, u"last year", u"1 year"},
        RelativeCase{"twoYears", 730 * kDay, u"2 years ago", u"2 years"}),
    [](const auto& paramInfo) { return std::string(paramInfo.param.label); });

// --- The window on a temporary machine ------------------------------------------------------

// The watch is not what these tests are about; it accepts any folder that exists.
class IdleFolderWatch final : public FolderWatch {
public:
    bool start(const QString& path, Handler onChange) override {
        m_handler = QFileInfo(path).isDir() ? std::move(onChange) : nullptr;
        return m_handler != nullptr;
    }
    void stop() override { m_handler = nullptr; }
    bool isWatching() const override { return m_handler != nullptr; }

private:
    Handler m_handler;
};

class SyncSettings : public ::testing::Test {
public:
    SyncSettings() {
        settings = std::make_unique<QSettings>(at(u"hueshelf.conf"_s), QSettings::IniFormat);
        sync = std::make_unique<SyncManager>(clock, scheduler, *settings, u"Test Machine"_s,
                                             u"1.2.3"_s, std::make_unique<IdleFolderWatch>());
        const QString h = home.path();
        model = std::make_unique<SyncSettingsModel>(
            *sync,
            CloudServiceDetector(
                CloudServiceRoots{h, QString(), h + u"/.config"_s, h + u"/.local/state"_s}),
            clock);
    }

    QString at(const QString& relative) const { return QDir(home.path()).filePath(relative); }
    QString makeFolder(const QString& relative) const {
        const QString path = at(relative);
        EXPECT_TRUE(QDir().mkpath(path)) << path.toStdString();
        return path;
    }
    // A sync folder as another device leaves it: the folder, its templates and a manifest.
    QString makeSyncFolderIn(const QString& relative) const {
        const QString syncFolder = makeFolder(relative + u'/' + SyncFolder::folderName);
        EXPECT_TRUE(QDir().mkpath(SyncFolder::templatesFolderPath(syncFolder)));
        SyncManifest manifest;
        manifest.devices.insert(u"OTHER-DEVICE"_s, {u"Laptop"_s, u"macos"_s, 4.0, std::nullopt});
        EXPECT_FALSE(SyncFolder::writeManifest(manifest, syncFolder).has_value());
        return syncFolder;
    }
    static void writeFile(const QString& path, const QByteArray& contents) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
        file.write(contents);
    }

    SyncOnFace onFace() const {
        const app::SyncSettingsFace face = model->face();
        EXPECT_TRUE(std::holds_alternative<SyncOnFace>(face));
        return std::holds_alternative<SyncOnFace>(face) ? std::get<SyncOnFace>(face) : SyncOnFace{};
    }

    TempHome home;
    ManualClock clock{kStart};
    ManualScheduler scheduler{clock};
    std::unique_ptr<QSettings> settings;
    std::unique_ptr<SyncManager> sync;
    std::unique_ptr<SyncSettingsModel> model;
};

TEST_F(SyncSettings, OffFaceOffersTheThreeWaysIn) {
    const app::SyncSettingsFace face = model->face();
    ASSERT_TRUE(std::holds_alternative<SyncOffFace>(face));
    EXPECT_EQ(std::get<SyncOffFace>(face),
              (SyncOffFace{u"Cloud Sync is Off"_s, u"Sync palettes across your devices"_s,
                           u"Sync your palettes and preferences across all your devices using "
                           u"your preferred cloud storage service."_s,
                           u"Set Up New Sync"_s, u"Connect to Existing"_s,
                           u"Auto-Detect Sync Folder"_s}));
}

TEST_F(SyncSettings, SetUpRowsShowFoundFoldersFromHome) {
    makeFolder(u"Dropbox"_s);
    makeFolder(u"Sync"_s);
    // A folder that the client's own settings put outside the home keeps its full path.
    QTemporaryDir elsewhere;
    const QString outside = elsewhere.path() + u"/OneDriveData"_s;
    ASSERT_TRUE(QDir().mkpath(outside));
    makeFolder(u".config/onedrive"_s);
    writeFile(at(u".config/onedrive/config"_s), "sync_dir = \"" + outside.toUtf8() + "\"\n");

    model->showSetUpSheet();
    ASSERT_TRUE(model->showingSetupSheet());
    const app::SetUpSheet sheet = model->setUpSheet();
    ASSERT_EQ(sheet.rows.size(), qsizetype(allCloudServices.size()));

    struct Expected {
        QString detail;
        bool ready;
    };
    const QMap<CloudService, Expected> expected{
        {CloudService::iCloud, {u"Select folder to set up"_s, false}},
        {CloudService::dropbox, {u"~/Dropbox"_s, true}},
        {CloudService::googleDrive, {u"Select folder to set up"_s, false}},
        {CloudService::oneDrive, {outside, true}},
        {CloudService::nextcloud, {u"Select folder to set up"_s, false}},
        {CloudService::syncthing, {u"~/Sync"_s, true}},
    };
    for (qsizetype i = 0; i < sheet.rows.size(); ++i) {
        const app::CloudServiceRow& row = sheet.rows.at(i);
        SCOPED_TRACE(row.name.toStdString());
        EXPECT_EQ(row.service, allCloudServices.at(std::size_t(i)));
        EXPECT_EQ(row.name, cloudServiceName(row.service));
        EXPECT_EQ(row.detail, expected.value(row.service).detail);
        EXPECT_EQ(row.readyMark, expected.value(row.service).ready
                                     ? std::optional<QString>(u"Ready"_s)
                                     : std::nullopt);
        EXPECT_EQ(row.detectedPath.has_value(), expected.value(row.service).ready);
    }
}

TEST_F(SyncSettings, SetUpPanelsStartAtTheFoundFolder) {
    const QString dropbox = makeFolder(u"Dropbox"_s);
    model->showSetUpSheet();

    FolderPanelRequest found;
    found.purpose = FolderPanelPurpose::setUp;
    found.service = CloudService::dropbox;
    found.title = found.prompt = u"Select"_s;
    found.message =
        u"Select your Dropbox folder.\nA \"HueShelf Sync\" folder will be created inside."_s;
    found.startDirectory = dropbox;
    found.canCreateDirectories = true;
    found.level = 8;
    EXPECT_EQ(model->chooseSetUpFolder(CloudService::dropbox), found);

    FolderPanelRequest missing = found;
    missing.service = CloudService::googleDrive;
    missing.message =
        u"Select your Google Drive folder.\nA \"HueShelf Sync\" folder will be created inside."_s;
    missing.startDirectory.reset();
    EXPECT_EQ(model->chooseSetUpFolder(CloudService::googleDrive), missing);

    FolderPanelRequest other = missing;
    other.service.reset();
    other.message = u"Choose a folder to sync HueShelf data.\nA \"HueShelf Sync\" folder will be "
                    u"created inside."_s;
    EXPECT_EQ(model->chooseSetUpFolder(std::nullopt), other);
}

struct SetUpCase {
    const char* label;
    std::optional<CloudService> row; // none: "Choose Other Folder..."
    QString picked;                  // relative to home
    std::function<void(const QString& picked)> prepare;
    std::optional<QString> error;       // the start of the expected message
    std::optional<QString> serviceName; // recorded on success
};

void PrintTo(const SetUpCase& c, std::ostream* out) {
    *out << c.label;
}

class SetUpFlow : public SyncSettings, public ::testing::WithParamInterface<SetUpCase> {};

TEST_P(SetUpFlow, SucceedsOrKeepsTheSheetWithTheError) {
    const SetUpCase& c = GetParam();
    makeFolder(u"Dropbox"_s);
    const QString picked = at(c.picked);
    if (c.prepare)
        c.prepare(picked);
    model->showSetUpSheet();
    const SyncConfiguration before = sync->configuration();

    model->folderChosen(model->chooseSetUpFolder(c.row), picked);

    const QString syncFolder = picked + u'/' + SyncFolder::folderName;
    if (c.error) {
        ASSERT_TRUE(model->errorMessage().has_value());
        EXPECT_TRUE(model->errorMessage()->startsWith(*c.error))
            << model->errorMessage()->toStdString();
        EXPECT_TRUE(model->showingSetupSheet());
        EXPECT_EQ(sync->configuration(), before);
        EXPECT_FALSE(sync->isEnabled());
        EXPECT_TRUE(std::holds_alternative<SyncOffFace>(model->face()));
        EXPECT_FALSE(QFileInfo(SyncFolder::manifestPath(syncFolder)).exists());
        return;
    }
    EXPECT_EQ(model->errorMessage(), std::nullopt);
    EXPECT_FALSE(model->showingSetupSheet());
    EXPECT_TRUE(QFileInfo(SyncFolder::templatesFolderPath(syncFolder)).isDir());
    EXPECT_TRUE(QFileInfo(SyncFolder::manifestPath(syncFolder)).isFile());
    EXPECT_EQ(sync->configuration().cloudService, c.serviceName);
    EXPECT_EQ(sync->configuration().syncFolderPath, syncFolder);
    EXPECT_EQ(onFace().headline, c.serviceName.value_or(u"Cloud Sync"_s));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SetUpFlow,
    ::testing::Values(
        SetUpCase{"foundService", CloudService::dropbox, u"Dropbox"_s, nullptr, std::nullopt,
                  u"Dropbox"_s},
        // The row decides the name, whatever the picked path says.
        SetUpCase{"rowNamesTheService", CloudService::nextcloud, u"Work Files"_s,
                  [](const QString& p) { QDir().mkpath(p); }, std::nullopt, u"Nextcloud"_s},
        SetUpCase{"otherFolderNamedByPath", std::nullopt, u"OneDrive Archive"_s,
                  [](const QString& p) { QDir().mkpath(p); }, std::nullopt, u"OneDrive"_s},
        SetUpCase{"otherFolderWithoutName", std::nullopt, u"Plain"_s,
                  [](const QString& p) { QDir().mkpath(p); }, std::nullopt, std::nullopt},
        SetUpCase{"missingFolder", CloudService::dropbox, u"Gone"_s, nullptr,
                  u"Failed to write: Failed to access the selected folder"_s, std::nullopt},
        SetUpCase{"syncFolderIsAFile", std::nullopt, u"Blocked"_s,
                  [](const QString& p) {
                      QDir().mkpath(p);
                      SyncSettings::writeFile(p + u'/' + SyncFolder::folderName, "not a folder");
                  },
                  u"Failed to write: Couldn't create "_s, std::nullopt}),
    [](const auto& paramInfo) { return std::string(paramInfo.param.label); });

TEST_F(SyncSettings, SuccessAfterAFailureClearsTheError) {
    const QString dropbox = makeFolder(u"Dropbox"_s);
    model->showSetUpSheet();
    const FolderPanelRequest request = model->chooseSetUpFolder(CloudService::dropbox);
    model->folderChosen(request, at(u"Nowhere"_s));
    ASSERT_TRUE(model->errorMessage().has_value());

    model->folderChosen(request, dropbox);
    EXPECT_EQ(model->errorMessage(), std::nullopt);
    EXPECT_FALSE(model->showingSetupSheet());
    ASSERT_TRUE(sync->selectedService().has_value());
    EXPECT_EQ(*sync->selectedService(), (DetectedCloudService{CloudService::dropbox, dropbox}));
}

TEST_F(SyncSettings, ConnectPanelMakesNoFolders) {
    model->showConnectSheet();
    EXPECT_TRUE(model->showingConnectSheet());
    FolderPanelRequest expected;
    expected.purpose = FolderPanelPurpose::connect;
    expected.title = expected.prompt = u"Connect"_s;
    expected.message = u"Select the cloud folder that contains your \"HueShelf Sync\" folder."_s;
    expected.canCreateDirectories = false;
    expected.level = 8;
    EXPECT_EQ(model->chooseConnectFolder(), expected);
}

struct ConnectCase {
    const char* label;
    std::function<QString(SyncSettings&)> prepare; // answers the folder to pick
    std::optional<QString> error;
};

void PrintTo(const ConnectCase& c, std::ostream* out) {
    *out << c.label;
}

class ConnectFlow : public SyncSettings, public ::testing::WithParamInterface<ConnectCase> {};

TEST_P(ConnectFlow, JoinsOrKeepsTheSheetWithTheError) {
    const ConnectCase& c = GetParam();
    const QString picked = c.prepare(*this);
    model->showConnectSheet();
    const SyncConfiguration before = sync->configuration();

    model->folderChosen(model->chooseConnectFolder(), picked);

    if (c.error) {
        EXPECT_EQ(model->errorMessage(), c.error);
        EXPECT_TRUE(model->showingConnectSheet());
        EXPECT_EQ(sync->configuration(), before);
        EXPECT_FALSE(sync->isEnabled());
        return;
    }
    EXPECT_EQ(model->errorMessage(), std::nullopt);
    EXPECT_FALSE(model->showingConnectSheet());
    EXPECT_EQ(sync->configuration().cloudService, u"Dropbox"_s);
    // Found on this machine, so the service is selected too.
    ASSERT_TRUE(sync->selectedService().has_value());
    EXPECT_EQ(sync->selectedService()->service, CloudService::dropbox);
    const SyncOnFace face = onFace();
    EXPECT_EQ(face.headline, u"Dropbox"_s);
    // Connecting is no contact with the palettes yet.
    EXPECT_EQ(face.lastSynced, std::nullopt);
    const SyncManifest manifest =
        SyncFolder::readManifest(picked + u'/' + SyncFolder::folderName).value();
    EXPECT_EQ(manifest.devices.size(), 2);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ConnectFlow,
    ::testing::Values(
        ConnectCase{"valid",
                    [](SyncSettings& fixture) {
                        fixture.makeSyncFolderIn(u"Dropbox"_s);
                        return fixture.at(u"Dropbox"_s);
                    },
                    std::nullopt},
        ConnectCase{"noSyncFolder",
                    [](SyncSettings& fixture) { return fixture.makeFolder(u"Dropbox"_s); },
                    u"Sync folder not found"_s},
        ConnectCase{"brokenManifest",
                    [](SyncSettings& fixture) {
                        const QString syncFolder = fixture.makeSyncFolderIn(u"Dropbox"_s);
                        // Cut short, as a cloud client caught mid-download leaves it.
                        SyncSettings::writeFile(SyncFolder::manifestPath(syncFolder),
                                                "{\"version\": \"1.0\", \"devices\": ");
                        return fixture.at(u"Dropbox"_s);
                    },
                    u"Invalid sync folder - no manifest found"_s},
        ConnectCase{"noManifest",
                    [](SyncSettings& fixture) {
                        fixture.makeFolder(u"Dropbox/"_s + SyncFolder::folderName);
                        return fixture.at(u"Dropbox"_s);
                    },
                    u"Invalid sync folder - no manifest found"_s}),
    [](const auto& paramInfo) { return std::string(paramInfo.param.label); });

TEST_F(SyncSettings, AutoDetectWithoutASyncFolderSaysSo) {
    makeFolder(u"Dropbox"_s);
    makeFolder(u"Sync"_s);
    model->autoDetect();
    EXPECT_EQ(model->errorMessage(),
              u"No existing sync folder found. Use 'Set Up New Sync' to create one."_s);
    EXPECT_FALSE(model->showingAutoDetectAlert());
    EXPECT_EQ(model->autoDetectedFolder(), std::nullopt);
    // An alert without a found folder has no place to name, and Connect has nothing to open.
    EXPECT_EQ(model->autoDetectAlert().message,
              u"Found an existing HueShelf sync folder. Would you like to connect to it?"_s);
    EXPECT_EQ(model->connectToDetectedFolder(), std::nullopt);
}

TEST_F(SyncSettings, AutoDetectTakesTheFirstServiceInOrder) {
    makeSyncFolderIn(u"Sync"_s);
    const QString dropboxSync = makeSyncFolderIn(u"Dropbox"_s);
    model->autoDetect();
    ASSERT_TRUE(model->autoDetectedFolder().has_value());
    EXPECT_EQ(model->autoDetectedFolder()->service.service, CloudService::dropbox);
    EXPECT_EQ(model->autoDetectedFolder()->syncFolderPath, dropboxSync);
}

TEST_F(SyncSettings, AutoDetectConnectsThroughThePickedFolderWithTheFoundName) {
    // A folder whose path names no service: the found service's name is what gets recorded.
    const QString found = makeSyncFolderIn(u"Sync"_s);
    model->autoDetect();
    ASSERT_TRUE(model->showingAutoDetectAlert());
    EXPECT_EQ(model->errorMessage(), std::nullopt);
    EXPECT_EQ(model->autoDetectAlert(),
              (app::SettingsAlert{u"Sync Folder Found"_s,
                                  u"Found an existing HueShelf sync folder in Syncthing. Would "
                                  u"you like to connect to it?"_s,
                                  u"Connect"_s, u"Cancel"_s}));

    const std::optional<FolderPanelRequest> request = model->connectToDetectedFolder();
    EXPECT_FALSE(model->showingAutoDetectAlert());
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->purpose, FolderPanelPurpose::connectToFound);
    EXPECT_EQ(request->prompt, u"Connect"_s);
    EXPECT_EQ(request->message, u"Select the folder containing your HueShelf Sync folder "
                                u"(Syncthing)"_s);
    EXPECT_EQ(request->startDirectory, at(u"Sync"_s));
    EXPECT_FALSE(request->canCreateDirectories);
    EXPECT_EQ(request->level, 8);

    // A wrong pick in the panel is reported like any connect.
    model->folderChosen(*request, makeFolder(u"Elsewhere"_s));
    EXPECT_EQ(model->errorMessage(), u"Sync folder not found"_s);
    EXPECT_FALSE(sync->isEnabled());

    model->folderChosen(*request, at(u"Sync"_s));
    EXPECT_EQ(model->errorMessage(), std::nullopt);
    EXPECT_TRUE(sync->isEnabled());
    EXPECT_EQ(sync->configuration().cloudService, u"Syncthing"_s);
    EXPECT_EQ(sync->configuration().syncFolderPath, found);
    EXPECT_EQ(sync->selectedService(),
              (DetectedCloudService{CloudService::syncthing, at(u"Sync"_s)}));
}

TEST_F(SyncSettings, OnFaceShowsStatusTimesAndRestorablePalettes) {
    const QString dropbox = makeFolder(u"Dropbox"_s);
    model->showSetUpSheet();
    model->folderChosen(model->chooseSetUpFolder(CloudService::dropbox), dropbox);

    SyncOnFace face = onFace();
    EXPECT_EQ(face.headline, u"Dropbox"_s);
    EXPECT_EQ(face.statusText, u"Synced"_s);
    EXPECT_EQ(face.lastSyncedLabel, u"Last synced:"_s);
    EXPECT_EQ(face.lastSynced, u"just now"_s);
    EXPECT_EQ(face.folderLabel, u"Folder:"_s);
    EXPECT_EQ(face.folderPath, dropbox + u"/HueShelf Sync"_s);
    EXPECT_EQ(face.recentlyDeletedTitle, u"Recently Deleted"_s);
    EXPECT_TRUE(face.recentlyDeleted.isEmpty());
    EXPECT_EQ(face.recentlyDeletedPlaceholder, u"No recently deleted palettes"_s);

    SyncableTemplate record;
    record.id = QUuid::createUuid();
    record.name = u"Ocean"_s;
    record.createdAt = record.lastModified = kStart;
    record.createdBy = record.modifiedBy = sync->deviceId();
    ASSERT_FALSE(sync->writeTemplate(record).has_value());
    clock.advanceMs(kMinute);
    ASSERT_FALSE(sync->markTemplateDeleted(record.id).has_value());
    sync->setSyncStatus(SyncStatus::offline());
    clock.advanceMs(5 * kMinute);

    face = onFace();
    EXPECT_EQ(face.statusText, u"Offline"_s);
    EXPECT_EQ(face.lastSynced, u"6 minutes ago"_s);
    ASSERT_EQ(face.recentlyDeleted.size(), 1);
    EXPECT_EQ(
        face.recentlyDeleted.constFirst(),
        (app::RecentlyDeletedRow{record.id, u"Ocean"_s, u"Deleted 5 minutes ago"_s, u"Restore"_s}));
    EXPECT_EQ(face.recentlyDeletedPlaceholder, std::nullopt);

    model->restore(record.id);
    EXPECT_EQ(model->errorMessage(), std::nullopt);
    EXPECT_FALSE(sync->readTemplatesFolder().constFirst().deleted);
    face = onFace();
    EXPECT_TRUE(face.recentlyDeleted.isEmpty());
    EXPECT_EQ(face.recentlyDeletedPlaceholder, u"No recently deleted palettes"_s);

    model->restore(QUuid::createUuid());
    EXPECT_EQ(model->errorMessage(), u"Palette not found"_s);
}

TEST_F(SyncSettings, DisableAsksFirstAndKeepsTheFolder) {
    const QString dropbox = makeFolder(u"Dropbox"_s);
    model->showSetUpSheet();
    model->folderChosen(model->chooseSetUpFolder(CloudService::dropbox), dropbox);
    int changes = 0;
    QObject::connect(model.get(), &SyncSettingsModel::changed, [&changes] { ++changes; });

    model->askToDisable();
    EXPECT_TRUE(model->showingDisableAlert());
    EXPECT_EQ(model->disableAlert(),
              (app::SettingsAlert{u"Disable Sync?"_s,
                                  u"Your data will remain in the cloud folder but this device "
                                  u"will stop syncing. You can re-enable sync at any time."_s,
                                  u"Disable"_s, u"Cancel"_s}));
    model->dismissDisableAlert();
    EXPECT_FALSE(model->showingDisableAlert());
    EXPECT_TRUE(sync->isEnabled());

    model->askToDisable();
    const int changesBefore = changes;
    model->confirmDisable();
    EXPECT_FALSE(model->showingDisableAlert());
    EXPECT_GT(changes, changesBefore);
    EXPECT_FALSE(sync->isEnabled());
    EXPECT_FALSE(sync->configuration().isEnabled);
    EXPECT_EQ(sync->configuration().syncFolderPath, std::nullopt);
    EXPECT_TRUE(std::holds_alternative<SyncOffFace>(model->face()));
    EXPECT_TRUE(QFileInfo(SyncFolder::manifestPath(dropbox + u"/HueShelf Sync"_s)).isFile());
}

} // namespace
} // namespace hueshelf::testing
