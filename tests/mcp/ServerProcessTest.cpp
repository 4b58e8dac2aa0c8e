#include "McpTestHome.h"

#include <QDateTime>
#include <QProcess>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

using ServerProcess = McpTestHome;

// The built server as an AI tool runs it: a child over pipes, in its own home, with no display.
using Outcome = testing::ChildRun;

Outcome run(const QString& home, const QStringList& arguments, const QByteArray& input) {
    return testing::runChild(QStringLiteral(HUESHELF_MCP_BINARY), arguments, home, input);
}

// One compact answer per line on standard output and nothing else, through the end of input
// (whose last line lacks its line feed); each tool call noted for the client.
TEST_F(ServerProcess, speaksOnlyProtocolOnStdout) {
    const ColorTemplate brand = makePalette(u"Brand"_s, {makeColor(u"Ink"_s, u"#111111"_s)});
    seed({makePalette(u"Other"_s, {makeColor(u"Red"_s, u"#FF0000"_s)}), brand}, uuidText(brand.id));
    const Outcome outcome = run(home.path(), {u"--client"_s, u"test-tool"_s},
                                R"(
{"jsonrpc":"2.0","id":1,"method":"initialize","params":{"protocolVersion":"2025-06-18"}}
{"jsonrpc":"2.0","method":"notifications/initialized"}
{"jsonrpc":"2.0","id":"two","method":"tools/list"})"
                                "\r\n"
                                R"(
{"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":"get_brand_colors"}}
not json
{"jsonrpc":"2.0","id":4,"method":"ping"})");
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    ASSERT_TRUE(outcome.out.endsWith('\n'));
    QList<QJsonObject> answers;
    for (const QByteArray& line : outcome.out.chopped(1).split('\n'))
        answers << QJsonDocument::fromJson(line).object();
    ASSERT_EQ(answers.size(), 5) << outcome.out.toStdString();
    EXPECT_EQ(answers[0][u"result"_s][u"protocolVersion"_s], u"2025-06-18"_s);
    EXPECT_EQ(answers[2][u"result"_s][u"structuredContent"_s][u"name"_s], u"Brand"_s);
    EXPECT_EQ(answers[3][u"error"_s][u"code"_s], -32700);
    EXPECT_EQ(answers[4][u"id"_s], 4);
    // Milliseconds of this run, under the client's id.
    const double noted =
        QJsonDocument::fromJson(fileBytes(lastUsedPath()))[u"test-tool"_s].toDouble();
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch());
    EXPECT_LE(noted, now);
    EXPECT_GT(noted, now - 120'000.0);

    const Outcome bad = run(home.path(), {u"--client"_s, u" "_s}, {});
    EXPECT_EQ(bad.status, 64);
    EXPECT_TRUE(bad.err.startsWith("hueshelf-mcp: ")) << bad.err.toStdString();
}

} // namespace
} // namespace hueshelf::testing
