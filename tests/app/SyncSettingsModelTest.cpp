#include "app/SyncSettingsModel.h"

#include "AppTestSupport.h"
#include "TempHome.h"
#include "app/RelativeTime.h"
#include "sync/QtFolderWatch.h"
#include "sync/SyncFolder.h"
#include "sync/SyncManager.h"

#include <QDir>
#include <QSettings>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

constexpr double kStart = 1'700'000'000'000.0;
constexpr double kMinute = 60'000.0;
constexpr double kDay = 24 * 60 * kMinute;

TEST(RelativeTime, NamesEachSpanOnBothSidesOfItsBoundary) {
    const std::tuple<double, QString, QString> cases[] = {
        {-5 * kMinute, u"just now"_s, u"less than a minute"_s},
        {kMinute - 1, u"just now"_s, u"less than a minute"_s},
        {kMinute, u"1 minute ago"_s, u"1 minute"_s},
        {60 * kMinute, u"1 hour ago"_s, u"1 hour"_s},
        {kDay, u"yesterday"_s, u"1 day"_s},
        {7 * kDay, u"last week"_s, u"1 week"_s},
        {30 * kDay - 1, u"4 weeks ago"_s, u"4 weeks"_s},
        // 360 days would make 12 months of 30 days; a year is still a year away.
        {365 * kDay - 1, u"11 months ago"_s, u"11 months"_s},
        {365 * kDay, u"last year"_s, u"1 year"_s},
    };
    for (const auto& [elapsed, ago, span] : cases) {
        EXPECT_EQ(RelativeTime::ago(kStart - elapsed, kStart), ago) << elapsed;
        EXPECT_EQ(RelativeTime::span(kStart - elapsed, kStart), span) << elapsed;
    }
}

// A machine with a home of its own: a sync manager, the window's model, and found folders.
struct Machine {
    Machine() {
        testing::ensureApplication(); // for the folder watch
        const QString h = home.path();
        sync = std::make_unique<SyncManager>(clock, scheduler, settings, u"Test Machine"_s,
                                             u"1.2.3"_s, std::make_unique<QtFolderWatch>());
        model = std::make_unique<SyncSettingsModel>(
            *sync,
            CloudServiceDetector(
                CloudServiceRoots{h, QString(), h + u"/.config"_s, h + u"/.local/state"_s}),
            clock);
    }
    QString folder(const QString& relative) const {
        QDir().mkpath(home.path() + u'/' + relative);
        return home.path() + u'/' + relative;
    }
    // A sync folder as another device leaves it: its templates folder and a manifest.
    QString syncFolderIn(const QString& relative) const {
        const QString syncFolder = folder(relative + u'/' + SyncFolder::folderName);
        QDir().mkpath(SyncFolder::templatesFolderPath(syncFolder));
        SyncManifest manifest;
        manifest.devices.insert(u"OTHER"_s, {u"Laptop"_s, u"macos"_s, 4.0, std::nullopt});
        EXPECT_FALSE(SyncFolder::writeManifest(manifest, syncFolder));
        return syncFolder;
    }
    bool isOff() const { return std::holds_alternative<SyncOffFace>(model->face()); }
    SyncOnFace onFace() const { return std::get<SyncOnFace>(model->face()); }

    testing::TempHome home;
    testing::ManualClock clock{kStart};
    testing::ManualScheduler scheduler{clock};
    QSettings settings{home.path() + u"/hueshelf.conf"_s, QSettings::IniFormat};
    std::unique_ptr<SyncManager> sync;
    std::unique_ptr<SyncSettingsModel> model;
};

// Success closes the sheet and names the service by its row, else by the picked path; a
// failure keeps the sheet open with the error, and sync stays off.
TEST(SyncSettings, SetUpAndConnectSucceedOrKeepTheSheetWithTheError) {
    const struct {
        char how; // 's' set up from the Nextcloud row, 'c' connect
        QString picked;
        bool prepared;  // the folder exists, with a sync folder where connecting
        QString result; // the service named, or (starting with "!") the error
    } cases[] = {
        {'s', u"Work Files"_s, true, u"Nextcloud"_s},
        {'s', u"Gone"_s, false, u"!Failed to write: Failed to access the selected folder"_s},
        {'c', u"Dropbox"_s, true, u"Dropbox"_s},
        {'c', u"Dropbox"_s, false, u"!Sync folder not found"_s},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.how + c.picked.toStdString());
        Machine m;
        m.folder(u"Dropbox"_s);
        QString picked = m.home.path() + u'/' + c.picked;
        if (c.prepared)
            picked =
                c.how == 'c' ? m.syncFolderIn(c.picked).section(u'/', 0, -2) : m.folder(c.picked);
        c.how == 'c' ? m.model->showConnectSheet() : m.model->showSetUpSheet();
        m.model->folderChosen(c.how == 'c' ? m.model->chooseConnectFolder()
                                           : m.model->chooseSetUpFolder(CloudService::nextcloud),
                              picked);
        const bool sheet = m.model->showingConnectSheet() || m.model->showingSetupSheet();
        if (c.result.startsWith(u'!')) {
            EXPECT_TRUE(m.model->errorMessage().value_or(u""_s).startsWith(c.result.mid(1)));
            EXPECT_TRUE(sheet);
            EXPECT_TRUE(m.isOff());
            continue;
        }
        EXPECT_EQ(m.model->errorMessage(), std::nullopt);
        EXPECT_FALSE(sheet);
        EXPECT_EQ(m.sync->configuration().syncFolderPath, picked + u"/HueShelf Sync"_s);
        EXPECT_EQ(m.onFace().headline, c.result);
        // Connecting is no contact with the palettes yet; setting up is.
        EXPECT_EQ(m.onFace().lastSynced,
                  c.how == 'c' ? std::nullopt : std::optional(u"just now"_s));
    }
}

} // namespace
} // namespace hueshelf::app
