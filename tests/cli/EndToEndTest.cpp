#include "StoreHome.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// The real executable over the temporary home, with no display.
class EndToEnd : public StoreHome {
protected:
    BinaryRun run(const QStringList& arguments, bool withXdgConfigHome = true) const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(u"HOME"_s, home.path());
        if (withXdgConfigHome)
            env.insert(u"XDG_CONFIG_HOME"_s, home.path() + u"/.config"_s);
        else
            env.remove(u"XDG_CONFIG_HOME"_s);
        env.remove(StorageLocations::isolationVariable);
        return runBinary(arguments, env);
    }
};

TEST_F(EndToEnd, VersionAndHelpWithoutADisplay) {
    const BinaryRun version = run({u"--version"_s});
    ASSERT_TRUE(version.finished);
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, QByteArray("hueshelf " HUESHELF_VERSION_TEXT "\n"));
    EXPECT_TRUE(version.err.isEmpty());

    const BinaryRun help = run({u"--help"_s});
    ASSERT_TRUE(help.finished);
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.startsWith("Usage: hueshelf [LINK | FILE]...\n"));
    EXPECT_TRUE(help.out.contains("\n  shades "));
}

TEST_F(EndToEnd, ArgumentsAndMessagesAreUtf8) {
    const BinaryRun outcome = run({u"color"_s, u"#FF0000"_s, u"café"_s, u"--json"_s});
    ASSERT_TRUE(outcome.finished);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, QByteArray("Not a color code: \"caf\xC3\xA9\"\n"));
    const QJsonArray array = outcome.json().array();
    ASSERT_EQ(array.size(), 2) << outcome.out.constData();
    EXPECT_EQ(array.at(1).toObject().value(u"input"_s).toString(), u"café"_s);
}

struct StatusCase {
    QStringList arguments;
    int status;
    QByteArray errStart; // empty: nothing on stderr
};

void PrintTo(const StatusCase& c, std::ostream* os) {
    *os << '"' << c.arguments.join(u' ').toStdString() << '"';
}

class EndToEndStatus : public EndToEnd, public ::testing::WithParamInterface<StatusCase> {};

// None of these commands may write into the home, whatever their outcome.
TEST_P(EndToEndStatus, ExitStatusFirstStderrLineAndNothingWritten) {
    const StatusCase& c = GetParam();
    const BinaryRun outcome = run(c.arguments);
    ASSERT_TRUE(outcome.finished) << "crashed or hung: " << outcome.err.constData();
    EXPECT_EQ(outcome.status, c.status) << outcome.err.constData();
    if (c.errStart.isEmpty()) {
        EXPECT_TRUE(outcome.err.isEmpty()) << outcome.err.constData();
    }
    EXPECT_TRUE(outcome.err.startsWith(c.errStart)) << outcome.err.constData();
    if (c.status == 2) {
        EXPECT_TRUE(outcome.err.contains("\nUsage: hueshelf ")) << outcome.err.constData();
    }
    if (c.status == 1 && !c.errStart.isEmpty()) {
        EXPECT_EQ(outcome.err.count('\n'), 1) << outcome.err.constData();
    }
    EXPECT_TRUE(filesInHome().isEmpty()) << filesInHome().join(u", "_s).toStdString();
}

// A white and two greys 12 apart, near-duplicates: an issue only --strict turns into a failure.
const QStringList kGreys{u"--colors"_s, u"#FFFFFF"_s, u"hsl(0, 0%, 45%)"_s, u"777777"_s};

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
        StatusCase{{u"simulate"_s, u"--json"_s, u"00ff00"_s, u"#0f0"_s},
                   1,
                   "Not a color code: \"#0f0\"\n"},
        StatusCase{{u"color"_s, u"3366ff"_s}, 0, ""},
        StatusCase{{u"contrast"_s, u"#777777"_s, u"ffffff"_s, u"--json"_s, u"--target"_s, u"4.5"_s},
                   0,
                   ""},
        StatusCase{{u"shades"_s, u"#3366FF"_s, u"--json"_s}, 0, ""},
        StatusCase{QStringList{u"check"_s, u"--json"_s} + kGreys, 0, ""},
        StatusCase{QStringList{u"check"_s, u"--strict"_s} + kGreys, 1, ""},
        StatusCase{{u"check"_s, u"--strict"_s, u"--colors"_s, u"#FFFFFF"_s, u"#000000"_s}, 0, ""},
        // The first launch's palettes are only looked at: nothing is written for them.
        StatusCase{{u"palettes"_s}, 0, ""},
        StatusCase{{u"show"_s, u"Example"_s, u"--json"_s}, 0, ""}));

TEST_F(EndToEnd, FirstLaunchLooksThenUseWritesTheFile) {
    const BinaryRun listed = run({u"palettes"_s, u"--json"_s});
    ASSERT_TRUE(listed.finished);
    ASSERT_EQ(listed.status, 0) << listed.err.constData();
    const QJsonArray array = listed.json().array();
    ASSERT_EQ(array.size(), 2);
    EXPECT_EQ(array.at(0).toObject().value(u"name"_s).toString(), u"Starter"_s);
    EXPECT_TRUE(array.at(0).toObject().value(u"isActive"_s).toBool());
    EXPECT_TRUE(filesInHome().isEmpty()) << filesInHome().join(u", "_s).toStdString();

    const BinaryRun use = run({u"use"_s, u"Example"_s, u"--json"_s});
    ASSERT_TRUE(use.finished);
    ASSERT_EQ(use.status, 0) << use.err.constData();
    EXPECT_TRUE(use.err.isEmpty()) << use.err.constData();
    const QString exampleId = use.json().object().value(u"id"_s).toString();
    EXPECT_EQ(fileObject().value(PreferencesKeys::activeTemplateId).toString(), exampleId);
    EXPECT_EQ(namesOf(fileTemplates()), (QStringList{u"Starter"_s, u"Example"_s}));

    // From now on the ids are those of the file, so a palette can be named by its id.
    const BinaryRun shown = run({u"show"_s, exampleId.toLower(), u"--json"_s});
    ASSERT_EQ(shown.status, 0) << shown.err.constData();
    EXPECT_EQ(shown.json().object(),
              fileObject().value(PreferencesKeys::templates).toArray().at(1).toObject());
}

TEST_F(EndToEnd, WithoutXdgConfigHomeTheFileIsUnderDotConfig) {
    const ColorTemplate only = makePalette(u"Only"_s, {makeColor(u"A"_s, u"#ABCDEF"_s)});
    seed({only}, uuidText(only.id));
    const BinaryRun shown = run({u"show"_s, u"--json"_s}, false);
    ASSERT_EQ(shown.status, 0) << shown.err.constData();
    EXPECT_EQ(shown.json().object().value(u"name"_s).toString(), u"Only"_s);

    const BinaryRun missing = run({u"use"_s, u"Other"_s}, false);
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, QByteArray("No palette is named \"Other\" or has that id\n"));
    EXPECT_TRUE(missing.out.isEmpty());
}

} // namespace
} // namespace hueshelf::testing
