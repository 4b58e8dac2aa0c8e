#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace hueshelf::mcp {

// The server's command line: AI tools start it as `hueshelf-mcp --client <tool id>`.
struct McpOptions {
    enum class Action {
        serve,
        help,
        version,
        usageError,
    };

    // The exit status of a usage error (EX_USAGE).
    static constexpr int usageStatus = 64;

    Action action = Action::serve;
    std::optional<QString> clientId;
    QString error; // for usageError: one line, without the program name

    // The arguments after the program name.
    static McpOptions parse(const QStringList& arguments);

    static QString helpText();
    static QString versionText();
};

} // namespace hueshelf::mcp
