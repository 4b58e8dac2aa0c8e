#include "PersistenceFixture.h"
#include "model/PreferencesMigration.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

struct MigrationCase {
    const char* name;
    bool newExists;
    bool oldExists;
    bool alreadyMigrated;
    bool isolated;
    // What the new file holds afterwards: "" none, "old" or "new" content.
    const char* newAfter;
    bool markerAfter;
};

class MigrationTest : public PersistenceFixture,
                      public ::testing::WithParamInterface<MigrationCase> {};

TEST_P(MigrationTest, CopiesOnlyWhenTheNewFileIsMissingAndTheOldExists) {
    const MigrationCase& c = GetParam();
    const QByteArray oldBytes = R"({"colorTemplates":[],"from":"old"})";
    const QByteArray newBytes = R"({"colorTemplates":[],"from":"new"})";
    if (c.oldExists) {
        ASSERT_TRUE(writeBytes(locations.oldPreferencesFile, oldBytes));
    }
    if (c.newExists) {
        ASSERT_TRUE(writeBytes(locations.preferencesFile, newBytes));
    }
    if (c.alreadyMigrated)
        settings->setValue(PreferencesKeys::didMigrate, true);
    StorageLocations run = locations;
    run.isIsolated = c.isolated;

    migrateFromOldBundleId(run, *settings);

    const QString expected = QString::fromLatin1(c.newAfter);
    if (expected.isEmpty()) {
        EXPECT_FALSE(QFileInfo::exists(locations.preferencesFile));
    } else {
        EXPECT_EQ(readBytes(locations.preferencesFile), expected == u"old"_s ? oldBytes : newBytes);
    }
    EXPECT_EQ(settings->value(PreferencesKeys::didMigrate, false).toBool(), c.markerAfter);
    if (c.oldExists) {
        EXPECT_EQ(readBytes(locations.oldPreferencesFile), oldBytes) << "the old file stays";
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MigrationTest,
    ::testing::Values(MigrationCase{"OnlyOld", false, true, false, false, "old", true},
                      MigrationCase{"Both", true, true, false, false, "new", true},
                      MigrationCase{"OnlyNew", true, false, false, false, "new", true},
                      MigrationCase{"Neither", false, false, false, false, "", true},
                      MigrationCase{"MarkerAlreadySet", false, true, true, false, "", true},
                      MigrationCase{"IsolatedRun", false, true, false, true, "", false}),
    [](const ::testing::TestParamInfo<MigrationCase>& param) {
        return std::string(param.param.name);
    });

TEST_F(PersistenceFixture, AFailedCopyIsDroppedAndTheMarkerStillSet) {
    ASSERT_TRUE(writeBytes(locations.oldPreferencesFile, "{}"));
    StorageLocations run = locations;
    // The new name's directory is a file: no copy can land there.
    ASSERT_TRUE(writeBytes(home.path() + u"/blocker"_s, "x"));
    run.preferencesFile = home.path() + u"/blocker/io.hueshelf.Hueshelf.json"_s;
    migrateFromOldBundleId(run, *settings);
    EXPECT_FALSE(QFileInfo::exists(run.preferencesFile));
    EXPECT_TRUE(settings->value(PreferencesKeys::didMigrate).toBool());
}

TEST_F(PersistenceFixture, TheMarkerReachesTheSettingsFileSoALaterRunNeverCopies) {
    ASSERT_TRUE(writeBytes(locations.oldPreferencesFile, "{}"));
    migrateFromOldBundleId(locations, *settings);
    settings->sync();
    // The user removes the new file on purpose; the old one must not come back.
    ASSERT_TRUE(QFile::remove(locations.preferencesFile));
    const auto nextRun = settingsOnDisk();
    migrateFromOldBundleId(locations, *nextRun);
    EXPECT_FALSE(QFileInfo::exists(locations.preferencesFile));
}

} // namespace
} // namespace hueshelf::testing
