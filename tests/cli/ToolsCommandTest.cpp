// The `tools` commands of the real binary in a scratch home: what a script sees. What each
// tool's file holds is the connector's (tests/aitools); here the statuses, texts and the list.

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

TEST(ToolsCommand, ConnectsListsRefusesAndDisconnects) {
    QTemporaryDir home;
    // Nothing of this machine's own environment: no tool is found but through the scratch home.
    QProcessEnvironment env = homeEnvironment(home.path(), QProcessEnvironment());
    env.insert(u"PATH"_s, u"/usr/bin:/bin"_s);
    const auto run = [&](const QStringList& arguments) { return runBinary(arguments, env); };
    const auto file = [&](const QString& relative, const QByteArray& bytes = {}) {
        QFile f(home.filePath(relative));
        if (!bytes.isEmpty() && QDir().mkpath(QFileInfo(f).absolutePath()) &&
            f.open(QIODevice::WriteOnly))
            f.write(bytes);
        else if (bytes.isEmpty() && f.open(QIODevice::ReadOnly))
            return f.readAll();
        return QByteArray();
    };
    const QByteArray withComment = "{ // mine\n \"mcpServers\": {} }";
    file(u".cursor/mcp.json"_s, R"({"theme":"dark"})");
    file(u".gemini/settings.json"_s, withComment);

    const BinaryRun connected = run({u"tools"_s, u"connect"_s, u"cursor"_s});
    ASSERT_TRUE(connected.finished);
    EXPECT_EQ(connected.status, 0) << connected.err.toStdString();
    EXPECT_TRUE(connected.out.startsWith("Cursor connected. Restart Cursor"));
    EXPECT_EQ(file(u".cursor/mcp.json.hueshelf-backup"_s), R"({"theme":"dark"})");

    // A file it can't edit without losing the comment is refused and left alone.
    const BinaryRun refused = run({u"tools"_s, u"connect"_s, u"gemini"_s});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.err.startsWith("Gemini's settings file couldn't be updated."));
    EXPECT_EQ(file(u".gemini/settings.json"_s), withComment);
    EXPECT_FALSE(QFileInfo::exists(home.filePath(u".gemini/settings.json.hueshelf-backup"_s)));
    EXPECT_TRUE(
        run({u"tools"_s, u"connect"_s, u"notepad"_s}).err.contains("Unknown tool \"notepad\""));
    for (const QStringList& usage : {QStringList{u"connect"_s}, QStringList{u"snippet"_s, u"x"_s},
                                     QStringList{u"frobnicate"_s}})
        EXPECT_EQ(run(QStringList{u"tools"_s} + usage).status, 2) << usage.join(u' ').toStdString();

    const QJsonObject list = run({u"tools"_s, u"list"_s, u"--json"_s}).json().object();
    const QString server = list.value(u"server"_s).toString();
    EXPECT_TRUE(server.endsWith(u"/hueshelf-mcp"_s));
    const QJsonArray tools = list.value(u"tools"_s).toArray();
    ASSERT_EQ(tools.size(), 8);
    const QJsonObject cursor = tools.at(2).toObject();
    EXPECT_EQ(cursor.value(u"id"_s), u"cursor"_s);
    EXPECT_EQ(cursor.value(u"command"_s), server);
    for (const QString& key : {u"detected"_s, u"connected"_s, u"pointsHere"_s})
        EXPECT_EQ(cursor.value(key), true) << key.toStdString();
    EXPECT_EQ(tools.at(7).toObject().value(u"connected"_s), false);

    EXPECT_EQ(run({u"tools"_s, u"disconnect-all"_s}).out,
              "Disconnected Cursor. HueShelf can be deleted safely.\n");
    EXPECT_EQ(run({u"tools"_s, u"disconnect-all"_s}).out, "Nothing was connected.\n");
    EXPECT_TRUE(file(u".cursor/mcp.json"_s).contains("\"theme\" : \"dark\""));
}

} // namespace
} // namespace hueshelf::testing
