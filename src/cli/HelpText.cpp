#include "cli/HelpText.h"

#include "cli/CommandTable.h"
#include "cli/TextTable.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli::HelpText {
namespace {

QString generalUsage() {
    return u"Usage: hueshelf [LINK | FILE]...\n"
           u"       hueshelf COMMAND [ARGUMENTS] [--json]\n"
           u"       hueshelf --help | --version | help COMMAND\n"_s;
}

QString optionSynopsis(const OptionSpec& option) {
    QString text;
    if (!option.shortName.isNull())
        text += u'-' + QString(option.shortName) + u", "_s;
    text += u"--"_s + option.name;
    if (option.arity == OptionArity::value)
        text += u' ' + option.valueName;
    else if (option.arity == OptionArity::values)
        text += u' ' + option.valueName + u"..."_s;
    return text;
}

} // namespace

QString overview() {
    QString text = generalUsage();
    text += u"\nWith no command, hueshelf starts the bar. Palette links (hueshelf://import#1;... "
            u"or the\nhttps form) and .hueshelf palette files given as arguments are opened "
            u"in the bar, or\nhanded to the bar that is already running.\n"
            u"\nCommands:\n"_s;
    TextTable commands(u"  "_s, 3);
    for (const Command& command : commandTable())
        commands.addRow({command.name, command.summary});
    text += commands.render();

    TextTable options(u"  "_s, 3);
    options.addRow({u"--json"_s, u"Print machine output: one UTF-8 JSON document on stdout"_s});
    options.addRow({u"--help"_s, u"Show this help, or a command's help after its name"_s});
    options.addRow({u"--version"_s, u"Show the version"_s});
    text += u"\nOptions:\n"_s + options.render();

    text += u"\nColor arguments are read as pasted codes: hex with or without \"#\", "
            u"rgb()/rgba(),\nhsl()/hsla(). PALETTE names a stored palette by its exact name, "
            u"else by its id;\nabsent means the active one.\n"
            u"\nExit status: 0 on success, 1 when an input can't be used (one line on stderr),\n"
            u"2 on a usage error.\n"
            u"\nRun \"hueshelf help COMMAND\" for the details of a command.\n"_s;
    return text;
}

QString usage(const Command& command) {
    QString text;
    const QStringList synopses = command.usage.split(u'\n');
    for (qsizetype i = 0; i < synopses.size(); ++i)
        text += (i == 0 ? u"Usage: hueshelf "_s : u"       hueshelf "_s) + synopses.at(i) + u'\n';
    return text;
}

QString forCommand(const Command& command) {
    QString text = usage(command) + u'\n' + command.summary + u".\n"_s;
    if (!command.description.isEmpty())
        text +=
            u'\n' + command.description + (command.description.endsWith(u'\n') ? u""_s : u"\n"_s);

    TextTable options(u"  "_s, 3);
    for (const OptionSpec& option : command.options)
        options.addRow({optionSynopsis(option), option.help});
    if (command.takesJson)
        options.addRow({u"--json"_s, u"Print one UTF-8 JSON document on stdout"_s});
    options.addRow({u"-h, --help"_s, u"Show this help"_s});
    text += u"\nOptions:\n"_s + options.render();
    return text;
}

QString usageError(const Command& command, const QString& message) {
    return u"hueshelf "_s + command.name + u": "_s + message + u'\n' + usage(command) +
           u"Run \"hueshelf help "_s + command.name + u"\" for details.\n"_s;
}

QString generalUsageError(const QString& message) {
    return u"hueshelf: "_s + message + u'\n' + generalUsage() +
           u"Run \"hueshelf --help\" for the list of commands.\n"_s;
}

} // namespace hueshelf::cli::HelpText
