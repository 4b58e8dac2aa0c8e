#pragma once

#include <QString>
#include <QStringList>

#include <variant>

namespace hueshelf {

namespace AIToolRegistry {

// The shape of a JSON server entry: the keys besides "args" and "command" that a tool expects.
enum class EntryStyle { standard, vscode, zed };

} // namespace AIToolRegistry

// One AI coding tool that the program knows: where its server entry is kept and how to tell
// that it is installed. Paths are absolute file paths (not URLs).
struct AITool {
    // A JSON settings file; server entries live in the object under `topKey` at its root.
    struct JsonConfig {
        QString path;
        QString topKey;
        AIToolRegistry::EntryStyle style = AIToolRegistry::EntryStyle::standard;

        bool operator==(const JsonConfig&) const = default;
    };
    // A TOML settings file, edited line by line.
    struct TomlConfig {
        QString path;

        bool operator==(const TomlConfig&) const = default;
    };
    // No file is edited: the tool's own `claude` command registers the server.
    struct ClaudeCLIConfig {
        bool operator==(const ClaudeCLIConfig&) const = default;
    };
    using Config = std::variant<JsonConfig, TomlConfig, ClaudeCLIConfig>;

    QString id;   // stable; also the server's --client value and the key of the last-used file
    QString name; // shown to the user
    Config config;
    QStringList markerPaths; // any one of them present means the tool is installed

    bool operator==(const AITool&) const = default;
};

} // namespace hueshelf
