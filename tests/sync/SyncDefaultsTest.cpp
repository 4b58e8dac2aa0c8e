// The configuration and the pending ids in this device's settings file, including files that a
// hand or another build wrote.

#include "sync/SyncDefaults.h"

#include "SyncTestSupport.h"

#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

SyncConfiguration fullConfiguration() {
    SyncConfiguration configuration;
    configuration.isEnabled = true;
    configuration.cloudService = u"Dropbox"_s;
    configuration.syncFolderPath = u"/home/me/Dropbox/HueShelf Sync"_s;
    configuration.deviceId = kDeviceA;
    configuration.deviceName = u"Desk, \"main\" = yes"_s;
    QByteArray bookmark;
    for (int i = 0; i < 256; ++i)
        bookmark.append(char(i));
    configuration.securityBookmark = bookmark;
    return configuration;
}

class SettingsFile : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_dir.isValid()); }

    // A path no QSettings of this process has seen, so the file itself is parsed.
    QString freshPath() { return m_dir.filePath(QString::number(++m_files) + u".conf"_s); }

    QTemporaryDir m_dir;
    int m_files = 0;
};

TEST_F(SettingsFile, ConfigurationRoundTripsThroughTheFile) {
    const QString path = freshPath();
    {
        QSettings settings(path, QSettings::IniFormat);
        SyncDefaults::storeConfiguration(settings, fullConfiguration());
    }
    // Read back from the bytes on disk, under a name the settings cache doesn't know.
    const QString copy = freshPath();
    ASSERT_TRUE(QFile::copy(path, copy));
    const QSettings settings(copy, QSettings::IniFormat);
    EXPECT_EQ(SyncDefaults::loadConfiguration(settings), fullConfiguration());
}

TEST_F(SettingsFile, OptionalKeysAreLeftOutAndReadAsAbsent) {
    SyncConfiguration bare;
    bare.deviceId = kDeviceB;
    bare.deviceName = u"Laptop"_s;
    EXPECT_EQ(bare.toJson().keys(), (QStringList{u"deviceId"_s, u"deviceName"_s, u"isEnabled"_s}));
    QSettings settings(freshPath(), QSettings::IniFormat);
    SyncDefaults::storeConfiguration(settings, bare);
    EXPECT_EQ(SyncDefaults::loadConfiguration(settings), bare);
}

TEST_F(SettingsFile, BookmarkIsBase64InTheJson) {
    SyncConfiguration configuration = fullConfiguration();
    configuration.securityBookmark = QByteArray("bookmark");
    EXPECT_EQ(configuration.toJson().value(u"securityBookmark"_s), QJsonValue(u"Ym9va21hcms="_s));
}

struct RejectedConfiguration {
    const char* label;
    QByteArray json;
};

class ConfigurationRejected : public SettingsFile,
                              public ::testing::WithParamInterface<RejectedConfiguration> {};

TEST_P(ConfigurationRejected, ReadsAsNone) {
    const QString path = freshPath();
    QSettings settings(path, QSettings::IniFormat);
    settings.setValue(SyncDefaults::configurationKey, QString::fromUtf8(GetParam().json));
    EXPECT_FALSE(SyncDefaults::loadConfiguration(settings).has_value());
}

#define HUESHELF_IDS "\"deviceId\": \"A\", \"deviceName\": \"N\""

INSTANTIATE_TEST_SUITE_P(
    Cases, ConfigurationRejected,
    ::testing::Values(
        RejectedConfiguration{"missingIsEnabled", "{" HUESHELF_IDS "}"},
        RejectedConfiguration{"missingDeviceId", "{\"isEnabled\": true, \"deviceName\": \"N\"}"},
        RejectedConfiguration{"missingDeviceName", "{\"isEnabled\": true, \"deviceId\": \"A\"}"},
        RejectedConfiguration{"isEnabledAsNumber", "{\"isEnabled\": 1, " HUESHELF_IDS "}"},
        RejectedConfiguration{"deviceIdAsNumber",
                              "{\"isEnabled\": true, \"deviceId\": 1, \"deviceName\": \"N\"}"},
        RejectedConfiguration{"pathAsList",
                              "{\"isEnabled\": true, \"syncFolderPath\": [], " HUESHELF_IDS "}"},
        RejectedConfiguration{"serviceAsBool",
                              "{\"isEnabled\": true, \"cloudService\": true, " HUESHELF_IDS "}"},
        RejectedConfiguration{"bookmarkNotBase64",
                              "{\"isEnabled\": true, \"securityBookmark\": \"***\", " HUESHELF_IDS
                              "}"},
        RejectedConfiguration{"bookmarkAsNumber",
                              "{\"isEnabled\": true, \"securityBookmark\": 5, " HUESHELF_IDS "}"},
        RejectedConfiguration{"notJson", "isEnabled=true"},
        RejectedConfiguration{"truncated", "{\"isEnabled\": true, " HUESHELF_IDS},
        RejectedConfiguration{"array", "[true]"}),
    [](const ::testing::TestParamInfo<RejectedConfiguration>& param) {
        return std::string(param.param.label);
    });

#undef HUESHELF_IDS

TEST_F(SettingsFile, ConfigurationStoredAsBytesOrWithNullsIsRead) {
    const QString path = freshPath();
    {
        QSettings settings(path, QSettings::IniFormat);
        settings.setValue(SyncDefaults::configurationKey,
                          QByteArray("{\"isEnabled\": false, \"deviceId\": \"A\", "
                                     "\"deviceName\": \"N\", \"cloudService\": null, "
                                     "\"syncFolderPath\": \"/x\", \"extra\": 3}"));
    }
    const QString copy = freshPath();
    ASSERT_TRUE(QFile::copy(path, copy));
    const QSettings settings(copy, QSettings::IniFormat);
    const std::optional<SyncConfiguration> configuration =
        SyncDefaults::loadConfiguration(settings);
    ASSERT_TRUE(configuration.has_value());
    EXPECT_FALSE(configuration->isEnabled);
    EXPECT_EQ(configuration->deviceId, u"A"_s);
    EXPECT_FALSE(configuration->cloudService.has_value());
    EXPECT_EQ(configuration->syncFolderPath, u"/x"_s);
}

TEST_F(SettingsFile, MissingConfigurationIsNone) {
    const QSettings settings(freshPath(), QSettings::IniFormat);
    EXPECT_FALSE(SyncDefaults::loadConfiguration(settings).has_value());
}

// --- Pending ids -------------------------------------------------------------------------------

TEST_F(SettingsFile, PendingIdsRoundTripForNoneOneAndMany) {
    const QSet<QUuid> sets[] = {
        {},
        {QUuid(u"AAAAAAAA-0000-4000-8000-000000000001"_s)},
        {QUuid(u"AAAAAAAA-0000-4000-8000-000000000001"_s),
         QUuid(u"BBBBBBBB-0000-4000-8000-000000000002"_s), QUuid::createUuid()},
    };
    for (const QSet<QUuid>& ids : sets) {
        const QString path = freshPath();
        {
            QSettings settings(path, QSettings::IniFormat);
            SyncDefaults::storePendingTemplateChanges(settings, ids);
        }
        const QString copy = freshPath();
        ASSERT_TRUE(QFile::copy(path, copy));
        const QSettings settings(copy, QSettings::IniFormat);
        EXPECT_EQ(SyncDefaults::loadPendingTemplateChanges(settings), ids) << ids.size();
    }
}

TEST_F(SettingsFile, PendingEntriesThatAreNoUuidAreDropped) {
    const QString path = freshPath();
    writeBytes(path, "[General]\nhueshelf.pendingTemplateChanges=nope, "
                     "aaaaaaaa-0000-4000-8000-000000000001, "
                     "{BBBBBBBB-0000-4000-8000-000000000002}, , 12345, "
                     "CCCCCCCC-0000-4000-8000-000000000003\n");
    const QSettings settings(path, QSettings::IniFormat);
    EXPECT_EQ(SyncDefaults::loadPendingTemplateChanges(settings),
              (QSet<QUuid>{QUuid(u"AAAAAAAA-0000-4000-8000-000000000001"_s),
                           QUuid(u"CCCCCCCC-0000-4000-8000-000000000003"_s)}));

    const QString other = freshPath();
    writeBytes(other, "[General]\nhueshelf.pendingTemplateChanges=42\n");
    EXPECT_TRUE(
        SyncDefaults::loadPendingTemplateChanges(QSettings(other, QSettings::IniFormat)).isEmpty());
}

} // namespace
} // namespace hueshelf::testing
