#pragma once

#include "cli/Command.h"

#include <vector>

namespace hueshelf::cli {

// Every command, in the order `hueshelf --help` lists them.
const std::vector<Command>& commandTable();
// The command with exactly this name, or null.
const Command* findCommand(const QString& name);

} // namespace hueshelf::cli
