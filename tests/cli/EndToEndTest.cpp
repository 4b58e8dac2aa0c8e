#include "CliRun.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace hueshelf::testing {
namespace {

struct ProcessOutcome {
    bool finished = false;
    int status = -1;
    QByteArray out;
    QByteArray err;
};

// Runs the built executable the way a script would, with no display to talk to. The platform
// plugin is set to one that doesn't exist, so any attempt to start the GUI aborts the process
// instead of quietly working offscreen.
ProcessOutcome runBinary(const QStringList& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"DISPLAY"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.insert(u"QT_QPA_PLATFORM"_s, u"no-such-platform"_s);

    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(HUESHELF_BINARY), arguments);
    ProcessOutcome outcome;
    if (!process.waitForStarted(10000))
        return outcome;
    outcome.finished = process.waitForFinished(20000);
    if (!outcome.finished) {
        process.kill();
        process.waitForFinished(5000);
        return outcome;
    }
    outcome.finished = process.exitStatus() == QProcess::NormalExit;
    outcome.status = process.exitCode();
    outcome.out = process.readAllStandardOutput();
    outcome.err = process.readAllStandardError();
    return outcome;
}

TEST(EndToEnd, VersionAndHelpWithoutADisplay) {
    const ProcessOutcome version = runBinary({u"--version"_s});
    ASSERT_TRUE(version.finished);
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, QByteArray("hueshelf " HUESHELF_VERSION_TEXT "\n"));
    EXPECT_TRUE(version.err.isEmpty());

    const ProcessOutcome help = runBinary({u"--help"_s});
    ASSERT_TRUE(help.finished);
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.startsWith("Usage: hueshelf [LINK | FILE]...\n"));
    EXPECT_TRUE(help.out.contains("\n  shades "));
}

TEST(EndToEnd, ColorPrintsUtf8JsonForEveryArgumentThenExitsOne) {
    const ProcessOutcome outcome =
        runBinary({u"color"_s, u"#FF0000"_s, u"café"_s, u"rgb(0, 0, 255)"_s, u"--json"_s});
    ASSERT_TRUE(outcome.finished);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, QByteArray("Not a color code: \"caf\xC3\xA9\"\n"));
    // Exact text: the red weight alone, printed as written in the formula.
    EXPECT_TRUE(QString::fromUtf8(outcome.out)
                    .contains(QRegularExpression(u"\"luminance\":\\s*0\\.2126[,\\s}]"_s)))
        << outcome.out.constData();

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(outcome.out, &error);
    ASSERT_EQ(error.error, QJsonParseError::NoError) << outcome.out.constData();
    const QJsonArray array = document.array();
    ASSERT_EQ(array.size(), 3);
    EXPECT_EQ(array.at(0).toObject().value(u"name"_s).toString(), u"Ruby"_s);
    EXPECT_EQ(array.at(1).toObject().value(u"input"_s).toString(), u"café"_s);
    EXPECT_TRUE(array.at(1).toObject().value(u"hex"_s).isNull());
    const QJsonObject blue = array.at(2).toObject();
    EXPECT_EQ(blue.value(u"hex"_s).toString(), u"#0000FF"_s);
    EXPECT_EQ(blue.value(u"luminance"_s).toDouble(), wcagLuminance(0, 0, 255));
    EXPECT_EQ(blue.value(u"formats"_s).toObject().value(u"hsl"_s).toString(),
              u"hsl(240, 100%, 50%)"_s);
}

TEST(EndToEnd, ContrastAndShadesSucceed) {
    const ProcessOutcome contrast =
        runBinary({u"contrast"_s, u"#777777"_s, u"ffffff"_s, u"--json"_s, u"--target"_s, u"4.5"_s});
    ASSERT_TRUE(contrast.finished);
    EXPECT_EQ(contrast.status, 0) << contrast.err.constData();
    const QJsonObject result = QJsonDocument::fromJson(contrast.out).object();
    EXPECT_EQ(result.value(u"ratio"_s).toDouble(),
              wcagRatio(wcagLuminance(119, 119, 119), wcagLuminance(255, 255, 255)));
    EXPECT_EQ(result.value(u"level"_s).toString(), u"lowContrast"_s);
    EXPECT_EQ(result.value(u"adjustedForeground"_s).toString(), u"#767676"_s);

    const ProcessOutcome shades = runBinary({u"shades"_s, u"#3366FF"_s, u"--json"_s});
    ASSERT_TRUE(shades.finished);
    EXPECT_EQ(shades.status, 0);
    EXPECT_EQ(QJsonDocument::fromJson(shades.out).array().size(), 10);
}

TEST(EndToEnd, SimulatePrintsEveryArgumentThenExitsOne) {
    const ProcessOutcome outcome = runBinary({u"simulate"_s, u"--json"_s, u"00ff00"_s, u"#0f0"_s});
    ASSERT_TRUE(outcome.finished);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, QByteArray("Not a color code: \"#0f0\"\n"));
    const QJsonArray array = QJsonDocument::fromJson(outcome.out).array();
    ASSERT_EQ(array.size(), 2);
    // Green's red product under protanopia, 1.052583, is clamped to FF.
    const QJsonObject green = array.at(0).toObject();
    EXPECT_EQ(green.value(u"hex"_s).toString(), u"#00FF00"_s);
    EXPECT_EQ(green.value(u"protanopia"_s).toString(), u"#FFE500"_s);
    EXPECT_EQ(green.value(u"deuteranopia"_s).toString(), u"#EFD63A"_s);
    EXPECT_EQ(green.value(u"tritanopia"_s).toString(), u"#00F7D9"_s);
    EXPECT_TRUE(array.at(1).toObject().value(u"hex"_s).isNull());
}

struct StatusCase {
    QStringList arguments;
    int status;
    QByteArray errStart;
};

void PrintTo(const StatusCase& c, std::ostream* os) {
    *os << '"' << c.arguments.join(u' ').toStdString() << '"';
}

class EndToEndStatus : public ::testing::TestWithParam<StatusCase> {};

TEST_P(EndToEndStatus, ExitStatusAndFirstStderrLine) {
    const StatusCase& c = GetParam();
    const ProcessOutcome outcome = runBinary(c.arguments);
    ASSERT_TRUE(outcome.finished) << "crashed or hung: " << outcome.err.constData();
    EXPECT_EQ(outcome.status, c.status) << outcome.err.constData();
    EXPECT_TRUE(outcome.err.startsWith(c.errStart)) << outcome.err.constData();
    if (c.status == 2) {
        EXPECT_TRUE(outcome.err.contains("\nUsage: hueshelf ")) << outcome.err.constData();
    }
    if (c.status == 1) {
        EXPECT_EQ(outcome.err.count('\n'), 1) << outcome.err.constData();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, EndToEndStatus,
    ::testing::Values(
        // A typo must be refused by the command line, not start a bar (which would abort here).
        StatusCase{{u"colr"_s, u"#fff"_s}, 2, "hueshelf: unknown command \"colr\""},
        StatusCase{{u"/no/such/palette.hueshelf"_s},
                   2,
                   "hueshelf: unknown command \"/no/such/palette.hueshelf\""},
        StatusCase{{u"--verbose"_s}, 2, "hueshelf: unknown option --verbose"},
        StatusCase{{u"shades"_s, u"--json"_s}, 2, "hueshelf shades: missing argument"},
        StatusCase{{u"contrast"_s, u"#000"_s, u"#fff"_s, u"--target"_s, u"x"_s},
                   2,
                   "hueshelf contrast: --target needs a contrast ratio"},
        StatusCase{{u"contrast"_s, u"#000000"_s, u"#ggg000"_s}, 1, "Not a color code: \"#ggg000\""},
        StatusCase{{u"shades"_s, u"hsl(10, 20, 30)"_s}, 1, "Not a color code"},
        StatusCase{{u"color"_s, u"3366ff"_s}, 0, ""}));

} // namespace
} // namespace hueshelf::testing
