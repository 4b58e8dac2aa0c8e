// Tolerant reading of palette records and of the templates folder, as other devices, other
// programs and accidents leave them, and records that come back from a file bit for bit.

#include "SyncTestSupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>
#include <sys/stat.h>
#include <tuple>

namespace hueshelf::testing {
namespace {

TEST(RecordRead, RequiredKeysFailTheRecordOptionalOnesTakeTheirDefault) {
    const std::pair<const char*, QJsonValue> refused[] = {{"id", QJsonValue::Undefined},
                                                          {"name", QJsonValue::Undefined},
                                                          {"colors", QJsonValue::Undefined},
                                                          {"createdAt", QJsonValue::Undefined},
                                                          {"modifiedBy", {}},
                                                          {"id", u"nope"_s},
                                                          {"createdAt", u"1700000000000"_s},
                                                          {"revision", 1.5},
                                                          {"isLocked", u"true"_s},
                                                          {"deletedAt", u"yesterday"_s}};
    for (const auto& [key, value] : refused) {
        QJsonObject object = paletteObject();
        value.isUndefined() ? object.remove(QLatin1StringView(key))
                            : void(object.insert(QLatin1StringView(key), value));
        EXPECT_FALSE(SyncableTemplate::fromJson(object).has_value()) << key;
    }

    QJsonObject object = paletteObject(u"d1d1d1d1-aaaa-4bbb-8ccc-dddddddddddd"_s);
    for (const QString& key : {u"schemaVersion"_s, u"revision"_s, u"isLocked"_s, u"deleted"_s})
        object.remove(key);
    object.insert(u"deletedAt"_s, QJsonValue::Null);
    object.insert(u"favouriteFruit"_s, u"plum"_s);
    const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(object);
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->id, QUuid(u"D1D1D1D1-AAAA-4BBB-8CCC-DDDDDDDDDDDD"_s));
    EXPECT_EQ(std::tuple(record->schemaVersion, record->revision, record->isLocked, record->deleted,
                         record->deletedAt.has_value()),
              std::tuple(1, 1, false, false, false));
    object.insert(u"revision"_s, qint64(1) << 62); // past what a double holds exactly
    EXPECT_EQ(SyncableTemplate::fromJson(object)->revision, qint64(1) << 62);
}

TEST(RecordRead, BadColoursAreDroppedAloneAndTwoHundredOfTheRestKept) {
    const QString id = u"22222222-3333-4444-8555-666666666666"_s;
    const auto entry = [&](const QString& name, const QJsonValue& hex) {
        return QJsonObject{{u"id"_s, id}, {u"name"_s, name}, {u"hex"_s, hex}};
    };
    // Bad entries of every kind first, which must not count towards the limit, then codes in
    // other forms that come out canonical.
    QJsonArray colors = {QJsonObject{{u"id"_s, id}, {u"hex"_s, u"#000"_s}},
                         QJsonObject{{u"name"_s, u"x"_s}, {u"hex"_s, u"#000"_s}},
                         colorEntry(u"12345"_s, u"x"_s, u"#000"_s), 42, u"#123456"_s};
    for (const QJsonValue& hex :
         {QJsonValue(u"nope"_s), QJsonValue(u"#1234"_s), QJsonValue(u"##123456"_s),
          QJsonValue(u"#A1B2CG"_s), QJsonValue(123456), QJsonValue()})
        colors.append(entry(u"x"_s, hex));
    for (const auto& [name, hex] : {std::pair(u"A"_s, u"#A1B2C3"_s), std::pair(u"B"_s, u"a1b2cf"_s),
                                    std::pair(u"C"_s, u"  #0f0\n"_s)})
        colors.append(entry(name, hex));
    for (int i = 0; i < 200; ++i)
        colors.append(entry(QString::number(i), u"#000000"_s));
    QJsonObject object = paletteObject();
    object.insert(u"colors"_s, colors);
    object.insert(u"contentHash"_s, u"0123456789abcdef"_s);
    const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(object);
    ASSERT_TRUE(record.has_value()) << "a bad colour must never cost the palette";
    ASSERT_EQ(record->colors.size(), 200);
    QStringList read;
    for (const SyncableColorItem& color : record->colors.mid(0, 3))
        read.append(color.name + u'=' + color.hex);
    EXPECT_EQ(read, (QStringList{u"A=#A1B2C3"_s, u"B=#A1B2CF"_s, u"C=#00FF00"_s}));
    EXPECT_EQ(record->colors.constLast().name, u"196"_s);
    EXPECT_FALSE(record->colors.at(1).isLocked || record->colors.at(1).dividerBefore);
    EXPECT_EQ(record->contentHash, u"0123456789abcdef"_s); // the stored hash, as found
    // Without a stored hash, it is computed from the record as read.
    object.remove(u"contentHash"_s);
    const std::optional<SyncableTemplate> computed = SyncableTemplate::fromJson(object);
    EXPECT_EQ(computed->contentHash, syncableContentHash(computed->name, computed->colors));
}

TEST(RecordRead, NamesAreCutToOneHundredAndLabelsToFortyCharacters) {
    const std::pair<QString, int> rows[] = {{u"a"_s, 40},        {u"a"_s, 41},
                                            {u"a"_s, 100},       {u"a"_s, 101},
                                            {u"e\u0301"_s, 101}, {u"👩‍👩‍👧"_s, 101}};
    for (const auto& [unit, count] : rows) {
        SCOPED_TRACE(unit.toStdString() + " x " + std::to_string(count));
        const QString text = unit.repeated(count);
        QJsonObject entry = colorEntry(u"22222222-3333-4444-8555-666666666666"_s, text, u"#000"_s);
        entry.insert(u"dividerLabel"_s, text);
        QJsonObject object = paletteObject();
        object.insert(u"name"_s, text);
        object.insert(u"colors"_s, QJsonArray{entry});
        const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(object);
        ASSERT_TRUE(record.has_value());
        EXPECT_EQ(record->name, unit.repeated(std::min(count, 100)));
        EXPECT_EQ(record->colors.at(0).name, unit.repeated(std::min(count, 100)));
        EXPECT_EQ(record->colors.at(0).dividerLabel, unit.repeated(std::min(count, 40)));
    }
}

QString idOf(int i) {
    return u"%1-0000-4000-8000-000000000000"_s.arg(i, 8, 10, QChar(u'0'));
}

// Enough files for the read to be shared among threads, written in an order unlike that of
// their names: damaged ones of every kind, schema versions -1..4 (a newer device's, 3 and above,
// is left alone), files at and past the size limit, names that are no palette's, and a file
// from another program.
TEST(TemplatesFolder, ReadsUuidNamedFilesInNameOrderLeavingOutTheRest) {
    const QTemporaryDir dir;
    const QDir folder(dir.filePath(u"templates"_s));
    ASSERT_TRUE(folder.mkpath(u"."_s));
    std::vector<int> order(150);
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), std::mt19937(11));
    QList<QUuid> expected(150);
    for (int i : order) {
        QJsonObject object = paletteObject(idOf(i));
        object.insert(u"schemaVersion"_s, i % 6 - 1);
        const QByteArray bytes = QJsonDocument(object).toJson();
        const QString path = folder.filePath(idOf(i) + u".json"_s);
        const int kind = i % 13;
        if (kind == 4)
            ASSERT_TRUE(QDir().mkdir(path));
        else if (kind == 5) // a pipe must not block the read
            ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        else
            ASSERT_TRUE(writeBytes(path, kind == 1   ? bytes.left(bytes.size() / 2)
                                         : kind == 2 ? QByteArray("[1, 2, 3]")
                                         : kind == 3 ? bytes + "\n{}"
                                                     : bytes));
        if ((kind == 0 || kind > 5) && i % 6 - 1 < 3)
            expected[i] = QUuid(idOf(i));
    }
    expected.removeAll(QUuid());
    for (const auto& [i, size] : {std::pair(150, 1048576), std::pair(151, 1048577)}) {
        const QByteArray bytes = QJsonDocument(paletteObject(idOf(i))).toJson();
        ASSERT_TRUE(writeBytes(folder.filePath(idOf(i) + u".json"_s),
                               bytes + QByteArray(size - bytes.size(), ' ')));
    }
    expected.append(QUuid(idOf(150)));
    for (const char* name :
         {"notes.json", "CCCCCCCC-0000-4000-8000-000000000004.JSON",
          "CCCCCCCC-0000-4000-8000-000000000005.json.tmp",
          "{CCCCCCCC-0000-4000-8000-000000000006}.json", "CCCCCCCC0000400080000000000000007.json",
          "CCCCCCCC-0000-4000-8000-00000000008.json"})
        ASSERT_TRUE(writeBytes(folder.filePath(QString::fromLatin1(name)),
                               QJsonDocument(paletteObject(idOf(999))).toJson()));
    // Keys in another order, extra keys, CRLF, tabs, a byte order mark, numbers in exponent
    // form, a short code, optional keys left out; a lower-case file name.
    ASSERT_TRUE(writeBytes(
        folder.filePath(u"ffffffff-0000-4000-8000-000000000001.json"_s),
        "\xEF\xBB\xBF{\r\n\t\"modifiedBy\" : \"B\",\r\n\t\"lastModified\" : 1.7000000001234567e12,"
        "\r\n\t\"extra\" : {\"nested\" : [1, null]},\r\n\t\"name\" : \"Caf\\u00e9\",\r\n"
        "\t\"createdBy\" : \"A\",\r\n\t\"createdAt\" : 1700000000000,\r\n\t\"colors\" : [{\"hex\":"
        "\"abc\",\"name\":\"One\",\"id\":\"11111111-2222-4333-8444-555555555555\"}],\r\n"
        "\t\"id\" : \"aaaaaaaa-0000-4000-8000-000000000001\"\r\n}\r\n"));
    expected.append(QUuid(u"aaaaaaaa-0000-4000-8000-000000000001"_s));

    const QList<SyncableTemplate> read = SyncFolder::readTemplatesFolder(folder.path());
    QList<QUuid> ids;
    for (const SyncableTemplate& record : read)
        ids.append(record.id);
    EXPECT_EQ(ids, expected);
    ASSERT_FALSE(read.isEmpty());
    EXPECT_EQ(std::tuple(read.constLast().name, read.constLast().lastModified,
                         read.constLast().colors.at(0).hex, read.constLast().schemaVersion),
              std::tuple(u"Café"_s, 1700000000123.4567, u"#AABBCC"_s, 1));
    EXPECT_TRUE(SyncFolder::readTemplatesFolder(dir.filePath(u"nowhere"_s)).isEmpty());
    EXPECT_TRUE(SyncFolder::readTemplatesFolder(QString()).isEmpty());
}

TEST(RecordWrite, EveryKeyIsWrittenNoneAsNullAndStampsComeBackBitForBit) {
    SyncableTemplate record = *SyncableTemplate::fromJson(paletteObject());
    const QByteArray bytes = SyncFolder::encode(record.toJson());
    EXPECT_TRUE(bytes.contains("\"D1D1D1D1-AAAA-4BBB-8CCC-DDDDDDDDDDDD\"") &&
                !bytes.contains("null"));
    EXPECT_EQ(QJsonDocument::fromJson(bytes).object().keys().size(), 12);
    // The engine compares stamps exactly, so any double must survive the file.
    std::mt19937_64 random(20240611);
    for (int i = 0; i < 5000; ++i) {
        const std::uint64_t bits = random();
        record.lastModified =
            i % 2 ? std::bit_cast<double>(bits) : double(bits % 4'000'000'000'000);
        record.deletedAt = record.lastModified / 3.0;
        if (!std::isfinite(record.lastModified) || record.lastModified == 0.0)
            continue;
        ASSERT_EQ(SyncableTemplate::fromJson(
                      QJsonDocument::fromJson(SyncFolder::encode(record.toJson())).object()),
                  record)
            << i;
    }
}

} // namespace
} // namespace hueshelf::testing
