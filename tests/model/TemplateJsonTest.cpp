#include "model/TemplateJson.h"

#include "ManualClock.h"
#include "ModelTestSupport.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

const char* const kColorA =
    R"({"id":"11111111-2222-4333-8444-555555555555","name":"Primary","hex":"#FFA69E"})";

// A complete, valid palette record; tests put one bad record after it to show that the good
// one does not survive either.
QByteArray goodTemplate() {
    return QByteArray(R"({"id":"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE","name":"Good","colors":[)") +
           kColorA +
           R"(],"createdAt":1,"updatedAt":2,"revision":3,"contentHash":"x","isLocked":false})";
}

QByteArray listOf(const QByteArray& second) {
    return "[" + goodTemplate() + "," + second + "]";
}

std::optional<QList<ColorTemplate>> decode(const QByteArray& json, double now = 5000.0) {
    ManualClock clock(now);
    return TemplateJson::decodeTemplates(json, clock);
}

void expectSameRecord(const ColorTemplate& a, const ColorTemplate& b) {
    EXPECT_EQ(a.id, b.id);
    EXPECT_EQ(a.name, b.name);
    EXPECT_EQ(a.createdAt, b.createdAt);
    EXPECT_EQ(a.updatedAt, b.updatedAt);
    EXPECT_EQ(a.updatedByDeviceId, b.updatedByDeviceId);
    EXPECT_EQ(a.revision, b.revision);
    EXPECT_EQ(a.contentHash, b.contentHash);
    EXPECT_EQ(a.isLocked, b.isLocked);
    ASSERT_EQ(a.colors.size(), b.colors.size());
    for (qsizetype i = 0; i < a.colors.size(); ++i) {
        const ColorItem& x = a.colors.at(i);
        const ColorItem& y = b.colors.at(i);
        EXPECT_EQ(x, y);
        EXPECT_EQ(x.isAutoNamed, y.isAutoNamed);
        EXPECT_EQ(x.isLocked, y.isLocked);
        EXPECT_EQ(x.dividerBefore, y.dividerBefore);
        EXPECT_EQ(x.dividerLabel, y.dividerLabel);
    }
}

// --- Writing -------------------------------------------------------------------------------

TEST(TemplateJsonWrite, WritesEveryKeyWithUpperCaseIdsAndLeavesAnAbsentDeviceOut) {
    ColorItem color = makeColor(u"Primary"_s, u"#ffa69e"_s, true, true, u"Brand"_s);
    color.id = QUuid::fromString(u"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee"_s);
    ColorTemplate palette = makePalette(u"P"_s, {color}, true, 12.5);
    palette.id = QUuid::fromString(u"11111111-2222-4333-8444-5555555555ff"_s);

    const QJsonObject object = TemplateJson::templateToJson(palette);
    EXPECT_EQ(object.keys(),
              (QStringList{u"colors"_s, u"contentHash"_s, u"createdAt"_s, u"id"_s, u"isLocked"_s,
                           u"name"_s, u"revision"_s, u"updatedAt"_s}));
    EXPECT_EQ(object.value("id"_L1).toString(), u"11111111-2222-4333-8444-5555555555FF"_s);
    EXPECT_EQ(object.value("createdAt"_L1).toDouble(), 12.5);
    EXPECT_TRUE(object.value("isLocked"_L1).isBool());

    const QJsonObject colorObject = object.value("colors"_L1).toArray().at(0).toObject();
    EXPECT_EQ(colorObject.keys(),
              (QStringList{u"dividerBefore"_s, u"dividerLabel"_s, u"hex"_s, u"id"_s,
                           u"isAutoNamed"_s, u"isLocked"_s, u"name"_s}));
    EXPECT_EQ(colorObject.value("id"_L1).toString(), u"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"_s);
    EXPECT_EQ(colorObject.value("hex"_L1).toString(), u"#ffa69e"_s) << "stored as found";

    palette.updatedByDeviceId = u"device-1"_s;
    EXPECT_EQ(TemplateJson::templateToJson(palette).value("updatedByDeviceId"_L1).toString(),
              u"device-1"_s);
    EXPECT_FALSE(TemplateJson::encodeTemplates({makePalette(u"Q"_s, {})}).contains("null"));
}

TEST(TemplateJsonWrite, RoundTripKeepsEveryFieldIncludingLargeRevisions) {
    ColorTemplate full =
        makePalette(u"Füll | : \"quoted\""_s,
                    {makeColor(u"A"_s, u"#010203"_s, true, true, u"Group"_s),
                     makeColor(u"B"_s, u"not a colour"_s, false, false, u"stale"_s)},
                    true, 1'700'000'000'123.25);
    full.colors[1].isAutoNamed = true;
    full.updatedAt = 1'700'000'000'999.5;
    full.updatedByDeviceId = u"DEVICE"_s;
    full.revision = (qint64(1) << 53) + 1; // not representable as a double
    full.contentHash = u"deliberately-wrong"_s;
    const ColorTemplate bare = makePalette(u"Bare"_s, {});

    const auto decoded = decode(TemplateJson::encodeTemplates({full, bare}));
    ASSERT_TRUE(decoded);
    ASSERT_EQ(decoded->size(), 2);
    expectSameRecord(decoded->at(0), full);
    expectSameRecord(decoded->at(1), bare);
}

// --- Reading: defaults ---------------------------------------------------------------------

TEST(TemplateJsonRead, MissingOptionalKeysTakeTheirDefaults) {
    ManualClock clock(4242.0);
    const QByteArray json =
        QByteArray(R"([{"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee","name":"Min","colors":[)") +
        kColorA + "]}]";
    const auto decoded = TemplateJson::decodeTemplates(json, clock);
    ASSERT_TRUE(decoded);
    const ColorTemplate& palette = decoded->at(0);
    EXPECT_EQ(palette.createdAt, 4242.0);
    EXPECT_EQ(palette.updatedAt, 4242.0);
    EXPECT_EQ(palette.revision, 1);
    EXPECT_FALSE(palette.updatedByDeviceId.has_value());
    EXPECT_FALSE(palette.isLocked);
    EXPECT_EQ(palette.contentHash, computeContentHash(palette.name, palette.colors));
    const ColorItem& color = palette.colors.at(0);
    EXPECT_FALSE(color.isAutoNamed);
    EXPECT_FALSE(color.isLocked);
    EXPECT_FALSE(color.dividerBefore);
    EXPECT_TRUE(color.dividerLabel.isEmpty());
}

TEST(TemplateJsonRead, EachRecordReadsTheClockOnceAtItsStart) {
    SteppingClock clock(100.0);
    const QByteArray record =
        R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee","name":"A","colors":[]})";
    const QByteArray stamped =
        R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeef","name":"B","colors":[],"createdAt":7})";
    const auto decoded =
        TemplateJson::decodeTemplates("[" + record + "," + stamped + "," + record + "]", clock);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->at(0).createdAt, 100.0);
    EXPECT_EQ(decoded->at(0).updatedAt, 100.0);
    // A record with createdAt still reads the clock, and a missing updatedAt takes that time,
    // not its own createdAt.
    EXPECT_EQ(decoded->at(1).createdAt, 7.0);
    EXPECT_EQ(decoded->at(1).updatedAt, 101.0);
    EXPECT_EQ(decoded->at(2).updatedAt, 102.0);
    EXPECT_EQ(clock.reads(100.0), 3);
}

TEST(TemplateJsonRead, TakesValuesAsFoundWithoutNormalising) {
    const QByteArray json = R"([{"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee","name":"  spaced  ",
        "colors":[{"id":"11111111-2222-4333-8444-555555555555","name":"","hex":"#ffa69e",
                   "dividerLabel":"stale","unknownKey":[1,2]}],
        "createdAt":1700000000000,"updatedAt":-5.5,"revision":1e3,"contentHash":"0000000000000000",
        "updatedByDeviceId":"phone","somethingElse":{}}])";
    const auto decoded = decode(json);
    ASSERT_TRUE(decoded);
    const ColorTemplate& palette = decoded->at(0);
    EXPECT_EQ(palette.id, QUuid::fromString(u"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"_s));
    EXPECT_EQ(palette.name, u"  spaced  "_s);
    EXPECT_EQ(palette.colors.at(0).hex, u"#ffa69e"_s);
    EXPECT_EQ(palette.colors.at(0).name, QString());
    EXPECT_EQ(palette.colors.at(0).dividerLabel, u"stale"_s);
    EXPECT_EQ(palette.createdAt, 1'700'000'000'000.0);
    EXPECT_EQ(palette.updatedAt, -5.5);
    EXPECT_EQ(palette.revision, 1000);
    EXPECT_EQ(palette.updatedByDeviceId, std::optional<QString>(u"phone"_s));
    // A hash someone else wrote stays as read until the next save.
    EXPECT_EQ(palette.contentHash, u"0000000000000000"_s);
}

TEST(TemplateJsonRead, NullUnderAnOptionalKeyReadsAsMissing) {
    const QByteArray json =
        R"([{"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee","name":"N","colors":[
        {"id":"11111111-2222-4333-8444-555555555555","name":"c","hex":"#000000","isLocked":null,
         "dividerLabel":null}],
        "updatedByDeviceId":null,"revision":null,"contentHash":null,"createdAt":null}])";
    const auto decoded = decode(json, 77.0);
    ASSERT_TRUE(decoded);
    EXPECT_FALSE(decoded->at(0).updatedByDeviceId.has_value());
    EXPECT_EQ(decoded->at(0).revision, 1);
    EXPECT_EQ(decoded->at(0).createdAt, 77.0);
    EXPECT_EQ(decoded->at(0).contentHash,
              computeContentHash(decoded->at(0).name, decoded->at(0).colors));
}

TEST(TemplateJsonRead, IdsAreReadInAnyCase) {
    const auto lower = TemplateJson::uuidFromText(u"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee"_s);
    const auto mixed = TemplateJson::uuidFromText(u"AaAaAaAa-bBbB-4cCc-8DdD-eEeEeEeEeEeE"_s);
    ASSERT_TRUE(lower && mixed);
    EXPECT_EQ(*lower, *mixed);
    EXPECT_EQ(uuidText(*lower), u"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"_s);
    EXPECT_EQ(TemplateJson::uuidFromText(u"00000000-0000-0000-0000-000000000000"_s),
              std::optional<QUuid>(QUuid()));
}

TEST(TemplateJsonRead, AnEmptyArrayIsAnEmptyList) {
    const auto decoded = decode("[]");
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(decoded->isEmpty());
}

// --- Reading: failures ---------------------------------------------------------------------

struct FailureCase {
    const char* what;
    QByteArray json; // a whole document
};

class TemplateJsonFailure : public ::testing::TestWithParam<FailureCase> {};

TEST_P(TemplateJsonFailure, FailsTheWholeList) {
    EXPECT_FALSE(decode(GetParam().json).has_value()) << GetParam().what;
}

QByteArray paletteWith(const QByteArray& fields) {
    return listOf(R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee1","name":"B","colors":[],)" +
                  fields + "}");
}

QByteArray colorWith(const QByteArray& fields) {
    return listOf(R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee1","name":"B","colors":[{)" +
                  fields + "}]}");
}

const QByteArray kColorId = R"("id":"11111111-2222-4333-8444-555555555555")";

INSTANTIATE_TEST_SUITE_P(
    Cases, TemplateJsonFailure,
    ::testing::Values(
        FailureCase{"not JSON", "[{"}, FailureCase{"an object, not a list", goodTemplate()},
        FailureCase{"an element that isn't an object", listOf("42")},
        FailureCase{"palette id missing", listOf(R"({"name":"B","colors":[]})")},
        FailureCase{"palette name missing",
                    listOf(R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee1","colors":[]})")},
        FailureCase{"colors missing",
                    listOf(R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee1","name":"B"})")},
        FailureCase{
            "palette name null",
            listOf(R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee1","name":null,"colors":[]})")},
        FailureCase{
            "palette name a number",
            listOf(R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee1","name":5,"colors":[]})")},
        FailureCase{
            "colors an object",
            listOf(R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee1","name":"B","colors":{}})")},
        FailureCase{
            "id with braces",
            listOf(R"({"id":"{aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee1}","name":"B","colors":[]})")},
        FailureCase{
            "id too short",
            listOf(R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee","name":"B","colors":[]})")},
        FailureCase{
            "id not hex",
            listOf(R"({"id":"gaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee1","name":"B","colors":[]})")},
        FailureCase{
            "id without dashes",
            listOf(R"({"id":"aaaaaaaabbbb4ccc8dddeeeeeeeeeee1xxxx","name":"B","colors":[]})")},
        FailureCase{"id a number", listOf(R"({"id":1,"name":"B","colors":[]})")},
        FailureCase{"createdAt as text", paletteWith(R"("createdAt":"2024-01-01")")},
        FailureCase{"updatedAt as bool", paletteWith(R"("updatedAt":true)")},
        FailureCase{"updatedByDeviceId a number", paletteWith(R"("updatedByDeviceId":3)")},
        FailureCase{"revision fractional", paletteWith(R"("revision":1.5)")},
        FailureCase{"revision beyond 64 bits", paletteWith(R"("revision":1e300)")},
        FailureCase{"revision as text", paletteWith(R"("revision":"2")")},
        FailureCase{"contentHash a number", paletteWith(R"("contentHash":12)")},
        FailureCase{"palette isLocked as text", paletteWith(R"("isLocked":"true")")},
        FailureCase{
            "colour that isn't an object",
            listOf(
                R"({"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeee1","name":"B","colors":["#FFFFFF"]})")},
        FailureCase{"colour id missing", colorWith(R"("name":"c","hex":"#000000")")},
        FailureCase{"colour id bad", colorWith(R"("id":"nope","name":"c","hex":"#000000")")},
        FailureCase{"colour name missing", colorWith(kColorId + R"(,"hex":"#000000")")},
        FailureCase{"colour hex missing", colorWith(kColorId + R"(,"name":"c")")},
        FailureCase{"colour hex null", colorWith(kColorId + R"(,"name":"c","hex":null)")},
        FailureCase{"colour hex a number", colorWith(kColorId + R"(,"name":"c","hex":255)")},
        FailureCase{"isAutoNamed as 1",
                    colorWith(kColorId + R"(,"name":"c","hex":"#000000","isAutoNamed":1)")},
        FailureCase{"colour isLocked as text",
                    colorWith(kColorId + R"(,"name":"c","hex":"#000000","isLocked":"no")")},
        FailureCase{"dividerBefore as text",
                    colorWith(kColorId + R"(,"name":"c","hex":"#000000","dividerBefore":"yes")")},
        FailureCase{"dividerLabel a number",
                    colorWith(kColorId + R"(,"name":"c","hex":"#000000","dividerLabel":0)")}));

// --- Shadow state --------------------------------------------------------------------------

TEST(TemplateJsonShadow, MapRoundTripsWithUpperCaseKeys) {
    const QUuid first = QUuid::createUuid();
    const QUuid second = QUuid::createUuid();
    const QMap<QUuid, ShadowTemplateState> states{
        {first, {u"0123456789abcdef"_s, (qint64(1) << 60) + 3, 1.5}},
        {second, {QString(), -2, 0.0}}};
    const QByteArray json = TemplateJson::encodeShadowStates(states);
    EXPECT_TRUE(json.contains(uuidText(first).toUtf8()));
    const auto decoded = TemplateJson::decodeShadowStates(json);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, states);
    EXPECT_EQ(TemplateJson::decodeShadowStates("{}"), (QMap<QUuid, ShadowTemplateState>()));
}

struct ShadowFailureCase {
    const char* what;
    QByteArray json;
};

class TemplateJsonShadowFailure : public ::testing::TestWithParam<ShadowFailureCase> {};

TEST_P(TemplateJsonShadowFailure, FailsTheWholeMap) {
    EXPECT_FALSE(TemplateJson::decodeShadowStates(GetParam().json).has_value()) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TemplateJsonShadowFailure,
    ::testing::Values(
        ShadowFailureCase{"an array", "[]"},
        ShadowFailureCase{"a bad key",
                          R"({"palette":{"contentHash":"a","revision":1,"syncedAt":1}})"},
        ShadowFailureCase{
            "contentHash missing",
            R"({"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE":{"revision":1,"syncedAt":1}})"},
        ShadowFailureCase{
            "revision missing",
            R"({"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE":{"contentHash":"a","syncedAt":1}})"},
        ShadowFailureCase{
            "syncedAt missing",
            R"({"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE":{"contentHash":"a","revision":1}})"},
        ShadowFailureCase{
            "revision fractional",
            R"({"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE":{"contentHash":"a","revision":0.5,"syncedAt":1}})"},
        ShadowFailureCase{"a state that isn't an object",
                          R"({"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE":3})"}));

} // namespace
} // namespace hueshelf::testing
