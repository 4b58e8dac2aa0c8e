#include "StoreHome.h"

#include <QProcess>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

struct BinaryRun {
    bool finished = false;
    int status = -1;
    QByteArray out;
    QByteArray err;

    QJsonDocument json() const { return QJsonDocument::fromJson(out); }
};

// The real executable over the temporary home, with no display and a platform plugin that
// doesn't exist, so that any attempt to start the GUI fails the run.
class StoreCommandsEndToEnd : public StoreHome {
protected:
    BinaryRun run(const QStringList& arguments, bool withXdgConfigHome = true) const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(u"HOME"_s, home.path());
        if (withXdgConfigHome)
            env.insert(u"XDG_CONFIG_HOME"_s, home.path() + u"/.config"_s);
        else
            env.remove(u"XDG_CONFIG_HOME"_s);
        env.remove(StorageLocations::isolationVariable);
        env.remove(u"DISPLAY"_s);
        env.remove(u"WAYLAND_DISPLAY"_s);
        env.insert(u"QT_QPA_PLATFORM"_s, u"no-such-platform"_s);

        QProcess process;
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(HUESHELF_BINARY), arguments);
        BinaryRun outcome;
        if (!process.waitForStarted(10'000))
            return outcome;
        if (!process.waitForFinished(20'000)) {
            process.kill();
            process.waitForFinished(5'000);
            return outcome;
        }
        outcome.finished = process.exitStatus() == QProcess::NormalExit;
        outcome.status = process.exitCode();
        outcome.out = process.readAllStandardOutput();
        outcome.err = process.readAllStandardError();
        return outcome;
    }
};

TEST_F(StoreCommandsEndToEnd, FirstLaunchLooksThenUseWritesTheFile) {
    const BinaryRun listed = run({u"palettes"_s, u"--json"_s});
    ASSERT_TRUE(listed.finished);
    ASSERT_EQ(listed.status, 0) << listed.err.constData();
    EXPECT_TRUE(listed.err.isEmpty());
    const QJsonArray array = listed.json().array();
    ASSERT_EQ(array.size(), 2);
    EXPECT_EQ(array.at(0).toObject().value(u"name"_s).toString(), u"Starter"_s);
    EXPECT_TRUE(array.at(0).toObject().value(u"isActive"_s).toBool());
    EXPECT_EQ(run({u"show"_s}).status, 0);
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

TEST_F(StoreCommandsEndToEnd, WithoutXdgConfigHomeTheFileIsUnderDotConfig) {
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
