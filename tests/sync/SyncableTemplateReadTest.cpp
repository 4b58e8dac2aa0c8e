// Tolerant reading of one palette record: which faults cost the whole record, which only one
// colour, and which just take a default.

#include "SyncTestSupport.h"
#include "sync/SyncConversion.h"
#include "sync/SyncableTemplate.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <functional>

namespace hueshelf::testing {
namespace {

using Edit = std::function<void(QJsonObject&)>;

Edit removeKey(const char* key) {
    return [key](QJsonObject& object) { object.remove(QLatin1StringView(key)); };
}

Edit setKey(const char* key, const QJsonValue& value) {
    return [key, value](QJsonObject& object) { object.insert(QLatin1StringView(key), value); };
}

std::optional<SyncableTemplate> readEdited(const Edit& edit) {
    QJsonObject object = paletteObject();
    edit(object);
    return SyncableTemplate::fromJson(object);
}

// --- Faults that fail the record ---------------------------------------------------------------

struct RefusedCase {
    const char* label;
    Edit edit;
};

class RefusedRecord : public ::testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedRecord, ReadsAsNothing) {
    EXPECT_FALSE(readEdited(GetParam().edit).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RefusedRecord,
    ::testing::Values(
        RefusedCase{"missingId", removeKey("id")}, RefusedCase{"missingName", removeKey("name")},
        RefusedCase{"missingColors", removeKey("colors")},
        RefusedCase{"missingCreatedAt", removeKey("createdAt")},
        RefusedCase{"missingCreatedBy", removeKey("createdBy")},
        RefusedCase{"missingLastModified", removeKey("lastModified")},
        RefusedCase{"missingModifiedBy", removeKey("modifiedBy")},
        RefusedCase{"nullCreatedAt", setKey("createdAt", QJsonValue::Null)},
        RefusedCase{"idNotAUuid", setKey("id", u"nope"_s)},
        RefusedCase{"idWithBraces", setKey("id", u"{D1D1D1D1-AAAA-4BBB-8CCC-DDDDDDDDDDDD}"_s)},
        RefusedCase{"idAsNumber", setKey("id", 5)}, RefusedCase{"nameAsNumber", setKey("name", 1)},
        RefusedCase{"colorsAsObject", setKey("colors", QJsonObject())},
        RefusedCase{"createdAtAsText", setKey("createdAt", u"1700000000000"_s)},
        RefusedCase{"lastModifiedAsBool", setKey("lastModified", true)},
        RefusedCase{"createdByAsNumber", setKey("createdBy", 3)},
        RefusedCase{"schemaVersionAsText", setKey("schemaVersion", u"2"_s)},
        RefusedCase{"schemaVersionFraction", setKey("schemaVersion", 2.5)},
        RefusedCase{"revisionFraction", setKey("revision", 1.5)},
        RefusedCase{"revisionBeyond64Bits", setKey("revision", 1e300)},
        RefusedCase{"contentHashAsNumber", setKey("contentHash", 12)},
        RefusedCase{"isLockedAsText", setKey("isLocked", u"true"_s)},
        RefusedCase{"deletedAsNumber", setKey("deleted", 1)},
        RefusedCase{"deletedAtAsText", setKey("deletedAt", u"yesterday"_s)},
        RefusedCase{"deletedByAsNumber", setKey("deletedBy", 4)}),
    [](const ::testing::TestParamInfo<RefusedCase>& param) {
        return std::string(param.param.label);
    });

// --- Defaults ----------------------------------------------------------------------------------

struct DefaultCase {
    const char* label;
    Edit edit;
    std::function<bool(const SyncableTemplate&)> holds;
};

class DefaultedRecord : public ::testing::TestWithParam<DefaultCase> {};

TEST_P(DefaultedRecord, ReadsWithTheDefault) {
    const std::optional<SyncableTemplate> record = readEdited(GetParam().edit);
    ASSERT_TRUE(record.has_value());
    EXPECT_TRUE(GetParam().holds(*record));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DefaultedRecord,
    ::testing::Values(
        DefaultCase{"schemaVersionMissingIsOne", removeKey("schemaVersion"),
                    [](const SyncableTemplate& r) { return r.schemaVersion == 1; }},
        DefaultCase{"revisionMissingIsOne", removeKey("revision"),
                    [](const SyncableTemplate& r) { return r.revision == 1; }},
        DefaultCase{"revisionWrittenAsFloat", setKey("revision", 12.0),
                    [](const SyncableTemplate& r) { return r.revision == 12; }},
        DefaultCase{"revisionAbove2To53KeptExactly", setKey("revision", qint64(1) << 62),
                    [](const SyncableTemplate& r) { return r.revision == qint64(1) << 62; }},
        DefaultCase{"isLockedMissingIsFalse", removeKey("isLocked"),
                    [](const SyncableTemplate& r) { return !r.isLocked; }},
        DefaultCase{"isLockedNullIsFalse", setKey("isLocked", QJsonValue::Null),
                    [](const SyncableTemplate& r) { return !r.isLocked; }},
        DefaultCase{"deletedMissingIsFalse", removeKey("deleted"),
                    [](const SyncableTemplate& r) { return !r.deleted; }},
        DefaultCase{"deletedAtNullIsAbsent", setKey("deletedAt", QJsonValue::Null),
                    [](const SyncableTemplate& r) { return !r.deletedAt && !r.deletedBy; }},
        DefaultCase{"deletionRecord",
                    [](QJsonObject& o) {
                        o.insert(u"deleted"_s, true);
                        o.insert(u"deletedAt"_s, 1700000000999.25);
                        o.insert(u"deletedBy"_s, kDeviceB);
                    },
                    [](const SyncableTemplate& r) {
                        return r.deleted && r.deletedAt == 1700000000999.25 &&
                               r.deletedBy == kDeviceB;
                    }},
        DefaultCase{"lowerCaseIdReadAsTheSameId",
                    setKey("id", u"d1d1d1d1-aaaa-4bbb-8ccc-dddddddddddd"_s),
                    [](const SyncableTemplate& r) {
                        return r.id == QUuid(u"D1D1D1D1-AAAA-4BBB-8CCC-DDDDDDDDDDDD"_s);
                    }},
        DefaultCase{"integerTimeStamp", setKey("createdAt", qint64(1700000000000)),
                    [](const SyncableTemplate& r) { return r.createdAt == 1700000000000.0; }},
        DefaultCase{"emptyColourList", setKey("colors", QJsonArray()),
                    [](const SyncableTemplate& r) { return r.colors.isEmpty(); }},
        DefaultCase{"unknownKeysIgnored", setKey("favouriteFruit", u"plum"_s),
                    [](const SyncableTemplate& r) { return r.name == u"Starter"_s; }}),
    [](const ::testing::TestParamInfo<DefaultCase>& param) {
        return std::string(param.param.label);
    });

// --- Colours -----------------------------------------------------------------------------------

const QString kGoodId = u"22222222-3333-4444-8555-666666666666"_s;

struct ColorCase {
    const char* label;
    QJsonValue entry;
    std::optional<QString> expectedHex; // none: the entry is dropped
};

class ColorEntry : public ::testing::TestWithParam<ColorCase> {};

TEST_P(ColorEntry, IsKeptOrDroppedAlone) {
    QJsonObject object = paletteObject();
    QJsonArray colors = object.value(u"colors"_s).toArray();
    colors.insert(1, GetParam().entry);
    object.insert(u"colors"_s, colors);

    const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(object);
    ASSERT_TRUE(record.has_value()) << "a bad colour must never cost the palette";
    if (!GetParam().expectedHex) {
        ASSERT_EQ(record->colors.size(), 2);
        EXPECT_EQ(record->colors.at(0).name, u"Primary"_s);
        EXPECT_EQ(record->colors.at(1).name, u"Accent"_s);
    } else {
        ASSERT_EQ(record->colors.size(), 3);
        EXPECT_EQ(record->colors.at(1).hex, *GetParam().expectedHex);
        EXPECT_EQ(record->colors.at(2).name, u"Accent"_s);
    }
}

QJsonObject entryWith(const char* key, const QJsonValue& value) {
    QJsonObject entry = colorEntry(kGoodId, u"Mid"_s, u"#123456"_s);
    if (value.isUndefined())
        entry.remove(QLatin1StringView(key));
    else
        entry.insert(QLatin1StringView(key), value);
    return entry;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ColorEntry,
    ::testing::Values(
        ColorCase{"unreadableCode", entryWith("hex", u"nope"_s), std::nullopt},
        ColorCase{"fourDigits", entryWith("hex", u"#1234"_s), std::nullopt},
        ColorCase{"sevenDigits", entryWith("hex", u"#1234567"_s), std::nullopt},
        ColorCase{"twoHashes", entryWith("hex", u"##123456"_s), std::nullopt},
        ColorCase{"emptyCode", entryWith("hex", u""_s), std::nullopt},
        ColorCase{"nonHexLetters", entryWith("hex", u"#GGGGGG"_s), std::nullopt},
        ColorCase{"codeAsNumber", entryWith("hex", 123456), std::nullopt},
        ColorCase{"missingId", entryWith("id", QJsonValue::Undefined), std::nullopt},
        ColorCase{"missingName", entryWith("name", QJsonValue::Undefined), std::nullopt},
        ColorCase{"missingHex", entryWith("hex", QJsonValue::Undefined), std::nullopt},
        ColorCase{"badId", entryWith("id", u"12345"_s), std::nullopt},
        ColorCase{"nameAsNumber", entryWith("name", 7), std::nullopt},
        ColorCase{"lockAsText", entryWith("isLocked", u"no"_s), std::nullopt},
        ColorCase{"labelAsBool", entryWith("dividerLabel", false), std::nullopt},
        ColorCase{"entryIsNumber", QJsonValue(42), std::nullopt},
        ColorCase{"entryIsNull", QJsonValue(QJsonValue::Null), std::nullopt},
        ColorCase{"entryIsText", QJsonValue(u"#123456"_s), std::nullopt},
        ColorCase{"entryIsList", QJsonValue(QJsonArray{u"#123456"_s}), std::nullopt},
        ColorCase{"canonicalAsItIs", entryWith("hex", u"#A1B2C3"_s), u"#A1B2C3"_s},
        ColorCase{"oneLowerDigit", entryWith("hex", u"#A1B2Cf"_s), u"#A1B2CF"_s},
        ColorCase{"canonicalWithTrailingBlank", entryWith("hex", u"#A1B2C3 "_s), u"#A1B2C3"_s},
        ColorCase{"sevenDigitsNoHash", entryWith("hex", u"1A1B2C3"_s), std::nullopt},
        ColorCase{"hashAndOneNonHex", entryWith("hex", u"#A1B2CG"_s), std::nullopt},
        ColorCase{"fullWidthDigits", entryWith("hex", u"#\uFF11\uFF12\uFF13\uFF14\uFF15\uFF16"_s),
                  std::nullopt},
        ColorCase{"lowerCase", entryWith("hex", u"#a1b2c3"_s), u"#A1B2C3"_s},
        ColorCase{"withoutHash", entryWith("hex", u"a1b2c3"_s), u"#A1B2C3"_s},
        ColorCase{"threeDigitsWidened", entryWith("hex", u"#abc"_s), u"#AABBCC"_s},
        ColorCase{"blanksTrimmed", entryWith("hex", u"  #0f0\n"_s), u"#00FF00"_s},
        ColorCase{"optionalKeysMissing",
                  QJsonObject{{u"id"_s, kGoodId}, {u"name"_s, u"Bare"_s}, {u"hex"_s, u"#010203"_s}},
                  u"#010203"_s},
        ColorCase{"optionalKeysNull", entryWith("dividerLabel", QJsonValue::Null), u"#123456"_s}),
    [](const ::testing::TestParamInfo<ColorCase>& param) {
        return std::string(param.param.label);
    });

TEST(ColorEntryDefaults, MissingOptionalKeysReadAsNothingSet) {
    QJsonObject object = paletteObject();
    object.insert(
        u"colors"_s,
        QJsonArray{QJsonObject{{u"id"_s, kGoodId}, {u"name"_s, u"Bare"_s}, {u"hex"_s, u"fff"_s}}});
    const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(object);
    ASSERT_TRUE(record.has_value());
    ASSERT_EQ(record->colors.size(), 1);
    const SyncableColorItem& color = record->colors.at(0);
    EXPECT_EQ(color.id, QUuid(kGoodId));
    EXPECT_EQ(color.hex, u"#FFFFFF"_s);
    EXPECT_FALSE(color.isAutoNamed);
    EXPECT_FALSE(color.isLocked);
    EXPECT_FALSE(color.dividerBefore);
    EXPECT_TRUE(color.dividerLabel.isEmpty());
}

TEST(ColorList, TwoGoodColoursAndOneUnreadableReadAsTwoWithTheHashAsFound) {
    QJsonObject object = paletteObject();
    QJsonArray colors = object.value(u"colors"_s).toArray();
    colors.append(colorEntry(kGoodId, u"Broken"_s, u"nope"_s));
    object.insert(u"colors"_s, colors);
    object.insert(u"contentHash"_s, u"6244534425de9ae5"_s);

    const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(object);
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->colors.size(), 2);
    EXPECT_EQ(record->contentHash, u"6244534425de9ae5"_s);
    EXPECT_NE(record->contentHash, syncableContentHash(record->name, record->colors));
}

TEST(ColorList, KeepsTheFirstTwoHundredOfTheColoursLeft) {
    QJsonArray colors;
    // Three broken entries among the first ones must not count towards the limit.
    for (int i = 0; i < 205; ++i) {
        const QString hex = (i == 3 || i == 50 || i == 199) ? u"nope"_s : u"#000000"_s;
        colors.append(colorEntry(QUuid::createUuid().toString(QUuid::WithoutBraces),
                                 QString::number(i), hex));
    }
    QJsonObject object = paletteObject();
    object.insert(u"colors"_s, colors);
    const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(object);
    ASSERT_TRUE(record.has_value());
    ASSERT_EQ(record->colors.size(), 200);
    EXPECT_EQ(record->colors.at(3).name, u"4"_s);
    EXPECT_EQ(record->colors.constLast().name, u"202"_s);
}

// --- Cuts --------------------------------------------------------------------------------------

struct CutCase {
    const char* label;
    QString unit; // one user-perceived character
    int repeat;
};

QString repeated(const QString& unit, int count) {
    QString text;
    for (int i = 0; i < count; ++i)
        text += unit;
    return text;
}

class NameCut : public ::testing::TestWithParam<CutCase> {};

TEST_P(NameCut, CountsUserPerceivedCharacters) {
    const CutCase& cut = GetParam();
    const QString text = repeated(cut.unit, cut.repeat);
    QJsonObject object = paletteObject();
    object.insert(u"name"_s, text);
    QJsonArray colors;
    QJsonObject entry = colorEntry(kGoodId, text, u"#000000"_s);
    entry.insert(u"dividerBefore"_s, true);
    entry.insert(u"dividerLabel"_s, text);
    colors.append(entry);
    object.insert(u"colors"_s, colors);

    const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(object);
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->name, repeated(cut.unit, qMin(cut.repeat, 100)));
    EXPECT_EQ(record->colors.at(0).name, repeated(cut.unit, qMin(cut.repeat, 100)));
    EXPECT_EQ(record->colors.at(0).dividerLabel, repeated(cut.unit, qMin(cut.repeat, 40)));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, NameCut,
    ::testing::Values(CutCase{"ascii101", u"a"_s, 101}, CutCase{"ascii100", u"a"_s, 100},
                      CutCase{"ascii40", u"a"_s, 40}, CutCase{"ascii41", u"a"_s, 41},
                      CutCase{"combiningMarks", u"e\u0301"_s, 101},
                      CutCase{"combiningMarksShortInCharacters", u"e\u0301"_s, 60},
                      CutCase{"emojiFamily", u"👩‍👩‍👧"_s, 101},
                      CutCase{"flags", u"🇫🇷"_s, 45}),
    [](const ::testing::TestParamInfo<CutCase>& param) { return std::string(param.param.label); });

// --- The content hash --------------------------------------------------------------------------

TEST(ContentHash, MissingHashIsComputedFromTheRecordAsRead) {
    QJsonObject object = paletteObject();
    object.remove(u"contentHash"_s);
    object.insert(u"name"_s, repeated(u"n"_s, 101));
    QJsonArray colors = object.value(u"colors"_s).toArray();
    colors.replace(
        0, colorEntry(u"11111111-2222-4333-8444-555555555555"_s, u"Primary"_s, u"ffa69e"_s));
    colors.append(QJsonValue(17));
    object.insert(u"colors"_s, colors);

    const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(object);
    ASSERT_TRUE(record.has_value());
    // Cut name, normalised code and the dropped entry are what the hash sees.
    EXPECT_EQ(record->colors.at(0).hex, u"#FFA69E"_s);
    EXPECT_EQ(record->contentHash, syncableContentHash(record->name, record->colors));
    EXPECT_EQ(record->contentHash.size(), 16);
}

TEST(ContentHash, CutNameKeepsTheStoredHash) {
    QJsonObject object = paletteObject();
    object.insert(u"name"_s, repeated(u"n"_s, 101));
    object.insert(u"contentHash"_s, u"ffffffffffffffff"_s);
    const std::optional<SyncableTemplate> record = SyncableTemplate::fromJson(object);
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->name.size(), 100);
    EXPECT_EQ(record->contentHash, u"ffffffffffffffff"_s);
}

} // namespace
} // namespace hueshelf::testing
