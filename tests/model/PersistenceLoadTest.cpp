#include "PersistenceFixture.h"
#include "model/TemplateLoader.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

enum class FileKind {
    none,
    valid,
    emptyList,
    directory,
    notJson,
    topLevelArray,
    noTemplatesKey,
    templatesAsText,
    badRecord,
    wrongType,
};
enum class SettingsKind { none, valid, undecodable };
enum class Source { file, settings, firstLaunch, emptyList };

struct LoadCase {
    const char* name;
    FileKind file;
    SettingsKind settings;
    Source expected;
    bool fileStampSeen; // the file could be read as an object with a stamp
};

constexpr double kFileStamp = 1'690'000'000'000.5;

class LoadFallbackTest : public PersistenceFixture, public ::testing::WithParamInterface<LoadCase> {
protected:
    QByteArray fileBytes(FileKind kind) const {
        QJsonObject object = preferencesObject(filePalettes, filePalettes[1].id, kFileStamp);
        object.insert(u"someoneElsesKey"_s, u"kept"_s);
        switch (kind) {
        case FileKind::valid:
            break;
        case FileKind::emptyList:
            object.insert(PreferencesKeys::templates, QJsonArray());
            break;
        case FileKind::notJson:
            return "{\"colorTemplates\": [";
        case FileKind::topLevelArray:
            return QJsonDocument(TemplateJson::templatesToJson(filePalettes)).toJson();
        case FileKind::noTemplatesKey:
            object.remove(PreferencesKeys::templates);
            break;
        case FileKind::templatesAsText:
            // An older writer's form: the JSON as a string.
            object.insert(PreferencesKeys::templates,
                          QString::fromUtf8(TemplateJson::encodeTemplates(filePalettes)));
            break;
        case FileKind::badRecord: {
            QJsonArray array = TemplateJson::templatesToJson(filePalettes);
            QJsonObject broken = array[1].toObject();
            broken.remove(u"name"_s);
            array[1] = broken;
            object.insert(PreferencesKeys::templates, array);
            break;
        }
        case FileKind::wrongType: {
            QJsonArray array = TemplateJson::templatesToJson(filePalettes);
            QJsonObject broken = array[0].toObject();
            broken.insert(u"revision"_s, u"2"_s);
            array[0] = broken;
            object.insert(PreferencesKeys::templates, array);
            break;
        }
        case FileKind::none:
        case FileKind::directory:
            return {};
        }
        return QJsonDocument(object).toJson();
    }

    void prepare(const LoadCase& c) {
        if (c.file == FileKind::directory) {
            ASSERT_TRUE(QDir().mkpath(prefsPath()));
        } else if (c.file != FileKind::none) {
            ASSERT_TRUE(writeBytes(prefsPath(), fileBytes(c.file)));
        }
        if (c.settings == SettingsKind::valid)
            SettingsStore::storeTemplates(*settings, settingsBytes,
                                          uuidText(settingsPalettes[1].id), 12.0);
        else if (c.settings == SettingsKind::undecodable)
            SettingsStore::storeTemplates(*settings, "[{\"id\":", uuidText(QUuid()), 12.0);
    }

    const QList<ColorTemplate> filePalettes{makePalette(u"File A"_s, {}),
                                            makePalette(u"File B"_s, {})};
    const QList<ColorTemplate> settingsPalettes{makePalette(u"Kept A"_s, {}),
                                                makePalette(u"Kept B"_s, {})};
    const QByteArray settingsBytes = TemplateJson::encodeTemplates(settingsPalettes);
};

TEST_P(LoadFallbackTest, FallsBackFromTheFileToTheSettingsToTheFirstLaunch) {
    const LoadCase& c = GetParam();
    prepare(c);
    const QByteArray before = readBytes(prefsPath());

    const LoadedTemplates loaded = TemplateLoader::load(prefsPath(), *settings, clock);

    switch (c.expected) {
    case Source::file:
        EXPECT_EQ(namesOf(loaded.templates), (QStringList{u"File A"_s, u"File B"_s}));
        EXPECT_EQ(loaded.activeTemplateId, filePalettes[1].id);
        EXPECT_EQ(loaded.dataHash,
                  PreferencesFile::dataHash(*PreferencesFile::templatesData(readPreferences())));
        break;
    case Source::settings:
        EXPECT_EQ(namesOf(loaded.templates), (QStringList{u"Kept A"_s, u"Kept B"_s}));
        EXPECT_EQ(loaded.activeTemplateId, settingsPalettes[1].id);
        EXPECT_EQ(loaded.dataHash, PreferencesFile::dataHash(settingsBytes));
        break;
    case Source::firstLaunch:
        EXPECT_EQ(namesOf(loaded.templates), (QStringList{u"Starter"_s, u"Example"_s}));
        EXPECT_EQ(loaded.activeTemplateId, loaded.templates.value(0).id);
        EXPECT_EQ(loaded.dataHash, 0);
        break;
    case Source::emptyList:
        EXPECT_TRUE(loaded.templates.isEmpty()) << "an empty list is not a first launch";
        EXPECT_FALSE(loaded.activeTemplateId.isNull());
        EXPECT_EQ(loaded.dataHash, PreferencesFile::dataHash("[]"));
        break;
    }
    EXPECT_EQ(loaded.baselineStamp, c.fileStampSeen ? kFileStamp : 0.0);

    // A load writes nothing: no file appears, none changes, nothing is kept aside.
    EXPECT_EQ(readBytes(prefsPath()), before);
    EXPECT_EQ(QFileInfo::exists(prefsPath()), c.file != FileKind::none);
    EXPECT_TRUE(QDir(locations.prefsDir).entryList({u"*.unreadable-*"_s}).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LoadFallbackTest,
    ::testing::Values(
        LoadCase{"NothingStored", FileKind::none, SettingsKind::none, Source::firstLaunch, false},
        LoadCase{"OnlySettings", FileKind::none, SettingsKind::valid, Source::settings, false},
        LoadCase{"UndecodableSettings", FileKind::none, SettingsKind::undecodable,
                 Source::firstLaunch, false},
        LoadCase{"FileWinsOverSettings", FileKind::valid, SettingsKind::valid, Source::file, true},
        LoadCase{"OnlyFile", FileKind::valid, SettingsKind::none, Source::file, true},
        LoadCase{"EmptyListInFile", FileKind::emptyList, SettingsKind::valid, Source::emptyList,
                 true},
        LoadCase{"FileIsADirectory", FileKind::directory, SettingsKind::valid, Source::settings,
                 false},
        LoadCase{"FileNotJson", FileKind::notJson, SettingsKind::valid, Source::settings, false},
        LoadCase{"FileNotAnObject", FileKind::topLevelArray, SettingsKind::valid, Source::settings,
                 false},
        LoadCase{"FileWithoutTheKey", FileKind::noTemplatesKey, SettingsKind::valid,
                 Source::settings, true},
        LoadCase{"FileWithJsonAsText", FileKind::templatesAsText, SettingsKind::valid,
                 Source::settings, true},
        LoadCase{"FileWithABadRecord", FileKind::badRecord, SettingsKind::valid, Source::settings,
                 true},
        LoadCase{"FileWithAWrongType", FileKind::wrongType, SettingsKind::valid, Source::settings,
                 true},
        LoadCase{"BadFileBadSettings", FileKind::notJson, SettingsKind::undecodable,
                 Source::firstLaunch, false},
        LoadCase{"BadFileNoSettings", FileKind::badRecord, SettingsKind::none, Source::firstLaunch,
                 true}),
    [](const ::testing::TestParamInfo<LoadCase>& param) { return std::string(param.param.name); });

// --- The active id -------------------------------------------------------------------------

struct ActiveCase {
    const char* name;
    // Builds the stored text from the ids of the two palettes; none when nothing is stored.
    std::function<std::optional<QString>(const QUuid& first, const QUuid& second)> stored;
    bool expectSecond;
};

class ActiveIdTest : public ::testing::TestWithParam<ActiveCase> {};

TEST_P(ActiveIdTest, TakesTheStoredIdOnlyWhenItNamesAPaletteOfTheList) {
    const QList<ColorTemplate> list{makePalette(u"One"_s, {}), makePalette(u"Two"_s, {})};
    const QUuid chosen =
        TemplateLoader::chooseActiveId(GetParam().stored(list[0].id, list[1].id), list);
    EXPECT_EQ(chosen, GetParam().expectSecond ? list[1].id : list[0].id);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ActiveIdTest,
    ::testing::Values(
        ActiveCase{"UpperCase", [](const QUuid&, const QUuid& b) { return uuidText(b); }, true},
        ActiveCase{"LowerCase", [](const QUuid&, const QUuid& b) { return uuidText(b).toLower(); },
                   true},
        ActiveCase{"Braced",
                   [](const QUuid&, const QUuid& b) { return QString(u'{' + uuidText(b) + u'}'); },
                   false},
        ActiveCase{"NotInTheList",
                   [](const QUuid&, const QUuid&) { return uuidText(QUuid::createUuid()); }, false},
        ActiveCase{"NotAnId", [](const QUuid&, const QUuid&) { return u"Two"_s; }, false},
        ActiveCase{"Empty", [](const QUuid&, const QUuid&) { return QString(); }, false},
        ActiveCase{"Missing", [](const QUuid&, const QUuid&) { return std::optional<QString>(); },
                   false}),
    [](const ::testing::TestParamInfo<ActiveCase>& param) {
        return std::string(param.param.name);
    });

TEST(ActiveIdTest, AnEmptyListGetsAFreshIdEachTime) {
    const QString stored = uuidText(QUuid::createUuid());
    const QUuid first = TemplateLoader::chooseActiveId(stored, {});
    const QUuid second = TemplateLoader::chooseActiveId(stored, {});
    EXPECT_FALSE(first.isNull());
    EXPECT_NE(uuidText(first), stored);
    EXPECT_NE(first, second);
}

TEST_F(PersistenceFixture, AnActiveIdOfAnotherTypeInTheFileFallsToTheFirstPalette) {
    const QList<ColorTemplate> list{makePalette(u"One"_s, {}), makePalette(u"Two"_s, {})};
    QJsonObject object = preferencesObject(list, list[1].id, 5.0);
    object.insert(PreferencesKeys::activeTemplateId, QJsonArray{uuidText(list[1].id)});
    ASSERT_TRUE(writeFile(object));
    EXPECT_EQ(TemplateLoader::load(prefsPath(), *settings, clock).activeTemplateId, list[0].id);
}

// --- What else the load yields ---------------------------------------------------------------

TEST_F(PersistenceFixture, AStampOfAnotherTypeReadsAsNone) {
    QJsonObject object = preferencesObject({makePalette(u"One"_s, {})}, QUuid(), 0.0);
    object.insert(PreferencesKeys::lastModified, u"1690000000000"_s);
    ASSERT_TRUE(writeFile(object));
    EXPECT_EQ(TemplateLoader::load(prefsPath(), *settings, clock).baselineStamp, 0.0);
}

TEST_F(PersistenceFixture, RecordsWrittenByOthersWithoutStampsOrHashReadAsTheirOwn) {
    const ColorItem color = makeColor(u"Primary"_s, u"#ffa69e"_s);
    QJsonObject record;
    record.insert(u"id"_s, uuidText(QUuid::createUuid()));
    record.insert(u"name"_s, u"Bare"_s);
    record.insert(u"colors"_s, QJsonArray{TemplateJson::colorItemToJson(color)});
    QJsonObject object;
    object.insert(PreferencesKeys::templates, QJsonArray{record});
    ASSERT_TRUE(writeFile(object));

    clock.setNowMs(kStart + 42.0);
    const LoadedTemplates loaded = TemplateLoader::load(prefsPath(), *settings, clock);
    ASSERT_EQ(loaded.templates.size(), 1);
    const ColorTemplate& bare = loaded.templates[0];
    EXPECT_EQ(bare.createdAt, kStart + 42.0);
    EXPECT_EQ(bare.updatedAt, kStart + 42.0);
    EXPECT_EQ(bare.revision, 1);
    EXPECT_EQ(bare.contentHash, computeContentHash(bare.name, bare.colors));
    EXPECT_EQ(bare.colors[0].hex, u"#ffa69e"_s) << "read as found";
    EXPECT_EQ(loaded.activeTemplateId, bare.id);
    EXPECT_EQ(loaded.baselineStamp, 0.0);
}

TEST_F(PersistenceFixture, TheShadowStateComesFromTheSettings) {
    const QUuid id = QUuid::createUuid();
    const QMap<QUuid, ShadowTemplateState> states{{id, {u"0011223344556677"_s, 3, 99.5}}};
    SettingsStore::storeShadowState(*settings, TemplateJson::encodeShadowStates(states));
    EXPECT_EQ(TemplateLoader::load(prefsPath(), *settings, clock).shadowState, states);
    settings->setValue(PreferencesKeys::shadowState, u"{\"broken\""_s);
    EXPECT_TRUE(TemplateLoader::load(prefsPath(), *settings, clock).shadowState.isEmpty());
}

TEST_F(PersistenceFixture, TheLoadAtStartMigratesFirst) {
    const QList<ColorTemplate> old{makePalette(u"From the old name"_s, {})};
    ASSERT_TRUE(writeBytes(locations.oldPreferencesFile,
                           QJsonDocument(preferencesObject(old, old[0].id, 7.0)).toJson()));
    const LoadedTemplates loaded = TemplateLoader::loadAtStart(locations, *settings, clock);
    EXPECT_EQ(namesOf(loaded.templates), QStringList{u"From the old name"_s});
    EXPECT_EQ(loaded.baselineStamp, 7.0);
    EXPECT_TRUE(settings->value(PreferencesKeys::didMigrate).toBool());
}

} // namespace
} // namespace hueshelf::testing
