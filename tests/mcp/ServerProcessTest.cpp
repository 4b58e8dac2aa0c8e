#include "McpTestHome.h"

#include <QProcess>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// The built server as an AI tool runs it: a child process over pipes, in a home of its own.
class ServerProcess : public McpTestHome {
protected:
    QProcessEnvironment childEnvironment() const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(u"HOME"_s, home.path());
        env.insert(u"XDG_CONFIG_HOME"_s, home.path() + u"/.config"_s);
        env.insert(u"XDG_DATA_HOME"_s, home.path() + u"/.local/share"_s);
        env.remove(StorageLocations::isolationVariable);
        env.remove(u"DISPLAY"_s);
        env.remove(u"WAYLAND_DISPLAY"_s);
        // Nothing here may need a display: a platform that doesn't exist would abort the run.
        env.insert(u"QT_QPA_PLATFORM"_s, u"no-such-platform"_s);
        return env;
    }

    struct Run {
        bool finished = false;
        int status = -1;
        QByteArray out;
        QByteArray err;
    };

    Run run(const QStringList& arguments, const QByteArray& input) const {
        QProcess process;
        process.setProcessEnvironment(childEnvironment());
        process.start(QStringLiteral(HUESHELF_MCP_BINARY), arguments);
        Run outcome;
        if (!process.waitForStarted(10'000))
            return outcome;
        process.write(input);
        process.closeWriteChannel();
        if (!process.waitForFinished(30'000)) {
            process.kill();
            process.waitForFinished(5'000);
            return outcome;
        }
        outcome.finished = process.exitStatus() == QProcess::NormalExit;
        outcome.status = process.exitCode();
        outcome.out = process.readAllStandardOutput();
        outcome.err = process.readAllStandardError();
        return outcome;
    }
};

TEST_F(ServerProcess, SpeaksOnlyProtocolOnStdoutAndExitsAtTheEndOfInput) {
    const ColorTemplate brand = makePalette(
        u"Brand"_s, {makeColor(u"Ink"_s, u"#111111"_s), makeColor(u"Paper"_s, u"#FAFAFA"_s)});
    seed({makePalette(u"Other"_s, {makeColor(u"Red"_s, u"#FF0000"_s)}), brand}, uuidText(brand.id));
    const QByteArray input =
        R"({"jsonrpc":"2.0","id":1,"method":"initialize","params":{"protocolVersion":"2025-06-18","capabilities":{},"clientInfo":{"name":"t","version":"1"}}})"
        "\n"
        R"({"jsonrpc":"2.0","method":"notifications/initialized"})"
        "\n"
        "\n"
        R"({"jsonrpc":"2.0","id":"two","method":"tools/list"})"
        "\r\n"
        R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":"get_brand_colors","arguments":{}}})"
        "\n"
        "not json\n"
        R"({"jsonrpc":"2.0","id":4,"method":"ping"})"; // the last line has no line feed

    const Run outcome = run({u"--client"_s, u"test-tool"_s}, input);
    ASSERT_TRUE(outcome.finished) << outcome.err.toStdString();
    EXPECT_EQ(outcome.status, 0) << outcome.err.toStdString();

    // One compact JSON-RPC message per line, nothing else, each line ended.
    ASSERT_TRUE(outcome.out.endsWith('\n'));
    const QList<QByteArray> lines = outcome.out.chopped(1).split('\n');
    ASSERT_EQ(lines.size(), 5) << outcome.out.toStdString();
    QList<QJsonObject> answers;
    for (const QByteArray& line : lines) {
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(line, &error);
        ASSERT_EQ(error.error, QJsonParseError::NoError) << line.toStdString();
        ASSERT_TRUE(document.isObject());
        EXPECT_EQ(document.object().value(u"jsonrpc"_s), u"2.0"_s);
        answers << document.object();
    }
    EXPECT_EQ(answers.at(0).value(u"id"_s), QJsonValue(1));
    EXPECT_EQ(answers.at(0).value(u"result"_s).toObject().value(u"protocolVersion"_s),
              u"2025-06-18"_s);
    EXPECT_EQ(answers.at(1).value(u"id"_s), u"two"_s);
    EXPECT_EQ(answers.at(1).value(u"result"_s).toObject().value(u"tools"_s).toArray().size(), 7);
    EXPECT_EQ(answers.at(2).value(u"id"_s), QJsonValue(3));
    const QJsonObject brandColors =
        answers.at(2).value(u"result"_s).toObject().value(u"structuredContent"_s).toObject();
    EXPECT_EQ(brandColors.value(u"name"_s), u"Brand"_s);
    EXPECT_EQ(brandColors.value(u"colors"_s).toArray().size(), 2);
    EXPECT_TRUE(answers.at(3).value(u"id"_s).isNull());
    EXPECT_EQ(answers.at(3).value(u"error"_s).toObject().value(u"code"_s).toInt(), -32700);
    EXPECT_EQ(answers.at(4).value(u"id"_s), QJsonValue(4));

    const QJsonObject lastUsed = QJsonDocument::fromJson(fileBytes(lastUsedPath())).object();
    ASSERT_TRUE(lastUsed.value(u"test-tool"_s).isDouble())
        << fileBytes(lastUsedPath()).toStdString();
    // Milliseconds of this run, not seconds and not some fixed number.
    const double noted = lastUsed.value(u"test-tool"_s).toDouble();
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch());
    EXPECT_LE(noted, now);
    EXPECT_GT(noted, now - 120'000.0);
}

TEST_F(ServerProcess, ExitsAtOnceOnEmptyInput) {
    const Run outcome = run({}, QByteArray());
    ASSERT_TRUE(outcome.finished);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.out.isEmpty());
    EXPECT_FALSE(QFile::exists(lastUsedPath()));
}

TEST_F(ServerProcess, SavesAPaletteThatAnotherSessionReadsBack) {
    seed({makePalette(u"Other"_s, {makeColor(u"Red"_s, u"#FF0000"_s)})}, QJsonValue());
    const Run outcome = run(
        {},
        R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"create_palette","arguments":{"name":"Piped","colors":["#010203",{"hex":"#FAFAFA","name":"Paper"}]}}})"
        "\n");
    ASSERT_TRUE(outcome.finished);
    EXPECT_EQ(outcome.status, 0) << outcome.err.toStdString();
    const QJsonObject result =
        QJsonDocument::fromJson(outcome.out).object().value(u"result"_s).toObject();
    EXPECT_EQ(result.value(u"isError"_s), QJsonValue(false)) << outcome.out.toStdString();
    // This process, as another reader of the same file.
    EXPECT_EQ(namesOf(fileTemplates()), (QStringList{u"Other"_s, u"Piped"_s}));
    EXPECT_EQ(success(u"get_palette"_s, {{u"name"_s, u"Piped"_s}})
                  .value(u"colors"_s)
                  .toArray()
                  .at(1)
                  .toObject()
                  .value(u"name"_s),
              u"Paper"_s);
}

TEST_F(ServerProcess, HelpVersionAndBadOptions) {
    const Run help = run({u"--help"_s}, QByteArray());
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.startsWith("Usage: hueshelf-mcp")) << help.out.toStdString();
    const Run version = run({u"--version"_s}, QByteArray());
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, QByteArray("hueshelf-mcp " HUESHELF_VERSION "\n"));
    for (const QStringList& arguments :
         {QStringList{u"--bogus"_s}, QStringList{u"--client"_s}, QStringList{u"extra"_s}}) {
        SCOPED_TRACE(arguments.join(u' ').toStdString());
        const Run bad = run(arguments, QByteArray());
        ASSERT_TRUE(bad.finished);
        EXPECT_EQ(bad.status, 64);
        EXPECT_TRUE(bad.out.isEmpty());
        EXPECT_TRUE(bad.err.startsWith("hueshelf-mcp: ")) << bad.err.toStdString();
    }
}

} // namespace
} // namespace hueshelf::testing
