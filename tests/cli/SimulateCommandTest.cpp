#include "CliRun.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace hueshelf::testing {
namespace {

// Codes worked out by hand from the published matrices (see the simulation's own tests): pure
// red becomes #6D5F00 for protanopes, #A39000 for deuteranopes and #FF000F for tritanopes.
TEST(SimulateCommand, JsonHasTheCanonicalCodeAndThreeViews) {
    const CliOutcome outcome =
        runCli({u"simulate"_s, u"rgb(255, 0, 0)"_s, u" #0000ff\n"_s, u"#FFFFFF"_s, u"--json"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_TRUE(outcome.err.isEmpty());
    const QJsonArray array = outcome.json().array();
    ASSERT_EQ(array.size(), 3);
    const QJsonObject red = array.at(0).toObject();
    EXPECT_EQ(red.keys(), (QStringList{u"deuteranopia"_s, u"hex"_s, u"input"_s, u"protanopia"_s,
                                       u"tritanopia"_s}));
    EXPECT_EQ(red.value(u"input"_s).toString(), u"rgb(255, 0, 0)"_s);
    EXPECT_EQ(red.value(u"hex"_s).toString(), u"#FF0000"_s);
    EXPECT_EQ(red.value(u"protanopia"_s).toString(), u"#6D5F00"_s);
    EXPECT_EQ(red.value(u"deuteranopia"_s).toString(), u"#A39000"_s);
    EXPECT_EQ(red.value(u"tritanopia"_s).toString(), u"#FF000F"_s);
    const QJsonObject blue = array.at(1).toObject();
    EXPECT_EQ(blue.value(u"input"_s).toString(), u" #0000ff\n"_s);
    EXPECT_EQ(blue.value(u"hex"_s).toString(), u"#0000FF"_s);
    EXPECT_EQ(blue.value(u"protanopia"_s).toString(), u"#0059FF"_s);
    EXPECT_EQ(blue.value(u"deuteranopia"_s).toString(), u"#003DFB"_s);
    EXPECT_EQ(blue.value(u"tritanopia"_s).toString(), u"#006B96"_s);
    for (const QString& key : {u"protanopia"_s, u"deuteranopia"_s, u"tritanopia"_s})
        EXPECT_EQ(array.at(2).toObject().value(key).toString(), u"#FFFFFF"_s);
}

TEST(SimulateCommand, PrintsEveryArgumentThenFailsOnTheUnreadableOnes) {
    const QStringList inputs{u"#abc"_s, u"hsl(0, 100%, 50%)"_s, u"nope"_s};
    const CliOutcome outcome = runCli(QStringList{u"simulate"_s, u"--json"_s} + inputs);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, u"Not a color code: \"#abc\", \"nope\"\n"_s);
    const QJsonArray array = outcome.json().array();
    ASSERT_EQ(array.size(), 3);
    for (const int bad : {0, 2}) {
        const QJsonObject object = array.at(bad).toObject();
        EXPECT_EQ(object.keys(), (QStringList{u"hex"_s, u"input"_s}));
        EXPECT_EQ(object.value(u"input"_s).toString(), inputs.at(bad));
        EXPECT_TRUE(object.value(u"hex"_s).isNull());
    }
    EXPECT_EQ(array.at(1).toObject().value(u"protanopia"_s).toString(), u"#6D5F00"_s);
}

TEST(SimulateCommand, HumanOutputNamesEachView) {
    const CliOutcome outcome = runCli({u"simulate"_s, u"ff0000"_s, u"x"_s});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, u"ff0000\n"
                           u"  hex           #FF0000\n"
                           u"  protanopia    #6D5F00  Red-green (less common)\n"
                           u"  deuteranopia  #A39000  Red-green (most common)\n"
                           u"  tritanopia    #FF000F  Blue-yellow\n"
                           u"\n"
                           u"x\n"
                           u"  not a color code\n"_s);
    EXPECT_EQ(outcome.err, u"Not a color code: \"x\"\n"_s);
}

TEST(SimulateCommand, NeedsACode) {
    const CliOutcome outcome = runCli({u"simulate"_s, u"--json"_s});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_TRUE(outcome.out.isEmpty());
    EXPECT_TRUE(outcome.err.contains(u"simulate CODE..."_s)) << outcome.err.toStdString();
}

} // namespace
} // namespace hueshelf::testing
