#include "CliRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// The `tools` commands of the real binary in a scratch home: what a script sees.
class ToolsCommand : public ::testing::Test {
protected:
    QProcessEnvironment environment() const {
        QProcessEnvironment env;
        env.insert(u"HOME"_s, home.path());
        env.insert(u"XDG_CONFIG_HOME"_s, home.path() + u"/.config"_s);
        env.insert(u"XDG_DATA_HOME"_s, home.path() + u"/.local/share"_s);
        env.insert(u"PATH"_s, u"/usr/bin:/bin"_s);
        return env;
    }
    BinaryRun run(const QStringList& arguments) const {
        return runBinary(arguments, environment());
    }
    void write(const QString& relative, const QByteArray& bytes) const {
        QDir().mkpath(QFileInfo(home.filePath(relative)).absolutePath());
        QFile file(home.filePath(relative));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray read(const QString& relative) const {
        QFile file(home.filePath(relative));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir home;
};

TEST_F(ToolsCommand, connectsListsAndDisconnectsThroughTheToolsOwnFiles) {
    write(u".cursor/mcp.json"_s, R"({"theme":"dark"})");
    const BinaryRun connected = run({u"tools"_s, u"connect"_s, u"cursor"_s});
    ASSERT_TRUE(connected.finished);
    EXPECT_EQ(connected.status, 0) << connected.err.toStdString();
    EXPECT_TRUE(connected.out.startsWith("Cursor connected. Restart Cursor"));
    EXPECT_EQ(read(u".cursor/mcp.json.hueshelf-backup"_s), R"({"theme":"dark"})");

    const BinaryRun list = run({u"tools"_s, u"list"_s, u"--json"_s});
    ASSERT_EQ(list.status, 0);
    const QJsonObject document = list.json().object();
    const QString server = document.value(u"server"_s).toString();
    EXPECT_TRUE(server.endsWith(u"/hueshelf-mcp"_s));
    const QJsonArray tools = document.value(u"tools"_s).toArray();
    ASSERT_EQ(tools.size(), 8);
    const QJsonObject cursor = tools.at(2).toObject();
    EXPECT_EQ(cursor.value(u"id"_s), u"cursor"_s);
    EXPECT_EQ(cursor.value(u"detected"_s), true);
    EXPECT_EQ(cursor.value(u"connected"_s), true);
    EXPECT_EQ(cursor.value(u"command"_s), server);
    EXPECT_EQ(cursor.value(u"pointsHere"_s), true);
    EXPECT_EQ(tools.at(7).toObject().value(u"connected"_s), false);

    const BinaryRun all = run({u"tools"_s, u"disconnect-all"_s});
    EXPECT_EQ(all.out, "Disconnected Cursor. HueShelf can be deleted safely.\n");
    EXPECT_EQ(run({u"tools"_s, u"disconnect-all"_s}).out, "Nothing was connected.\n");
    EXPECT_TRUE(read(u".cursor/mcp.json"_s).contains("\"theme\" : \"dark\""));
}

TEST_F(ToolsCommand, refusesWhatItCannotUseAndLeavesForeignFilesAlone) {
    const QByteArray withComment = "{ // mine\n \"mcpServers\": {} }";
    write(u".gemini/settings.json"_s, withComment);
    const BinaryRun refused = run({u"tools"_s, u"connect"_s, u"gemini"_s});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.err.startsWith("Gemini's settings file couldn't be updated."));
    EXPECT_EQ(read(u".gemini/settings.json"_s), withComment);
    EXPECT_FALSE(QFileInfo::exists(home.filePath(u".gemini/settings.json.hueshelf-backup"_s)));

    const BinaryRun unknown = run({u"tools"_s, u"connect"_s, u"notepad"_s});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_TRUE(unknown.err.contains("Unknown tool \"notepad\""));
    EXPECT_EQ(run({u"tools"_s, u"connect"_s}).status, 2);
    EXPECT_EQ(run({u"tools"_s, u"snippet"_s, u"extra"_s}).status, 2);
    EXPECT_EQ(run({u"tools"_s, u"frobnicate"_s}).status, 2);
}

} // namespace
} // namespace hueshelf::testing
