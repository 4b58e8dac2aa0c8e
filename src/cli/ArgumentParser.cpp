#include "cli/ArgumentParser.h"

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

bool looksLikeOption(const QString& argument) {
    // A lone "-" is an ordinary argument by the usual convention.
    return argument.size() > 1 && argument.startsWith(u'-');
}

const OptionSpec* findLong(const Command& command, const QString& name) {
    for (const OptionSpec& option : command.options) {
        if (option.name == name)
            return &option;
    }
    return nullptr;
}

const OptionSpec* findShort(const Command& command, QChar letter) {
    for (const OptionSpec& option : command.options) {
        if (!option.shortName.isNull() && option.shortName == letter)
            return &option;
    }
    return nullptr;
}

QString spelled(const OptionSpec& option) {
    return u"--"_s + option.name;
}

} // namespace

QString ParsedArguments::value(const QString& name) const {
    const QStringList found = options.value(name);
    return found.isEmpty() ? QString() : found.constFirst();
}

ParseOutcome parseArguments(const Command& command, const QStringList& arguments) {
    ParseOutcome outcome;
    ParsedArguments& parsed = outcome.arguments;

    // Asking for help is never a usage error, however wrong the rest is. A value given to an
    // option is not a request, though: "--name -h" names something "-h".
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == u"--")
            break;
        if (argument == u"--help" || argument == u"-h") {
            parsed.help = true;
            return outcome;
        }
        const OptionSpec* option = nullptr;
        if (argument.startsWith(u"--") && !argument.contains(u'='))
            option = findLong(command, argument.mid(2));
        else if (argument.size() == 2 && argument.startsWith(u'-'))
            option = findShort(command, argument.at(1));
        if (option && option->arity == OptionArity::value)
            ++i;
    }

    bool optionsEnded = false;

    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (optionsEnded || !looksLikeOption(argument)) {
            parsed.positionals << argument;
            continue;
        }
        if (argument == u"--") {
            optionsEnded = true;
            continue;
        }
        if (argument == u"--json" && command.takesJson) {
            parsed.json = true;
            continue;
        }

        const OptionSpec* option = nullptr;
        std::optional<QString> attached; // the value after "=" (long) or the letter (short)
        if (argument.startsWith(u"--")) {
            const qsizetype equals = argument.indexOf(u'=');
            const QString name = argument.mid(2, equals < 0 ? -1 : equals - 2);
            if (equals >= 0)
                attached = argument.mid(equals + 1);
            option = findLong(command, name);
            if (!option) {
                outcome.error = u"unknown option --"_s + name;
                return outcome;
            }
        } else {
            option = findShort(command, argument.at(1));
            if (!option) {
                outcome.error = u"unknown option "_s + argument;
                return outcome;
            }
            if (argument.size() > 2)
                attached = argument.mid(2);
        }

        switch (option->arity) {
        case OptionArity::flag:
            if (attached) {
                outcome.error = u"option "_s + spelled(*option) + u" takes no value"_s;
                return outcome;
            }
            parsed.options.insert(option->name, {});
            break;
        case OptionArity::value: {
            if (parsed.has(option->name)) {
                outcome.error = u"option "_s + spelled(*option) + u" given twice"_s;
                return outcome;
            }
            if (!attached && i + 1 >= arguments.size()) {
                outcome.error =
                    u"option "_s + spelled(*option) + u" needs a value "_s + option->valueName;
                return outcome;
            }
            // A value may itself start with "-" (a negative number, say): it is taken as given
            // and judged by the command.
            parsed.options.insert(option->name, {attached ? *attached : arguments.at(++i)});
            break;
        }
        case OptionArity::values: {
            QStringList& values = parsed.options[option->name];
            if (attached)
                values << *attached;
            while (i + 1 < arguments.size() && !looksLikeOption(arguments.at(i + 1)))
                values << arguments.at(++i);
            if (values.isEmpty()) {
                outcome.error =
                    u"option "_s + spelled(*option) + u" needs at least one "_s + option->valueName;
                return outcome;
            }
            break;
        }
        }
    }

    if (parsed.positionals.size() < command.minPositionals) {
        outcome.error = u"missing argument"_s;
        return outcome;
    }
    if (command.maxPositionals >= 0 && parsed.positionals.size() > command.maxPositionals) {
        outcome.error =
            u"unexpected argument \""_s + parsed.positionals.at(command.maxPositionals) + u'"';
        return outcome;
    }
    return outcome;
}

} // namespace hueshelf::cli
