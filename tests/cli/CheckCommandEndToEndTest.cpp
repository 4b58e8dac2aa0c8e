#include "CliRun.h"
#include "TempHome.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// The real executable, with no display: the check must never need one.
TEST(CheckCommandEndToEnd, ChecksColorsAndFailsOnlyWhenStrict) {
    TempHome home;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"HOME"_s, home.path());
    env.insert(u"XDG_CONFIG_HOME"_s, home.path() + u"/.config"_s);
    env.remove(u"DISPLAY"_s);
    env.remove(u"WAYLAND_DISPLAY"_s);
    env.insert(u"QT_QPA_PLATFORM"_s, u"no-such-platform"_s);

    auto run = [&env](const QStringList& arguments) {
        QProcess process;
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(HUESHELF_BINARY), arguments);
        EXPECT_TRUE(process.waitForFinished(20'000));
        return std::make_pair(process.exitCode(), process.readAllStandardOutput());
    };

    // A white and a grey that reads only for headings on it.
    const QStringList colors{u"--colors"_s, u"#FFFFFF"_s, u"hsl(0, 0%, 45%)"_s, u"777777"_s};
    const auto [status, out] = run(QStringList{u"check"_s, u"--json"_s} + colors);
    EXPECT_EQ(status, 0);
    const QJsonObject report = QJsonDocument::fromJson(out).object();
    const QJsonArray hexes = report.value(u"colors"_s).toArray();
    ASSERT_EQ(hexes.size(), 3) << out.constData();
    EXPECT_EQ(hexes.at(1)[u"hex"_s].toString(), u"#737373"_s);
    EXPECT_EQ(hexes.at(2)[u"hex"_s].toString(), u"#777777"_s);
    // #737373 and #777777 differ by 12: near-duplicates. Both are mid-tones, so neither is
    // tested as text, but the notes tell that #777777 reaches only 4.48:1 on white (#737373
    // reaches 4.74:1).
    const QJsonArray notes = report.value(u"midToneNotes"_s).toArray();
    ASSERT_EQ(notes.size(), 1);
    EXPECT_TRUE(notes.at(0).toString().startsWith(hexes.at(2)[u"name"_s].toString() +
                                                  u" works for headings on your light colors"_s));
    const QJsonArray issues = report.value(u"issues"_s).toArray();
    ASSERT_EQ(issues.size(), 1);
    EXPECT_EQ(issues.at(0)[u"kind"_s].toString(), u"nearDuplicate"_s);
    EXPECT_EQ(report.value(u"summary"_s).toString(), u"1 thing to fix"_s);

    EXPECT_EQ(run(QStringList{u"check"_s, u"--strict"_s} + colors).first, 1);
    EXPECT_EQ(run({u"check"_s, u"--strict"_s, u"--colors"_s, u"#FFFFFF"_s, u"#000000"_s}).first, 0);
}

} // namespace
} // namespace hueshelf::testing
