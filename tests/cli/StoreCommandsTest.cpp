#include "StoreHome.h"

#include <QDir>
#include <QRegularExpression>

#include <functional>

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

TEST_F(StoreCommands, PalettesListsTheGalleryInOrderWithTheActiveOneMarked) {
    seedThree();
    const CliOutcome outcome = runCli({u"palettes"_s, u"--json"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_TRUE(outcome.err.isEmpty());

    const QJsonArray array = outcome.json().array();
    ASSERT_EQ(array.size(), 3);
    const QList<ColorTemplate> expected{zeta, alpha, mid};
    for (qsizetype i = 0; i < expected.size(); ++i) {
        const ColorTemplate& p = expected.at(i);
        const QJsonObject entry = array.at(i).toObject();
        EXPECT_EQ(entry.keys(), (QStringList{u"colorCount"_s, u"id"_s, u"isActive"_s, u"isLocked"_s,
                                             u"name"_s, u"revision"_s, u"updatedAt"_s}));
        EXPECT_EQ(entry.value(u"id"_s).toString(), uuidText(p.id));
        EXPECT_EQ(entry.value(u"name"_s).toString(), p.name);
        EXPECT_EQ(entry.value(u"colorCount"_s).toInteger(), p.colors.size());
        EXPECT_EQ(entry.value(u"isActive"_s).toBool(), p.id == alpha.id) << i;
        EXPECT_EQ(entry.value(u"isLocked"_s).toBool(), p.isLocked);
        EXPECT_EQ(entry.value(u"revision"_s).toInteger(), p.revision);
        EXPECT_EQ(entry.value(u"updatedAt"_s).toDouble(), p.updatedAt);
    }

    const CliOutcome text = runCli({u"palettes"_s});
    ASSERT_EQ(text.status, 0);
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
    EXPECT_FALSE(text.out.contains(u'{'));
}

struct LookupCase {
    std::string label;
    std::function<QString(const ColorTemplate& sky, const ColorTemplate& twin)> argument;
    int expected; // 0 the sky palette, 1 its twin (named like the sky's id), -1 none
};

class PaletteArgument : public StoreHome, public ::testing::WithParamInterface<LookupCase> {};

// A name is looked up before an id, even when the name is some palette's id.
TEST_P(PaletteArgument, ShowFindsByExactNameThenById) {
    const ColorTemplate sky = makePalette(u"Sky"_s, {makeColor(u"Blue"_s, u"#3366FF"_s)});
    const ColorTemplate twin = makePalette(uuidText(sky.id), {makeColor(u"Red"_s, u"#FF3333"_s)});
    seed({sky, twin}, uuidText(twin.id));

    const CliOutcome outcome = runCli({u"show"_s, GetParam().argument(sky, twin), u"--json"_s});
    if (GetParam().expected < 0) {
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(outcome.out.isEmpty());
        EXPECT_EQ(outcome.err.count(u'\n'), 1) << outcome.err.toStdString();
        EXPECT_TRUE(outcome.err.startsWith(u"No palette is named \""_s));
        return;
    }
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    const ColorTemplate& expected = GetParam().expected == 0 ? sky : twin;
    EXPECT_EQ(outcome.json().object().value(u"id"_s).toString(), uuidText(expected.id));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PaletteArgument,
    ::testing::Values(
        LookupCase{"ExactName", [](auto& sky, auto&) { return sky.name; }, 0},
        LookupCase{"NameLikeAnotherId", [](auto& sky, auto&) { return uuidText(sky.id); }, 1},
        LookupCase{"IdInLowerCase", [](auto& sky, auto&) { return uuidText(sky.id).toLower(); }, 0},
        LookupCase{"OwnId", [](auto&, auto& twin) { return uuidText(twin.id); }, 1},
        LookupCase{"NameInOtherCase", [](auto&, auto&) { return u"sky"_s; }, -1},
        LookupCase{"NameWithBlank", [](auto&, auto&) { return u"Sky "_s; }, -1},
        LookupCase{"BracedId",
                   [](auto&, auto& twin) -> QString { return u'{' + uuidText(twin.id) + u'}'; },
                   -1},
        LookupCase{"UnknownId", [](auto&, auto&) { return uuidText(QUuid::createUuid()); }, -1}),
    [](const auto& row) { return row.param.label; });

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
    const QList<ColorTemplate> before = fileTemplates();

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
    const QList<ColorTemplate> after = fileTemplates();
    ASSERT_EQ(after.size(), before.size());
    for (qsizetype i = 0; i < after.size(); ++i) {
        EXPECT_EQ(after.at(i), before.at(i));
        EXPECT_EQ(after.at(i).revision, before.at(i).revision);
        EXPECT_EQ(after.at(i).updatedAt, before.at(i).updatedAt);
        EXPECT_EQ(after.at(i).isLocked, before.at(i).isLocked);
    }

    const CliOutcome listed = runCli({u"palettes"_s, u"--json"_s});
    EXPECT_TRUE(listed.json().array().at(2).toObject().value(u"isActive"_s).toBool());
    EXPECT_FALSE(listed.json().array().at(1).toObject().value(u"isActive"_s).toBool());
}

struct AlreadyActiveCase {
    std::string label;
    std::function<QJsonValue(const ColorTemplate& first)> storedActive;
    bool writes;
};

class UseOfTheActivePalette : public StoreHome,
                              public ::testing::WithParamInterface<AlreadyActiveCase> {};

// Nothing is written when the file already says so; where the palette is active only because
// the file's own id was missing or unusable, the command writes it down.
TEST_P(UseOfTheActivePalette, SucceedsAndWritesOnlyWhatTheFileLacks) {
    const ColorTemplate first = makePalette(u"First"_s, {makeColor(u"A"_s, u"#101010"_s)});
    const ColorTemplate second = makePalette(u"Second"_s, {makeColor(u"B"_s, u"#202020"_s)});
    seed({first, second}, GetParam().storedActive(first));
    const QByteArray before = fileBytes();

    const CliOutcome outcome = runCli({u"use"_s, u"First"_s});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    if (GetParam().writes) {
        EXPECT_EQ(outcome.out, u"Active palette: First\n"_s);
        EXPECT_EQ(fileObject().value(PreferencesKeys::activeTemplateId).toString(),
                  uuidText(first.id));
    } else {
        EXPECT_EQ(outcome.out, u"Already the active palette: First\n"_s);
        EXPECT_EQ(fileBytes(), before);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UseOfTheActivePalette,
    ::testing::Values(
        AlreadyActiveCase{"StoredAsActive", [](auto& p) { return QJsonValue(uuidText(p.id)); },
                          false},
        AlreadyActiveCase{"StoredInLowerCase",
                          [](auto& p) { return QJsonValue(uuidText(p.id).toLower()); }, true},
        AlreadyActiveCase{"Missing", [](auto&) { return QJsonValue(QJsonValue::Undefined); }, true},
        AlreadyActiveCase{"PointsNowhere",
                          [](auto&) { return QJsonValue(uuidText(QUuid::createUuid())); }, true},
        AlreadyActiveCase{"NotText", [](auto&) { return QJsonValue(42); }, true}),
    [](const auto& row) { return row.param.label; });

TEST_F(StoreCommands, FirstLaunchShowsTheTwoPalettesAndWritesNothingUntilUse) {
    for (const QStringList& arguments :
         {QStringList{u"palettes"_s, u"--json"_s}, QStringList{u"palettes"_s},
          QStringList{u"show"_s}, QStringList{u"show"_s, u"Example"_s, u"--json"_s}}) {
        const CliOutcome outcome = runCli(arguments);
        EXPECT_EQ(outcome.status, 0) << arguments.join(u' ').toStdString();
    }
    const QJsonArray listed = runCli({u"palettes"_s, u"--json"_s}).json().array();
    ASSERT_EQ(listed.size(), 2);
    EXPECT_EQ(listed.at(0).toObject().value(u"name"_s).toString(), u"Starter"_s);
    EXPECT_TRUE(listed.at(0).toObject().value(u"isActive"_s).toBool());
    EXPECT_EQ(listed.at(1).toObject().value(u"name"_s).toString(), u"Example"_s);
    EXPECT_FALSE(listed.at(1).toObject().value(u"isActive"_s).toBool());
    EXPECT_TRUE(filesInHome().isEmpty()) << filesInHome().join(u", "_s).toStdString();

    // The first command that writes brings them into the file, with its choice.
    const CliOutcome use = runCli({u"use"_s, u"Example"_s});
    ASSERT_EQ(use.status, 0) << use.err.toStdString();
    EXPECT_EQ(namesOf(fileTemplates()), (QStringList{u"Starter"_s, u"Example"_s}));
    EXPECT_EQ(fileObject().value(PreferencesKeys::activeTemplateId).toString(),
              uuidText(fileTemplates().at(1).id));
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
