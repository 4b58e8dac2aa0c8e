#pragma once

#include "aitools/AITool.h"
#include "aitools/AIToolError.h"
#include "aitools/AIToolRegistry.h"
#include "aitools/HealResult.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace hueshelf {

struct AppPaths;

// The one road by which the program changes an AI tool's settings: connects a tool, takes its
// entry out, runs the `claude` command for the tool without a file of its own, and repairs
// entries that point at another copy of the program. A plain value; every operation runs
// synchronously on the calling thread (the `claude` command is waited for without time-out).
// Failures come back as an AIToolFailure (nothing on success); nothing throws.
struct AIToolConnector {
    using ConnectorError = hueshelf::ConnectorError;

    // The result of `disconnectAll`: tool names, in table order.
    struct DisconnectReport {
        QStringList removed;
        QStringList failed;

        bool operator==(const DisconnectReport&) const = default;
    };

    QString binaryPath;   // the companion server that every entry starts, absolute
    QString lastUsedPath; // the server's record of when each tool last used it
    QString home;         // where "~/.claude.json" is read
    // Where the `claude` command is looked for, in order; the first executable file is run.
    QStringList claudeCandidates;

    // The connector of a real run: `hueshelf-mcp` beside the running executable (needs a
    // QCoreApplication), the last-used file in the data folder, the usual `claude` places.
    static AIToolConnector forCurrentProcess(const AppPaths& paths);
    // The same with a given server path.
    static AIToolConnector forPaths(const AppPaths& paths, const QString& binaryPath);

    // Absolute path of `hueshelf-mcp` in the running executable's folder.
    static QString defaultBinaryPath();
    // "$XDG_DATA_HOME/hueshelf/ai-tool-last-used.json"; the server writes it there.
    static QString lastUsedPathFor(const AppPaths& paths);
    // "/opt/homebrew/bin/claude", "/usr/local/bin/claude", home + "/.local/bin/claude".
    static QStringList defaultClaudeCandidates(const QString& home);

    // Registers the server for one tool: merges the JSON entry, writes the TOML block, or runs
    // "claude mcp add --scope user hueshelf -- <binaryPath> --client <id>".
    [[nodiscard]] AIToolFailure connect(const AITool& tool) const;
    // Takes the entry out again ("claude mcp remove --scope user hueshelf" for Claude Code).
    [[nodiscard]] AIToolFailure removeEntry(const AITool& tool) const;

    // Whether an entry "hueshelf" is in place. JSON: the file parses strictly and the object at
    // `topKey` holds the key. TOML: the text contains "[mcp_servers.hueshelf]" anywhere.
    // Claude Code: "~/.claude.json" contains "\"hueshelf\"" anywhere. Any failure is false.
    bool isConfigured(const AITool& tool) const;
    // The command the entry starts, or nothing: "command" of the JSON entry if it is a string;
    // for TOML the first "command" line of the block (unquoted, escapes left as written); for
    // Claude Code root → "mcpServers" → "hueshelf" → "command" of "~/.claude.json".
    std::optional<QString> configuredCommand(const AITool& tool) const;

    // Runs the first executable of `claudeCandidates` with `arguments`, inheriting environment
    // and working folder, and waits for it. ConnectorError::claudeCLINotFound if there is none,
    // claudeCLIFailed with its standard error (UTF-8; else empty) on a non-zero exit or crash, a
    // PlatformError if it couldn't be started. Its standard output is discarded.
    [[nodiscard]] AIToolFailure runClaude(const QStringList& arguments) const;

    // Places from which a copy of the program runs that is about to go away or moves from launch
    // to launch (a disk image, the trash, a temporary folder, an AppImage mount): healing never
    // points an entry there. The macOS strings hold everywhere; Linux adds its own.
    static bool
    isUnstablePath(const QString& path,
                   AIToolRegistry::ToolPlatform platform = AIToolRegistry::currentPlatform());

    // Points the tool's entry at `binaryPath` if it points elsewhere, and checks by reading it
    // back. Never changes an entry while this copy runs from an unstable place.
    HealResult healEntry(const AITool& tool) const;
    // `healEntry` for each tool in order; only the tools that need attention, id → message.
    QMap<QString, QString> healAll(const QList<AITool>& tools) const;
    // Removes the entry of every configured tool, in order; the others are in neither list.
    DisconnectReport disconnectAll(const QList<AITool>& tools) const;

    // The last-used file: tool id → milliseconds since 1970. Nothing if it can't be read, isn't
    // a JSON object, or any value isn't a number.
    std::optional<QHash<QString, double>> lastUsedTimes() const;
    static std::optional<QHash<QString, double>> readLastUsedFile(const QString& path);

    bool operator==(const AIToolConnector&) const = default;
};

} // namespace hueshelf
