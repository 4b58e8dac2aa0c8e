#include "aitools/AIToolRegistry.h"

#include "AIToolTestSupport.h"

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using AIToolRegistry::EntryStyle;
using AIToolRegistry::ToolPlatform;

// A machine in a scratch directory: "~/" is the home, "APPS/" the applications folder, and an
// absolute path lies under the system root.
class FakeMachine {
public:
    QString resolve(const QString& path) const {
        if (path.startsWith(u"~/"))
            return m_scratch.path(u"home/"_s + path.mid(2));
        if (path.startsWith(u"APPS/"))
            return m_scratch.path(u"Applications/"_s + path.mid(5));
        return m_scratch.path(u"root"_s + path);
    }

    void create(const QString& path) const {
        // Markers that look like files are made as files: existence doesn't tell them apart.
        const QString full = resolve(path);
        if (path.endsWith(u".json") || path.contains(u"/bin/")) {
            QDir().mkpath(QFileInfo(full).absolutePath());
            QFile file(full);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        } else {
            ASSERT_TRUE(QDir().mkpath(full));
        }
    }

    QList<AITool> tools(ToolPlatform platform) const {
        QDir().mkpath(resolve(u"~/"_s));
        QDir().mkpath(resolve(u"APPS/"_s));
        return AIToolRegistry::allTools(resolve(u"~/"_s).chopped(1), resolve(u"APPS/"_s).chopped(1),
                                        platform, m_scratch.path(u"root"_s));
    }

private:
    Scratch m_scratch;
};

QString styleName(EntryStyle style) {
    switch (style) {
    case EntryStyle::standard:
        return u"standard"_s;
    case EntryStyle::vscode:
        return u"vscode"_s;
    case EntryStyle::zed:
        return u"zed"_s;
    }
    return {};
}

// Each tool as one line, "id | name | config | markers", with the machine's folders written as
// "~", "APPS" and the bare system path.
QStringList tableLines(const FakeMachine& machine, ToolPlatform platform) {
    const auto shortened = [&machine](QString path) {
        return path.replace(machine.resolve(u"~/"_s), u"~/"_s)
            .replace(machine.resolve(u"APPS/"_s), u"APPS/"_s)
            .replace(machine.resolve(u"/"_s), u"/"_s);
    };
    QStringList lines;
    for (const AITool& tool : machine.tools(platform)) {
        QString config = u"claudeCLI"_s;
        if (const auto* json = std::get_if<AITool::JsonConfig>(&tool.config))
            config = u"json "_s + shortened(json->path) + u' ' + json->topKey + u' ' +
                     styleName(json->style);
        else if (const auto* toml = std::get_if<AITool::TomlConfig>(&tool.config))
            config = u"toml "_s + shortened(toml->path);
        QStringList markers;
        for (const QString& marker : tool.markerPaths)
            markers.append(shortened(marker));
        lines.append(tool.id + u" | "_s + tool.name + u" | "_s + config + u" | "_s +
                     markers.join(u", "_s));
    }
    return lines;
}

TEST(AIToolTable, macOSToolsWhereTheirMacBuildsKeepThem) {
    const FakeMachine machine;
    EXPECT_EQ(
        tableLines(machine, ToolPlatform::macOS),
        (QStringList{
            u"claude-code | Claude Code | claudeCLI | ~/.claude.json, ~/.claude, /usr/local/bin/claude, /opt/homebrew/bin/claude"_s,
            u"claude-desktop | Claude Desktop | json ~/Library/Application Support/Claude/claude_desktop_config.json mcpServers standard | APPS/Claude.app"_s,
            u"cursor | Cursor | json ~/.cursor/mcp.json mcpServers standard | APPS/Cursor.app, ~/.cursor"_s,
            u"vscode | VS Code | json ~/Library/Application Support/Code/User/mcp.json servers vscode | APPS/Visual Studio Code.app"_s,
            u"windsurf | Windsurf | json ~/.codeium/windsurf/mcp_config.json mcpServers standard | APPS/Windsurf.app, ~/.codeium/windsurf"_s,
            u"zed | Zed | json ~/.config/zed/settings.json context_servers zed | APPS/Zed.app, ~/.config/zed"_s,
            u"gemini | Gemini | json ~/.gemini/settings.json mcpServers standard | ~/.gemini"_s,
            u"codex | Codex | toml ~/.codex/config.toml | ~/.codex"_s}));
}

TEST(AIToolTable, linuxToolsWhereTheirLinuxBuildsKeepThem) {
    const FakeMachine machine;
    EXPECT_EQ(
        tableLines(machine, ToolPlatform::Linux),
        (QStringList{
            u"claude-code | Claude Code | claudeCLI | ~/.claude.json, ~/.claude, /usr/local/bin/claude, /opt/homebrew/bin/claude, ~/.local/bin/claude"_s,
            u"claude-desktop | Claude Desktop | json ~/.config/Claude/claude_desktop_config.json mcpServers standard | /usr/bin/claude-desktop, /usr/lib/claude-desktop"_s,
            u"cursor | Cursor | json ~/.cursor/mcp.json mcpServers standard | /usr/share/cursor, /opt/cursor, ~/.cursor, ~/.config/Cursor"_s,
            u"vscode | VS Code | json ~/.config/Code/User/mcp.json servers vscode | /usr/share/code, /usr/bin/code, /snap/bin/code, ~/.vscode"_s,
            u"windsurf | Windsurf | json ~/.codeium/windsurf/mcp_config.json mcpServers standard | /usr/share/windsurf, ~/.codeium/windsurf"_s,
            u"zed | Zed | json ~/.config/zed/settings.json context_servers zed | ~/.local/zed.app, ~/.local/bin/zed, ~/.config/zed"_s,
            u"gemini | Gemini | json ~/.gemini/settings.json mcpServers standard | ~/.gemini"_s,
            u"codex | Codex | toml ~/.codex/config.toml | ~/.codex"_s}));
}

TEST(AIToolTable, productionRootLeavesSystemMarkersAsTheyStand) {
    const QList<AITool> tools =
        AIToolRegistry::allTools(u"/home/u/"_s, u"/Applications"_s, ToolPlatform::macOS);
    EXPECT_EQ(tools[0].markerPaths,
              (QStringList{u"/home/u/.claude.json"_s, u"/home/u/.claude"_s,
                           u"/usr/local/bin/claude"_s, u"/opt/homebrew/bin/claude"_s}));
    EXPECT_EQ(tools[1].markerPaths, QStringList{u"/Applications/Claude.app"_s});
}

// Rows as "rowId:toolId,toolId".
QStringList rowTexts(const QList<AIToolRegistry::DisplayRow>& rows) {
    QStringList texts;
    for (const AIToolRegistry::DisplayRow& row : rows) {
        QStringList ids;
        for (const AITool& tool : row.tools)
            ids.append(tool.id);
        texts.append(row.id + u':' + ids.join(u','));
    }
    return texts;
}

struct DetectionCase {
    const char* label;
    ToolPlatform platform;
    QStringList present;
    QStringList rows;
};

class Detection : public ::testing::TestWithParam<DetectionCase> {};

TEST_P(Detection, rowsOfTheDetectedTools) {
    const DetectionCase& param = GetParam();
    const FakeMachine machine;
    for (const QString& path : param.present)
        machine.create(path);
    EXPECT_EQ(rowTexts(AIToolRegistry::displayRows(machine.tools(param.platform))), param.rows);
}

const QStringList allMacMarkers{u"/opt/homebrew/bin/claude"_s,
                                u"APPS/Claude.app"_s,
                                u"APPS/Cursor.app"_s,
                                u"APPS/Visual Studio Code.app"_s,
                                u"APPS/Windsurf.app"_s,
                                u"APPS/Zed.app"_s,
                                u"~/.gemini"_s,
                                u"~/.codex"_s};

INSTANTIATE_TEST_SUITE_P(
    AIToolRegistry, Detection,
    ::testing::Values(
        DetectionCase{"emptyMachine", ToolPlatform::macOS, {}, {}},
        DetectionCase{"emptyLinuxMachine", ToolPlatform::Linux, {}, {}},
        DetectionCase{"geminiFolderWithoutSettings",
                      ToolPlatform::macOS,
                      {u"~/.gemini"_s},
                      {u"gemini:gemini"_s}},
        DetectionCase{"homebrewClaudeOnly",
                      ToolPlatform::macOS,
                      {u"/opt/homebrew/bin/claude"_s},
                      {u"claude:claude-code"_s}},
        DetectionCase{"desktopAppOnly",
                      ToolPlatform::macOS,
                      {u"APPS/Claude.app"_s},
                      {u"claude:claude-desktop"_s}},
        DetectionCase{"everything",
                      ToolPlatform::macOS,
                      allMacMarkers,
                      {u"claude:claude-code,claude-desktop"_s, u"cursor:cursor"_s,
                       u"vscode:vscode"_s, u"windsurf:windsurf"_s, u"zed:zed"_s, u"gemini:gemini"_s,
                       u"codex:codex"_s}},
        // The installer's place finds the command but proves nothing on a Mac.
        DetectionCase{"localBinClaudeOnMac", ToolPlatform::macOS, {u"~/.local/bin/claude"_s}, {}},
        DetectionCase{"localBinClaudeOnLinux",
                      ToolPlatform::Linux,
                      {u"~/.local/bin/claude"_s},
                      {u"claude:claude-code"_s}},
        DetectionCase{
            "linuxPackages",
            ToolPlatform::Linux,
            {u"/usr/lib/claude-desktop"_s, u"/snap/bin/code"_s, u"~/.config/Cursor"_s,
             u"~/.local/bin/zed"_s},
            {u"claude:claude-desktop"_s, u"cursor:cursor"_s, u"vscode:vscode"_s, u"zed:zed"_s}},
        // The Mac places mean nothing to the Linux table, and the reverse.
        DetectionCase{"macAppsOnLinux",
                      ToolPlatform::Linux,
                      {u"APPS/Cursor.app"_s, u"APPS/Claude.app"_s},
                      {}},
        DetectionCase{"linuxPackageOnMac", ToolPlatform::macOS, {u"/usr/share/code"_s}, {}},
        // Zed's settings folder inside ~/.config is a marker, Claude's is not.
        DetectionCase{"configFolders",
                      ToolPlatform::Linux,
                      {u"~/.config/zed"_s, u"~/.config/Claude"_s},
                      {u"zed:zed"_s}}),
    ByLabel());

TEST(AIToolRegistry, danglingLinkIsNoMarker) {
    const FakeMachine machine;
    const QList<AITool> tools = machine.tools(ToolPlatform::macOS);
    QDir().mkpath(machine.resolve(u"~/"_s));
    ASSERT_TRUE(QFile::link(machine.resolve(u"~/nowhere"_s), machine.resolve(u"~/.gemini"_s)));
    EXPECT_TRUE(AIToolRegistry::displayRows(tools).isEmpty());

    machine.create(u"~/nowhere"_s);
    EXPECT_EQ(rowTexts(AIToolRegistry::displayRows(tools)), QStringList{u"gemini:gemini"_s});
}

TEST(AIToolRegistry, claudeRowStandsWhereItsFirstMemberStands) {
    const FakeMachine machine;
    const QList<AITool> table = machine.tools(ToolPlatform::macOS);
    for (const QString& path : allMacMarkers)
        machine.create(path);
    // The rows follow the order they are given, not the table's.
    const QList<AITool> reordered{table[2], table[1], table[7], table[0]};
    EXPECT_EQ(rowTexts(AIToolRegistry::displayRows(reordered)),
              (QStringList{u"cursor:cursor"_s, u"claude:claude-desktop,claude-code"_s,
                           u"codex:codex"_s}));
    const QList<AIToolRegistry::DisplayRow> rows = AIToolRegistry::displayRows(reordered);
    EXPECT_EQ(rows[1].name, u"Claude");
    EXPECT_EQ(rows[0].name, u"Cursor");
}

} // namespace
} // namespace hueshelf::testing
