#include "model/PreferencesWrite.h"

#include "PersistenceFixture.h"

#include <cmath>
#include <limits>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

constexpr double kBaseline = 1'700'000'000'000.0;
constexpr double kNow = kBaseline + 60'000.0;

// A writer's first cycle: it has no write of its own in the file yet.
SaveOutcome writeOnce(const QString& path, const SaveRequest& request) {
    std::optional<OwnWrite> noOwnWrite;
    return writePreferences(path, request, noOwnWrite);
}

struct MergeCase {
    const char* name;
    SaveRequest::Kind kind;
    double baselineStamp;
    // The file's "colorLastModified"; none leaves the key out.
    std::optional<QJsonValue> fileStamp;
    bool listAsArray;
    bool expectMerge;
};

class WriteCycleMergeTest : public PersistenceFixture,
                            public ::testing::WithParamInterface<MergeCase> {};

// Local has A; the file has A and a palette C that another process added. C in the written
// list means the cycle merged.
TEST_P(WriteCycleMergeTest, MergesOnlyWhenTheFileIsNewerThanTheBaseline) {
    const MergeCase& c = GetParam();
    const ColorTemplate a = makePalette(u"A"_s, {makeColor(u"a"_s, u"#111111"_s)});
    const ColorTemplate theirs = makePalette(u"C"_s, {makeColor(u"c"_s, u"#333333"_s)});
    QJsonObject file = preferencesObject({a, theirs}, theirs.id, 0.0);
    file.remove(PreferencesKeys::lastModified);
    if (c.fileStamp)
        file.insert(PreferencesKeys::lastModified, *c.fileStamp);
    if (!c.listAsArray)
        file.insert(PreferencesKeys::templates,
                    QString::fromUtf8(TemplateJson::encodeTemplates({a, theirs})));
    ASSERT_TRUE(writeFile(file));

    SaveRequest request;
    request.kind = c.kind;
    request.templates = {a};
    request.json = TemplateJson::encodeTemplates(request.templates);
    request.baselineTemplates = {a};
    request.baselineStamp = c.baselineStamp;
    request.activeTemplateId = uuidText(a.id);
    request.nowMs = kNow;

    const SaveOutcome outcome = writeOnce(prefsPath(), request);

    ASSERT_TRUE(outcome.wroteFile);
    const QStringList expected = c.expectMerge ? QStringList{u"A"_s, u"C"_s} : QStringList{u"A"_s};
    EXPECT_EQ(namesOf(outcome.writtenTemplates), expected);
    EXPECT_EQ(namesOf(templatesInFile()), expected);
    EXPECT_EQ(outcome.writtenJson, PreferencesFile::templatesData(readPreferences()));
    EXPECT_EQ(readPreferences().value(PreferencesKeys::lastModified).toDouble(), kNow);
    EXPECT_EQ(readPreferences().value(PreferencesKeys::activeTemplateId).toString(),
              uuidText(a.id));
}

constexpr auto kStamped = SaveRequest::Kind::stamped;
constexpr auto kPlain = SaveRequest::Kind::withoutStamping;

INSTANTIATE_TEST_SUITE_P(
    Cases, WriteCycleMergeTest,
    ::testing::Values(
        MergeCase{"FileNewer", kStamped, kBaseline, QJsonValue(kBaseline + 1.0), true, true},
        MergeCase{"FileAsOld", kStamped, kBaseline, QJsonValue(kBaseline), true, false},
        MergeCase{"FileOlder", kStamped, kBaseline, QJsonValue(kBaseline - 1.0), true, false},
        MergeCase{"NoStampInFile", kStamped, kBaseline, std::nullopt, true, false},
        MergeCase{"NothingEverAgreed", kStamped, 0.0, std::nullopt, true, false},
        MergeCase{"FirstAgreementStillOpen", kStamped, 0.0, QJsonValue(1.0), true, true},
        MergeCase{"StampAsText", kStamped, kBaseline, QJsonValue(u"9999999999999"_s), true, false},
        MergeCase{"ListAsText", kStamped, kBaseline, QJsonValue(kBaseline + 1.0), false, false},
        MergeCase{"PlainVariantNeverMerges", kPlain, kBaseline, QJsonValue(kBaseline + 1.0), true,
                  false}),
    [](const ::testing::TestParamInfo<MergeCase>& param) { return std::string(param.param.name); });

TEST_F(PersistenceFixture, TheWriteCycleSetsTheFourKeysAndKeepsEveryOther) {
    QJsonObject file;
    file.insert(u"helperState"_s, QJsonObject{{u"paired"_s, true}, {u"ids"_s, QJsonArray{1, 2}}});
    file.insert(PreferencesKeys::schemaVersion, 1);
    file.insert(PreferencesKeys::activeTemplateId, 17);
    ASSERT_TRUE(writeFile(file));

    const ColorTemplate a = makePalette(u"A"_s, {});
    SaveRequest request;
    request.templates = {a};
    request.json = TemplateJson::encodeTemplates(request.templates);
    request.activeTemplateId = uuidText(a.id);
    request.nowMs = kNow;
    ASSERT_TRUE(writeOnce(prefsPath(), request).wroteFile);

    const QJsonObject written = readPreferences();
    EXPECT_EQ(written.value(u"helperState"_s), file.value(u"helperState"_s));
    EXPECT_EQ(written.value(PreferencesKeys::schemaVersion).toInt(), 2);
    EXPECT_EQ(written.value(PreferencesKeys::activeTemplateId).toString(), uuidText(a.id));
    EXPECT_EQ(written.value(PreferencesKeys::lastModified).toDouble(), kNow);
    EXPECT_TRUE(written.value(PreferencesKeys::templates).isArray()) << "an array, not text";
    EXPECT_EQ(written.size(), 5);
}

// A save that started before another process wrote, but reaches the file after it, stamps the
// file just past that write: other processes only look at a stamp that moved forwards.
TEST_F(PersistenceFixture, TheFileStampNeverMovesBackwards) {
    struct StampCase {
        const char* label;
        double fileStamp;
        double requested;
        double expected;
    };
    const double justPast = std::nextafter(kNow + 5.0, std::numeric_limits<double>::infinity());
    const StampCase cases[] = {
        {"older file", kNow - 5.0, kNow, kNow},
        {"same stamp", kNow, kNow, std::nextafter(kNow, std::numeric_limits<double>::infinity())},
        {"newer file", kNow + 5.0, kNow, justPast},
    };
    for (const StampCase& c : cases) {
        SCOPED_TRACE(c.label);
        const ColorTemplate a = makePalette(u"A"_s, {});
        QJsonObject file = preferencesObject({a}, a.id, c.fileStamp);
        ASSERT_TRUE(writeFile(file));
        SaveRequest request;
        request.kind = SaveRequest::Kind::withoutStamping;
        request.templates = {a};
        request.json = TemplateJson::encodeTemplates(request.templates);
        request.activeTemplateId = uuidText(a.id);
        request.nowMs = c.requested;
        const SaveOutcome outcome = writeOnce(prefsPath(), request);
        ASSERT_TRUE(outcome.wroteFile);
        EXPECT_EQ(outcome.writtenStamp, c.expected);
        EXPECT_EQ(readPreferences().value(PreferencesKeys::lastModified).toDouble(), c.expected);
    }
}

// The hash of what was written must be the hash a later reader computes from the file, or
// this run's own write would look like someone else's.
TEST_F(PersistenceFixture, TheWrittenBytesAreTheOnesAReaderOfTheFileSees) {
    ColorTemplate awkward =
        makePalette(u"Ünïcödé \"quoted\" / slash"_s, {makeColor(u"tab\there"_s, u"#abcdef"_s)});
    awkward.revision = (qint64(1) << 53) + 1; // beyond what a double holds exactly
    awkward.updatedAt = 1'700'000'000'123.456;
    awkward.updatedByDeviceId = u"Mac-Studio"_s;
    SaveRequest request;
    request.templates = {awkward};
    request.json = TemplateJson::encodeTemplates(request.templates);
    request.activeTemplateId = uuidText(awkward.id);
    request.nowMs = kNow;
    const SaveOutcome outcome = writeOnce(prefsPath(), request);
    ASSERT_TRUE(outcome.wroteFile);
    EXPECT_EQ(PreferencesFile::dataHash(outcome.writtenJson),
              PreferencesFile::dataHash(*PreferencesFile::templatesData(readPreferences())));
    ASSERT_EQ(templatesInFile().size(), 1);
    EXPECT_EQ(templatesInFile()[0].revision, awkward.revision);
    EXPECT_EQ(templatesInFile()[0].updatedAt, awkward.updatedAt);
}

} // namespace
} // namespace hueshelf::testing
