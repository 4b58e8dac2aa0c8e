#include "CliRun.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace hueshelf::testing {
namespace {

TEST(ColorCommand, DoublesArePrintedInShortestRoundTripForm) {
    // A pure red's luminance is exactly the red weight; #555555 has lightness 85/255 = 1/3.
    const CliOutcome outcome = runCli({u"color"_s, u"#FF0000"_s, u"#555555"_s, u"--json"_s});
    ASSERT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.out.contains(QRegularExpression(u"\"luminance\":\\s*0\\.2126[,\\s}]"_s)))
        << outcome.out.toStdString();
    EXPECT_TRUE(outcome.out.contains(u"0.3333333333333333"_s)) << outcome.out.toStdString();
    const QJsonArray gray = outcome.json().array().at(1).toObject().value(u"hsl"_s).toArray();
    EXPECT_EQ(gray.at(2).toDouble(), 1.0 / 3.0);
}

TEST(ColorCommand, PrintsEveryArgumentThenFailsOnTheUnreadableOnes) {
    const QStringList inputs{u"#3366ff"_s, u"nope"_s, u"#abc"_s, u"rgb(1, 2)"_s,
                             u"hsl(120, 100%, 25%)"_s};
    const CliOutcome outcome = runCli(QStringList{u"color"_s, u"--json"_s} + inputs);
    EXPECT_EQ(outcome.status, 1);
    // One line, naming each failed argument; three-digit hex is not a pasted code.
    EXPECT_EQ(outcome.err, u"Not a color code: \"nope\", \"#abc\", \"rgb(1, 2)\"\n"_s);
    const QJsonArray array = outcome.json().array();
    ASSERT_EQ(array.size(), inputs.size());
    for (qsizetype i = 0; i < inputs.size(); ++i)
        EXPECT_EQ(array.at(i).toObject().value(u"input"_s).toString(), inputs.at(i));
    for (const int bad : {1, 2, 3}) {
        const QJsonObject object = array.at(bad).toObject();
        EXPECT_EQ(object.keys(), (QStringList{u"hex"_s, u"input"_s}));
        EXPECT_TRUE(object.value(u"hex"_s).isNull());
    }
    EXPECT_EQ(array.at(0).toObject().value(u"hex"_s).toString(), u"#3366FF"_s);
    EXPECT_EQ(array.at(4).toObject().value(u"hex"_s).toString(), u"#008000"_s);
}

TEST(ColorCommand, HumanOutputIsAlignedTextWithoutJson) {
    const CliOutcome outcome = runCli({u"color"_s, u"3366ff"_s, u"nope"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, u"3366ff\n"
                           u"  hex          #3366FF\n"
                           u"  name         Bold Blue\n"
                           u"  luminance    0.1743\n"
                           u"  hex-no-hash  3366FF\n"
                           u"  rgb          rgb(51, 102, 255)\n"
                           u"  hsl          hsl(225, 100%, 60%)\n"
                           u"  css-var      --bold-blue: #3366FF\n"
                           u"  tailwind     bg-[#3366FF]\n"
                           u"\n"
                           u"nope\n"
                           u"  not a color code\n"_s);
    EXPECT_EQ(outcome.err, u"Not a color code: \"nope\"\n"_s);
}

TEST(ContrastCommand, TargetChangesOnlyTheAdjustedForeground) {
    const CliOutcome standard = runCli({u"contrast"_s, u"#777777"_s, u"#FFFFFF"_s, u"--json"_s});
    const CliOutcome seven =
        runCli({u"contrast"_s, u"#777777"_s, u"#FFFFFF"_s, u"--target=7"_s, u"--json"_s});
    ASSERT_EQ(seven.status, 0);
    const QJsonObject a = standard.json().object();
    const QJsonObject b = seven.json().object();
    EXPECT_EQ(a.value(u"ratio"_s), b.value(u"ratio"_s));
    EXPECT_EQ(a.value(u"level"_s), b.value(u"level"_s));
    const QString adjusted = b.value(u"adjustedForeground"_s).toString();
    ASSERT_EQ(adjusted.size(), 7);
    bool ok = false;
    const int gray = adjusted.mid(1, 2).toInt(&ok, 16);
    ASSERT_TRUE(ok);
    EXPECT_EQ(adjusted, u"#"_s + adjusted.mid(1, 2).repeated(3)); // still a gray
    EXPECT_GE(wcagRatio(wcagLuminance(gray, gray, gray), 1.0), 7.0);
    // Nearest passing lightness: one byte lighter would miss the target.
    EXPECT_LT(wcagRatio(wcagLuminance(gray + 1, gray + 1, gray + 1), 1.0), 7.0);
}

TEST(ContrastCommand, HumanOutputShowsTheRatioCutNotRounded) {
    const CliOutcome outcome = runCli({u"contrast"_s, u"#777777"_s, u"#FFFFFF"_s});
    ASSERT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, u"foreground  #777777\n"
                           u"background  #FFFFFF\n"
                           u"ratio       4.47:1\n"
                           u"level       OK for headings\n"
                           u"adjusted    #767676 reaches 4.5:1\n"_s);
    const CliOutcome none = runCli({u"contrast"_s, u"#777777"_s, u"#777777"_s, u"--target=5"_s});
    EXPECT_TRUE(none.out.contains(u"ratio       1.00:1\n"_s));
    EXPECT_TRUE(none.out.contains(u"level       Hard to read\n"_s));
    EXPECT_TRUE(none.out.endsWith(u"adjusted    no lightness of it reaches 5:1\n"_s));
}

TEST(ContrastCommand, UnreadableColorsFailWithOneLine) {
    const CliOutcome one = runCli({u"contrast"_s, u"#000000"_s, u"white"_s, u"--json"_s});
    EXPECT_EQ(one.status, 1);
    EXPECT_TRUE(one.out.isEmpty());
    EXPECT_EQ(one.err, u"Not a color code: \"white\"\n"_s);
    const CliOutcome both = runCli({u"contrast"_s, u"black"_s, u"white"_s});
    EXPECT_EQ(both.err, u"Not a color code: \"black\", \"white\"\n"_s);
}

TEST(ContrastCommand, AnUnreadablePasteIsReportedOnOneLine) {
    const CliOutcome outcome =
        runCli({u"contrast"_s, u"562\nd56"_s, u"say \"hi\"\t\\"_s, u"--json"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, u"Not a color code: \"562\\nd56\", \"say \\\"hi\\\"\\t\\\\\"\n"_s);
    EXPECT_EQ(outcome.err.count(u'\n'), 1);
}

TEST(ContrastCommand, OnlyTextThatIsNoFiniteNumberIsABadTarget) {
    for (const QString& target : {u"abc"_s, u"nan"_s, u"inf"_s, u""_s, u"4.5:1"_s}) {
        const CliOutcome outcome =
            runCli({u"contrast"_s, u"#000000"_s, u"#FFFFFF"_s, u"--target"_s, target});
        EXPECT_EQ(outcome.status, 2) << target.toStdString();
        EXPECT_TRUE(outcome.out.isEmpty());
        EXPECT_TRUE(outcome.err.startsWith(
            u"hueshelf contrast: --target needs a contrast ratio such as 4.5, not \""_s + target +
            u"\"\nUsage: hueshelf contrast "_s))
            << outcome.err.toStdString();
    }
}

TEST(ContrastCommand, TargetsOutsideTheReachableRangeStillAnswer) {
    struct TargetCase {
        QString target;
        QJsonValue adjusted;
    };
    // Grey on white: a target of 1 or less is met by the colour's own lightness, one above
    // black-on-white's 21 by none.
    const TargetCase cases[] = {
        {u"0.5"_s, QJsonValue(u"#777777"_s)},
        {u"-3"_s, QJsonValue(u"#777777"_s)},
        {u"21.5"_s, QJsonValue(QJsonValue::Null)},
        {u" 7 "_s, QJsonValue(u"#595959"_s)},
    };
    for (const TargetCase& c : cases) {
        const CliOutcome outcome = runCli(
            {u"contrast"_s, u"#777777"_s, u"#FFFFFF"_s, u"--target"_s, c.target, u"--json"_s});
        ASSERT_EQ(outcome.status, 0) << c.target.toStdString();
        const QJsonObject object = QJsonDocument::fromJson(outcome.out.toUtf8()).object();
        EXPECT_EQ(object.value(u"adjustedForeground"_s), c.adjusted) << c.target.toStdString();
    }
}

TEST(ShadesCommand, HumanOutputMarksTheBase) {
    const CliOutcome outcome = runCli({u"shades"_s, u"#000000"_s});
    ASSERT_EQ(outcome.status, 0);
    const QStringList lines = outcome.out.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 10);
    EXPECT_TRUE(lines.first().startsWith(u" 50  #"_s));
    EXPECT_EQ(lines.last(), u"900  #000000  base"_s);
    EXPECT_FALSE(outcome.out.contains(u'{'));
}

TEST(ShadesCommand, UnreadableCodeFails) {
    const CliOutcome outcome = runCli({u"shades"_s, u"#abc"_s, u"--json"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.out.isEmpty());
    EXPECT_EQ(outcome.err, u"Not a color code: \"#abc\"\n"_s);
}

} // namespace
} // namespace hueshelf::testing
