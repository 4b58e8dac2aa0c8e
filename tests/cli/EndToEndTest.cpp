// The real executable over a temporary home, with no display to talk to.

#include "StoreHome.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

class EndToEnd : public StoreHome {
protected:
    BinaryRun run(const QStringList& arguments, bool withXdgConfigHome = true) const {
        QProcessEnvironment env = homeEnvironment(home.path());
        if (!withXdgConfigHome)
            env.remove(u"XDG_CONFIG_HOME"_s);
        return runBinary(arguments, env);
    }
};

// Exit status and stderr by the contract, UTF-8 both ways, and nothing written into the home
// by commands that only look. A typo must be refused, not start a bar (which aborts here).
TEST_F(EndToEnd, StatusesAndMessagesWithoutADisplay) {
    QDir(home.paths().configDir).removeRecursively();
    const QStringList greys{u"--colors"_s, u"#FFFFFF"_s, u"hsl(0, 0%, 45%)"_s, u"777777"_s};
    const struct {
        QStringList arguments;
        int status;
        QByteArray err; // the start of stderr
    } cases[] = {
        {{u"colr"_s, u"#fff"_s}, 2, "hueshelf: unknown command \"colr\""},
        {{u"color"_s, u"#FF0000"_s, u"café"_s, u"--json"_s},
         1,
         "Not a color code: \"caf\xC3\xA9\"\n"},
        {QStringList{u"check"_s, u"--json"_s} + greys, 0, ""},
        {QStringList{u"check"_s, u"--strict"_s} + greys, 1, ""},
        {{u"check"_s, u"--strict"_s, u"--colors"_s, u"#FFFFFF"_s, u"#000000"_s}, 0, ""},
        {{u"palettes"_s}, 0, ""}, // the first launch's palettes are only looked at
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const BinaryRun outcome = run(c.arguments);
        EXPECT_TRUE(outcome.finished) << "crashed or hung";
        EXPECT_EQ(outcome.status, c.status) << outcome.err.constData();
        EXPECT_TRUE(c.err.isEmpty() ? outcome.err.isEmpty() : outcome.err.startsWith(c.err))
            << outcome.err.constData();
        EXPECT_EQ(c.status == 2, outcome.err.contains("\nUsage: hueshelf "));
        EXPECT_EQ(filesInHome(), QStringList());
        EXPECT_FALSE(QFileInfo::exists(home.paths().configDir)); // not even an empty folder
    }
    EXPECT_EQ(run({u"--version"_s}).out, QByteArray("hueshelf " HUESHELF_VERSION_TEXT "\n"));
    const QJsonArray colors =
        run({u"color"_s, u"#FF0000"_s, u"café"_s, u"--json"_s}).json().array();
    EXPECT_EQ(colors.at(1)[u"input"_s], u"café"_s); // every argument printed, even unreadable
}

// From now on the ids are those of the file, so a palette can be named by its id; without
// XDG_CONFIG_HOME the file is under ~/.config.
TEST_F(EndToEnd, FirstLaunchLooksThenUseWritesTheFile) {
    const BinaryRun use = run({u"use"_s, u"Example"_s, u"--json"_s}, false);
    ASSERT_EQ(use.status, 0) << use.err.constData();
    const QString id = use.json().object().value(u"id"_s).toString();
    EXPECT_EQ(fileActiveId(), id);
    const BinaryRun shown = run({u"show"_s, id.toLower(), u"--json"_s});
    ASSERT_EQ(shown.status, 0) << shown.err.constData();
    EXPECT_EQ(shown.json().object(), fileRecords().at(1).toObject());
    EXPECT_EQ(fileRecords().at(0)[u"name"_s].toString(), u"Starter"_s);
}

} // namespace
} // namespace hueshelf::testing
