#pragma once

#include <QList>
#include <QString>

namespace hueshelf::cli {

class Invocation;

// Exit statuses shared by every command.
namespace ExitStatus {
inline constexpr int success = 0;
inline constexpr int unusableInput = 1; // with one line on stderr
inline constexpr int usage = 2;         // with the usage on stderr
} // namespace ExitStatus

// How many values an option takes.
enum class OptionArity {
    flag,   // --strict
    value,  // --target 7, --target=7
    values, // --colors A B C: every following argument up to the next option
};

struct OptionSpec {
    QString name;    // without the leading "--"
    QChar shortName; // optional single-letter alias, as in "-o"
    OptionArity arity = OptionArity::flag;
    QString valueName; // shown in help, e.g. "RATIO"
    QString help;      // one line for `hueshelf help COMMAND`
};

using CommandHandler = int (*)(Invocation& call);

// One entry of the command table. Everything the parser, the help and the dispatcher need to
// know about a command lives here, so a new command is its entry plus its handler.
struct Command {
    QString name;
    QString summary;     // one line for `hueshelf --help`
    QString usage;       // synopsis after "hueshelf ", e.g. "shades CODE [--json]"; one per line
    QString description; // the paragraphs of `hueshelf help COMMAND`
    QList<OptionSpec> options;
    int minPositionals = 0;
    int maxPositionals = 0; // negative: no upper limit
    bool takesJson = true;  // accepts the common --json option
    CommandHandler handler = nullptr;
};

} // namespace hueshelf::cli
