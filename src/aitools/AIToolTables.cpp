#include "aitools/AIToolRegistry.h"

using namespace Qt::StringLiterals;

namespace hueshelf::AIToolRegistry {

namespace {

// `relative` inside `base`, whether or not `base` ends in a slash.
QString under(const QString& base, QStringView relative) {
    if (base.endsWith(u'/'))
        return base + relative;
    return base + u'/' + relative;
}

// An absolute system path, moved under `systemRoot` unless that is the real root.
QString rooted(const QString& systemRoot, QStringView absolute) {
    if (systemRoot.isEmpty() || systemRoot == u"/")
        return absolute.toString();
    QString root = systemRoot;
    while (root.endsWith(u'/'))
        root.chop(1);
    return root + absolute;
}

AITool jsonTool(QString id, QString name, QString path, QString topKey, EntryStyle style,
                QStringList markers) {
    return AITool{std::move(id), std::move(name),
                  AITool::JsonConfig{std::move(path), std::move(topKey), style},
                  std::move(markers)};
}

// The tools whose entries and markers are the same on every platform.
AITool windsurf(const QString& home, QStringList systemMarkers) {
    systemMarkers.append(under(home, u".codeium/windsurf"));
    return jsonTool(u"windsurf"_s, u"Windsurf"_s, under(home, u".codeium/windsurf/mcp_config.json"),
                    u"mcpServers"_s, EntryStyle::standard, systemMarkers);
}

AITool gemini(const QString& home) {
    return jsonTool(u"gemini"_s, u"Gemini"_s, under(home, u".gemini/settings.json"),
                    u"mcpServers"_s, EntryStyle::standard, {under(home, u".gemini")});
}

AITool codex(const QString& home) {
    return AITool{u"codex"_s,
                  u"Codex"_s,
                  AITool::TomlConfig{under(home, u".codex/config.toml")},
                  {under(home, u".codex")}};
}

QStringList claudeCodeMarkers(const QString& home, const QString& systemRoot) {
    return {under(home, u".claude.json"), under(home, u".claude"),
            rooted(systemRoot, u"/usr/local/bin/claude"),
            rooted(systemRoot, u"/opt/homebrew/bin/claude")};
}

} // namespace

QList<AITool> allTools(const QString& home, const QString& applications, ToolPlatform platform,
                       const QString& systemRoot) {
    if (platform == ToolPlatform::macOS)
        return macOSTools(home, applications, systemRoot);
    return linuxTools(home, systemRoot);
}

QList<AITool> macOSTools(const QString& home, const QString& applications,
                         const QString& systemRoot) {
    const QString support = under(home, u"Library/Application Support");
    return {
        AITool{u"claude-code"_s, u"Claude Code"_s, AITool::ClaudeCLIConfig{},
               claudeCodeMarkers(home, systemRoot)},
        jsonTool(u"claude-desktop"_s, u"Claude Desktop"_s,
                 under(support, u"Claude/claude_desktop_config.json"), u"mcpServers"_s,
                 EntryStyle::standard, {under(applications, u"Claude.app")}),
        jsonTool(u"cursor"_s, u"Cursor"_s, under(home, u".cursor/mcp.json"), u"mcpServers"_s,
                 EntryStyle::standard,
                 {under(applications, u"Cursor.app"), under(home, u".cursor")}),
        jsonTool(u"vscode"_s, u"VS Code"_s, under(support, u"Code/User/mcp.json"), u"servers"_s,
                 EntryStyle::vscode, {under(applications, u"Visual Studio Code.app")}),
        windsurf(home, {under(applications, u"Windsurf.app")}),
        jsonTool(u"zed"_s, u"Zed"_s, under(home, u".config/zed/settings.json"),
                 u"context_servers"_s, EntryStyle::zed,
                 {under(applications, u"Zed.app"), under(home, u".config/zed")}),
        gemini(home),
        codex(home),
    };
}

// Where these tools' Linux builds keep their settings, and the places their packages (deb,
// rpm, snap, tarball, install script) put them.
QList<AITool> linuxTools(const QString& home, const QString& systemRoot) {
    QStringList claudeMarkers = claudeCodeMarkers(home, systemRoot);
    // The native installer puts the command here; on Linux it is the usual place.
    claudeMarkers.append(under(home, u".local/bin/claude"));
    return {
        AITool{u"claude-code"_s, u"Claude Code"_s, AITool::ClaudeCLIConfig{}, claudeMarkers},
        jsonTool(u"claude-desktop"_s, u"Claude Desktop"_s,
                 under(home, u".config/Claude/claude_desktop_config.json"), u"mcpServers"_s,
                 EntryStyle::standard,
                 {rooted(systemRoot, u"/usr/bin/claude-desktop"),
                  rooted(systemRoot, u"/usr/lib/claude-desktop")}),
        jsonTool(u"cursor"_s, u"Cursor"_s, under(home, u".cursor/mcp.json"), u"mcpServers"_s,
                 EntryStyle::standard,
                 {rooted(systemRoot, u"/usr/share/cursor"), rooted(systemRoot, u"/opt/cursor"),
                  under(home, u".cursor"), under(home, u".config/Cursor")}),
        jsonTool(u"vscode"_s, u"VS Code"_s, under(home, u".config/Code/User/mcp.json"),
                 u"servers"_s, EntryStyle::vscode,
                 {rooted(systemRoot, u"/usr/share/code"), rooted(systemRoot, u"/usr/bin/code"),
                  rooted(systemRoot, u"/snap/bin/code"), under(home, u".vscode")}),
        windsurf(home, {rooted(systemRoot, u"/usr/share/windsurf")}),
        jsonTool(u"zed"_s, u"Zed"_s, under(home, u".config/zed/settings.json"),
                 u"context_servers"_s, EntryStyle::zed,
                 {under(home, u".local/zed.app"), under(home, u".local/bin/zed"),
                  under(home, u".config/zed")}),
        gemini(home),
        codex(home),
    };
}

} // namespace hueshelf::AIToolRegistry
