// The templates folder as other devices, other programs and accidents leave it.

#include "sync/SyncFolder.h"

#include "SyncTestSupport.h"
#include "sync/SyncError.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <sys/stat.h>

namespace hueshelf::testing {
namespace {

const QString kIdA = u"AAAAAAAA-0000-4000-8000-000000000001"_s;
const QString kIdB = u"BBBBBBBB-0000-4000-8000-000000000002"_s;

class TemplatesFolder : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        folder = m_dir.filePath(u"templates"_s);
        ASSERT_TRUE(QDir().mkpath(folder));
    }

    QString path(const QString& name) const { return QDir(folder).filePath(name); }

    void put(const QString& name, const QByteArray& bytes) { writeBytes(path(name), bytes); }
    void put(const QString& name, const QJsonObject& object) { put(name, pretty(object)); }

    QStringList namesRead() const {
        QStringList names;
        for (const SyncableTemplate& record : SyncFolder::readTemplatesFolder(folder))
            names.append(record.name);
        return names;
    }

    static QJsonObject named(const QString& name, const QString& id = kIdA) {
        QJsonObject object = paletteObject(id);
        object.insert(u"name"_s, name);
        return object;
    }

    QTemporaryDir m_dir;
    QString folder;
};

TEST_F(TemplatesFolder, MissingOrUnlistableFolderGivesNothing) {
    EXPECT_TRUE(SyncFolder::readTemplatesFolder(m_dir.filePath(u"nowhere"_s)).isEmpty());
    put(kIdA + u".json"_s, named(u"Good"_s));
    // A file where the folder should be.
    EXPECT_TRUE(SyncFolder::readTemplatesFolder(path(kIdA + u".json"_s)).isEmpty());
}

TEST_F(TemplatesFolder, NoPathIsNoFolderNotTheWorkingDirectory) {
    put(kIdA + u".json"_s, named(u"Good"_s));
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder));
    const QList<SyncableTemplate> read = SyncFolder::readTemplatesFolder(QString());
    const std::optional<QString> written =
        SyncFolder::writeTemplate(*SyncableTemplate::fromJson(named(u"Stray"_s, kIdB)), QString());
    QDir::setCurrent(before);
    EXPECT_TRUE(read.isEmpty());
    EXPECT_TRUE(written.has_value());
    EXPECT_FALSE(QFileInfo::exists(path(kIdB + u".json"_s)));
}

TEST_F(TemplatesFolder, OnlyUuidNamedJsonFilesAreConsidered) {
    put(kIdA + u".json"_s, named(u"Upper"_s));
    put(kIdB.toLower() + u".json"_s, named(u"Lower"_s, kIdB));
    put(u"notes.json"_s, named(u"Notes"_s));
    put(u"CCCCCCCC-0000-4000-8000-000000000003.JSON"_s, named(u"Shouting extension"_s));
    put(u"CCCCCCCC-0000-4000-8000-000000000004.json.tmp"_s, named(u"Half written"_s));
    put(u"{CCCCCCCC-0000-4000-8000-000000000005}.json"_s, named(u"Braces"_s));
    put(u"CCCCCCCC0000400080000000000000006.json"_s, named(u"No dashes"_s));
    put(u"CCCCCCCC-0000-4000-8000-000000000007"_s, named(u"No extension"_s));
    put(u".json"_s, named(u"Only an extension"_s));
    EXPECT_EQ(namesRead(), (QStringList{u"Upper"_s, u"Lower"_s}));
}

TEST_F(TemplatesFolder, TheIdInsideIsNotComparedWithTheName) {
    put(kIdA + u".json"_s, named(u"Elsewhere"_s, kIdB));
    const QList<SyncableTemplate> records = SyncFolder::readTemplatesFolder(folder);
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records.at(0).id, QUuid(kIdB));
}

TEST_F(TemplatesFolder, NewerSchemaVersionsAreInvisibleOlderOnesKept) {
    const std::pair<int, const char*> versions[] = {{3, "v3"}, {4, "v4"}, {2, "v2"},
                                                    {1, "v1"}, {0, "v0"}, {-1, "vMinus1"}};
    int index = 0;
    for (const auto& [version, name] : versions) {
        QJsonObject object = named(QString::fromLatin1(name));
        object.insert(u"schemaVersion"_s, version);
        put(u"DDDDDDDD-0000-4000-8000-00000000000"_s + QString::number(index++) + u".json"_s,
            object);
    }
    QJsonObject unversioned = named(u"unversioned"_s);
    unversioned.remove(u"schemaVersion"_s);
    put(u"DDDDDDDD-0000-4000-8000-000000000009.json"_s, unversioned);
    EXPECT_EQ(namesRead(),
              (QStringList{u"v2"_s, u"v1"_s, u"v0"_s, u"vMinus1"_s, u"unversioned"_s}));
}

TEST_F(TemplatesFolder, SizeLimitIsOneMebibyteInclusive) {
    // Valid JSON padded with blanks to the exact size: the limit alone decides.
    const auto padded = [](const QString& name, qsizetype size) {
        QByteArray bytes = pretty(named(name));
        bytes.append(QByteArray(size - bytes.size(), ' '));
        return bytes;
    };
    put(kIdA + u".json"_s, padded(u"At the limit"_s, 1048576));
    put(kIdB + u".json"_s, padded(u"One byte over"_s, 1048577));
    put(u"CCCCCCCC-0000-4000-8000-000000000003.json"_s, padded(u"Two megabytes"_s, 2 * 1048576));
    EXPECT_EQ(namesRead(), (QStringList{u"At the limit"_s}));
}

TEST_F(TemplatesFolder, DamagedFilesAreSkippedWithoutHarmingTheOthers) {
    const QByteArray good = pretty(named(u"Good"_s));
    QJsonObject wrongType = named(u"Wrong type"_s);
    wrongType.insert(u"createdAt"_s, u"yesterday"_s);
    QJsonObject noColors = named(u"No colours"_s);
    noColors.remove(u"colors"_s);

    put(u"00000000-0000-4000-8000-000000000001.json"_s, good.left(good.size() / 2));
    put(u"00000000-0000-4000-8000-000000000002.json"_s, QByteArray());
    put(u"00000000-0000-4000-8000-000000000003.json"_s, QByteArray("[1, 2, 3]"));
    put(u"00000000-0000-4000-8000-000000000004.json"_s, QByteArray("\"just text\""));
    put(u"00000000-0000-4000-8000-000000000005.json"_s, wrongType);
    put(u"00000000-0000-4000-8000-000000000006.json"_s, noColors);
    put(u"00000000-0000-4000-8000-000000000007.json"_s, QByteArray("{\"name\": \"\xFF\xFE\"}"));
    put(u"00000000-0000-4000-8000-000000000008.json"_s, good + "\n{}");
    ASSERT_TRUE(QDir(folder).mkdir(u"00000000-0000-4000-8000-000000000009.json"_s));
    // A pipe must not block the read.
    ASSERT_EQ(
        ::mkfifo(
            QFile::encodeName(path(u"00000000-0000-4000-8000-00000000000A.json"_s)).constData(),
            0600),
        0);
    put(u"FFFFFFFF-0000-4000-8000-000000000001.json"_s, good);
    EXPECT_EQ(namesRead(), (QStringList{u"Good"_s}));
}

TEST_F(TemplatesFolder, AFullFolderReadsInFileNameOrderWithTheBadFilesLeftOut) {
    // Enough files for the read to be shared among threads, written in an order unlike that of
    // their names, with broken files and newer devices' files among them.
    constexpr int kCount = 300;
    QList<int> creation(kCount);
    std::iota(creation.begin(), creation.end(), 0);
    std::shuffle(creation.begin(), creation.end(), std::mt19937(11));
    const auto idOf = [](int i) {
        return u"%1-0000-4000-8000-000000000000"_s.arg(i, 8, 10, QChar(u'0'));
    };
    for (int i : creation) {
        const QString file = idOf(i) + u".json"_s;
        QJsonObject object = named(u"Palette "_s + QString::number(i), idOf(i));
        if (i % 7 == 3) {
            put(file, pretty(object).left(40));
            continue;
        }
        if (i % 11 == 5)
            object.insert(u"schemaVersion"_s, 3);
        put(file, object);
    }

    const QList<SyncableTemplate> records = SyncFolder::readTemplatesFolder(folder);

    QList<QUuid> expected;
    for (int i = 0; i < kCount; ++i) {
        if (i % 7 != 3 && i % 11 != 5)
            expected.append(QUuid(idOf(i)));
    }
    QList<QUuid> ids;
    for (const SyncableTemplate& record : records)
        ids.append(record.id);
    ASSERT_EQ(ids, expected);
    // Each record as its file reads alone.
    for (const SyncableTemplate& record : records)
        EXPECT_EQ(record, SyncFolder::readTemplateFile(path(uuidText(record.id) + u".json"_s)));
}

TEST_F(TemplatesFolder, FilesFromOtherWritersAreRead) {
    // Keys in another order, extra keys, CRLF line ends, tabs and no indentation at all, a byte
    // order mark, numbers in exponent form, escaped characters.
    const QByteArray crlf =
        "{\r\n\t\"modifiedBy\" : \"B\",\r\n\t\"lastModified\" : 1.7000000001234567e12,\r\n"
        "\t\"extra\" : {\"nested\" : [1, 2, null]},\r\n\t\"name\" : \"Caf\\u00e9 "
        "\\\"CRLF\\\"\",\r\n"
        "\t\"createdBy\" : \"A\",\r\n\t\"createdAt\" : 1700000000000,\r\n"
        "\t\"colors\" : [\r\n\t\t{\"hex\":\"abc\",\"name\":\"One\",\"id\":"
        "\"11111111-2222-4333-8444-555555555555\",\"future\":true}\r\n\t],\r\n"
        "\t\"id\" : \"aaaaaaaa-0000-4000-8000-000000000001\"\r\n}\r\n";
    put(kIdA + u".json"_s, crlf);
    put(kIdB + u".json"_s,
        "\xEF\xBB\xBF" + QJsonDocument(named(u"With mark"_s, kIdB)).toJson(QJsonDocument::Compact));
    const QList<SyncableTemplate> records = SyncFolder::readTemplatesFolder(folder);
    ASSERT_EQ(records.size(), 2);
    const SyncableTemplate& record = records.at(0);
    EXPECT_EQ(record.name, u"Café \"CRLF\""_s);
    EXPECT_EQ(record.id, QUuid(kIdA));
    EXPECT_EQ(record.createdBy, u"A"_s);
    EXPECT_EQ(record.lastModified, 1700000000123.4567);
    ASSERT_EQ(record.colors.size(), 1);
    EXPECT_EQ(record.colors.at(0).hex, u"#AABBCC"_s);
    EXPECT_EQ(record.schemaVersion, 1);
    EXPECT_EQ(records.at(1).name, u"With mark"_s);
}

// --- Writing -----------------------------------------------------------------------------------

TEST_F(TemplatesFolder, WriteTemplateNamesTheFileByTheUpperCaseIdAndLeavesNothingElse) {
    std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(named(u"Written"_s));
    ASSERT_TRUE(record.has_value());
    record->id = QUuid(kIdA.toLower());
    EXPECT_EQ(SyncFolder::templateFileName(record->id), kIdA + u".json"_s);
    EXPECT_EQ(SyncFolder::writeTemplate(*record, folder), std::nullopt);
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{kIdA + u".json"_s});
    const QList<SyncableTemplate> read = SyncFolder::readTemplatesFolder(folder);
    ASSERT_EQ(read.size(), 1);
    EXPECT_EQ(read.at(0), *record);
}

TEST_F(TemplatesFolder, WriteTemplateReplacesADeletionRecord) {
    QJsonObject deletion = named(u"Gone"_s);
    deletion.insert(u"deleted"_s, true);
    deletion.insert(u"deletedAt"_s, 1700000000500.0);
    deletion.insert(u"deletedBy"_s, kDeviceB);
    put(kIdA + u".json"_s, deletion);
    std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(named(u"Back"_s));
    ASSERT_TRUE(record.has_value());
    ASSERT_EQ(SyncFolder::writeTemplate(*record, folder), std::nullopt);
    const QJsonObject written = readObject(path(kIdA + u".json"_s));
    EXPECT_EQ(written.value(u"name"_s), QJsonValue(u"Back"_s));
    EXPECT_EQ(written.value(u"deleted"_s), QJsonValue(false));
    EXPECT_FALSE(written.contains(u"deletedAt"_s));
    EXPECT_FALSE(written.contains(u"deletedBy"_s));
}

TEST_F(TemplatesFolder, WriteFailuresComeBackAsAMessage) {
    const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(named(u"X"_s));
    ASSERT_TRUE(record.has_value());
    // The folder has gone away: it is not quietly made again.
    const QString gone = m_dir.filePath(u"gone/templates"_s);
    const std::optional<QString> missing = SyncFolder::writeTemplate(*record, gone);
    ASSERT_TRUE(missing.has_value());
    EXPECT_FALSE(QDir(gone).exists());
    EXPECT_TRUE(SyncError::writeError(*missing).description().startsWith(u"Failed to write: "_s));
    EXPECT_GT(missing->size(), 0);

    // A directory in the file's place stays as it is.
    ASSERT_TRUE(QDir(folder).mkdir(kIdA + u".json"_s));
    EXPECT_TRUE(SyncFolder::writeTemplate(*record, folder).has_value());
    EXPECT_TRUE(QFileInfo(path(kIdA + u".json"_s)).isDir());
}

TEST_F(TemplatesFolder, ReadTemplateFileIgnoresTheFolderFilters) {
    QJsonObject future = named(u"Future"_s);
    future.insert(u"schemaVersion"_s, 3);
    put(kIdA + u".json"_s, future);
    const std::optional<SyncableTemplate> record =
        SyncFolder::readTemplateFile(SyncFolder::templateFilePath(folder, QUuid(kIdA)));
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->schemaVersion, 3);
    EXPECT_FALSE(SyncFolder::readTemplateFile(path(kIdB + u".json"_s)).has_value());
}

// --- The sync folder's own files ---------------------------------------------------------------

TEST(SyncFolderFiles, NamesAreFixed) {
    EXPECT_EQ(SyncFolder::folderName, u"HueShelf Sync"_s);
    EXPECT_EQ(SyncFolder::manifestPath(u"/c/HueShelf Sync"_s), u"/c/HueShelf Sync/manifest.json"_s);
    EXPECT_EQ(SyncFolder::settingsPath(u"/c/HueShelf Sync"_s), u"/c/HueShelf Sync/settings.json"_s);
    EXPECT_EQ(SyncFolder::templatesFolderPath(u"/c/HueShelf Sync"_s),
              u"/c/HueShelf Sync/templates"_s);
}

TEST(SyncFolderFiles, ManifestAndSettingsRoundTripThroughTheFolder) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    EXPECT_FALSE(SyncFolder::readManifest(dir.path()).has_value());

    SyncManifest manifest;
    manifest.lastSyncedAt = 1700000000123.4567;
    manifest.devices.insert(kDeviceA, {u"Desk"_s, SyncManifest::DeviceInfo::currentPlatform(),
                                       1700000000001.5, u"0.1.0"_s});
    ASSERT_EQ(SyncFolder::writeManifest(manifest, dir.path()), std::nullopt);
    EXPECT_EQ(SyncFolder::readManifest(dir.path()), manifest);

    const SyncableSettings settings{u"dark"_s, kIdA, 1700000000002.25, kDeviceA};
    ASSERT_EQ(SyncFolder::writeSettings(settings, dir.path()), std::nullopt);
    EXPECT_EQ(SyncableSettings::fromJson(readObject(SyncFolder::settingsPath(dir.path()))),
              settings);

    // A damaged manifest is as good as none.
    QByteArray bytes = readBytes(SyncFolder::manifestPath(dir.path()));
    writeBytes(SyncFolder::manifestPath(dir.path()), bytes.left(bytes.size() - 3));
    EXPECT_FALSE(SyncFolder::readManifest(dir.path()).has_value());
}

TEST(SyncFolderFiles, ManifestWithoutVersionsIsWrittenBackWithTheDefaults) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    writeBytes(SyncFolder::manifestPath(dir.path()),
               "{\"devices\": {}, \"lastSyncedAt\": 1700000000000}");
    const std::optional<SyncManifest> manifest = SyncFolder::readManifest(dir.path());
    ASSERT_TRUE(manifest.has_value());
    ASSERT_EQ(SyncFolder::writeManifest(*manifest, dir.path()), std::nullopt);
    const QJsonObject written = readObject(SyncFolder::manifestPath(dir.path()));
    EXPECT_EQ(written.value(u"version"_s), QJsonValue(u"1.0"_s));
    EXPECT_EQ(written.value(u"schemaVersion"_s), QJsonValue(1));
    // A folder set up here starts at "1.0" and 2.
    EXPECT_EQ(SyncManifest().toJson().value(u"schemaVersion"_s), QJsonValue(2));
}

} // namespace
} // namespace hueshelf::testing
