#include "cli/ArgumentParser.h"

#include "cli/TextTable.h"

#include <gtest/gtest.h>

#include <cctype>

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

struct ParseCase {
    const char* title;
    QStringList arguments;
    QStringList positionals;
    QString output; // value of --output, empty when absent
    bool strict;    // --strict given
    QStringList colors;
    bool json;
};

class ArgumentParserAccepts : public ::testing::TestWithParam<ParseCase> {};

TEST_P(ArgumentParserAccepts, ReadsOptionsAndPositionalsInAnyOrder) {
    const ParseCase& c = GetParam();
    const ParseOutcome outcome = parseArguments(sampleCommand(), c.arguments);
    ASSERT_TRUE(outcome.ok()) << c.title << ": " << outcome.error.toStdString();
    const ParsedArguments& parsed = outcome.arguments;
    EXPECT_EQ(parsed.positionals, c.positionals) << c.title;
    EXPECT_EQ(parsed.value(u"output"_s), c.output) << c.title;
    EXPECT_EQ(parsed.has(u"output"_s), !c.output.isEmpty()) << c.title;
    EXPECT_EQ(parsed.has(u"strict"_s), c.strict) << c.title;
    EXPECT_EQ(parsed.values(u"colors"_s), c.colors) << c.title;
    EXPECT_EQ(parsed.json, c.json) << c.title;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ArgumentParserAccepts,
    ::testing::Values(
        ParseCase{"nothing", {}, {}, {}, false, {}, false},
        ParseCase{"positional then options",
                  {u"Brand"_s, u"--json"_s, u"-o"_s, u"out.json"_s},
                  {u"Brand"_s},
                  u"out.json"_s,
                  false,
                  {},
                  true},
        ParseCase{"options then positional",
                  {u"--output=a=b"_s, u"--strict"_s, u"Brand"_s},
                  {u"Brand"_s},
                  u"a=b"_s,
                  true,
                  {},
                  false},
        ParseCase{"attached short value", {u"-ofile"_s}, {}, u"file"_s, false, {}, false},
        ParseCase{
            "a value may start with a dash", {u"--output"_s, u"-"_s}, {}, u"-"_s, false, {}, false},
        ParseCase{"list runs to the next option",
                  {u"--colors"_s, u"#111111"_s, u"222222"_s, u"--json"_s},
                  {},
                  {},
                  false,
                  {u"#111111"_s, u"222222"_s},
                  true},
        ParseCase{"list given in two places accumulates",
                  {u"--colors=a"_s, u"--strict"_s, u"--colors"_s, u"b"_s},
                  {},
                  {},
                  true,
                  {u"a"_s, u"b"_s},
                  false},
        ParseCase{"double dash ends the options",
                  {u"--json"_s, u"--"_s, u"--strict"_s},
                  {u"--strict"_s},
                  {},
                  false,
                  {},
                  true},
        ParseCase{"a lone dash is a positional", {u"-"_s}, {u"-"_s}, {}, false, {}, false},
        ParseCase{"a repeated flag is harmless",
                  {u"--strict"_s, u"--strict"_s},
                  {},
                  {},
                  true,
                  {},
                  false}),
    [](const ::testing::TestParamInfo<ParseCase>& testCase) {
        std::string name = testCase.param.title;
        for (char& ch : name)
            ch = std::isalnum(static_cast<unsigned char>(ch)) ? ch : '_';
        return name;
    });

struct RefusalCase {
    QStringList arguments;
    QString error;
};

void PrintTo(const RefusalCase& c, std::ostream* os) {
    *os << '"' << c.arguments.join(u' ').toStdString() << '"';
}

class ArgumentParserRefuses : public ::testing::TestWithParam<RefusalCase> {};

TEST_P(ArgumentParserRefuses, WithAMessageNamingTheProblem) {
    const RefusalCase& c = GetParam();
    const ParseOutcome outcome = parseArguments(sampleCommand(), c.arguments);
    EXPECT_EQ(outcome.error, c.error) << c.arguments.join(u' ').toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ArgumentParserRefuses,
    ::testing::Values(
        RefusalCase{{u"--nope"_s}, u"unknown option --nope"_s},
        RefusalCase{{u"--nope=3"_s}, u"unknown option --nope"_s},
        RefusalCase{{u"-x"_s}, u"unknown option -x"_s},
        RefusalCase{{u"--JSON"_s}, u"unknown option --JSON"_s},
        RefusalCase{{u"--output"_s}, u"option --output needs a value FILE"_s},
        RefusalCase{{u"-o"_s}, u"option --output needs a value FILE"_s},
        RefusalCase{{u"-o"_s, u"a"_s, u"--output"_s, u"b"_s}, u"option --output given twice"_s},
        RefusalCase{{u"--strict=yes"_s}, u"option --strict takes no value"_s},
        RefusalCase{{u"--colors"_s, u"--json"_s}, u"option --colors needs at least one CODE"_s},
        RefusalCase{{u"one"_s, u"two"_s}, u"unexpected argument \"two\""_s},
        RefusalCase{{u"one"_s, u"--"_s, u"--two"_s}, u"unexpected argument \"--two\""_s}));

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
