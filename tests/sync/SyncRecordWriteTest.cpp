// What the records put into a file, and that everything comes back as it went out: time stamps
// bit for bit above all, since the sync engine compares them exactly.

#include "SyncTestSupport.h"
#include "sync/SyncFolder.h"
#include "sync/SyncManifest.h"
#include "sync/SyncableSettings.h"
#include "sync/SyncableTemplate.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace hueshelf::testing {
namespace {

SyncableTemplate sampleRecord() {
    SyncableTemplate record;
    record.id = QUuid(u"d1d1d1d1-aaaa-4bbb-8ccc-dddddddddddd"_s);
    record.name = u"Starter"_s;
    SyncableColorItem color;
    color.id = QUuid(u"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee"_s);
    color.name = u"Accent"_s;
    color.hex = u"#B8F2E6"_s;
    record.colors = {color};
    record.createdAt = 1700000000000.5;
    record.createdBy = kDeviceA;
    record.lastModified = 1700000000123.4567;
    record.modifiedBy = kDeviceB;
    record.revision = 3;
    record.contentHash = u"0123456789abcdef"_s;
    return record;
}

// Through the bytes of a file and back.
std::optional<SyncableTemplate> roundTrip(const SyncableTemplate& record) {
    const QJsonDocument document = QJsonDocument::fromJson(SyncFolder::encode(record.toJson()));
    return SyncableTemplate::fromJson(document.object());
}

TEST(WrittenRecord, HoldsEveryKeyAlsoWhenFalseAndNoNull) {
    const QJsonObject object =
        QJsonDocument::fromJson(SyncFolder::encode(sampleRecord().toJson())).object();
    EXPECT_EQ(object.keys(),
              (QStringList{u"colors"_s, u"contentHash"_s, u"createdAt"_s, u"createdBy"_s,
                           u"deleted"_s, u"id"_s, u"isLocked"_s, u"lastModified"_s, u"modifiedBy"_s,
                           u"name"_s, u"revision"_s, u"schemaVersion"_s}));
    EXPECT_EQ(object.value(u"deleted"_s), QJsonValue(false));
    EXPECT_EQ(object.value(u"schemaVersion"_s), QJsonValue(2));
    const QJsonObject color = object.value(u"colors"_s).toArray().at(0).toObject();
    EXPECT_EQ(color.keys(), (QStringList{u"dividerBefore"_s, u"dividerLabel"_s, u"hex"_s, u"id"_s,
                                         u"isAutoNamed"_s, u"isLocked"_s, u"name"_s}));
}

TEST(WrittenRecord, IdsAreUpperCaseWithoutBraces) {
    const QByteArray bytes = SyncFolder::encode(sampleRecord().toJson());
    EXPECT_TRUE(bytes.contains("\"D1D1D1D1-AAAA-4BBB-8CCC-DDDDDDDDDDDD\""));
    EXPECT_TRUE(bytes.contains("\"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE\""));
    EXPECT_FALSE(bytes.contains(QByteArray("{D1D1")));
}

TEST(WrittenRecord, DeletionKeysArePresentWithAValueOrAbsent) {
    SyncableTemplate record = sampleRecord();
    for (int variant = 0; variant < 4; ++variant) {
        record.deletedAt = (variant & 1) ? std::optional<double>(1700000000999.125) : std::nullopt;
        record.deletedBy = (variant & 2) ? std::optional<QString>(kDeviceB) : std::nullopt;
        const QByteArray bytes = SyncFolder::encode(record.toJson());
        EXPECT_FALSE(bytes.contains("null")) << variant;
        const QJsonObject object = QJsonDocument::fromJson(bytes).object();
        EXPECT_EQ(object.contains(u"deletedAt"_s), bool(variant & 1));
        EXPECT_EQ(object.contains(u"deletedBy"_s), bool(variant & 2));
        EXPECT_EQ(roundTrip(record), record) << variant;
    }
}

TEST(WrittenRecord, IsPrettyPrintedWithSortedKeys) {
    const QByteArray bytes = SyncFolder::encode(sampleRecord().toJson());
    EXPECT_TRUE(bytes.startsWith("{\n    \"colors\": ["));
    const qsizetype colors = bytes.indexOf("\"colors\"");
    const qsizetype createdAt = bytes.indexOf("\"createdAt\"");
    const qsizetype name = bytes.indexOf("\n    \"name\"");
    const qsizetype schema = bytes.indexOf("\"schemaVersion\"");
    EXPECT_LT(colors, createdAt);
    EXPECT_LT(createdAt, name);
    EXPECT_LT(name, schema);
}

// --- Time stamps -------------------------------------------------------------------------------

class StampRoundTrip : public ::testing::TestWithParam<double> {};

TEST_P(StampRoundTrip, EveryStampOfEveryRecordComesBackBitForBit) {
    const double stamp = GetParam();
    SyncableTemplate record = sampleRecord();
    record.createdAt = stamp;
    record.lastModified = stamp;
    record.deletedAt = stamp;
    const std::optional<SyncableTemplate> read = roundTrip(record);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(bitsOf(read->createdAt), bitsOf(stamp));
    EXPECT_EQ(bitsOf(read->lastModified), bitsOf(stamp));
    EXPECT_EQ(bitsOf(read->deletedAt.value_or(0.0)), bitsOf(stamp));

    SyncManifest manifest;
    manifest.lastSyncedAt = stamp;
    manifest.devices.insert(kDeviceA, {u"Desk"_s, u"linux"_s, stamp, std::nullopt});
    const std::optional<SyncManifest> manifestRead = SyncManifest::fromJson(
        QJsonDocument::fromJson(SyncFolder::encode(manifest.toJson())).object());
    ASSERT_TRUE(manifestRead.has_value());
    EXPECT_EQ(bitsOf(manifestRead->lastSyncedAt), bitsOf(stamp));
    EXPECT_EQ(bitsOf(manifestRead->devices.value(kDeviceA).lastSeen), bitsOf(stamp));

    const SyncableSettings settings{u"system"_s, std::nullopt, stamp, kDeviceA};
    const std::optional<SyncableSettings> settingsRead = SyncableSettings::fromJson(
        QJsonDocument::fromJson(SyncFolder::encode(settings.toJson())).object());
    ASSERT_TRUE(settingsRead.has_value());
    EXPECT_EQ(bitsOf(settingsRead->lastModified), bitsOf(stamp));
}

INSTANTIATE_TEST_SUITE_P(Cases, StampRoundTrip,
                         ::testing::Values(1700000000123.4567, 1700000000000.0, 1700000000000.25,
                                           0.1, 0.0, 1.0, -1700000000123.4567, 9007199254740993.0,
                                           9007199254740992.0, 1.7976931348623157e308,
                                           std::numeric_limits<double>::denorm_min(),
                                           std::numeric_limits<double>::min(), 1e21,
                                           123456789012345678.0,
                                           std::nextafter(1700000000123.4567, 0.0),
                                           std::nextafter(1700000000123.4567, 2e12)));

TEST(StampRoundTrip, RandomDoublesComeBackBitForBit) {
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> clockLike(0.0, 4e12);
    int checked = 0;
    for (int i = 0; i < 20000; ++i) {
        double stamp = clockLike(random);
        if (i % 2 == 0) {
            const std::uint64_t bits = random();
            std::memcpy(&stamp, &bits, sizeof stamp);
        }
        // JSON has no form for these; minus zero is written as 0, equal but not the same bits.
        if (!std::isfinite(stamp) || stamp == 0.0)
            continue;
        SyncableTemplate record = sampleRecord();
        record.lastModified = stamp;
        const std::optional<SyncableTemplate> read = roundTrip(record);
        ASSERT_TRUE(read.has_value());
        ASSERT_EQ(bitsOf(read->lastModified), bitsOf(stamp)) << i;
        ++checked;
    }
    EXPECT_GT(checked, 19000);
}

TEST(StampRoundTrip, MinusZeroComesBackEqual) {
    SyncableTemplate record = sampleRecord();
    record.lastModified = -0.0;
    const std::optional<SyncableTemplate> read = roundTrip(record);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->lastModified, record.lastModified);
}

// Other writers print numbers their own way; each form must read as the nearest double.
TEST(StampRoundTrip, NumbersInOtherWritersFormsReadExactly) {
    const double expected = 1700000000123.4567;
    for (const char* form :
         {"1700000000123.4567", "1700000000123.45670000", "1.7000000001234567e12",
          "1.7000000001234567E+12", "17000000001234567e-4"}) {
        QByteArray bytes = pretty(paletteObject());
        bytes.replace("1700000000123.4567", form);
        const std::optional<SyncableTemplate> record =
            SyncableTemplate::fromJson(QJsonDocument::fromJson(bytes).object());
        ASSERT_TRUE(record.has_value()) << form;
        EXPECT_EQ(bitsOf(record->lastModified), bitsOf(expected)) << form;
    }
}

// --- Manifest and settings ---------------------------------------------------------------------

TEST(Manifest, KeepsWhatItReadAndLeavesOutAMissingAppVersion) {
    const QJsonObject device{
        {u"name"_s, u"Studio"_s}, {u"platform"_s, u"macos"_s}, {u"lastSeen"_s, 1699999999999.5}};
    QJsonObject withVersion = device;
    withVersion.insert(u"appVersion"_s, u"2.3"_s);
    const QJsonObject stored{
        {u"version"_s, u"1.1"_s},
        {u"schemaVersion"_s, 5},
        {u"lastSyncedAt"_s, 1700000000000.75},
        {u"devices"_s, QJsonObject{{kDeviceA, device}, {kDeviceB, withVersion}}},
        {u"extra"_s, true}};
    const std::optional<SyncManifest> manifest = SyncManifest::fromJson(stored);
    ASSERT_TRUE(manifest.has_value());
    EXPECT_EQ(manifest->version, u"1.1"_s);
    EXPECT_EQ(manifest->schemaVersion, 5);
    EXPECT_EQ(manifest->devices.value(kDeviceA).platform, u"macos"_s);
    EXPECT_FALSE(manifest->devices.value(kDeviceA).appVersion.has_value());
    EXPECT_EQ(manifest->devices.value(kDeviceB).appVersion, u"2.3"_s);

    const QJsonObject written = manifest->toJson();
    const QJsonObject devices = written.value(u"devices"_s).toObject();
    EXPECT_EQ(devices.value(kDeviceA).toObject(), device);
    EXPECT_EQ(devices.value(kDeviceB).toObject(), withVersion);
    EXPECT_EQ(SyncManifest::fromJson(written), manifest);
}

struct ManifestFault {
    const char* label;
    QJsonObject object;
};

class RefusedManifest : public ::testing::TestWithParam<ManifestFault> {};

TEST_P(RefusedManifest, ReadsAsNothing) {
    EXPECT_FALSE(SyncManifest::fromJson(GetParam().object).has_value());
}

const QJsonObject kGoodDevice{
    {u"name"_s, u"Desk"_s}, {u"platform"_s, u"linux"_s}, {u"lastSeen"_s, 1.0}};

QJsonObject deviceWithout(const char* key) {
    QJsonObject device = kGoodDevice;
    device.remove(QLatin1StringView(key));
    return device;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RefusedManifest,
    ::testing::Values(
        ManifestFault{"noLastSyncedAt", {{u"devices"_s, QJsonObject{}}}},
        ManifestFault{"noDevices", {{u"lastSyncedAt"_s, 1.0}}},
        ManifestFault{"devicesAsList",
                      {{u"lastSyncedAt"_s, 1.0}, {u"devices"_s, QJsonArray{kGoodDevice}}}},
        ManifestFault{
            "versionAsNumber",
            {{u"version"_s, 1.0}, {u"lastSyncedAt"_s, 1.0}, {u"devices"_s, QJsonObject{}}}},
        ManifestFault{"deviceWithoutName",
                      {{u"lastSyncedAt"_s, 1.0},
                       {u"devices"_s, QJsonObject{{kDeviceA, deviceWithout("name")}}}}},
        ManifestFault{"deviceWithoutPlatform",
                      {{u"lastSyncedAt"_s, 1.0},
                       {u"devices"_s, QJsonObject{{kDeviceA, deviceWithout("platform")}}}}},
        ManifestFault{"deviceWithoutLastSeen",
                      {{u"lastSyncedAt"_s, 1.0},
                       {u"devices"_s, QJsonObject{{kDeviceA, deviceWithout("lastSeen")}}}}},
        ManifestFault{
            "deviceAsText",
            {{u"lastSyncedAt"_s, 1.0}, {u"devices"_s, QJsonObject{{kDeviceA, u"Desk"_s}}}}}),
    [](const ::testing::TestParamInfo<ManifestFault>& param) {
        return std::string(param.param.label);
    });

TEST(Manifest, ThisBuildCallsItsPlatformLinux) {
#ifdef Q_OS_LINUX
    EXPECT_EQ(SyncManifest::DeviceInfo::currentPlatform(), u"linux"_s);
#else
    GTEST_SKIP() << "a Linux build's platform name";
#endif
}

TEST(Settings, WritesEveryKeyAndTheActiveIdOnlyWhenThere) {
    SyncableSettings settings{u"system"_s, std::nullopt, 1700000000000.5, kDeviceA};
    EXPECT_EQ(settings.toJson().keys(),
              (QStringList{u"appearanceMode"_s, u"lastModified"_s, u"modifiedBy"_s}));
    settings.activeTemplateId = u"D1D1D1D1-AAAA-4BBB-8CCC-DDDDDDDDDDDD"_s;
    EXPECT_EQ(SyncableSettings::fromJson(settings.toJson()), settings);
    for (const char* key : {"appearanceMode", "lastModified", "modifiedBy"}) {
        QJsonObject object = settings.toJson();
        object.remove(QLatin1StringView(key));
        EXPECT_FALSE(SyncableSettings::fromJson(object).has_value()) << key;
    }
}

} // namespace
} // namespace hueshelf::testing
