#pragma once

#include "cli/Command.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace hueshelf::cli {

// A command's arguments after parsing against its table entry.
struct ParsedArguments {
    QStringList positionals;
    QHash<QString, QStringList> options; // by long name; a flag has an empty list
    bool json = false;
    bool help = false; // --help or -h: the rest was not looked at

    bool has(const QString& name) const { return options.contains(name); }
    // The value of a value option, or an empty string when it was not given.
    QString value(const QString& name) const;
    QStringList values(const QString& name) const { return options.value(name); }
};

struct ParseOutcome {
    ParsedArguments arguments;
    QString error; // empty on success; otherwise a usage error in one line
    bool ok() const { return error.isEmpty(); }
};

// Reads `arguments` (those after the command name) by the command's option table. Options may
// come before, between or after positionals; "--" ends the options.
ParseOutcome parseArguments(const Command& command, const QStringList& arguments);

} // namespace hueshelf::cli
