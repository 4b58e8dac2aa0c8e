#pragma once

#include <QStringList>
#include <QTextStream>

namespace hueshelf::cli {

// True when the arguments ask for the command line rather than the bar. The bar takes no
// arguments, or palette links and existing files only; a command name, an option, or anything
// the bar wouldn't take goes to the command line (which reports an unknown command instead of
// starting a bar that would ignore it).
bool isCommandLineUse(const QStringList& arguments);

// Runs one command. `arguments` excludes the program name. Returns the exit status. Needs no
// application object and no display.
int run(const QStringList& arguments, QTextStream& out, QTextStream& err);

} // namespace hueshelf::cli
