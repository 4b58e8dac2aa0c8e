#include "AppTestSupport.h"
#include "TempHome.h"
#include "app/AppDelegate.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/TemplateJson.h"
#include "platform/fake/FakePlatform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::palette;

class AppPersistenceTest : public ::testing::Test {
protected:
    void SetUp() override { testing::ensureApplication(); }

    QString prefsPath() const { return home.paths().configDir + u"/io.hueshelf.Hueshelf.json"_s; }

    testing::TempHome home;
};

TEST_F(AppPersistenceTest, TheShellStartsFromThePreferencesFileAndWritesItAtQuit) {
    const ColorTemplate first = palette(u"Saved first"_s, {{u"Ink"_s, u"#101010"_s}});
    const ColorTemplate second = palette(u"Saved second"_s, {{u"Paper"_s, u"#FAFAFA"_s}});
    QJsonObject file;
    file.insert(PreferencesKeys::templates, TemplateJson::templatesToJson({first, second}));
    file.insert(PreferencesKeys::activeTemplateId, uuidText(second.id));
    file.insert(PreferencesKeys::lastModified, 1000.0);
    file.insert(u"helperKey"_s, u"theirs"_s);
    ASSERT_TRUE(PreferencesFile::write(prefsPath(), file));

    AppDelegate delegate(home.paths(), std::make_unique<FakePlatform>(), QProcessEnvironment());
    EXPECT_FALSE(delegate.storageLocations().isIsolated);
    EXPECT_EQ(delegate.storageLocations().preferencesFile, prefsPath());
    EXPECT_EQ(delegate.storage().templates().size(), 2);
    EXPECT_EQ(delegate.storage().activeTemplateId(), second.id);
    EXPECT_EQ(delegate.storage().baselineStamp(), 1000.0);
    EXPECT_TRUE(delegate.settings().value(PreferencesKeys::didMigrate).toBool());

    delegate.storage().setActiveTemplateId(first.id); // not saved by itself
    delegate.settings().setValue(u"defaultCopyFormat"_s, u"rgb"_s);
    delegate.applicationWillTerminate();

    // Written and synchronised before the quit goes on: nothing waits for the event loop.
    const QJsonObject written = PreferencesFile::read(prefsPath()).value_or(QJsonObject());
    EXPECT_EQ(written.value(PreferencesKeys::activeTemplateId).toString(), uuidText(first.id));
    EXPECT_GT(written.value(PreferencesKeys::lastModified).toDouble(), 1000.0);
    EXPECT_EQ(written.value(u"helperKey"_s).toString(), u"theirs"_s);
    EXPECT_EQ(delegate.storage().savingCount(), 0);
    const QSettings onDisk(home.paths().configDir + u"/hueshelf.conf"_s, QSettings::IniFormat);
    EXPECT_EQ(onDisk.value(u"defaultCopyFormat"_s).toString(), u"rgb"_s);
}

TEST_F(AppPersistenceTest, AQuitWhoseWriteFailsLeavesThePalettesInTheSettings) {
    // The preferences path is taken by a directory: no file can be written there.
    ASSERT_TRUE(QDir().mkpath(prefsPath()));
    {
        AppDelegate delegate(home.paths(), std::make_unique<FakePlatform>(), QProcessEnvironment());
        delegate.storage().renameActiveTemplate(u"Renamed before quitting"_s);
        delegate.applicationWillTerminate();
    }
    AppDelegate next(home.paths(), std::make_unique<FakePlatform>(), QProcessEnvironment());
    ASSERT_FALSE(next.storage().templates().isEmpty());
    EXPECT_EQ(next.storage().activeTemplate()->name, u"Renamed before quitting"_s);
}

// A first start on a machine where the configuration folder doesn't exist yet still watches
// for other processes instead of falling back to the slow poll.
TEST_F(AppPersistenceTest, AFirstStartCreatesThePreferencesFolderAndWatchesIt) {
    QDir(home.paths().configDir).removeRecursively();
    AppDelegate delegate(home.paths(), std::make_unique<FakePlatform>(), QProcessEnvironment());
    EXPECT_TRUE(QFileInfo(delegate.storageLocations().prefsDir).isDir());
    EXPECT_TRUE(delegate.externalChangeMonitor().isWatchingDirectory());
    EXPECT_FALSE(delegate.externalChangeMonitor().isSlowPollRunning());
    EXPECT_FALSE(QFile::exists(prefsPath())) << "nothing is written before the first save";
    delegate.applicationWillTerminate();
}

} // namespace
} // namespace hueshelf::app
