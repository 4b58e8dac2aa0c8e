#include "PersistenceFixture.h"
#include "model/PreferencesMigration.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

QProcessEnvironment isolatedEnvironment() {
    QProcessEnvironment env;
    // Only its presence counts, not its value.
    env.insert(StorageLocations::isolationVariable, QString());
    return env;
}

TEST(StorageLocationsTest, ANormalRunKeepsEverythingInTheConfigDirectory) {
    TempHome home;
    QProcessEnvironment env;
    env.insert(u"XCTestConfiguration"_s, u"/x"_s); // a near miss is not the variable
    const StorageLocations locations = StorageLocations::resolve(home.paths(), env);
    const QString dir = home.paths().configDir;
    EXPECT_FALSE(locations.isIsolated);
    EXPECT_EQ(locations.prefsDir, dir);
    EXPECT_EQ(locations.preferencesFile, dir + u"/io.hueshelf.Hueshelf.json"_s);
    EXPECT_EQ(locations.oldPreferencesFile, dir + u"/hueshelf.Hueshelf.json"_s);
    EXPECT_EQ(locations.settingsFile, dir + u"/hueshelf.conf"_s);
}

TEST(StorageLocationsTest, AnIsolatedRunMakesItsOwnDirectoryUnderTheTemporaryOne) {
    ensureCoreApplication();
    TempHome home;
    const QString temp = home.path() + u"/deep/tmp"_s;
    const StorageLocations locations =
        StorageLocations::resolve(home.paths(), isolatedEnvironment(), temp);
    const QString dir =
        temp + u"/HueshelfTests-"_s + QString::number(QCoreApplication::applicationPid());
    EXPECT_TRUE(locations.isIsolated);
    EXPECT_EQ(locations.prefsDir, dir);
    EXPECT_TRUE(QFileInfo(dir).isDir()) << "created with its parents";
    EXPECT_EQ(locations.preferencesFile, dir + u"/io.hueshelf.Hueshelf.json"_s);
    EXPECT_TRUE(locations.settingsFile.startsWith(dir + u'/'));
    EXPECT_NE(locations.settingsFile, dir + u"/hueshelf.conf"_s);
    EXPECT_FALSE(locations.settingsFile.startsWith(home.paths().configDir));
}

TEST(StorageLocationsTest, IsolatedSettingsAreEmptiedOnlyAtTheirFirstUse) {
    TempHome home;
    const StorageLocations locations =
        StorageLocations::resolve(home.paths(), isolatedEnvironment(), home.path());
    {
        QSettings leftover(locations.settingsFile, QSettings::IniFormat);
        leftover.setValue(u"defaultCopyFormat"_s, u"rgb"_s);
    }
    {
        const auto settings = SettingsStore::open(locations);
        EXPECT_FALSE(settings->contains(u"defaultCopyFormat"_s)) << "an earlier run's value";
        settings->setValue(u"defaultCopyFormat"_s, u"hsl"_s);
    }
    const auto again = SettingsStore::open(locations);
    EXPECT_EQ(again->value(u"defaultCopyFormat"_s).toString(), u"hsl"_s);
}

TEST(StorageLocationsTest, NormalSettingsAreNeverEmptied) {
    TempHome home;
    const StorageLocations locations = StorageLocations::resolve(home.paths(), {});
    {
        QSettings earlier(locations.settingsFile, QSettings::IniFormat);
        earlier.setValue(u"defaultCopyFormat"_s, u"rgb"_s);
    }
    EXPECT_EQ(SettingsStore::open(locations)->value(u"defaultCopyFormat"_s).toString(), u"rgb"_s);
}

// JSON text full of commas, quotes and backslashes must come back from the INI file as it went
// in, not as a list split at the commas.
TEST(StorageLocationsTest, SettingsKeepJsonTextAndStampsExactly) {
    TempHome home;
    const StorageLocations locations = StorageLocations::resolve(home.paths(), {});
    const QByteArray json = R"([{"a":"x, \"y\" \\ ;z=1","b":[1,2]},{"c":"Grüße"}])";
    const double stamp = 1'712'345'678'901.25;
    {
        const auto settings = SettingsStore::open(locations);
        SettingsStore::storeTemplates(*settings, json, u"ABC"_s, stamp);
        SettingsStore::storeShadowState(*settings, R"({"k":1,"l":2})");
    }
    const auto settings = SettingsStore::open(locations);
    EXPECT_EQ(SettingsStore::templatesData(*settings), std::optional<QByteArray>(json));
    EXPECT_EQ(SettingsStore::activeTemplateIdText(*settings), std::optional<QString>(u"ABC"_s));
    EXPECT_EQ(settings->value(PreferencesKeys::lastModified).toDouble(), stamp);
    EXPECT_EQ(settings->value(PreferencesKeys::shadowState).toString(), u"{\"k\":1,\"l\":2}"_s);
}

} // namespace
} // namespace hueshelf::testing
