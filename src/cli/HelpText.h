#pragma once

#include "cli/Command.h"

#include <QString>

namespace hueshelf::cli {

// The texts of --help, `help COMMAND` and usage errors, all built from the command table.
namespace HelpText {

// `hueshelf --help`: how to start the bar, the commands with their summaries, the conventions.
QString overview();
// `hueshelf help COMMAND`: usage, summary, description and options.
QString forCommand(const Command& command);
// "Usage: hueshelf ..." with one line per synopsis.
QString usage(const Command& command);
// A command's usage error: the message, the usage and where to read more.
QString usageError(const Command& command, const QString& message);
// A usage error before any command was recognised.
QString generalUsageError(const QString& message);

} // namespace HelpText
} // namespace hueshelf::cli
