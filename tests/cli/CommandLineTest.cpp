#include "cli/CommandLine.h"

#include "CliRun.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace hueshelf::testing {
namespace {

class CommandLineUse : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        m_file = m_dir.filePath(u"Brand.hueshelf"_s);
        QFile file(m_file);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("{}");
    }

    QTemporaryDir m_dir;
    QString m_file;
};

// Links and existing files start the bar; anything else is the command line's to answer.
TEST_F(CommandLineUse, BarTakesNothingOrOnlyLinksAndExistingFiles) {
    const QString link = u"hueshelf://import#1;Brand;3366FF"_s;
    const QString webLink = u"https://example.org/p/#1;Brand;3366FF"_s;
    const std::pair<QStringList, bool> cases[] = {
        {{}, false},
        {{link}, false},
        {{u"HUESHELF://import#1;x;000000"_s}, false},
        {{webLink}, false},
        {{m_file}, false},
        {{QUrl::fromLocalFile(m_file).toString()}, false},
        {{m_file, link, webLink}, false},
        {{u"color"_s, u"#fff"_s}, true},
        {{u"help"_s}, true},
        {{u"--version"_s}, true},
        {{u"-x"_s}, true},
        {{u"colr"_s}, true}, // a typo must not start a bar that ignores it
        {{m_dir.filePath(u"Missing.hueshelf"_s)}, true}, // nor a file that isn't there
        {{m_dir.path()}, true},                          // a directory isn't a palette file
        {{u"http://example.org/p/"_s}, true},            // links are hueshelf: or https:
        {{u""_s}, true},
        {{m_file, u"colr"_s}, true},
    };
    for (const auto& [arguments, commandLine] : cases)
        EXPECT_EQ(cli::isCommandLineUse(arguments), commandLine)
            << arguments.join(u' ').toStdString();
}

TEST_F(CommandLineUse, AFileNamedLikeACommandIsStillTheCommand) {
    const QString previous = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(m_dir.path()));
    QFile file(u"shades"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const bool commandLine = cli::isCommandLineUse({u"shades"_s});
    QDir::setCurrent(previous);
    EXPECT_TRUE(commandLine);
}

TEST(CommandLineRun, VersionPrintsTheProjectVersion) {
    const CliOutcome outcome = runCli({u"--version"_s});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, u"hueshelf "_s + QStringLiteral(HUESHELF_VERSION_TEXT) + u'\n');
    EXPECT_TRUE(outcome.err.isEmpty());
    EXPECT_EQ(runCli({u"--version"_s, u"color"_s}).status, 2);
}

TEST(CommandLineRun, HelpListsEveryCommandWithItsSummary) {
    for (const QStringList& arguments : {QStringList{u"--help"_s}, QStringList{u"help"_s}}) {
        const CliOutcome outcome = runCli(arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(outcome.err.isEmpty());
        EXPECT_TRUE(outcome.out.startsWith(u"Usage: hueshelf [LINK | FILE]...\n"_s));
        for (const QString& name : {u"color"_s, u"contrast"_s, u"shades"_s, u"help"_s})
            EXPECT_TRUE(outcome.out.contains(u"\n  "_s + name + u' ')) << name.toStdString();
    }
}

TEST(CommandLineRun, CommandHelpGoesToStdoutInEveryWayOfAsking) {
    const QString expectedStart =
        u"Usage: hueshelf contrast FOREGROUND BACKGROUND [--target RATIO] [--json]\n"_s;
    const QList<QStringList> ways{{u"help"_s, u"contrast"_s},
                                  {u"--help"_s, u"contrast"_s},
                                  {u"contrast"_s, u"--help"_s},
                                  {u"contrast"_s, u"a"_s, u"--bogus"_s, u"-h"_s}};
    for (const QStringList& arguments : ways) {
        const CliOutcome outcome = runCli(arguments);
        EXPECT_EQ(outcome.status, 0) << arguments.join(u' ').toStdString();
        EXPECT_TRUE(outcome.out.startsWith(expectedStart)) << outcome.out.toStdString();
        EXPECT_TRUE(outcome.out.contains(u"--target RATIO"_s));
        EXPECT_TRUE(outcome.err.isEmpty());
    }
}

TEST(CommandLineRun, UsageErrorsExitTwoWithTheCommandsUsageOnStderrAndNothingOnStdout) {
    const struct {
        QStringList arguments;
        QString firstLine; // of stderr
        QString usageLine; // must follow somewhere on stderr
    } cases[] = {
        {{u"colr"_s, u"#fff"_s},
         u"hueshelf: unknown command \"colr\" (it is not a palette link or an existing file "
         u"either)"_s,
         u"Usage: hueshelf [LINK | FILE]..."_s},
        {{u"--bogus"_s},
         u"hueshelf: unknown option --bogus"_s,
         u"Usage: hueshelf [LINK | FILE]..."_s},
        {{}, u"hueshelf: no command given"_s, u"hueshelf COMMAND"_s},
        {{u"help"_s, u"colr"_s},
         u"hueshelf help: unknown command \"colr\""_s,
         u"Usage: hueshelf help [COMMAND]"_s},
        {{u"help"_s, u"--json"_s},
         u"hueshelf help: unknown option --json"_s,
         u"Usage: hueshelf help [COMMAND]"_s},
        {{u"color"_s},
         u"hueshelf color: missing argument"_s,
         u"Usage: hueshelf color CODE... [--json]"_s},
        {{u"simulate"_s, u"--json"_s},
         u"hueshelf simulate: missing argument"_s,
         u"Usage: hueshelf simulate CODE..."_s},
        {{u"shades"_s, u"#000000"_s, u"#FFFFFF"_s},
         u"hueshelf shades: unexpected argument \"#FFFFFF\""_s,
         u"Usage: hueshelf shades CODE [--json]"_s},
        {{u"contrast"_s, u"000000"_s, u"ffffff"_s, u"--target"_s},
         u"hueshelf contrast: option --target needs a value RATIO"_s,
         u"Run \"hueshelf help contrast\" for details."_s},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const CliOutcome outcome = runCli(c.arguments);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_TRUE(outcome.out.isEmpty()) << outcome.out.toStdString();
        EXPECT_EQ(outcome.err.section(u'\n', 0, 0), c.firstLine);
        EXPECT_TRUE(outcome.err.contains(c.usageLine)) << outcome.err.toStdString();
    }
}

} // namespace
} // namespace hueshelf::testing
