#include "StoreHome.h"

#include <QDir>
#include <QRegularExpression>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

ColorTemplate palette(const QString& name, const QList<ColorItem>& colors, double updatedAt,
                      qint64 revision = 1) {
    ColorTemplate made = makePalette(name, colors);
    made.updatedAt = updatedAt;
    made.revision = revision;
    return made;
}

class StoreCommands : public StoreHome {
protected:
    // Deliberately not in name order, the active one not first.
    const ColorTemplate zeta =
        palette(u"Zeta"_s, {makeColor(u"Ink"_s, u"#111111"_s)}, 1'700'000'000'123.5, 7);
    const ColorTemplate alpha =
        palette(u"Alpha"_s, {makeColor(u"One"_s, u"#E07A5F"_s), makeColor(u"Two"_s, u"#3D405B"_s)},
                1'650'000'000'000.25);
    const ColorTemplate mid = [] {
        ColorTemplate made = palette(u"Mid tones"_s,
                                     {makeColor(u"A"_s, u"#777777"_s),
                                      makeColor(u"B"_s, u"#888888"_s, true, true, u"Greys"_s),
                                      makeColor(u"C"_s, u"#999999"_s, false, true)},
                                     1'600'000'000'000.0, 3);
        made.isLocked = true;
        made.updatedByDeviceId = u"device-7"_s;
        return made;
    }();

    void seedThree() { seed({zeta, alpha, mid}, uuidText(alpha.id)); }
};

// The list's JSON is compared with an independent model (tests/reference); the text is not.
TEST_F(StoreCommands, PalettesListsTheGalleryInOrderWithTheActiveOneMarked) {
    seedThree();
    const CliOutcome text = runCli({u"palettes"_s});
    ASSERT_EQ(text.status, 0);
    EXPECT_TRUE(text.err.isEmpty());
    const QStringList lines = text.out.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines.at(0).startsWith(u"   Zeta "_s)) << lines.at(0).toStdString();
    EXPECT_TRUE(lines.at(1).startsWith(u"*  Alpha "_s)) << lines.at(1).toStdString();
    EXPECT_TRUE(lines.at(2).contains(u"3 colors  locked  "_s + uuidText(mid.id)));
    EXPECT_TRUE(lines.at(0).contains(u" 1 color "_s));
    // Aligned: every id starts in the same column.
    const qsizetype idColumn = lines.at(0).indexOf(uuidText(zeta.id));
    EXPECT_EQ(lines.at(1).indexOf(uuidText(alpha.id)), idColumn);
    EXPECT_EQ(lines.at(2).indexOf(uuidText(mid.id)), idColumn);
}

// A name is looked up before an id, even when the name is some palette's id.
TEST_F(StoreCommands, ShowFindsByExactNameThenById) {
    const ColorTemplate sky = makePalette(u"Sky"_s, {makeColor(u"Blue"_s, u"#3366FF"_s)});
    const ColorTemplate twin = makePalette(uuidText(sky.id), {makeColor(u"Red"_s, u"#FF3333"_s)});
    seed({sky, twin}, uuidText(twin.id));
    const std::pair<QString, const ColorTemplate*> cases[] = {
        {sky.name, &sky},
        {uuidText(sky.id), &twin},
        {uuidText(sky.id).toLower(), &sky},
        {uuidText(twin.id), &twin},
        {u"sky"_s, nullptr},
        {u"Sky "_s, nullptr},
        {u'{' + uuidText(twin.id) + u'}', nullptr},
        {uuidText(QUuid::createUuid()), nullptr},
    };
    for (const auto& [argument, expected] : cases) {
        SCOPED_TRACE(argument.toStdString());
        const CliOutcome outcome = runCli({u"show"_s, argument, u"--json"_s});
        if (!expected) {
            EXPECT_EQ(outcome.status, 1);
            EXPECT_TRUE(outcome.out.isEmpty());
            EXPECT_EQ(outcome.err.count(u'\n'), 1) << outcome.err.toStdString();
            EXPECT_TRUE(outcome.err.startsWith(u"No palette is named \""_s));
            continue;
        }
        ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
        EXPECT_EQ(outcome.json().object().value(u"id"_s).toString(), uuidText(expected->id));
    }
}

TEST_F(StoreCommands, ShowPrintsTheStoredRecordOfTheNamedOrActivePalette) {
    seedThree();
    const QJsonArray stored = fileObject().value(PreferencesKeys::templates).toArray();

    const CliOutcome named = runCli({u"show"_s, u"Mid tones"_s, u"--json"_s});
    ASSERT_EQ(named.status, 0) << named.err.toStdString();
    EXPECT_EQ(named.json().object(), stored.at(2).toObject());
    EXPECT_EQ(named.json().object().value(u"updatedByDeviceId"_s).toString(), u"device-7"_s);

    const CliOutcome active = runCli({u"show"_s, u"--json"_s});
    ASSERT_EQ(active.status, 0);
    EXPECT_EQ(active.json().object(), stored.at(1).toObject());
}

TEST_F(StoreCommands, ShowForPeopleListsTheColorsUnderTheirGroups) {
    seedThree();
    const CliOutcome outcome = runCli({u"show"_s, u"Mid tones"_s});
    ASSERT_EQ(outcome.status, 0);
    const QStringList lines = outcome.out.split(u'\n');
    EXPECT_EQ(lines.at(0), u"Mid tones  (locked)"_s);
    EXPECT_TRUE(outcome.out.contains(u"id        "_s + uuidText(mid.id) + u'\n'));
    EXPECT_TRUE(outcome.out.contains(u"revision  3\n"_s));
    EXPECT_TRUE(outcome.out.contains(u"updated   2020-09-13T12:26:40Z\n"_s));
    const qsizetype colors = lines.indexOf(u"  #777777  A"_s);
    ASSERT_GE(colors, 0) << outcome.out.toStdString();
    EXPECT_EQ(lines.mid(colors, 5),
              (QStringList{u"  #777777  A"_s, u"  -- Greys"_s, u"  #888888  B  locked"_s, u"  --"_s,
                           u"  #999999  C"_s}));
    EXPECT_EQ(runCli({u"show"_s}).out.section(u'\n', 0, 0), u"Alpha  (active)"_s);
}

TEST_F(StoreCommands, UnknownPaletteExitsOneAndWritesNothing) {
    seedThree();
    const QByteArray before = fileBytes();
    for (const QString& command : {u"show"_s, u"use"_s}) {
        const CliOutcome outcome = runCli({command, u"Nowhere"_s});
        EXPECT_EQ(outcome.status, 1) << command.toStdString();
        EXPECT_TRUE(outcome.out.isEmpty());
        EXPECT_EQ(outcome.err, u"No palette is named \"Nowhere\" or has that id\n"_s);
    }
    EXPECT_EQ(fileBytes(), before);
}

TEST_F(StoreCommands, UseWritesTheActiveIdAndKeepsEverythingElse) {
    seedThree();
    const QJsonValue records = fileObject().value(PreferencesKeys::templates);

    const CliOutcome outcome = runCli({u"use"_s, uuidText(mid.id).toLower(), u"--json"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_EQ(outcome.json().object().value(u"id"_s).toString(), uuidText(mid.id));
    EXPECT_TRUE(outcome.json().object().value(u"isActive"_s).toBool());

    const QJsonObject file = fileObject();
    EXPECT_EQ(file.value(PreferencesKeys::activeTemplateId).toString(), uuidText(mid.id));
    EXPECT_EQ(file.value(kForeignKey).toObject().value(u"keep"_s), QJsonValue(true));
    EXPECT_GT(file.value(PreferencesKeys::lastModified).toDouble(), kSeedStamp);
    EXPECT_EQ(file.value(PreferencesKeys::schemaVersion).toInt(), 2);
    // A change of the selection alone stamps no palette.
    EXPECT_EQ(file.value(PreferencesKeys::templates), records);
}

// Nothing is written when the file already says so; where the palette is active only because
// the file's own id was missing or unusable, the command writes it down.
TEST_F(StoreCommands, UseOfTheActivePaletteWritesOnlyWhatTheFileLacks) {
    const ColorTemplate first = makePalette(u"First"_s, {makeColor(u"A"_s, u"#101010"_s)});
    const ColorTemplate second = makePalette(u"Second"_s, {makeColor(u"B"_s, u"#202020"_s)});
    const std::pair<QJsonValue, bool> cases[] = {
        {QJsonValue(uuidText(first.id)), false},
        {QJsonValue(uuidText(first.id).toLower()), true},
        {QJsonValue(QJsonValue::Undefined), true},
        {QJsonValue(uuidText(QUuid::createUuid())), true},
        {QJsonValue(42), true},
    };
    for (const auto& [storedActive, writes] : cases) {
        SCOPED_TRACE(QJsonDocument(QJsonArray{storedActive}).toJson().toStdString());
        seed({first, second}, storedActive);
        const QByteArray before = fileBytes();
        const CliOutcome outcome = runCli({u"use"_s, u"First"_s});
        ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
        if (writes) {
            EXPECT_EQ(outcome.out, u"Active palette: First\n"_s);
            EXPECT_EQ(fileObject().value(PreferencesKeys::activeTemplateId).toString(),
                      uuidText(first.id));
        } else {
            EXPECT_EQ(outcome.out, u"Already the active palette: First\n"_s);
            EXPECT_EQ(fileBytes(), before);
        }
    }
}

// Where only an older build's file exists, a look reads it without copying it into place;
// the first command that writes does the migration.
TEST_F(StoreCommands, ALookReadsTheOldFileWithoutMigratingIt) {
    seedThree();
    const QString oldPath = home.paths().configDir + u"/hueshelf.Hueshelf.json";
    ASSERT_TRUE(QFile::rename(prefsPath(), oldPath));

    const CliOutcome listed = runCli({u"palettes"_s, u"--json"_s});
    ASSERT_EQ(listed.status, 0);
    EXPECT_EQ(listed.json().array().size(), 3);
    EXPECT_EQ(filesInHome(), QStringList{u".config/hueshelf/hueshelf.Hueshelf.json"_s});

    ASSERT_EQ(runCli({u"use"_s, u"Zeta"_s}).status, 0);
    EXPECT_TRUE(QFile::exists(oldPath)) << "the old file stays for a downgrade";
    EXPECT_EQ(namesOf(fileTemplates()), (QStringList{u"Zeta"_s, u"Alpha"_s, u"Mid tones"_s}));
    EXPECT_EQ(fileObject().value(kForeignKey).toObject().value(u"keep"_s), QJsonValue(true));
}

TEST_F(StoreCommands, UsageErrors) {
    const QList<QStringList> cases{{u"use"_s},
                                   {u"use"_s, u"A"_s, u"B"_s},
                                   {u"show"_s, u"A"_s, u"B"_s},
                                   {u"palettes"_s, u"A"_s},
                                   {u"palettes"_s, u"--strict"_s}};
    for (const QStringList& arguments : cases) {
        const CliOutcome outcome = runCli(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments.join(u' ').toStdString();
        EXPECT_TRUE(outcome.err.contains(u"Usage: hueshelf "_s + arguments.constFirst()));
    }
    EXPECT_TRUE(filesInHome().isEmpty());
}

} // namespace
} // namespace hueshelf::testing
