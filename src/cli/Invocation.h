#pragma once

#include "cli/ArgumentParser.h"
#include "cli/Command.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTextStream>

#include <optional>

namespace hueshelf::cli {

// What a command handler gets: its parsed arguments, the two output streams, and the common
// ways to end (usage error, unusable input, JSON document).
class Invocation {
public:
    Invocation(const Command& command, ParsedArguments arguments, QTextStream& out,
               QTextStream& err);

    const Command& command() const { return m_command; }
    const ParsedArguments& arguments() const { return m_arguments; }
    const QStringList& positionals() const { return m_arguments.positionals; }
    // The first positional argument, such as an optional PALETTE, if one was given.
    std::optional<QString> firstPositional() const {
        return positionals().isEmpty() ? std::nullopt
                                       : std::optional<QString>(positionals().constFirst());
    }
    bool json() const { return m_arguments.json; }

    QTextStream& out() { return m_out; }
    QTextStream& err() { return m_err; }

    // The message and the command's usage on stderr; returns the usage exit status.
    int usageError(const QString& message);
    // One line on stderr; returns the unusable-input exit status.
    int fail(const QString& message);

    // One UTF-8 JSON document on stdout.
    void printJson(const QJsonArray& document);
    void printJson(const QJsonObject& document);

private:
    const Command& m_command;
    ParsedArguments m_arguments;
    QTextStream& m_out;
    QTextStream& m_err;
};

} // namespace hueshelf::cli
