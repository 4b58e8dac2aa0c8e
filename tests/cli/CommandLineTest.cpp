// Parsing, usage errors and the conventions every command shares; the values the commands
// print are compared with independent models (tests/reference).

#include "CliRun.h"
#include "cli/ArgumentParser.h"

#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

using testing::runCli;

// A value option with a short alias, a flag, a list option, one optional positional.
Command sampleCommand() {
    Command command;
    command.options = {{u"output"_s, u'o', OptionArity::value, u"FILE"_s, {}},
                       {u"strict"_s, {}, OptionArity::flag, {}, {}},
                       {u"colors"_s, {}, OptionArity::values, u"CODE"_s, {}}};
    command.maxPositionals = 1;
    return command;
}

// The parse in one line, or the refusal.
QString parsed(const QStringList& arguments) {
    const ParseOutcome outcome = parseArguments(sampleCommand(), arguments);
    if (!outcome.ok())
        return u"error: "_s + outcome.error;
    const ParsedArguments& a = outcome.arguments;
    return u'[' + a.positionals.join(u',') + u']' +
           (a.has(u"output"_s) ? QString(u" -o "_s + a.value(u"output"_s)) : u""_s) +
           (a.has(u"strict"_s) ? u" --strict"_s : u""_s) +
           (a.has(u"colors"_s) ? QString(u" --colors "_s + a.values(u"colors"_s).join(u','))
                               : u""_s) +
           (a.json ? u" --json"_s : u""_s) + (a.help ? u" help"_s : u""_s);
}

TEST(ArgumentParser, ReadsOptionsInAnyOrderOrNamesTheProblem) {
    const std::pair<QStringList, QString> cases[] = {
        {{u"Brand"_s, u"--json"_s, u"-o"_s, u"out.json"_s}, u"[Brand] -o out.json --json"_s},
        {{u"--output=a=b"_s, u"--strict"_s, u"Brand"_s}, u"[Brand] -o a=b --strict"_s},
        {{u"-ofile"_s}, u"[] -o file"_s},
        {{u"--output"_s, u"-"_s}, u"[] -o -"_s}, // a value may start with a dash
        {{u"--colors=a"_s, u"b"_s, u"--strict"_s, u"--colors"_s, u"c"_s},
         u"[] --strict --colors a,b,c"_s},
        {{u"--json"_s, u"--"_s, u"--strict"_s}, u"[--strict] --json"_s},
        {{u"--nope"_s, u"a"_s, u"b"_s, u"-h"_s}, u"[] help"_s}, // help wins over everything
        {{u"a"_s, u"--"_s, u"--help"_s}, u"error: unexpected argument \"--help\""_s},
        {{u"--output"_s, u"-h"_s}, u"[] -o -h"_s}, // a value, not a request for help
        {{u"-o"_s, u"--help"_s, u"-h"_s}, u"[] help"_s},
        {{u"--nope=3"_s}, u"error: unknown option --nope"_s},
        {{u"-o"_s}, u"error: option --output needs a value FILE"_s},
        {{u"-o"_s, u"a"_s, u"--output"_s, u"b"_s}, u"error: option --output given twice"_s},
        {{u"--strict=yes"_s}, u"error: option --strict takes no value"_s},
        {{u"--colors"_s, u"--json"_s}, u"error: option --colors needs at least one CODE"_s},
        {{u"one"_s, u"two"_s}, u"error: unexpected argument \"two\""_s},
    };
    for (const auto& [arguments, expected] : cases)
        EXPECT_EQ(parsed(arguments), expected) << arguments.join(u' ').toStdString();

    Command command = sampleCommand();
    command.minPositionals = 2;
    command.takesJson = false;
    EXPECT_EQ(parseArguments(command, {u"a"_s}).error, u"missing argument"_s);
    EXPECT_EQ(parseArguments(command, {u"a"_s, u"b"_s, u"--json"_s}).error,
              u"unknown option --json"_s);
}

// Links and existing files start the bar; anything else is the command line's to answer, so a
// typo never starts a bar that ignores it.
TEST(CommandLine, BarTakesNothingOrOnlyLinksAndExistingFiles) {
    QTemporaryDir dir;
    const QString file = dir.filePath(u"Brand.hueshelf"_s);
    QFile(file).open(QIODevice::WriteOnly);
    const QString link = u"hueshelf://import#1;Brand;3366FF"_s;
    const std::pair<QStringList, bool> cases[] = {
        {{}, false},
        {{file, link, u"HTTPS://example.org/p/#1;Brand;3366FF"_s}, false},
        {{QUrl::fromLocalFile(file).toString()}, false},
        {{u"colr"_s}, true},
        {{dir.filePath(u"Missing.hueshelf"_s)}, true},
        {{dir.path()}, true}, // a directory isn't a palette file
    };
    for (const auto& [arguments, commandLine] : cases)
        EXPECT_EQ(isCommandLineUse(arguments), commandLine) << arguments.join(u' ').toStdString();
}

// Usage errors exit 2 with the usage on stderr and nothing on stdout; unusable input exits 1
// with one line on stderr, control characters shown escaped; help goes to stdout and exits 0 in
// every way of asking, whatever else is wrong.
TEST(CommandLine, UsageErrorsUnusableInputAndHelp) {
    const QString tooMany = u"1;A;"_s + QStringList(41, u"B:000000"_s).join(u',');
    const QString help =
        u"Usage: hueshelf contrast FOREGROUND BACKGROUND [--target RATIO] [--json]\n"_s;
    const struct {
        QStringList arguments;
        int status;
        QString start; // of stderr, or of stdout for help
    } cases[] = {
        {{u"colr"_s, u"#fff"_s}, 2, u"hueshelf: unknown command \"colr\" (it is not a palette"_s},
        {{}, 2, u"hueshelf: no command given"_s},
        {{u"simulate"_s, u"--json"_s}, 2, u"hueshelf simulate: missing argument"_s},
        {{u"contrast"_s, u"0"_s, u"f"_s, u"--target=nan"_s}, 2, u"hueshelf contrast: --target"_s},
        {{u"scheme"_s, u"fff"_s, u"--name"_s, u"X"_s}, 2, u"hueshelf scheme: --name names the"_s},
        {{u"contrast"_s, u"5\nd"_s, u"\"hi\"\t\\"_s},
         1,
         u"Not a color code: \"5\\nd\", \"\\\"hi\\\"\\t\\\\\""_s},
        {{u"link"_s, u"--decode"_s, tooMany}, 1, u"tooManyColors: Links hold up to 40 colors"_s},
        {{u"help"_s, u"contrast"_s}, 0, help},
        {{u"--help"_s, u"contrast"_s}, 0, help},
        {{u"contrast"_s, u"a"_s, u"--bogus"_s, u"-h"_s}, 0, help},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const testing::CliOutcome outcome = runCli(c.arguments);
        EXPECT_EQ(outcome.status, c.status);
        const QString& quiet = c.status == 0 ? outcome.err : outcome.out;
        const QString& spoken = c.status == 0 ? outcome.out : outcome.err;
        EXPECT_TRUE(quiet.isEmpty());
        EXPECT_TRUE(spoken.startsWith(c.start)) << spoken.toStdString();
        if (c.status == 2) {
            EXPECT_TRUE(spoken.contains(u"\nUsage: hueshelf "_s)) << spoken.toStdString();
        } else if (c.status == 1) {
            EXPECT_EQ(spoken.count(u'\n'), 1);
        }
    }
}

// The text for people: aligned, and a ratio cut rather than rounded, so 4.4776 never reads as
// the 4.5 it misses; any finite target is a question with an answer.
TEST(CommandLine, ContrastForPeopleCutsTheRatio) {
    EXPECT_EQ(runCli({u"contrast"_s, u"#777777"_s, u"#FFFFFF"_s}).out,
              u"foreground  #777777\nbackground  #FFFFFF\nratio       4.47:1\n"
              u"level       OK for headings\nadjusted    #767676 reaches 4.5:1\n"_s);
    EXPECT_TRUE(runCli({u"contrast"_s, u"#777777"_s, u"#777777"_s, u"--target= 21.5 "_s})
                    .out.endsWith(u"adjusted    no lightness of it reaches 21.5:1\n"_s));
}

} // namespace
} // namespace hueshelf::cli
