#include "StoreHome.h"
#include "color/ColorUtils.h"
#include "color/ColorVisionSimulation.h"

#include <QTemporaryDir>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

class CheckCommand : public StoreHome {
protected:
    // Worked out by hand:
    // - Ivory (l 0.7) is the only light colour; Ochre (l 0.392, luminance 0.341) against it
    //   reaches 2.53:1, poor. Ink and both Slates (luminance 0.087) read at 7:1 and more.
    // - The Slates differ by 2 in blue: near-duplicates, and so not also look-alikes.
    // - Chromatic hues 60, 45, 210 and 211.7 form two clusters whose centres lie 158 degrees
    //   apart: complementary. Saturations 1.0 against 0.2 give the "energy" note; Ink is grey,
    //   so not every colour is chromatic and the "brightness" note stays out.
    // - Roles: Ivory is saturated and warm but too light for the vivid list; Ochre vivid; Ink
    //   dark; the Slates muted and dark, the second taking the list's next role.
    const ColorTemplate brand = makePalette(u"Brand"_s, {
                                                            makeColor(u"Ivory"_s, u"#FFFF66"_s),
                                                            makeColor(u"Ochre"_s, u"#C89600"_s),
                                                            makeColor(u"Ink"_s, u"#111111"_s, true),
                                                            makeColor(u"Slate"_s, u"#445566"_s),
                                                            makeColor(u"Slate Too"_s, u"#445568"_s),
                                                        });
    const ColorTemplate calm = makePalette(
        u"Calm"_s, {makeColor(u"Paper"_s, u"#FFFFFF"_s), makeColor(u"Ink"_s, u"#000000"_s)});

    void seedBoth() { seed({brand, calm}, uuidText(calm.id)); }
};

TEST_F(CheckCommand, ReportsAStoredPaletteInCheckOrderWithItsFixes) {
    seedBoth();
    const CliOutcome outcome = runCli({u"check"_s, u"Brand"_s, u"--json"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_TRUE(outcome.err.isEmpty());
    const QJsonObject report = outcome.json().object();
    EXPECT_EQ(report.keys(),
              (QStringList{u"colors"_s, u"harmonyNotes"_s, u"issues"_s, u"midToneNotes"_s,
                           u"name"_s, u"roles"_s, u"scheme"_s, u"schemeName"_s, u"summary"_s}));
    EXPECT_EQ(report.value(u"name"_s).toString(), u"Brand"_s);
    EXPECT_EQ(report.value(u"summary"_s).toString(), u"2 things to fix"_s);

    const QJsonArray colors = report.value(u"colors"_s).toArray();
    ASSERT_EQ(colors.size(), 5);
    EXPECT_EQ(
        colors.at(2).toObject(),
        (QJsonObject{{u"name"_s, u"Ink"_s}, {u"hex"_s, u"#111111"_s}, {u"isLocked"_s, true}}));

    const QJsonArray issues = report.value(u"issues"_s).toArray();
    ASSERT_EQ(issues.size(), 2);
    const QJsonObject readability = issues.at(0).toObject();
    EXPECT_EQ(readability.value(u"id"_s).toString(), u"read-"_s + uuidText(brand.colors.at(1).id));
    EXPECT_EQ(readability.value(u"kind"_s).toString(), u"readability"_s);
    EXPECT_EQ(readability.value(u"level"_s).toString(), u"poor"_s);
    EXPECT_FALSE(readability.contains(u"vision"_s));
    EXPECT_EQ(readability.value(u"color"_s).toInt(), 1);
    EXPECT_EQ(readability.value(u"other"_s).toInt(), 0);
    EXPECT_TRUE(readability.value(u"canFix"_s).toBool());
    EXPECT_EQ(readability.value(u"text"_s).toString(), u"Ochre is hard to read on Ivory."_s);
    EXPECT_TRUE(readability.value(u"move"_s).isNull());
    // The fix moves Ochre until it reads as body text on Ivory.
    const auto fixed = ColorUtils::hexToRGB(readability.value(u"fixedHex"_s).toString());
    ASSERT_TRUE(fixed.has_value()) << readability.value(u"fixedHex"_s).toString().toStdString();
    EXPECT_GE(wcagRatio(wcagLuminance(fixed->r, fixed->g, fixed->b), wcagLuminance(255, 255, 102)),
              4.5);

    const QJsonObject duplicate = issues.at(1).toObject();
    EXPECT_EQ(duplicate.value(u"id"_s).toString(), u"dupe-"_s + uuidText(brand.colors.at(3).id) +
                                                       u'-' + uuidText(brand.colors.at(4).id));
    EXPECT_EQ(duplicate.value(u"kind"_s).toString(), u"nearDuplicate"_s);
    EXPECT_FALSE(duplicate.contains(u"level"_s));
    EXPECT_EQ(duplicate.value(u"color"_s).toInt(), 3);
    EXPECT_EQ(duplicate.value(u"other"_s).toInt(), 4);
    EXPECT_FALSE(duplicate.value(u"canFix"_s).toBool());
    EXPECT_EQ(duplicate.value(u"text"_s).toString(),
              u"Slate and Slate Too are almost the same color."_s);
    EXPECT_TRUE(duplicate.value(u"move"_s).isNull());
    EXPECT_TRUE(duplicate.value(u"fixedHex"_s).isNull());

    EXPECT_EQ(report.value(u"midToneNotes"_s).toArray(), QJsonArray());
    EXPECT_EQ(report.value(u"scheme"_s).toString(), u"complementary"_s);
    EXPECT_EQ(report.value(u"schemeName"_s).toString(), u"Complementary palette"_s);
    const QJsonArray notes = report.value(u"harmonyNotes"_s).toArray();
    ASSERT_EQ(notes.size(), 1);
    EXPECT_EQ(notes.at(0).toObject().value(u"type"_s).toString(), u"energy"_s);
    EXPECT_TRUE(notes.at(0)
                    .toObject()
                    .value(u"message"_s)
                    .toString()
                    .startsWith(u"Some of your colors are bold"_s));

    QStringList roles;
    for (const QJsonValue& role : report.value(u"roles"_s).toArray())
        roles << QString::number(role[u"color"_s].toInt()) + u' ' + role[u"role"_s].toString();
    EXPECT_EQ(roles, (QStringList{u"0 Warm Accent"_s, u"1 Primary"_s, u"2 Text Dark"_s,
                                  u"3 Muted"_s, u"4 Dark Accent"_s}));
}

TEST_F(CheckCommand, StrictFailsOnlyWhenThereAreIssues) {
    seedBoth();
    struct Case {
        QStringList arguments;
        int status;
    };
    const QList<Case> cases{
        {{u"check"_s, u"Brand"_s}, 0},
        {{u"check"_s, u"Brand"_s, u"--strict"_s}, 1},
        {{u"check"_s, uuidText(brand.id), u"--strict"_s, u"--json"_s}, 1},
        {{u"check"_s, u"--strict"_s}, 0}, // the active palette, Calm, has nothing to fix
        {{u"check"_s, u"Calm"_s, u"--strict"_s, u"--json"_s}, 0},
    };
    for (const Case& c : cases) {
        const CliOutcome outcome = runCli(c.arguments);
        EXPECT_EQ(outcome.status, c.status) << c.arguments.join(u' ').toStdString();
        EXPECT_TRUE(outcome.err.isEmpty()) << outcome.err.toStdString();
    }
    const CliOutcome active = runCli({u"check"_s, u"--json"_s});
    EXPECT_EQ(active.json().object().value(u"summary"_s).toString(), u"Nothing to fix"_s);
    EXPECT_EQ(active.json().object().value(u"issues"_s).toArray(), QJsonArray());
    EXPECT_EQ(active.json().object().value(u"scheme"_s).toString(), u"neutral"_s);
    EXPECT_EQ(active.json().object().value(u"schemeName"_s).toString(),
              u"Mostly neutral palette"_s);
}

TEST_F(CheckCommand, PeopleGetTheIssuesFixesAndNotesWithoutJson) {
    seedBoth();
    const CliOutcome outcome = runCli({u"check"_s, u"Brand"_s});
    ASSERT_EQ(outcome.status, 0);
    EXPECT_FALSE(outcome.out.contains(u'{'));
    const QStringList lines = outcome.out.split(u'\n');
    EXPECT_EQ(lines.at(0), u"Brand \u2014 2 things to fix"_s);
    EXPECT_EQ(lines.at(1), u"  - Ochre is hard to read on Ivory."_s);
    EXPECT_TRUE(lines.at(2).startsWith(u"    Fix: Ochre #C89600 \u2192 #"_s))
        << lines.at(2).toStdString();
    EXPECT_EQ(lines.at(3), u"  - Slate and Slate Too are almost the same color."_s);
    EXPECT_TRUE(outcome.out.contains(u"  Complementary palette.\n"_s));
    EXPECT_TRUE(outcome.out.contains(u"\nRoles\n"_s));
    EXPECT_TRUE(outcome.out.contains(u"#445568  Slate Too  Dark Accent\n"_s));
}

TEST_F(CheckCommand, RefusesInputItCannotUse) {
    seedBoth();
    struct Case {
        QStringList arguments;
        int status;
        QString errStart;
    };
    const QList<Case> cases{
        {{u"check"_s, u"--colors"_s, u"#FFFFFF"_s, u"nope"_s, u"#12"_s},
         1,
         u"Not a color code: \"nope\", \"#12\""_s},
        {{u"check"_s, u"No such"_s}, 1, QString()},
        {{u"check"_s, u"Brand"_s, u"--colors"_s, u"#FFFFFF"_s}, 2, QString()},
        {{u"check"_s, u"--file"_s, u"x.hueshelf"_s, u"--colors"_s, u"#FFFFFF"_s}, 2, QString()},
        {{u"check"_s, u"--colors"_s}, 2, QString()},
    };
    for (const Case& c : cases) {
        const CliOutcome outcome = runCli(c.arguments);
        EXPECT_EQ(outcome.status, c.status) << c.arguments.join(u' ').toStdString();
        EXPECT_TRUE(outcome.out.isEmpty());
        EXPECT_FALSE(outcome.err.isEmpty());
        if (c.status == 1) {
            EXPECT_EQ(outcome.err.count(u'\n'), 1) << outcome.err.toStdString();
        }
        if (!c.errStart.isEmpty()) {
            EXPECT_TRUE(outcome.err.startsWith(c.errStart)) << outcome.err.toStdString();
        }
    }
}

class CheckFile : public CheckCommand {
protected:
    QString write(const QByteArray& bytes) {
        const QString path = dir.filePath(u"palette%1.hueshelf"_s.arg(++m_count));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }

    QTemporaryDir dir;

private:
    int m_count = 0;
};

TEST_F(CheckFile, ReadsNamesCodesAndSkipsWhatItCannotRead) {
    const QString path = write(R"({"version": "2.0", "name": " Spaced ", "colors": [
        {"hex": " #abc ", "name": "  Sky\n"},
        {"hex": "#ABCD", "name": "skipped"},
        {"hex": 7},
        {"name": "no code"},
        {"hex": "000000", "name": "   "},
        {"hex": "#FFFFFF", "name": false}
    ]})");
    const CliOutcome outcome = runCli({u"check"_s, u"--file"_s, path, u"--json"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    const QJsonObject report = outcome.json().object();
    EXPECT_EQ(report.value(u"name"_s).toString(), u" Spaced "_s); // not trimmed
    QStringList colors;
    for (const QJsonValue& color : report.value(u"colors"_s).toArray())
        colors << color[u"hex"_s].toString() + u' ' + color[u"name"_s].toString();
    EXPECT_EQ(colors,
              (QStringList{u"#AABBCC Sky"_s, u"#000000 "_s + ColorUtils::colorName(u"#000000"_s),
                           u"#FFFFFF "_s + ColorUtils::colorName(u"#FFFFFF"_s)}));
}

TEST_F(CheckFile, RefusesFilesWithTheirOwnMessages) {
    const QByteArray valid = R"({"name": "X", "colors": [{"hex": "#123456"}]})";
    QByteArray tooMany = R"({"name": "X", "colors": [)";
    for (int i = 0; i < 201; ++i)
        tooMany += i == 0 ? R"({"hex": "#123456"})" : R"(,{"hex": "bad"})";
    tooMany += "]}";
    QByteArray exactlyFull = valid;
    exactlyFull += QByteArray(1048576 - valid.size(), ' ');

    struct Case {
        QByteArray bytes;
        QString message; // empty: the file is read
    };
    const QList<Case> cases{
        {exactlyFull, QString()},
        {exactlyFull + ' ', u"File is too large. Maximum size is 1 MB."_s},
        {"not json", u"That isn't a HueShelf palette file."_s},
        {"[1, 2]", u"That isn't a HueShelf palette file."_s},
        {R"({"colors": []})", u"That isn't a HueShelf palette file."_s},
        {R"({"name": 3, "colors": []})", u"That isn't a HueShelf palette file."_s},
        {R"({"name": "X", "colors": {}})", u"That isn't a HueShelf palette file."_s},
        {R"({"name": "X", "colors": [{"hex": "#FFFFFF"}, 1]})",
         u"That isn't a HueShelf palette file."_s},
        {R"({"name": "X", "colors": []})", u"That file has no colors HueShelf can read."_s},
        {R"({"name": "X", "colors": [{"hex": "#GGGGGG"}]})",
         u"That file has no colors HueShelf can read."_s},
        {R"({"name": ")" + QByteArray(101, 'n') + R"(", "colors": [{"hex": "#FFFFFF"}]})",
         u"Palette name is too long. Maximum 100 characters."_s},
        // One hundred flags of two code points each are one hundred characters.
        {R"({"name": ")" + QString(u"\U0001F1EB\U0001F1F7"_s).repeated(100).toUtf8() +
             R"(", "colors": [{"hex": "#FFFFFF"}]})",
         QString()},
        {tooMany, u"Palette has too many colors. Maximum 200."_s},
    };
    for (qsizetype i = 0; i < cases.size(); ++i) {
        const Case& c = cases.at(i);
        const CliOutcome outcome = runCli({u"check"_s, u"--file"_s, write(c.bytes)});
        if (c.message.isEmpty()) {
            EXPECT_EQ(outcome.status, 0) << i << outcome.err.toStdString();
        } else {
            EXPECT_EQ(outcome.status, 1) << i;
            EXPECT_EQ(outcome.err, c.message + u'\n') << i;
        }
    }

    const CliOutcome missing =
        runCli({u"check"_s, u"--file"_s, dir.filePath(u"absent.hueshelf"_s)});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.err.startsWith(u"HueShelf couldn't read that file."_s));
    EXPECT_EQ(missing.err.count(u'\n'), 1);
}

TEST_F(CheckFile, LongColorNamesAreCutByCharacters) {
    // Read through the check: the colour names come back in its report.
    const QString longName = u"e\u0301"_s.repeated(120); // 120 characters of two code points
    const QString path =
        write(QJsonDocument(QJsonObject{
                                {u"name"_s, u"Cut"_s},
                                {u"colors"_s, QJsonArray{QJsonObject{{u"hex"_s, u"#FFFFFF"_s},
                                                                     {u"name"_s, longName}}}},
                            })
                  .toJson());
    const CliOutcome outcome = runCli({u"check"_s, u"--file"_s, path, u"--json"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_EQ(outcome.json().object()[u"colors"_s][0][u"name"_s].toString(),
              u"e\u0301"_s.repeated(100));
}

} // namespace
} // namespace hueshelf::testing
