#pragma once

#include <QStringList>
#include <QTextStream>

namespace hueshelf::cli {

// True when the arguments ask for a command rather than the bar (which also takes links and
// palette files as plain arguments).
bool isCommandLineUse(const QStringList& arguments);

// Runs one command. `arguments` excludes the program name. Returns the exit status.
int run(const QStringList& arguments, QTextStream& out, QTextStream& err);

} // namespace hueshelf::cli
