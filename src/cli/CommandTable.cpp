#include "cli/CommandTable.h"

namespace hueshelf::cli {

// Each command's own file defines its entry. A new command is one more line here plus that
// file; parsing, help and dispatch come from the entry.
Command colorCommand();
Command contrastCommand();
Command shadesCommand();
Command simulateCommand();
Command checkCommand();
Command palettesCommand();
Command showCommand();
Command useCommand();
Command schemeCommand();
Command darkCommand();
Command extractCommand();
Command linkCommand();
Command exportCommand();
Command importCommand();
Command syncCommand();
Command toolsCommand();
Command helpCommand();

const std::vector<Command>& commandTable() {
    // One line per command, so a new one is one line in the diff.
    // clang-format off
    static const std::vector<Command> table{
        colorCommand(),
        contrastCommand(),
        shadesCommand(),
        simulateCommand(),
        checkCommand(),
        palettesCommand(),
        showCommand(),
        useCommand(),
        schemeCommand(),
        darkCommand(),
        extractCommand(),
        linkCommand(),
        exportCommand(),
        importCommand(),
        syncCommand(),
        toolsCommand(),
        helpCommand(),
    };
    // clang-format on
    return table;
}

const Command* findCommand(const QString& name) {
    for (const Command& command : commandTable()) {
        if (command.name == name)
            return &command;
    }
    return nullptr;
}

} // namespace hueshelf::cli
