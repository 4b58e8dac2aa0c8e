#include "model/PreferencesWriter.h"

#include "PersistenceFixture.h"
#include "model/TemplateLoader.h"

#include <QScopeGuard>
#include <QSemaphore>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// A store started the way the application starts it, over a temporary home, with the real
// writer and its thread.
class WriterTest : public PersistenceFixture {
protected:
    void startStore() {
        const LoadedTemplates loaded = TemplateLoader::loadAtStart(locations, *settings, clock);
        store = std::make_unique<ColorStorage>(clock, scheduler, loaded);
        writer = std::make_unique<PreferencesWriter>(prefsPath(), *settings);
        store->setWriter(writer.get());
        QObject::connect(store.get(), &ColorStorage::templatesWritten, [this] { ++pushes; });
    }

    // Another process of the product writes the file.
    void otherProcessWrites(const QList<ColorTemplate>& templates, double stamp,
                            const QJsonObject& extra = {}) {
        QJsonObject object = readPreferences();
        const QJsonObject theirs = preferencesObject(templates, templates.value(0).id, stamp);
        for (auto it = theirs.begin(); it != theirs.end(); ++it)
            object.insert(it.key(), it.value());
        for (auto it = extra.begin(); it != extra.end(); ++it)
            object.insert(it.key(), it.value());
        ASSERT_TRUE(writeFile(object));
    }

    void saveAndDrain() {
        store->saveTemplates();
        writer->drain();
    }

    double fileStamp() const {
        return readPreferences().value(PreferencesKeys::lastModified).toDouble();
    }
    QStringList unreadableCopies() const {
        return QDir(locations.prefsDir)
            .entryList({QFileInfo(prefsPath()).fileName() + u".unreadable-*"_s}, QDir::Files,
                       QDir::Name);
    }

    static ColorTemplate palette(const QString& name) {
        return makePalette(name, {makeColor(name + u" 1"_s, u"#102030"_s),
                                  makeColor(name + u" 2"_s, u"#405060"_s)});
    }

    // The writer goes first: its last completions still find the store.
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<PreferencesWriter> writer;
    int pushes = 0;
};

TEST_F(WriterTest, TheFirstLaunchPalettesReachTheFileWithTheFirstSave) {
    startStore();
    EXPECT_FALSE(QFileInfo::exists(prefsPath()));
    saveAndDrain();
    EXPECT_EQ(namesOf(templatesInFile()), (QStringList{u"Starter"_s, u"Example"_s}));
    EXPECT_EQ(readPreferences().value(PreferencesKeys::activeTemplateId).toString(),
              uuidText(store->templates()[0].id));
    EXPECT_EQ(fileStamp(), kStart);
    EXPECT_EQ(readPreferences().value(PreferencesKeys::schemaVersion).toInt(), 2);
    EXPECT_EQ(store->savingCount(), 0);
    EXPECT_EQ(pushes, 1);
    EXPECT_EQ(store->baselineStamp(), kStart);
    EXPECT_EQ(store->lastKnownDataHash(),
              PreferencesFile::dataHash(*PreferencesFile::templatesData(readPreferences())));
    EXPECT_FALSE(settings->contains(PreferencesKeys::templates)) << "no fallback needed";
}

TEST_F(WriterTest, AKeyOfAnotherProcessSurvivesEverySave) {
    const ColorTemplate mine = palette(u"Mine"_s);
    otherProcessWrites({mine}, 1000.0,
                       {{u"helperVersion"_s, u"3.1"_s}, {u"bridge"_s, QJsonObject{{u"on"_s, 1}}}});
    startStore();
    for (int i = 0; i < 3; ++i) {
        clock.advanceMs(1000.0);
        store->renameActiveTemplate(u"Mine "_s + QString::number(i));
    }
    store->saveTemplatesWithoutStamping();
    writer->drain();
    const QJsonObject file = readPreferences();
    EXPECT_EQ(file.value(u"helperVersion"_s).toString(), u"3.1"_s);
    EXPECT_EQ(file.value(u"bridge"_s).toObject().value(u"on"_s).toInt(), 1);
    EXPECT_EQ(namesOf(templatesInFile()), QStringList{u"Mine 2"_s});
}

TEST_F(WriterTest, UnchangedPalettesKeepTheirStampsWhileTheFileStampMoves) {
    const ColorTemplate first = palette(u"First"_s);
    const ColorTemplate second = palette(u"Second"_s);
    otherProcessWrites({first, second}, 1000.0);
    startStore();

    clock.advanceMs(5000.0);
    store->toggleActiveTemplateLock(); // saved, yet no content change
    writer->drain();
    QList<ColorTemplate> file = templatesInFile();
    ASSERT_EQ(file.size(), 2);
    EXPECT_TRUE(file[0].isLocked);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(file[i].revision, 1);
        EXPECT_EQ(file[i].updatedAt, (i == 0 ? first : second).updatedAt);
    }
    EXPECT_EQ(fileStamp(), kStart + 5000.0);

    clock.advanceMs(5000.0);
    store->editTemplate(second.id, [](ColorTemplate& p) { p.colors[1].hex = u"#FFFFFF"_s; });
    saveAndDrain();
    file = templatesInFile();
    EXPECT_EQ(file[0].revision, 1);
    EXPECT_EQ(file[0].updatedAt, first.updatedAt);
    EXPECT_EQ(file[1].revision, 2);
    EXPECT_EQ(file[1].updatedAt, kStart + 10'000.0);
    EXPECT_EQ(file[1].contentHash, computeContentHash(file[1].name, file[1].colors));
    EXPECT_EQ(fileStamp(), kStart + 10'000.0);
}

// --- A write that fails ----------------------------------------------------------------------

struct BlockedCase {
    const char* name;
    bool parentIsAFile; // else the file's own path is a directory
};

class FailedWriteTest : public WriterTest, public ::testing::WithParamInterface<BlockedCase> {
protected:
    void block() {
        if (GetParam().parentIsAFile) {
            ASSERT_TRUE(writeBytes(home.path() + u"/not-a-dir"_s, "x"));
            locations.preferencesFile = home.path() + u"/not-a-dir/io.hueshelf.Hueshelf.json"_s;
        } else {
            ASSERT_TRUE(QDir().mkpath(prefsPath()));
        }
    }
};

TEST_P(FailedWriteTest, FallsBackToTheSettingsAndTheNextStartReadsThem) {
    block();
    startStore();
    clock.advanceMs(77.0);
    store->addBlankTemplate();
    writer->drain();

    const QUuid active = store->activeTemplateId();
    const QList<ColorTemplate> inMemory = store->templates();
    EXPECT_EQ(inMemory.size(), 3) << "the in-memory list stays the truth";
    EXPECT_EQ(pushes, 1);
    EXPECT_EQ(store->savingCount(), 0);
    EXPECT_EQ(store->baselineStamp(), kStart + 77.0);

    // Synchronised at once: another QSettings on the same file sees it without waiting.
    const auto onDisk = settingsOnDisk();
    const auto json = SettingsStore::templatesData(*onDisk);
    ASSERT_TRUE(json);
    EXPECT_EQ(store->lastKnownDataHash(), PreferencesFile::dataHash(*json));
    EXPECT_EQ(SettingsStore::activeTemplateIdText(*onDisk), uuidText(active));
    EXPECT_EQ(onDisk->value(PreferencesKeys::lastModified).toDouble(), kStart + 77.0);

    const LoadedTemplates next = TemplateLoader::load(prefsPath(), *onDisk, clock);
    EXPECT_EQ(namesOf(next.templates), namesOf(inMemory));
    EXPECT_EQ(next.activeTemplateId, active);
    EXPECT_EQ(next.templates[2].revision, inMemory[2].revision);
}

INSTANTIATE_TEST_SUITE_P(Cases, FailedWriteTest,
                         ::testing::Values(BlockedCase{"PathIsADirectory", false},
                                           BlockedCase{"ParentIsAFile", true}),
                         [](const ::testing::TestParamInfo<BlockedCase>& param) {
                             return std::string(param.param.name);
                         });

TEST_F(WriterTest, AfterAFallbackAReadableFileWithTheKeyStillWinsEvenIfOlder) {
    const ColorTemplate fallback = palette(u"Fallback"_s);
    SettingsStore::storeTemplates(*settings, TemplateJson::encodeTemplates({fallback}),
                                  uuidText(fallback.id), kStart + 99.0);

    otherProcessWrites({palette(u"In the file"_s)}, 1.0);
    EXPECT_EQ(namesOf(TemplateLoader::load(prefsPath(), *settings, clock).templates),
              QStringList{u"In the file"_s});

    QJsonObject withoutKey = readPreferences();
    withoutKey.remove(PreferencesKeys::templates);
    ASSERT_TRUE(writeFile(withoutKey));
    EXPECT_EQ(namesOf(TemplateLoader::load(prefsPath(), *settings, clock).templates),
              QStringList{u"Fallback"_s});
}

// --- Another writer between the load and the save -------------------------------------------

TEST_F(WriterTest, ASaveMergesWhatAnotherProcessWroteSinceTheLoad) {
    ColorTemplate shared = palette(u"Shared"_s);
    const ColorTemplate mine = palette(u"Mine"_s);
    otherProcessWrites({shared, mine}, kStart - 10'000.0);
    startStore();
    ASSERT_EQ(store->baselineStamp(), kStart - 10'000.0);

    // The other process renames Shared and adds a palette, with a later stamp.
    ColorTemplate renamed = shared;
    renamed.name = u"Shared, renamed there"_s;
    renamed.contentHash = computeContentHash(renamed.name, renamed.colors);
    renamed.updatedAt = kStart - 5000.0;
    renamed.revision = 2;
    const ColorTemplate added = palette(u"Added there"_s);
    otherProcessWrites({renamed, mine, added}, kStart - 5000.0, {{u"theirKey"_s, true}});

    // Meanwhile this store edits its own palette.
    clock.advanceMs(1000.0);
    store->editTemplate(mine.id, [](ColorTemplate& p) { p.colors[0].hex = u"#000000"_s; });
    int changes = 0;
    QObject::connect(store.get(), &ColorStorage::templatesChanged, [&] { ++changes; });
    saveAndDrain();

    const QStringList merged{u"Shared, renamed there"_s, u"Mine"_s, u"Added there"_s};
    EXPECT_EQ(namesOf(templatesInFile()), merged);
    EXPECT_EQ(templatesInFile()[1].colors[0].hex, u"#000000"_s);
    EXPECT_TRUE(readPreferences().value(u"theirKey"_s).toBool());
    EXPECT_EQ(fileStamp(), kStart + 1000.0);
    EXPECT_EQ(namesOf(store->templates()), merged) << "the merge is published";
    EXPECT_EQ(changes, 2) << "once stamped, once merged";
    EXPECT_EQ(namesOf(store->baselineTemplates()), merged);
    EXPECT_EQ(store->baselineStamp(), kStart + 1000.0);
    EXPECT_EQ(store->lastKnownDataHash(),
              PreferencesFile::dataHash(*PreferencesFile::templatesData(readPreferences())));
}

// Two saves in quick succession: the second is stamped before the first one's completion has
// moved the baseline, so it finds the first write in the file as a newer stamp. An edit undone
// in between must stay undone, and a palette another process slipped in before the first write
// must survive both.
TEST_F(WriterTest, ASecondSaveBeforeTheFirstCompletesKeepsItsOwnEdits) {
    const ColorTemplate shared = palette(u"Shared"_s);
    otherProcessWrites({shared}, kStart - 10'000.0);
    startStore();
    const ColorTemplate added = palette(u"Added there"_s);
    otherProcessWrites({shared, added}, kStart - 5000.0);

    const QUuid colorId = shared.colors[0].id;
    clock.advanceMs(1000.0);
    ASSERT_TRUE(store->setColorLocked(colorId, true));
    clock.advanceMs(1000.0);
    ASSERT_TRUE(store->setColorLocked(colorId, false));
    writer->drain();

    const QList<ColorTemplate> inFile = templatesInFile();
    ASSERT_EQ(namesOf(inFile), (QStringList{u"Shared"_s, u"Added there"_s}));
    EXPECT_FALSE(inFile[0].colors[0].isLocked) << "the unlock was lost to the earlier write";
    ASSERT_EQ(namesOf(store->templates()), namesOf(inFile));
    EXPECT_FALSE(store->templates()[0].colors[0].isLocked);
    EXPECT_EQ(store->savingCount(), 0);
}

TEST_F(WriterTest, AnOpenEditorHoldsTheMergeBackButTheFileAndBaselineTakeIt) {
    otherProcessWrites({palette(u"Mine"_s)}, 1000.0);
    startStore();
    otherProcessWrites({store->templates()[0], palette(u"Theirs"_s)}, 2000.0);
    store->setEditorPopoverOpen(true);
    saveAndDrain();
    EXPECT_EQ(namesOf(templatesInFile()), (QStringList{u"Mine"_s, u"Theirs"_s}));
    EXPECT_EQ(namesOf(store->templates()), QStringList{u"Mine"_s});
    EXPECT_EQ(namesOf(store->baselineTemplates()), (QStringList{u"Mine"_s, u"Theirs"_s}));
}

TEST_F(WriterTest, AnUndecodableListAbandonsTheMergeAndIsKeptAside) {
    otherProcessWrites({palette(u"Mine"_s)}, 1000.0);
    startStore();
    QJsonObject file = readPreferences();
    file.insert(PreferencesKeys::templates, QJsonArray{QJsonObject{{u"id"_s, u"nope"_s}}});
    file.insert(PreferencesKeys::lastModified, 2000.0);
    ASSERT_TRUE(writeFile(file));
    const QByteArray theirBytes = readBytes(prefsPath());

    saveAndDrain();
    EXPECT_EQ(namesOf(templatesInFile()), QStringList{u"Mine"_s});
    ASSERT_EQ(unreadableCopies().size(), 1);
    EXPECT_EQ(readBytes(QDir(locations.prefsDir).filePath(unreadableCopies()[0])), theirBytes);
}

// --- The plain variant -----------------------------------------------------------------------

TEST_F(WriterTest, ThePlainVariantWritesTheListAsItStandsWithoutMergeOrBaseline) {
    const ColorTemplate mine = palette(u"Mine"_s);
    otherProcessWrites({mine}, 1000.0);
    startStore();
    otherProcessWrites({mine, palette(u"Theirs"_s)}, 2000.0);
    // As sync leaves a palette: content changed, hash as the folder said.
    store->editTemplate(mine.id, [](ColorTemplate& p) {
        p.name = u"From sync"_s;
        p.contentHash = u"00000000000000aa"_s;
    });
    clock.advanceMs(300.0);
    store->saveTemplatesWithoutStamping();
    writer->drain();

    ASSERT_EQ(templatesInFile().size(), 1) << "no merge";
    EXPECT_EQ(templatesInFile()[0].name, u"From sync"_s);
    EXPECT_EQ(templatesInFile()[0].contentHash, u"00000000000000aa"_s) << "no stamping";
    EXPECT_EQ(templatesInFile()[0].revision, 1);
    EXPECT_EQ(fileStamp(), kStart + 300.0);
    EXPECT_EQ(store->lastKnownDataHash(),
              PreferencesFile::dataHash(*PreferencesFile::templatesData(readPreferences())));
    EXPECT_EQ(store->baselineStamp(), 1000.0);
    EXPECT_EQ(namesOf(store->baselineTemplates()), QStringList{u"Mine"_s});
    EXPECT_EQ(pushes, 0);
    EXPECT_EQ(store->savingCount(), 0);
}

TEST_F(WriterTest, APlainWriteThatFailsHasNoFallbackAndKeepsTheHash) {
    ASSERT_TRUE(QDir().mkpath(prefsPath()));
    startStore();
    store->setLastKnownDataHash(1234);
    store->saveTemplatesWithoutStamping();
    writer->drain();
    EXPECT_EQ(store->lastKnownDataHash(), 1234);
    EXPECT_FALSE(settingsOnDisk()->contains(PreferencesKeys::templates));
    EXPECT_EQ(store->savingCount(), 0);
}

// --- Queue order and the count of pending saves ---------------------------------------------

TEST_F(WriterTest, ThePendingCountStaysAboveZeroUntilAWriteQueuedBehindHasRun) {
    startStore();
    QSemaphore entered;
    QSemaphore release;
    bool released = false;
    // A failed expectation must not leave the ioQueue held, or the teardown's drain would wait
    // for ever.
    const auto unblock = qScopeGuard([&] {
        if (!released)
            release.release();
    });
    store->renameActiveTemplate(u"One"_s);
    // Holds the ioQueue between the two writes.
    writer->post([&] {
        entered.release();
        release.acquire();
    });
    // The second save's baseline predates the first write, so it merges with it; its later
    // stamp is what lets its own edit win.
    clock.advanceMs(1.0);
    store->renameActiveTemplate(u"Two"_s);
    entered.acquire();
    EXPECT_EQ(store->savingCount(), 2);

    // The first write is done; its completion arrives while the second still waits.
    EXPECT_TRUE(spinUntil([&] { return pushes == 1; }));
    EXPECT_EQ(namesOf(templatesInFile()).value(0), u"One"_s);
    EXPECT_EQ(store->savingCount(), 2) << "the first save ends only behind the second write";

    released = true;
    release.release();
    ASSERT_TRUE(spinUntil([&] { return store->savingCount() == 0; }));
    EXPECT_EQ(pushes, 2);
    EXPECT_EQ(namesOf(templatesInFile()).value(0), u"Two"_s);
}

TEST_F(WriterTest, CompletionsArriveThroughTheEventLoopInOrder) {
    startStore();
    QStringList seen;
    QObject::connect(store.get(), &ColorStorage::templatesWritten,
                     [&] { seen.append(store->baselineTemplates()[0].name); });
    for (const QString& name : {u"a"_s, u"b"_s, u"c"_s}) {
        clock.advanceMs(1.0);
        store->renameActiveTemplate(name);
    }
    ASSERT_TRUE(spinUntil([&] { return store->savingCount() == 0; }));
    EXPECT_EQ(seen, (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(store->baselineStamp(), kStart + 3.0);
}

TEST_F(WriterTest, NoPushIsAskedForWhileASyncPassRuns) {
    startStore();
    store->setSyncing(true);
    saveAndDrain();
    EXPECT_EQ(pushes, 0);
    EXPECT_EQ(store->baselineStamp(), kStart);
    store->setSyncing(false);
    saveAndDrain();
    EXPECT_EQ(pushes, 1);
}

// --- Undecodable files are kept aside, once per content ------------------------------------

TEST_F(WriterTest, AnUnreadableFileIsKeptBeforeTheFirstWriteReplacesIt) {
    const QByteArray garbage = "{\"colorTemplates\": [ truncated by a crash";
    ASSERT_TRUE(writeBytes(prefsPath(), garbage));
    startStore();
    EXPECT_TRUE(unreadableCopies().isEmpty()) << "the load keeps its hands off";

    saveAndDrain();
    ASSERT_EQ(unreadableCopies(), QStringList{u"io.hueshelf.Hueshelf.json.unreadable-"_s +
                                              QString::number(qint64(kStart))});
    EXPECT_EQ(readBytes(QDir(locations.prefsDir).filePath(unreadableCopies()[0])), garbage);
    EXPECT_EQ(namesOf(templatesInFile()), (QStringList{u"Starter"_s, u"Example"_s}));

    // The file is readable now: no more copies.
    clock.advanceMs(10.0);
    saveAndDrain();
    EXPECT_EQ(unreadableCopies().size(), 1);

    // The same broken content again is already kept.
    ASSERT_TRUE(writeBytes(prefsPath(), garbage));
    clock.advanceMs(10.0);
    saveAndDrain();
    EXPECT_EQ(unreadableCopies().size(), 1);

    // Different broken content is kept as well.
    ASSERT_TRUE(writeBytes(prefsPath(), "not json at all"));
    clock.advanceMs(10.0);
    saveAndDrain();
    ASSERT_EQ(unreadableCopies().size(), 2);
    EXPECT_EQ(readBytes(QDir(locations.prefsDir).filePath(unreadableCopies()[1])),
              "not json at all");
}

struct KeepCase {
    const char* name;
    QByteArray content;
    bool kept;
};

class KeepAsideTest : public WriterTest, public ::testing::WithParamInterface<KeepCase> {};

TEST_P(KeepAsideTest, OnlyContentThatCannotBeReadIsKept) {
    ASSERT_TRUE(writeBytes(prefsPath(), GetParam().content));
    startStore();
    saveAndDrain();
    EXPECT_EQ(unreadableCopies().size(), GetParam().kept ? 1 : 0);
    EXPECT_EQ(fileStamp(), kStart) << "the write went ahead";
    EXPECT_EQ(PreferencesFile::templatesData(readPreferences()),
              TemplateJson::encodeTemplates(store->templates()));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, KeepAsideTest,
    ::testing::Values(KeepCase{"ReadableWithoutPalettes", R"({"other":1})", false},
                      KeepCase{"ReadableWithAnEmptyList", R"({"colorTemplates":[]})", false},
                      KeepCase{"EmptyFile", "", false}, KeepCase{"OnlyBlanks", " \n", false},
                      KeepCase{"NotJson", "colorTemplates=[]", true},
                      KeepCase{"NotAnObject", "[]", true},
                      KeepCase{"ListAsText", R"({"colorTemplates":"[]"})", true},
                      KeepCase{"ABrokenRecord",
                               R"({"colorTemplates":[{"id":"x","name":"n","colors":[]}]})", true}),
    [](const ::testing::TestParamInfo<KeepCase>& param) { return std::string(param.param.name); });

TEST_F(WriterTest, AReadableObjectWithABrokenListKeepsItsOtherKeysToo) {
    ASSERT_TRUE(writeBytes(prefsPath(), R"({"colorTemplates":{"v":3},"helper":"x"})"));
    startStore();
    saveAndDrain();
    EXPECT_EQ(unreadableCopies().size(), 1);
    EXPECT_EQ(readPreferences().value(u"helper"_s).toString(), u"x"_s);
}

// --- Shadow state ----------------------------------------------------------------------------

TEST_F(WriterTest, TheShadowStateGoesThroughTheSettingsAndComesBackAtTheNextLoad) {
    startStore();
    const QUuid id = store->templates()[0].id;
    store->setShadowState(id, {u"0123456789abcdef"_s, 5, kStart});
    store->saveShadowState();
    settings->sync();
    const auto onDisk = settingsOnDisk();
    const QMap<QUuid, ShadowTemplateState> expected{{id, {u"0123456789abcdef"_s, 5, kStart}}};
    EXPECT_EQ(TemplateLoader::load(prefsPath(), *onDisk, clock).shadowState, expected);
}

} // namespace
} // namespace hueshelf::testing
