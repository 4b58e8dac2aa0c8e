#include "cli/CommandLine.h"

#include "cli/ArgumentParser.h"
#include "cli/BarArguments.h"
#include "cli/CommandTable.h"
#include "cli/HelpText.h"
#include "cli/Invocation.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

int runCommand(const Command& command, const QStringList& arguments, QTextStream& out,
               QTextStream& err) {
    ParseOutcome parsed = parseArguments(command, arguments);
    if (parsed.arguments.help) {
        out << HelpText::forCommand(command);
        return ExitStatus::success;
    }
    if (!parsed.ok()) {
        err << HelpText::usageError(command, parsed.error);
        return ExitStatus::usage;
    }
    Invocation call(command, std::move(parsed.arguments), out, err);
    return command.handler(call);
}

} // namespace

bool isCommandLineUse(const QStringList& arguments) {
    if (arguments.isEmpty())
        return false;
    const QString& first = arguments.constFirst();
    if (first.startsWith(u'-') || findCommand(first))
        return true;
    return BarArguments::firstNonBarArgument(arguments).has_value();
}

int run(const QStringList& arguments, QTextStream& out, QTextStream& err) {
    if (arguments.isEmpty()) {
        err << HelpText::generalUsageError(u"no command given"_s);
        return ExitStatus::usage;
    }
    const QString& first = arguments.constFirst();
    const QStringList rest = arguments.mid(1);

    if (first == u"--version") {
        if (!rest.isEmpty()) {
            err << HelpText::generalUsageError(u"--version takes no arguments"_s);
            return ExitStatus::usage;
        }
        out << u"hueshelf "_s << QStringLiteral(HUESHELF_VERSION) << u'\n';
        return ExitStatus::success;
    }
    if (first == u"--help" || first == u"-h") {
        // "hueshelf --help color" reads as "hueshelf help color".
        return runCommand(*findCommand(u"help"_s), rest, out, err);
    }
    if (first.startsWith(u'-')) {
        err << HelpText::generalUsageError(u"unknown option "_s + first);
        return ExitStatus::usage;
    }
    if (const Command* command = findCommand(first))
        return runCommand(*command, rest, out, err);

    if (const std::optional<QString> stray = BarArguments::firstNonBarArgument(arguments)) {
        err << HelpText::generalUsageError(
            u"unknown command \""_s + *stray +
            u"\" (it is not a palette link or an existing file either)"_s);
        return ExitStatus::usage;
    }
    err << HelpText::generalUsageError(
        u"palette links and files are opened by the bar: give them without a command"_s);
    return ExitStatus::usage;
}

} // namespace hueshelf::cli
