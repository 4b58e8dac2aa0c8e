#include "CliRun.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// The values of color, contrast, shades and simulate --json are compared with an independent
// model on random inputs (tests/reference); these cases hold what it doesn't look at: the
// texts for people, the wording of failures, and targets outside the model's range.
namespace hueshelf::testing {
namespace {

TEST(ColorCommand, DoublesArePrintedInShortestRoundTripForm) {
    // A pure red's luminance is exactly the red weight; #555555 has lightness 85/255 = 1/3.
    const CliOutcome outcome = runCli({u"color"_s, u"#FF0000"_s, u"#555555"_s, u"--json"_s});
    ASSERT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.out.contains(QRegularExpression(u"\"luminance\":\\s*0\\.2126[,\\s}]"_s)))
        << outcome.out.toStdString();
    EXPECT_TRUE(outcome.out.contains(u"0.3333333333333333"_s)) << outcome.out.toStdString();
}

TEST(ColorCommands, UnreadableCodesAreNamedOnOneLine) {
    const struct {
        QStringList arguments;
        QString err;
        bool printsTheOthers; // color and simulate still print every argument
    } cases[] = {
        // Three-digit hex is not a pasted code.
        {{u"color"_s, u"--json"_s, u"#3366ff"_s, u"nope"_s, u"#abc"_s, u"rgb(1, 2)"_s},
         u"Not a color code: \"nope\", \"#abc\", \"rgb(1, 2)\"\n"_s,
         true},
        {{u"simulate"_s, u"#abc"_s, u"hsl(0, 100%, 50%)"_s, u"nope"_s},
         u"Not a color code: \"#abc\", \"nope\"\n"_s,
         true},
        {{u"contrast"_s, u"#000000"_s, u"white"_s, u"--json"_s},
         u"Not a color code: \"white\"\n"_s,
         false},
        {{u"contrast"_s, u"black"_s, u"white"_s},
         u"Not a color code: \"black\", \"white\"\n"_s,
         false},
        {{u"contrast"_s, u"562\nd56"_s, u"say \"hi\"\t\\"_s, u"--json"_s},
         u"Not a color code: \"562\\nd56\", \"say \\\"hi\\\"\\t\\\\\"\n"_s,
         false},
        {{u"shades"_s, u"#abc"_s, u"--json"_s}, u"Not a color code: \"#abc\"\n"_s, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const CliOutcome outcome = runCli(c.arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, c.err);
        EXPECT_EQ(outcome.out.isEmpty(), !c.printsTheOthers);
    }
}

TEST(ColorCommands, TextForPeopleIsAlignedAndCutNotRounded) {
    const struct {
        QStringList arguments;
        QString out;
    } cases[] = {
        {{u"color"_s, u"3366ff"_s, u"nope"_s},
         u"3366ff\n"
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
         u"  not a color code\n"_s},
        {{u"simulate"_s, u"ff0000"_s, u"x"_s},
         u"ff0000\n"
         u"  hex           #FF0000\n"
         u"  protanopia    #6D5F00  Red-green (less common)\n"
         u"  deuteranopia  #A39000  Red-green (most common)\n"
         u"  tritanopia    #FF000F  Blue-yellow\n"
         u"\n"
         u"x\n"
         u"  not a color code\n"_s},
        // 4.4776 is cut to 4.47, so it never reads as the 4.5 it misses.
        {{u"contrast"_s, u"#777777"_s, u"#FFFFFF"_s},
         u"foreground  #777777\n"
         u"background  #FFFFFF\n"
         u"ratio       4.47:1\n"
         u"level       OK for headings\n"
         u"adjusted    #767676 reaches 4.5:1\n"_s},
        {{u"contrast"_s, u"#777777"_s, u"#777777"_s, u"--target=5"_s},
         u"foreground  #777777\n"
         u"background  #777777\n"
         u"ratio       1.00:1\n"
         u"level       Hard to read\n"
         u"adjusted    no lightness of it reaches 5:1\n"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(runCli(c.arguments).out, c.out) << c.arguments.join(u' ').toStdString();

    const QStringList shades = runCli({u"shades"_s, u"#000000"_s}).out.split(u'\n');
    ASSERT_EQ(shades.size(), 11); // ten lines and the empty text after the last break
    EXPECT_TRUE(shades.first().startsWith(u" 50  #"_s));
    EXPECT_EQ(shades.at(9), u"900  #000000  base"_s);
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
    // Grey on white: a target of 1 or less is met by the colour's own lightness, one above
    // black-on-white's 21 by none.
    const std::pair<QString, QJsonValue> cases[] = {
        {u"0.5"_s, QJsonValue(u"#777777"_s)},
        {u"-3"_s, QJsonValue(u"#777777"_s)},
        {u"21.5"_s, QJsonValue(QJsonValue::Null)},
        {u" 7 "_s, QJsonValue(u"#595959"_s)},
    };
    for (const auto& [target, adjusted] : cases) {
        const CliOutcome outcome =
            runCli({u"contrast"_s, u"#777777"_s, u"#FFFFFF"_s, u"--target"_s, target, u"--json"_s});
        ASSERT_EQ(outcome.status, 0) << target.toStdString();
        EXPECT_EQ(outcome.json().object().value(u"adjustedForeground"_s), adjusted)
            << target.toStdString();
    }
}

} // namespace
} // namespace hueshelf::testing
