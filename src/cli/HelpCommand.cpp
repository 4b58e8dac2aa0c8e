#include "cli/CommandTable.h"
#include "cli/HelpText.h"
#include "cli/Invocation.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

int runHelp(Invocation& call) {
    if (call.positionals().isEmpty()) {
        call.out() << HelpText::overview();
        return ExitStatus::success;
    }
    const QString& name = call.positionals().constFirst();
    const Command* command = findCommand(name);
    if (!command)
        return call.usageError(u"unknown command \""_s + name + u'"');
    call.out() << HelpText::forCommand(*command);
    return ExitStatus::success;
}

} // namespace

Command helpCommand() {
    return Command{
        .name = u"help"_s,
        .summary = u"Show the help of a command, or the list of commands"_s,
        .usage = u"help [COMMAND]"_s,
        .description = {},
        .options = {},
        .minPositionals = 0,
        .maxPositionals = 1,
        .takesJson = false,
        .handler = &runHelp,
    };
}

} // namespace hueshelf::cli
