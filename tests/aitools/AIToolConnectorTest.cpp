#include "AIToolTestSupport.h"
#include "aitools/ForeignJson.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using AIToolRegistry::ToolPlatform;

// Each tool's entry lands in the file and shape that tool reads, reads back, and goes again.
// Rows: platform (L/M), id, file under the home, servers key, members beside args and command.
TEST_F(ConnectorHome, connectsEachToolReadsBackAndRemoves) {
    const QString rows[] = {
        u"L|claude-code|.claude.json||"_s,
        u"L|claude-desktop|.config/Claude/claude_desktop_config.json|mcpServers|"_s,
        u"M|claude-desktop|Library/Application Support/Claude/claude_desktop_config.json|mcpServers|"_s,
        u"L|cursor|.cursor/mcp.json|mcpServers|"_s,
        u"L|vscode|.config/Code/User/mcp.json|servers|,\"type\":\"stdio\""_s,
        u"L|windsurf|.codeium/windsurf/mcp_config.json|mcpServers|"_s,
        u"L|zed|.config/zed/settings.json|context_servers|,\"source\":\"custom\""_s,
        u"L|gemini|.gemini/settings.json|mcpServers|"_s,
        u"L|codex|.codex/config.toml||"_s,
    };
    for (const QString& row : rows) {
        SCOPED_TRACE(row.toStdString());
        const QStringList c = row.split(u'|');
        tools = AIToolRegistry::allTools(at(u"home"_s), at(u"Apps"_s),
                                         c[0] == u"M" ? ToolPlatform::macOS : ToolPlatform::Linux,
                                         at(u"root"_s));
        const AITool& subject = tool(c[1]);
        EXPECT_FALSE(connector.isConfigured(subject));
        ASSERT_EQ(connector.connect(subject), std::nullopt);
        EXPECT_TRUE(connector.isConfigured(subject));
        EXPECT_EQ(connector.configuredCommand(subject), binary);
        const QByteArray written = scratch.read(u"home/"_s + c[2]).value_or("");
        if (c[1] == u"claude-code")
            EXPECT_EQ(claude.calls(), QStringList{addCall + c[1]});
        else if (c[1] == u"codex")
            EXPECT_TRUE(written.endsWith("args = [\"--client\", \"codex\"]\n"));
        else
            EXPECT_EQ(ForeignJson::parse(written),
                      ForeignJson::parse("{\"" + c[3].toUtf8() +
                                         R"(":{"hueshelf":{"args":["--client",")" + c[1].toUtf8() +
                                         R"("],"command":"/opt/hs/hueshelf-mcp")" + c[4].toUtf8() +
                                         "}}}"));
        ASSERT_EQ(connector.removeEntry(subject), std::nullopt);
        EXPECT_FALSE(connector.isConfigured(subject));
        EXPECT_EQ(connector.configuredCommand(subject), std::nullopt);
    }
}

// The first executable candidate runs; a failure brings its standard error.
TEST_F(ConnectorHome, claudeCommand) {
    const FakeClaude second(scratch, u"second"_s, u"unused.json"_s);
    scratch.write(u"plain/claude"_s, "#!/bin/sh\nexit 0\n"); // not executable
    QDir().mkpath(at(u"folder/claude"_s));
    connector.claudeCandidates = {at(u"nowhere"_s), at(u"plain/claude"_s), at(u"folder/claude"_s),
                                  second.program(), claude.program()};
    ASSERT_EQ(connector.removeEntry(tool(u"claude-code"_s)), std::nullopt);
    EXPECT_EQ(second.calls(), QStringList{removeCall});
    EXPECT_TRUE(claude.calls().isEmpty());

    second.touch(u"fail-add"_s, "Error: MCP server hueshelf already exists\n");
    EXPECT_EQ(connector.connect(tool(u"claude-code"_s)),
              AIToolFailure(ConnectorError::claudeCLIFailed(
                  u"Error: MCP server hueshelf already exists\n"_s)));

    connector.claudeCandidates.resize(3);
    EXPECT_EQ(connector.connect(tool(u"claude-code"_s)),
              AIToolFailure(ConnectorError::claudeCLINotFound()));
}

// What the read-back finds in the tools' own files: the entry, and its command ("#" for none).
TEST_F(ConnectorHome, readBackOfForeignFiles) {
    const std::tuple<const char*, QByteArray, bool, const char*> cases[] = {
        {"cursor", R"({"mcpServers":{"hueshelf":{"command":"\/x"}}})", true, "/x"},
        {"cursor", R"({"mcpServers":{"hueshelf":{"command":5}}})", true, "#"},
        {"cursor", "// c\n{\"mcpServers\":{\"hueshelf\":{\"command\":\"/x\"}}}", false, "#"},
        {"codex", " [mcp_servers.hueshelf]\t\n\tcommand\t= \t\"/x\"  \n", true, "/x"},
        {"codex", "command = \"/z\"\n[mcp_servers.hueshelf]\ncommandline\ncommand=/x=y\n", true,
         "/x=y"},
        {"codex", "[mcp_servers.hueshelf]\nargs = []\n[other]\ncommand = \"/y\"\n", true, "#"},
        {"codex", "[mcp_servers.hueshelf]\ncommand = \"C:\\\\x\" # n\n", true, "C:\\\\x\" # n"},
        {"codex", "[mcp_servers.hueshelf]\r\ncommand = \"/x\"\r\n", true, "#"},
        {"codex", "# [mcp_servers.hueshelf]\n", true, "#"},
        {"claude-code", R"({"projects":{"/p":{"mcpServers":{"hueshelf":{}}}}})", true, "#"},
        {"claude-code", R"({"mcpServers":{"hueshelf-dev":{"command":"/x"}}})", false, "#"},
    };
    const QMap<QString, QString> files{{u"cursor"_s, u"home/.cursor/mcp.json"_s},
                                       {u"codex"_s, u"home/.codex/config.toml"_s},
                                       {u"claude-code"_s, u"home/.claude.json"_s}};
    for (const auto& [id, contents, configured, command] : cases) {
        SCOPED_TRACE(contents.toStdString());
        scratch.write(files[QString::fromUtf8(id)], contents);
        const AITool& subject = tool(QString::fromUtf8(id));
        EXPECT_EQ(connector.isConfigured(subject), configured);
        EXPECT_EQ(connector.configuredCommand(subject).value_or(u"#"_s),
                  QString::fromUtf8(command));
    }
}

// The rows ("rowId:toolId+toolId") on a scratch machine: "~/" is the home, "APPS/" the apps
// folder, "/" the system root; "/bin/" paths are files, "link:" a link to nothing.
QString rowsOn(ToolPlatform platform, const QString& present) {
    const Scratch machine;
    for (QString path : present.split(u',', Qt::SkipEmptyParts)) {
        const bool link = path.startsWith(u"link:");
        path = path.mid(link ? 5 : 0).replace(u"~/"_s, u"home/"_s).replace(u"APPS/"_s, u"Apps/"_s);
        path = machine.path(path.startsWith(u'/') ? u"root"_s + path : path);
        QDir().mkpath(path.contains(u"/bin/") || link ? QFileInfo(path).absolutePath() : path);
        if (link)
            QFile::link(machine.path(u"nowhere"_s), path);
        else if (path.contains(u"/bin/"))
            QFile(path).open(QIODevice::WriteOnly);
    }
    QStringList rows;
    for (const AIToolRegistry::DisplayRow& row : AIToolRegistry::displayRows(
             AIToolRegistry::allTools(machine.path(u"home"_s), machine.path(u"Apps"_s), platform,
                                      machine.path(u"root"_s)))) {
        QStringList ids;
        for (const AITool& tool : row.tools)
            ids.append(tool.id);
        rows.append(row.id + u':' + ids.join(u'+'));
    }
    return rows.join(u' ');
}

TEST(AIToolRegistry, rowsOfTheDetectedTools) {
    const std::tuple<ToolPlatform, const char*, const char*> cases[] = {
        {ToolPlatform::macOS, "/opt/homebrew/bin/claude", "claude:claude-code"},
        {ToolPlatform::macOS,
         "APPS/Claude.app,~/.claude,APPS/Cursor.app,APPS/Visual Studio Code.app,APPS/Windsurf.app,"
         "APPS/Zed.app,~/.gemini,~/.codex",
         "claude:claude-code+claude-desktop cursor:cursor vscode:vscode windsurf:windsurf zed:zed "
         "gemini:gemini codex:codex"},
        // The installer's place proves nothing on a Mac, nor does a link to nothing.
        {ToolPlatform::macOS, "~/.local/bin/claude,/usr/share/code,link:~/.gemini", ""},
        {ToolPlatform::Linux,
         "/usr/lib/claude-desktop,~/.local/bin/claude,/snap/bin/code,~/.config/Cursor,"
         "~/.local/bin/zed,/usr/share/windsurf",
         "claude:claude-code+claude-desktop cursor:cursor vscode:vscode windsurf:windsurf zed:zed"},
        // Mac places mean nothing to the Linux table; Claude's config folder is no marker.
        {ToolPlatform::Linux, "APPS/Cursor.app,~/.config/Claude", ""},
    };
    for (const auto& [platform, present, rows] : cases)
        EXPECT_EQ(rowsOn(platform, QString::fromUtf8(present)), QString::fromUtf8(rows)) << present;
}

const QString cursorFile = u"home/.cursor/mcp.json"_s;

QByteArray entryFor(const QByteArray& command) {
    return R"({"mcpServers":{"hueshelf":{"args":["--client","cursor"],"command":")" + command +
           R"("}}})";
}

using Healing = ConnectorHome;

TEST_F(Healing, cursorEntryEndsAsItShould) {
    struct Case {
        std::optional<QByteArray> contents; // nothing: no file
        QString runningFrom;
        HealResult result;
    };
    const Case cases[] = {
        {std::nullopt, binary, HealResult::notConfigured()},
        {R"({"mcpServers":{}})", binary, HealResult::notConfigured()},
        {entryFor("/old") + ",", binary, HealResult::notConfigured()},
        {entryFor(binary.toUtf8()), binary, HealResult::upToDate()},
        {entryFor("/old/hueshelf-mcp"), binary, HealResult::repaired(u"/old/hueshelf-mcp"_s)},
        {R"({"mcpServers":{"hueshelf":{}}})", binary, HealResult::repaired(std::nullopt)},
        {entryFor("/old"), u"/tmp/.mount_HueSh1/usr/bin/hueshelf-mcp"_s, HealResult::leftAlone()},
        // An unstable place that already is the entry's needs no change either.
        {entryFor("/Volumes/H/hueshelf-mcp"), u"/Volumes/H/hueshelf-mcp"_s, HealResult::upToDate()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.contents.value_or("(none)").toStdString());
        QFile::remove(scratch.path(cursorFile));
        if (c.contents)
            scratch.write(cursorFile, *c.contents);
        connector.binaryPath = c.runningFrom;
        EXPECT_EQ(connector.healEntry(tool(u"cursor"_s)), c.result);
        EXPECT_EQ(scratch.read(cursorFile) == c.contents,
                  c.result.kind != HealResult::Kind::repaired);
    }
}

// A CRLF header counts as configured but can't be read or stripped: a second block follows.
TEST_F(Healing, crlfTomlGetsASecondBlock) {
    const QByteArray crlf = "[mcp_servers.hueshelf]\r\ncommand = \"/old\"\r\n";
    scratch.write(u"home/.codex/config.toml"_s, crlf);
    EXPECT_EQ(connector.healEntry(tool(u"codex"_s)), HealResult::repaired(std::nullopt));
    EXPECT_EQ(*scratch.read(u"home/.codex/config.toml"_s),
              crlf + "\n[mcp_servers.hueshelf]\ncommand = \"/opt/hs/hueshelf-mcp\"\n"
                     "args = [\"--client\", \"codex\"]\n");
}

// `claude mcp add` refuses a taken name: healing removes first, and whatever the removal says,
// the add decides. An entry that is up to date runs nothing.
TEST_F(Healing, claudeCodeIsRemovedThenAdded) {
    scratch.write(u"home/.claude.json"_s, entryFor(binary.toUtf8()));
    EXPECT_EQ(connector.healEntry(tool(u"claude-code"_s)), HealResult::upToDate());
    EXPECT_TRUE(claude.calls().isEmpty());
    scratch.write(u"home/.claude.json"_s, entryFor("/old"));
    claude.touch(u"fail-remove"_s);
    EXPECT_EQ(connector.healEntry(tool(u"claude-code"_s)), HealResult::repaired(u"/old"_s));
    EXPECT_EQ(claude.calls(), (QStringList{removeCall, addCall + u"claude-code"_s}));
}

// Only what reads back counts: a write that seemed to go well but changed nothing, and one
// that failed, need attention; the rest is healed or left alone.
TEST_F(Healing, healAllKeepsOnlyWhatNeedsAttention) {
    scratch.write(cursorFile, entryFor("/old"));
    scratch.write(u"home/.claude.json"_s, entryFor("/old"));
    scratch.write(u"home/.gemini/settings.json"_s, "{,}");
    claude.touch(u"frozen"_s);
    // Its settings can be read but not replaced, whoever runs the test: the copy's name would
    // pass the file system's limit of 255 bytes while the file's does not.
    const QString unwritable = u"home/"_s + QString(240, u'x') + u".json";
    scratch.write(unwritable, entryFor("/old"));
    QList<AITool> all = tools;
    all.append({u"other"_s, u"Other"_s, AITool::JsonConfig{at(unwritable), u"mcpServers"_s}, {}});
    EXPECT_EQ(
        connector.healAll(all),
        (QMap<QString, QString>{
            {u"claude-code"_s, u"Claude Code still points at a different copy of HueShelf."_s},
            {u"other"_s, u"Other's settings file couldn't be updated."_s}}));
    EXPECT_EQ(claude.calls(), (QStringList{removeCall, addCall + u"claude-code"_s}));
    EXPECT_EQ(connector.configuredCommand(tool(u"cursor"_s)), binary);
    EXPECT_EQ(connector.configuredCommand(all.last()), u"/old");
}

// Disconnecting touches only configured tools, and walks on past a failure.
TEST_F(Healing, disconnectAll) {
    const QByteArray other = R"({"mcpServers":{"other":{}}})";
    scratch.write(cursorFile, other);
    scratch.write(u"home/.gemini/settings.json"_s, entryFor("/x") + "//"); // unparseable
    EXPECT_EQ(connector.disconnectAll(tools), AIToolConnector::DisconnectReport());
    EXPECT_EQ(scratch.read(cursorFile), other);

    scratch.write(u"home/.claude.json"_s, entryFor("/x"));
    claude.touch(u"fail-remove"_s, "no\n");
    scratch.write(cursorFile, entryFor("/x"));
    scratch.write(u"home/.codex/config.toml"_s, "[mcp_servers.hueshelf]\ncommand = \"/x\"\n");
    EXPECT_EQ(connector.disconnectAll(tools),
              (AIToolConnector::DisconnectReport{{u"Cursor"_s, u"Codex"_s}, {u"Claude Code"_s}}));
    EXPECT_FALSE(connector.isConfigured(tool(u"codex"_s)));
}

// Places a copy runs from before it goes away; Linux adds temporary folders and its trash.
TEST(AIToolConnector, unstablePlaces) {
    using enum ToolPlatform;
    EXPECT_TRUE(AIToolConnector::isUnstablePath(u"/x/AppTranslocation/A"_s, macOS));
    EXPECT_TRUE(AIToolConnector::isUnstablePath(u"/home/u/.local/share/Trash/files/h"_s, Linux));
    EXPECT_FALSE(AIToolConnector::isUnstablePath(u"/tmp/x/hueshelf-mcp"_s, macOS));
    EXPECT_FALSE(AIToolConnector::isUnstablePath(u"/usr/bin/hueshelf-mcp"_s, Linux));
}

} // namespace
} // namespace hueshelf::testing
