#include "aitools/AIToolConnector.h"
#include "aitools/AIToolRegistry.h"
#include "aitools/AIToolTexts.h"
#include "cli/Invocation.h"
#include "cli/TextTable.h"
#include "cli/TimeText.h"
#include "model/StoreSession.h"
#include "util/AppPaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

const QString kClaudeRow = u"claude"_s;

// The companion server is installed beside this executable. A command runs without an
// application object, so the executable is found through the process itself.
QString serverPath() {
    QString executable;
    if (QCoreApplication::instance())
        executable = QCoreApplication::applicationFilePath();
    else
        executable = QFileInfo(u"/proc/self/exe"_s).canonicalFilePath();
    return QFileInfo(executable).dir().absoluteFilePath(u"hueshelf-mcp"_s);
}

struct ToolsContext {
    ToolsContext()
        : paths(AppPaths::fromEnvironment(StoreSession::environment())),
          connector(AIToolConnector::forPaths(paths, serverPath())),
          tools(AIToolRegistry::allTools(paths.home, u"/Applications"_s)) {}

    AppPaths paths;
    AIToolConnector connector;
    QList<AITool> tools;
};

std::optional<QString> settingsFile(const AITool& tool) {
    if (const auto* json = std::get_if<AITool::JsonConfig>(&tool.config))
        return json->path;
    if (const auto* toml = std::get_if<AITool::TomlConfig>(&tool.config))
        return toml->path;
    return std::nullopt;
}

QJsonValue optionalText(const std::optional<QString>& text) {
    return text ? QJsonValue(*text) : QJsonValue(QJsonValue::Null);
}

QJsonObject toolJson(const ToolsContext& context, const AITool& tool,
                     const std::optional<QHash<QString, double>>& lastUsed) {
    const std::optional<QString> command = context.connector.configuredCommand(tool);
    return QJsonObject{
        {u"id"_s, tool.id},
        {u"name"_s, tool.name},
        {u"detected"_s, AIToolRegistry::isDetected(tool)},
        {u"connected"_s, context.connector.isConfigured(tool)},
        {u"command"_s, optionalText(command)},
        {u"pointsHere"_s, command == context.connector.binaryPath},
        {u"settingsFile"_s, optionalText(settingsFile(tool))},
        {u"lastUsed"_s, lastUsed && lastUsed->contains(tool.id)
                            ? QJsonValue(lastUsed->value(tool.id))
                            : QJsonValue(QJsonValue::Null)},
    };
}

int runList(Invocation& call, const ToolsContext& context) {
    const std::optional<QHash<QString, double>> lastUsed = context.connector.lastUsedTimes();
    if (call.json()) {
        QJsonArray tools;
        for (const AITool& tool : context.tools)
            tools.append(toolJson(context, tool, lastUsed));
        call.printJson(
            QJsonObject{{u"server"_s, context.connector.binaryPath}, {u"tools"_s, tools}});
        return ExitStatus::success;
    }
    TextTable rows;
    for (const AITool& tool : context.tools) {
        const bool connected = context.connector.isConfigured(tool);
        QString state =
            connected ? u"connected"_s
                      : (AIToolRegistry::isDetected(tool) ? u"not connected"_s : u"not found"_s);
        if (connected && context.connector.configuredCommand(tool) != context.connector.binaryPath)
            state += u", points at another copy"_s;
        QString used;
        if (lastUsed && lastUsed->contains(tool.id))
            used = u"last used "_s + timeText(lastUsed->value(tool.id));
        rows.addRow({tool.id, tool.name, state, used});
    }
    call.out() << rows.render();
    return ExitStatus::success;
}

// The tools an id names: one tool, or for "claude" the Claude tools found here (both when
// neither is, as the row would connect them).
std::optional<QList<AITool>> namedTools(const ToolsContext& context, const QString& id) {
    if (id == kClaudeRow) {
        QList<AITool> claude;
        for (const AIToolRegistry::DisplayRow& row : AIToolRegistry::displayRows(context.tools)) {
            if (row.id == kClaudeRow)
                claude = row.tools;
        }
        if (claude.isEmpty()) {
            std::copy_if(context.tools.cbegin(), context.tools.cend(), std::back_inserter(claude),
                         [](const AITool& tool) { return tool.id.startsWith(u"claude-"_s); });
        }
        return claude;
    }
    for (const AITool& tool : context.tools) {
        if (tool.id == id)
            return QList<AITool>{tool};
    }
    return std::nullopt;
}

QString knownIds(const ToolsContext& context) {
    QStringList ids{kClaudeRow};
    for (const AITool& tool : context.tools)
        ids.append(tool.id);
    return ids.join(u", "_s);
}

int runChange(Invocation& call, const ToolsContext& context, bool connect) {
    if (call.positionals().size() != 2)
        return call.usageError(call.positionals().constFirst() + u" needs a tool id"_s);
    const QString id = call.positionals().at(1);
    const std::optional<QList<AITool>> tools = namedTools(context, id);
    if (!tools)
        return call.fail(u"Unknown tool \""_s + id + u"\". Known: "_s + knownIds(context));

    QStringList failures;
    QStringList failedNames;
    for (const AITool& tool : *tools) {
        const AIToolFailure failure =
            connect ? context.connector.connect(tool) : context.connector.removeEntry(tool);
        if (failure) {
            failedNames.append(tool.name);
            failures.append(AIToolTexts::settingsFileNotUpdated(tool.name) + u" ("_s +
                            errorText(*failure) + u')');
        }
    }
    if (call.json()) {
        QJsonArray states;
        for (const AITool& tool : *tools)
            states.append(toolJson(context, tool, context.connector.lastUsedTimes()));
        call.printJson(QJsonObject{{u"tools"_s, states},
                                   {u"failed"_s, QJsonArray::fromStringList(failedNames)}});
    } else if (failures.isEmpty()) {
        const QString name = id == kClaudeRow ? u"Claude"_s : tools->constFirst().name;
        call.out() << (connect ? AIToolTexts::rowConnected(name)
                               : AIToolTexts::rowDisconnected(name))
                   << u'\n';
    }
    if (failures.isEmpty())
        return ExitStatus::success;
    call.err() << failures.join(u'\n') << u'\n';
    return ExitStatus::unusableInput;
}

int runDisconnectAll(Invocation& call, const ToolsContext& context) {
    const AIToolConnector::DisconnectReport report = context.connector.disconnectAll(context.tools);
    if (call.json()) {
        call.printJson(QJsonObject{{u"removed"_s, QJsonArray::fromStringList(report.removed)},
                                   {u"failed"_s, QJsonArray::fromStringList(report.failed)}});
    } else if (report.failed.isEmpty()) {
        call.out() << (report.removed.isEmpty() ? AIToolTexts::nothingWasConnected()
                                                : AIToolTexts::disconnectedAll(report.removed))
                   << u'\n';
    } else {
        call.err() << AIToolTexts::disconnectAllFailed(report.failed) << u'\n';
    }
    return report.failed.isEmpty() ? ExitStatus::success : ExitStatus::unusableInput;
}

int runSnippet(Invocation& call, const ToolsContext& context) {
    const QString snippet = AIToolTexts::setupSnippet(context.connector.binaryPath);
    if (call.json())
        call.printJson(
            QJsonObject{{u"server"_s, context.connector.binaryPath}, {u"snippet"_s, snippet}});
    else
        call.out() << snippet << u'\n';
    return ExitStatus::success;
}

int runTools(Invocation& call) {
    const QString what = call.positionals().constFirst();
    const bool takesId = what == u"connect"_s || what == u"disconnect"_s;
    if (!takesId && call.positionals().size() > 1)
        return call.usageError(u"tools "_s + what + u" takes no tool id"_s);
    const ToolsContext context;
    if (what == u"list"_s)
        return runList(call, context);
    if (what == u"connect"_s)
        return runChange(call, context, true);
    if (what == u"disconnect"_s)
        return runChange(call, context, false);
    if (what == u"disconnect-all"_s)
        return runDisconnectAll(call, context);
    if (what == u"snippet"_s)
        return runSnippet(call, context);
    return call.usageError(u"unknown tools command \""_s + what + u'"');
}

} // namespace

Command toolsCommand() {
    return Command{
        .name = u"tools"_s,
        .summary = u"Connect AI coding tools to your palettes"_s,
        .usage = u"tools list [--json]\n"
                 u"tools connect ID [--json]\n"
                 u"tools disconnect ID [--json]\n"
                 u"tools disconnect-all [--json]\n"
                 u"tools snippet [--json]"_s,
        .description =
            u"AI coding tools read your palettes from the companion server hueshelf-mcp, which\n"
            u"each tool starts from an entry \"hueshelf\" in its own settings. A settings file\n"
            u"that isn't plain JSON is never rewritten, and every file is copied aside (NAME\n"
            u".hueshelf-backup) before it is first changed.\n"
            u"\n"
            u"  list            the known tools: found here, connected, where their entry points\n"
            u"  connect ID      writes the entry for one tool (\"claude\": the Claude tools)\n"
            u"  disconnect ID   takes the entry out again\n"
            u"  disconnect-all  takes out every entry, before HueShelf is removed\n"
            u"  snippet         the setup text for a tool that isn't listed\n"
            u"\n"
            u"IDs: claude-code, claude-desktop, cursor, vscode, windsurf, zed, gemini, codex.\n"
            u"\n"
            u"JSON: list prints {\"server\", \"tools\": [{\"id\", \"name\", \"detected\",\n"
            u"\"connected\", \"command\", \"pointsHere\", \"settingsFile\", \"lastUsed\"}]};\n"
            u"connect and disconnect print {\"tools\": [...], \"failed\": [NAME]};\n"
            u"disconnect-all prints {\"removed\": [NAME], \"failed\": [NAME]}; snippet prints\n"
            u"{\"server\", \"snippet\"}.\n"_s,
        .options = {},
        .minPositionals = 1,
        .maxPositionals = 2,
        .takesJson = true,
        .handler = &runTools,
    };
}

} // namespace hueshelf::cli
