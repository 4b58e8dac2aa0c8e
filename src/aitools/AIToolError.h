#pragma once

#include <QString>

#include <optional>
#include <variant>

namespace hueshelf {

namespace AIToolConfigWriter {

// A settings file that isn't strict JSON with an object at its root. Such a file is refused:
// it is neither copied aside nor written.
struct WriteError {
    enum class Kind { fileNotParseable };

    Kind kind = Kind::fileNotParseable;

    static WriteError fileNotParseable() { return {Kind::fileNotParseable}; }
    bool operator==(const WriteError&) const = default;
};

} // namespace AIToolConfigWriter

// A failure of the `claude` command. Also known as AIToolConnector::ConnectorError.
struct ConnectorError {
    enum class Kind { claudeCLIFailed, claudeCLINotFound };

    Kind kind = Kind::claudeCLINotFound;
    QString standardError; // what the command wrote to its standard error, for claudeCLIFailed

    static ConnectorError claudeCLIFailed(QString text) {
        return {Kind::claudeCLIFailed, std::move(text)};
    }
    static ConnectorError claudeCLINotFound() { return {Kind::claudeCLINotFound, {}}; }
    bool operator==(const ConnectorError&) const = default;
};

// What the file system or the process launcher said when it refused: a backup that couldn't be
// copied, a folder that couldn't be made, a file that couldn't be written, a command that
// couldn't be started.
struct PlatformError {
    QString message;

    bool operator==(const PlatformError&) const = default;
};

// Any failure of an operation on a tool's settings.
using AIToolError = std::variant<AIToolConfigWriter::WriteError, ConnectorError, PlatformError>;

// The result of an operation that only succeeds or fails: nothing on success, else the reason.
// Callers of the panel never show the reason; a command line may.
using AIToolFailure = std::optional<AIToolError>;

// A short English text of the failure, for logs and the command line.
QString errorText(const AIToolError& error);

} // namespace hueshelf
