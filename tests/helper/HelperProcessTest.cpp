#include "FrameBytes.h"
#include "HelperTestHome.h"

#include <QProcess>

#include <cstdint>
#include <cstring>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

using HelperProcess = HelperTestHome;

// The frames on standard output, each checked to be whole; anything else there fails.
QList<QJsonObject> framesOf(const QByteArray& out) {
    QList<QJsonObject> replies;
    qsizetype at = 0;
    while (at < out.size()) {
        std::uint32_t length = 0;
        if (out.size() - at < 4)
            break;
        std::memcpy(&length, out.constData() + at, sizeof length);
        at += 4;
        EXPECT_LE(at + static_cast<qsizetype>(length), out.size());
        QJsonParseError error;
        replies << QJsonDocument::fromJson(out.mid(at, length), &error).object();
        EXPECT_EQ(error.error, QJsonParseError::NoError) << out.mid(at, length).toStdString();
        at += length;
    }
    EXPECT_EQ(at, out.size()) << "stray bytes on standard output";
    return replies;
}

struct Outcome {
    int status = -1;
    QList<QJsonObject> replies;
    QByteArray err;
};

// The built helper as the browser starts it: pipes, the extension's origin as its argument,
// its own home, no display.
Outcome run(const QString& home, const QByteArray& input) {
    const testing::ChildRun child =
        testing::runChild(QStringLiteral(HUESHELF_HELPER_BINARY),
                          {u"chrome-extension://aaaabbbbccccddddeeeeffffgggghhhh/"_s}, home, input);
    return {child.status, framesOf(child.out), child.err};
}

TEST_F(HelperProcess, speaksFramesOverItsPipesAndSavesTheColor) {
    const ColorTemplate brand = makePalette(u"Brand"_s, {makeColor(u"Ink"_s, u"#111111"_s)});
    seed({makePalette(u"Other"_s, {makeColor(u"Red"_s, u"#FF0000"_s)}), brand}, uuidText(brand.id));
    const Outcome outcome =
        run(home.path(),
            framed(R"({"type":"hello","id":1})") +
                framed(R"({"type":"addColor","hex":"#2E86AB","name":"Lagoon","id":"two"})") +
                framed(R"({"type":"palettes","id":null})") + framed("{\"type\":\"hel"));
    EXPECT_EQ(outcome.status, 0) << outcome.err.toStdString();

    const QList<QJsonObject>& replies = outcome.replies;
    ASSERT_EQ(replies.size(), 4);
    EXPECT_EQ(replies[0][u"type"_s], u"hello"_s);
    EXPECT_EQ(replies[0][u"protocol"_s], 1);
    EXPECT_EQ(replies[0][u"id"_s], 1);
    EXPECT_EQ(replies[1][u"type"_s], u"added"_s);
    EXPECT_EQ(replies[1][u"id"_s], u"two"_s);
    EXPECT_EQ(replies[1][u"paletteId"_s], uuidText(brand.id));
    EXPECT_EQ(replies[2][u"type"_s], u"palettes"_s);
    EXPECT_EQ(replies[2][u"id"_s], QJsonValue());
    EXPECT_TRUE(replies[2].contains(u"id"_s));
    EXPECT_EQ(replies[2][u"activeId"_s], uuidText(brand.id));
    // The palettes already hold what the request before them added.
    const QJsonArray colors = replies[2][u"palettes"_s][1][u"colors"_s].toArray();
    ASSERT_EQ(colors.size(), 2);
    EXPECT_EQ(colors[1][u"name"_s], u"Lagoon"_s);
    EXPECT_EQ(replies[3][u"type"_s], u"error"_s);
    EXPECT_FALSE(replies[3].contains(u"id"_s));

    const QList<ColorTemplate> saved = stored();
    ASSERT_EQ(saved.size(), 2);
    ASSERT_EQ(saved[1].colors.size(), 2);
    EXPECT_EQ(saved[1].colors[1].hex, u"#2E86AB"_s);
    EXPECT_EQ(saved[1].colors[1].name, u"Lagoon"_s);
    EXPECT_EQ(uuidText(saved[1].colors[1].id), replies[1][u"color"_s][u"id"_s].toString());
    EXPECT_EQ(file().value(u"helperState"_s), true);
}

// A frame longer than the limit can't be skipped: one error reply, then the helper stops
// with status 1 without reading on. A frame cut short by the end of input ends it quietly.
TEST_F(HelperProcess, stopsOnAnOversizedFrameAndEndsQuietlyMidFrame) {
    const QByteArray huge = prefix(0x7FFFFFFFu);
    const Outcome refused =
        run(home.path(), framed(R"({"type":"hello"})") + huge + framed(R"({"type":"hello"})"));
    EXPECT_EQ(refused.status, 1);
    ASSERT_EQ(refused.replies.size(), 2);
    EXPECT_EQ(refused.replies[1][u"type"_s], u"error"_s);

    const Outcome cut = run(home.path(), framed(R"({"type":"hello"})") + huge.left(2));
    EXPECT_EQ(cut.status, 0);
    EXPECT_EQ(cut.replies.size(), 1);
}

} // namespace
} // namespace hueshelf::testing
