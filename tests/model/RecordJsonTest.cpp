// Records as other writers leave them, and the content hash. Random ones: PersistenceTest.

#include "ManualClock.h"
#include "ModelTestSupport.h"
#include "model/ContentHash.h"
#include "model/TemplateJson.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <random>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

std::optional<QList<ColorTemplate>> decode(const QByteArray& json) {
    const ManualClock clock(5000.0);
    return TemplateJson::decodeTemplates(json, clock);
}

// Records of other writers: missing or null optional keys take their defaults (the clock's
// time for both stamps, a hash of their own), values are taken as found, ids in any case.
TEST(RecordJson, ReadsRecordsOfOtherWritersWithTheirDefaults) {
    const auto decoded = decode(R"([
        {"id":"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee","name":"  Min  ","colors":[
          {"id":"11111111-2222-4333-8444-555555555555","name":"","hex":"#ffa69e","isLocked":null}]},
        {"id":"AaAaAaAa-bBbB-4cCc-8DdD-eEeEeEeEeEe1","name":"B","colors":[],"createdAt":7,
         "revision":1e3,"contentHash":"0000000000000000","updatedByDeviceId":"phone","x":{}},
        {"id":"00000000-0000-0000-0000-000000000000","name":"N","colors":[],"revision":null,
         "createdAt":null,"updatedByDeviceId":null,"contentHash":null,"isLocked":null}])");
    // A new record at the clock's time has every default, its own hash among them.
    const QList<ColorItem> color{{QUuid::fromString(u"11111111-2222-4333-8444-555555555555"_s),
                                  QString(), u"#ffa69e"_s, false, false, false, QString()}};
    QList<ColorTemplate> expected{ColorTemplate::makeNew(u"  Min  "_s, color, 5000),
                                  ColorTemplate::makeNew(u"B"_s, {}, 7),
                                  ColorTemplate::makeNew(u"N"_s, {}, 5000)};
    expected[0].id = QUuid::fromString(u"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"_s);
    expected[1].id = QUuid::fromString(u"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEE1"_s);
    expected[1].updatedAt = 5000;
    expected[1].updatedByDeviceId = u"phone"_s;
    expected[1].revision = 1000;
    expected[1].contentHash = u"0000000000000000"_s;
    expected[2].id = QUuid();
    EXPECT_EQ(TemplateJson::encodeTemplates(decoded.value()),
              TemplateJson::encodeTemplates(expected));
}

// A valid list of two palettes; each row gives one key of the second palette (p) or of its
// colour (c) a bad value ("-" removes it), and the whole list must fail.
TEST(RecordJson, OneBadValueFailsTheWholeList) {
    ColorTemplate good = makePalette(u"Good"_s, {makeColor(u"c"_s, u"#000000"_s)});
    good.id = QUuid::fromString(u"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"_s);
    const QJsonObject palette = TemplateJson::templateToJson(good);
    const auto list = [&](const QJsonValue& second) {
        return QJsonDocument(QJsonArray{palette, second}).toJson();
    };
    ASSERT_TRUE(decode(list(palette)));
    const QByteArray rows = R"(p id -|p name -|p colors -|p name null|p name 5|p colors {}|p id 1
        |p id "{AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE}"|p id "AAAAAAAA-BBBB-4CCC-8DDD-EEEE"
        |p id "GAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"|p createdAt "2024-01-01"|p updatedAt true
        |p updatedByDeviceId 3|p revision 1.5|p revision 1e300|p revision "2"|p contentHash 12
        |p isLocked "true"|c id -|c id "nope"|c name -|c hex -|c hex null|c hex 255
        |c isAutoNamed 1|c isLocked "no"|c dividerBefore "yes"|c dividerLabel 0)";
    for (const QByteArray& row : rows.split('|')) {
        const QList<QByteArray> parts = row.simplified().split(' ');
        QJsonObject broken = palette;
        QJsonObject color = TemplateJson::colorItemToJson(good.colors.at(0));
        QJsonObject& target = parts[0] == "c" ? color : broken;
        const QString key = QString::fromLatin1(parts[1]);
        if (parts[2] == "-")
            target.remove(key);
        else
            target.insert(key, QJsonDocument::fromJson("[" + parts[2] + "]").array().at(0));
        if (parts[0] == "c")
            broken.insert("colors"_L1, QJsonArray{color});
        EXPECT_FALSE(decode(list(broken))) << row.simplified().constData();
    }
    QJsonObject colorAsText = palette;
    colorAsText.insert("colors"_L1, QJsonArray{u"#FFFFFF"_s});
    for (const QByteArray& document :
         {QByteArray("[{"), QJsonDocument(palette).toJson(), list(42), list(colorAsText)})
        EXPECT_FALSE(decode(document)) << document.constData();
}

TEST(ContentHash, WorkedExampleAndTheGroupSuffixes) {
    const QString first = u"11111111-2222-4333-8444-555555555555"_s;
    const auto color = [&](bool divider, const QString& label) {
        return ColorItem{
            QUuid::fromString(first), u"Primary"_s, u"#FFA69E"_s, false, false, divider, label};
    };
    const QList<ColorItem> colors{
        color(false, {}), ColorItem{QUuid::fromString(u"aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee"_s),
                                    u"Accent"_s, u"#B8F2E6"_s, true, false, true, u"Brand"_s}};
    const QString stem = u"|"_s + first + u":Primary:#FFA69E:false:false"_s;
    EXPECT_EQ(contentHashText(u"Starter"_s, colors),
              u"Starter"_s + stem +
                  u"|AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE:Accent:#B8F2E6:true:false|d:Brand"_s);
    EXPECT_EQ(computeContentHash(u"Starter"_s, colors), u"6244534425de9ae5"_s);
    EXPECT_EQ(computeContentHash(u"Starter"_s, {}), u"262b4ff6afdd7baa"_s);
    // A label under no divider doesn't count; a divider without one is "|d".
    EXPECT_EQ(contentHashText(u"P"_s, {color(false, u"Old"_s)}), u"P"_s + stem);
    EXPECT_EQ(contentHashText(u"P"_s, {color(true, {})}), u"P"_s + stem + u"|d"_s);
    EXPECT_EQ(contentHashText(u"P"_s, {color(true, u"a|b:c"_s)}), u"P"_s + stem + u"|d:a|b:c"_s);
}

// The shadow state is written by hand for speed; it must be what Qt's writer gives, key order
// included, also for ids whose variant bits put them elsewhere in QUuid's own order.
TEST(RecordJson, ShadowStateIsWrittenAsQtWritesIt) {
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        QMap<QUuid, ShadowTemplateState> states;
        for (int i = 0; i < round; ++i) {
            QUuid id = QUuid::createUuidV5(QUuid(), QString::number(random()));
            id.data4[0] = uchar(random()); // any variant
            const double stamp = i % 3 == 0 ? 1.7e12 + random() : double(random()) / 7.0;
            states.insert(id, {QString::number(random(), 16) + u"\"\u00e9/"_s,
                               qint64(random()) - 100, stamp});
        }
        const QByteArray qt =
            QJsonDocument(TemplateJson::shadowStatesToJson(states)).toJson(QJsonDocument::Compact);
        ASSERT_EQ(TemplateJson::encodeShadowStates(states), qt) << round;
        ASSERT_EQ(TemplateJson::decodeShadowStates(qt), states);
    }
}

} // namespace
} // namespace hueshelf::testing
