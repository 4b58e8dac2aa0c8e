#include "cli/ArgumentParser.h"

#include "cli/TextTable.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

// A command shaped like the store commands to come: a value option with a short alias, a
// flag, a list option, one optional positional.
Command sampleCommand() {
    return Command{
        .name = u"sample"_s,
        .summary = u"Sample"_s,
        .usage = u"sample [PALETTE] [-o FILE] [--strict] [--colors CODE...]"_s,
        .description = {},
        .options = {{u"output"_s, u'o', OptionArity::value, u"FILE"_s, {}},
                    {u"strict"_s, {}, OptionArity::flag, {}, {}},
                    {u"colors"_s, {}, OptionArity::values, u"CODE"_s, {}}},
        .minPositionals = 0,
        .maxPositionals = 1,
        .takesJson = true,
        .handler = nullptr,
    };
}

// The parse in one line: the positionals in brackets, then each option given, then --json.
QString described(const ParsedArguments& parsed) {
    QString text = u'[' + parsed.positionals.join(u',') + u']';
    if (parsed.has(u"output"_s) || !parsed.value(u"output"_s).isEmpty())
        text += u" -o "_s + parsed.value(u"output"_s);
    if (parsed.has(u"strict"_s))
        text += u" --strict"_s;
    if (parsed.has(u"colors"_s) || !parsed.values(u"colors"_s).isEmpty())
        text += u" --colors "_s + parsed.values(u"colors"_s).join(u',');
    if (parsed.json)
        text += u" --json"_s;
    return text;
}

TEST(ArgumentParser, ReadsOptionsAndPositionalsInAnyOrder) {
    const struct {
        const char* title;
        QStringList arguments;
        QString parsed;
    } cases[] = {
        {"nothing", {}, u"[]"_s},
        {"positional then options",
         {u"Brand"_s, u"--json"_s, u"-o"_s, u"out.json"_s},
         u"[Brand] -o out.json --json"_s},
        {"options then positional",
         {u"--output=a=b"_s, u"--strict"_s, u"Brand"_s},
         u"[Brand] -o a=b --strict"_s},
        {"attached short value", {u"-ofile"_s}, u"[] -o file"_s},
        {"a value may start with a dash", {u"--output"_s, u"-"_s}, u"[] -o -"_s},
        {"list runs to the next option",
         {u"--colors"_s, u"#111111"_s, u"222222"_s, u"--json"_s},
         u"[] --colors #111111,222222 --json"_s},
        {"list given in two places accumulates",
         {u"--colors=a"_s, u"--strict"_s, u"--colors"_s, u"b"_s},
         u"[] --strict --colors a,b"_s},
        {"double dash ends the options",
         {u"--json"_s, u"--"_s, u"--strict"_s},
         u"[--strict] --json"_s},
        {"a lone dash is a positional", {u"-"_s}, u"[-]"_s},
        {"a repeated flag is harmless", {u"--strict"_s, u"--strict"_s}, u"[] --strict"_s},
    };
    for (const auto& c : cases) {
        const ParseOutcome outcome = parseArguments(sampleCommand(), c.arguments);
        ASSERT_TRUE(outcome.ok()) << c.title << ": " << outcome.error.toStdString();
        EXPECT_EQ(described(outcome.arguments), c.parsed) << c.title;
    }
}

TEST(ArgumentParser, RefusesWithAMessageNamingTheProblem) {
    const std::pair<QStringList, QString> cases[] = {
        {{u"--nope"_s}, u"unknown option --nope"_s},
        {{u"--nope=3"_s}, u"unknown option --nope"_s},
        {{u"-x"_s}, u"unknown option -x"_s},
        {{u"--JSON"_s}, u"unknown option --JSON"_s},
        {{u"--output"_s}, u"option --output needs a value FILE"_s},
        {{u"-o"_s}, u"option --output needs a value FILE"_s},
        {{u"-o"_s, u"a"_s, u"--output"_s, u"b"_s}, u"option --output given twice"_s},
        {{u"--strict=yes"_s}, u"option --strict takes no value"_s},
        {{u"--colors"_s, u"--json"_s}, u"option --colors needs at least one CODE"_s},
        {{u"one"_s, u"two"_s}, u"unexpected argument \"two\""_s},
        {{u"one"_s, u"--"_s, u"--two"_s}, u"unexpected argument \"--two\""_s},
    };
    for (const auto& [arguments, error] : cases)
        EXPECT_EQ(parseArguments(sampleCommand(), arguments).error, error)
            << arguments.join(u' ').toStdString();
}

TEST(ArgumentParser, HelpWinsOverEverythingElse) {
    const ParseOutcome help =
        parseArguments(sampleCommand(), {u"--nope"_s, u"a"_s, u"b"_s, u"-h"_s});
    EXPECT_TRUE(help.ok());
    EXPECT_TRUE(help.arguments.help);
    // After "--" it is an ordinary argument, here one too many.
    const ParseOutcome literal = parseArguments(sampleCommand(), {u"a"_s, u"--"_s, u"--help"_s});
    EXPECT_FALSE(literal.arguments.help);
    EXPECT_EQ(literal.error, u"unexpected argument \"--help\""_s);
}

TEST(ArgumentParser, CountsRequiredPositionalsAndJsonOnlyWhereTaken) {
    Command command = sampleCommand();
    command.minPositionals = 2;
    command.maxPositionals = -1;
    command.takesJson = false;
    EXPECT_EQ(parseArguments(command, {u"a"_s}).error, u"missing argument"_s);
    EXPECT_TRUE(parseArguments(command, {u"a"_s, u"b"_s, u"c"_s, u"d"_s}).ok());
    EXPECT_EQ(parseArguments(command, {u"a"_s, u"b"_s, u"--json"_s}).error,
              u"unknown option --json"_s);
}

TEST(TextTable, AlignsColumnsAndLeavesNoTrailingBlanks) {
    TextTable table(u"  "_s);
    table.addRow({u"hex"_s, u"#3366FF"_s, u""_s});
    table.addRow({u"hex-no-hash"_s, u"3366FF"_s, u"base"_s});
    table.addRow({u"x"_s});
    EXPECT_EQ(table.render(), u"  hex          #3366FF\n"
                              u"  hex-no-hash  3366FF   base\n"
                              u"  x\n"_s);
}

} // namespace
} // namespace hueshelf::cli
