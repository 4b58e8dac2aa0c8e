#include "StoreHome.h"
#include "color/ColorUtils.h"

#include <QTemporaryDir>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// The report's contents are compared with an independent model for lists of codes
// (tests/reference); these cases hold the ways in that it doesn't use: stored palettes, files,
// the text for people and the refusals.
class CheckCommand : public StoreHome {
protected:
    // Worked out by hand: Ochre reads poorly on Ivory, the only light colour; the Slates differ
    // by 2 in blue, near-duplicates.
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

TEST_F(CheckCommand, AStoredPaletteIsReportedUnderItsNameWithItsLocksAndIds) {
    seedBoth();
    const CliOutcome outcome = runCli({u"check"_s, u"Brand"_s, u"--json"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_TRUE(outcome.err.isEmpty());
    const QJsonObject report = outcome.json().object();
    EXPECT_EQ(report.value(u"name"_s).toString(), u"Brand"_s);
    EXPECT_EQ(report.value(u"summary"_s).toString(), u"2 things to fix"_s);
    EXPECT_EQ(
        report.value(u"colors"_s).toArray().at(2).toObject(),
        (QJsonObject{{u"name"_s, u"Ink"_s}, {u"hex"_s, u"#111111"_s}, {u"isLocked"_s, true}}));
    QStringList ids;
    for (const QJsonValue& issue : report.value(u"issues"_s).toArray())
        ids << issue[u"id"_s].toString();
    EXPECT_EQ(ids, (QStringList{u"read-"_s + uuidText(brand.colors.at(1).id),
                                u"dupe-"_s + uuidText(brand.colors.at(3).id) + u'-' +
                                    uuidText(brand.colors.at(4).id)}));
}

TEST_F(CheckCommand, StrictFailsOnlyWhenThereAreIssues) {
    seedBoth();
    const std::pair<QStringList, int> cases[] = {
        {{u"check"_s, u"Brand"_s}, 0},
        {{u"check"_s, u"Brand"_s, u"--strict"_s}, 1},
        {{u"check"_s, uuidText(brand.id), u"--strict"_s, u"--json"_s}, 1},
        {{u"check"_s, u"--strict"_s}, 0}, // the active palette, Calm, has nothing to fix
        {{u"check"_s, u"Calm"_s, u"--strict"_s, u"--json"_s}, 0},
    };
    for (const auto& [arguments, status] : cases) {
        const CliOutcome outcome = runCli(arguments);
        EXPECT_EQ(outcome.status, status) << arguments.join(u' ').toStdString();
        EXPECT_TRUE(outcome.err.isEmpty()) << outcome.err.toStdString();
    }
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

// Unreadable codes, an unknown palette (exit 1), or more than one source (a usage error).
TEST_F(CheckCommand, RefusesInputItCannotUse) {
    seedBoth();
    const std::pair<QStringList, QString> cases[] = {
        {{u"check"_s, u"--colors"_s, u"#FFFFFF"_s, u"nope"_s, u"#12"_s},
         u"Not a color code: \"nope\", \"#12\"\n"_s},
        {{u"check"_s, u"No such"_s}, u"No palette is named \"No such\" or has that id\n"_s},
        {{u"check"_s, u"Brand"_s, u"--colors"_s, u"#FFFFFF"_s}, QString()},
        {{u"check"_s, u"--file"_s, u"x.hueshelf"_s, u"--colors"_s, u"#FFFFFF"_s}, QString()},
    };
    for (const auto& [arguments, err] : cases) {
        SCOPED_TRACE(arguments.join(u' ').toStdString());
        const CliOutcome outcome = runCli(arguments);
        EXPECT_TRUE(outcome.out.isEmpty());
        if (err.isEmpty()) {
            EXPECT_EQ(outcome.status, 2);
            EXPECT_TRUE(outcome.err.contains(u"Usage: hueshelf check"_s));
        } else {
            EXPECT_EQ(outcome.status, 1);
            EXPECT_EQ(outcome.err, err);
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

// The file reader's refusals are checked through import against the model; here only that the
// check passes them on, at the size limit and for a file that can't be read at all.
TEST_F(CheckFile, RefusesFilesWithTheReadersMessages) {
    QByteArray exactlyFull = R"({"name": "X", "colors": [{"hex": "#123456"}]})";
    exactlyFull += QByteArray(1048576 - exactlyFull.size(), ' ');
    const std::pair<QByteArray, QString> cases[] = {
        {exactlyFull, QString()},
        {exactlyFull + ' ', u"File is too large. Maximum size is 1 MB."_s},
        {"[1, 2]", u"That isn't a HueShelf palette file."_s},
    };
    for (const auto& [bytes, message] : cases) {
        const CliOutcome outcome = runCli({u"check"_s, u"--file"_s, write(bytes)});
        EXPECT_EQ(outcome.status, message.isEmpty() ? 0 : 1) << outcome.err.toStdString();
        if (!message.isEmpty()) {
            EXPECT_EQ(outcome.err, message + u'\n');
        }
    }

    const CliOutcome missing =
        runCli({u"check"_s, u"--file"_s, dir.filePath(u"absent.hueshelf"_s)});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.err.startsWith(u"HueShelf couldn't read that file."_s));
    EXPECT_EQ(missing.err.count(u'\n'), 1);
}

} // namespace
} // namespace hueshelf::testing
