#include "model/ExternalChangeMonitor.h"

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ModelTestSupport.h"
#include "TempHome.h"
#include "model/ColorStorage.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/TemplateJson.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// Test names from the rows' own labels.
template <class Case>
std::string labelOf(const ::testing::TestParamInfo<Case>& row) {
    return row.param.label;
}

namespace Keys = PreferencesKeys;

// The real directory watch delivers through the event loop, which needs an application.
void ensureApplication() {
    if (QCoreApplication::instance())
        return;
    static int argc = 1;
    static char name[] = "hueshelf_model_tests";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
}

QList<QUuid> idsOf(const QList<ColorTemplate>& templates) {
    QList<QUuid> ids;
    for (const ColorTemplate& palette : templates)
        ids.append(palette.id);
    return ids;
}

ColorTemplate palette(const QString& name, const QString& hex) {
    return makePalette(name, {makeColor(u"First"_s, hex), makeColor(u"Second"_s, u"#F4E8C1"_s)});
}

// A content edit as the other process's save would leave it: rehashed and stamped.
ColorTemplate renamed(ColorTemplate palette, const QString& name, double updatedAt) {
    palette.name = name;
    palette.contentHash = computeContentHash(palette.name, palette.colors);
    palette.updatedAt = updatedAt;
    palette.revision += 1;
    return palette;
}

constexpr double kStart = 1'700'000'000'000.0;
// The stamp of the file as this store loaded it, a minute before the run.
constexpr double kLoadedStamp = kStart - 60'000.0;

class ExternalChanges : public ::testing::Test {
protected:
    void SetUp() override {
        ensureApplication();
        ASSERT_TRUE(home.isValid());
        prefsDir = home.paths().configDir;
        prefsPath = prefsDir + u"/io.hueshelf.Hueshelf.json"_s;
    }

    // The store as the load leaves it: the file holds `templates`, stamped kLoadedStamp.
    void startStore(const QList<ColorTemplate>& templates,
                    std::optional<QUuid> active = std::nullopt) {
        const QUuid activeId =
            active.value_or(templates.isEmpty() ? QUuid() : templates.constFirst().id);
        writeOtherProcessFile(templates, kLoadedStamp, uuidText(activeId));
        LoadedTemplates load;
        load.templates = templates;
        load.activeTemplateId = activeId;
        load.baselineStamp = kLoadedStamp;
        load.dataHash = fileDataHash();
        store = std::make_unique<ColorStorage>(clock, scheduler, load);
        store->setWriter(&writer);
        monitor =
            std::make_unique<ExternalChangeMonitor>(*store, clock, scheduler, prefsPath, prefsDir);
    }

    // The whole file as another process of the product writes it.
    void writeOtherProcessFile(const QList<ColorTemplate>& templates, double stamp,
                               const QJsonValue& active = QJsonValue::Undefined) {
        QJsonObject object;
        object.insert(Keys::templates, TemplateJson::templatesToJson(templates));
        if (!active.isUndefined())
            object.insert(Keys::activeTemplateId, active);
        object.insert(Keys::lastModified, stamp);
        object.insert(Keys::schemaVersion, 2);
        writeRaw(object);
    }

    void writeRaw(const QJsonObject& object) {
        ASSERT_TRUE(PreferencesFile::write(prefsPath, object));
    }

    qint64 fileDataHash() const {
        const std::optional<QJsonObject> file = PreferencesFile::read(prefsPath);
        if (!file)
            return 0;
        return PreferencesFile::dataHash(PreferencesFile::templatesData(*file).value());
    }

    // Advances the manual clock in 0.1 s steps, as the start-up poll ticks.
    void advanceTicks(int ticks) {
        for (int i = 0; i < ticks; ++i)
            scheduler.advance(ExternalChangeMonitor::startupPollIntervalSeconds);
    }

    std::size_t saves() const { return writer.requests.size(); }

    TempHome home;
    QString prefsDir;
    QString prefsPath;
    ManualClock clock{kStart};
    ManualScheduler scheduler{clock};
    FakeTemplateWriter writer;
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<ExternalChangeMonitor> monitor;
};

// --- Ways to a check ---------------------------------------------------------------------------

TEST_F(ExternalChanges, ABurstOfFileEventsGivesOneCheckAfterTheLast) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    startStore({mine});
    const ColorTemplate theirs = palette(u"Theirs"_s, u"#81B29A"_s);

    monitor->preferencesDirectoryChanged();
    writeOtherProcessFile({mine, theirs}, kStart);
    scheduler.advance(0.1);
    monitor->preferencesDirectoryChanged();
    scheduler.advance(0.1);
    monitor->preferencesDirectoryChanged();
    EXPECT_EQ(scheduler.pendingCount(), 1) << "each event replaces the pending check";

    // The first two events' checks would have been due by now.
    scheduler.advance(0.249);
    EXPECT_EQ(store->templates().size(), 1);
    EXPECT_TRUE(monitor->isCheckPending());

    scheduler.advance(0.001);
    EXPECT_EQ(idsOf(store->templates()), (QList<QUuid>{mine.id, theirs.id}));
    EXPECT_FALSE(monitor->isCheckPending());
    EXPECT_EQ(scheduler.pendingCount(), 0);
}

TEST_F(ExternalChanges, StartupPollChecksAtOnceThenThirtyTicksThenEnds) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    const ColorTemplate first = palette(u"First"_s, u"#111111"_s);
    const ColorTemplate second = palette(u"Second"_s, u"#222222"_s);
    const ColorTemplate late = palette(u"Late"_s, u"#333333"_s);
    startStore({mine});

    // Written before the store looked: the check at once takes it in.
    writeOtherProcessFile({mine, first}, kStart - 1.0);
    monitor->start();
    EXPECT_EQ(store->templates().size(), 2);
    EXPECT_TRUE(monitor->isStartupPollRunning());
    EXPECT_FALSE(monitor->initialSyncComplete());

    advanceTicks(29);
    EXPECT_TRUE(monitor->isStartupPollRunning());
    EXPECT_FALSE(monitor->initialSyncComplete());

    // The thirtieth tick still checks, then the poll is over.
    writeOtherProcessFile({mine, first, second}, clock.nowMs());
    advanceTicks(1);
    EXPECT_EQ(idsOf(store->templates()), (QList<QUuid>{mine.id, first.id, second.id}));
    EXPECT_TRUE(monitor->initialSyncComplete());
    EXPECT_FALSE(monitor->isStartupPollRunning());
    EXPECT_TRUE(monitor->isWatchingDirectory());
    EXPECT_FALSE(monitor->isSlowPollRunning());

    // Nothing polls any more; only a file event would lead to a check.
    writeOtherProcessFile({mine, first, second, late}, clock.nowMs());
    scheduler.advance(60.0);
    EXPECT_EQ(store->templates().size(), 3);
    EXPECT_EQ(scheduler.pendingCount(), 0);
}

TEST_F(ExternalChanges, EachStartupTickChecks) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    startStore({mine});
    monitor->start();
    advanceTicks(11);
    const ColorTemplate theirs = palette(u"Theirs"_s, u"#81B29A"_s);
    writeOtherProcessFile({mine, theirs}, clock.nowMs());
    EXPECT_EQ(store->templates().size(), 1);
    advanceTicks(1);
    EXPECT_EQ(store->templates().size(), 2);
}

TEST_F(ExternalChanges, TheShellCanEndTheStartupPollEarly) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    startStore({mine});
    monitor->start();
    advanceTicks(5);
    monitor->endStartupPoll();
    EXPECT_TRUE(monitor->initialSyncComplete());
    EXPECT_FALSE(monitor->isStartupPollRunning());

    const ColorTemplate theirs = palette(u"Theirs"_s, u"#81B29A"_s);
    writeOtherProcessFile({mine, theirs}, clock.nowMs());
    advanceTicks(30);
    EXPECT_EQ(store->templates().size(), 1);

    // Once the poll has ended, starting again neither checks at once nor polls.
    monitor->start();
    EXPECT_EQ(store->templates().size(), 1);
    EXPECT_FALSE(monitor->isStartupPollRunning());
}

TEST_F(ExternalChanges, WithoutTheDirectoryTheSlowPollTakesOver) {
    prefsDir = home.path() + u"/.config/not-yet"_s;
    prefsPath = prefsDir + u"/io.hueshelf.Hueshelf.json"_s;
    LoadedTemplates load;
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    load.templates = {mine};
    load.activeTemplateId = mine.id;
    store = std::make_unique<ColorStorage>(clock, scheduler, load);
    store->setWriter(&writer);
    monitor =
        std::make_unique<ExternalChangeMonitor>(*store, clock, scheduler, prefsPath, prefsDir);

    monitor->start();
    monitor->endStartupPoll();
    EXPECT_FALSE(monitor->isWatchingDirectory());
    EXPECT_TRUE(monitor->isSlowPollRunning());

    // The other process creates the directory and the file.
    const ColorTemplate theirs = palette(u"Theirs"_s, u"#81B29A"_s);
    writeOtherProcessFile({mine, theirs}, kStart);
    scheduler.advance(4.9);
    EXPECT_EQ(store->templates().size(), 1);
    scheduler.advance(0.1);
    EXPECT_EQ(idsOf(store->templates()), (QList<QUuid>{mine.id, theirs.id}));

    // It keeps polling.
    const ColorTemplate more = palette(u"More"_s, u"#123456"_s);
    writeOtherProcessFile({mine, theirs, more}, clock.nowMs());
    scheduler.advance(5.0);
    EXPECT_EQ(store->templates().size(), 3);

    // Starting again adds no second poll; stopping ends it.
    monitor->start();
    EXPECT_EQ(scheduler.pendingCount(), 1);
    monitor->stop();
    EXPECT_EQ(scheduler.pendingCount(), 0);
}

// The real watch on the directory: an atomic replacement of the file is an event, and the
// check follows once the debounce has passed.
TEST_F(ExternalChanges, TheDirectoryWatchSeesAnAtomicReplacement) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    startStore({mine});
    monitor->start();
    monitor->endStartupPoll();
    ASSERT_TRUE(monitor->isWatchingDirectory());

    const ColorTemplate theirs = palette(u"Theirs"_s, u"#81B29A"_s);
    writeOtherProcessFile({mine, theirs}, kStart);
    const QDeadlineTimer deadline(10'000);
    while (!monitor->isCheckPending() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    ASSERT_TRUE(monitor->isCheckPending()) << "the watch reported nothing";
    EXPECT_EQ(store->templates().size(), 1) << "nothing before the debounce";

    scheduler.advance(ExternalChangeMonitor::externalChangeDebounceSeconds);
    EXPECT_EQ(idsOf(store->templates()), (QList<QUuid>{mine.id, theirs.id}));
}

// --- Holding back while the editor is open -----------------------------------------------------

TEST_F(ExternalChanges, APaletteAddedWhileTheEditorIsOpenAppearsWhenItCloses) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    startStore({mine});
    store->setEditorPopoverOpen(true);

    const ColorTemplate theirs = palette(u"Theirs"_s, u"#81B29A"_s);
    writeOtherProcessFile({mine, theirs}, kStart);
    monitor->checkForExternalChanges();
    EXPECT_EQ(store->templates().size(), 1);
    EXPECT_TRUE(monitor->externalChangeHeldBack());
    EXPECT_EQ(store->baselineStamp(), kLoadedStamp);

    // Written again while still open: the file is re-read on closing, so the newest wins.
    const ColorTemplate newest = palette(u"Newest"_s, u"#3B8077"_s);
    writeOtherProcessFile({mine, theirs, newest}, kStart + 10.0);
    monitor->checkForExternalChanges();
    EXPECT_EQ(store->templates().size(), 1);

    store->setEditorPopoverOpen(false);
    EXPECT_FALSE(monitor->externalChangeHeldBack());
    EXPECT_EQ(idsOf(store->templates()), (QList<QUuid>{mine.id, theirs.id, newest.id}));
    EXPECT_EQ(store->baselineStamp(), kStart + 10.0);
}

TEST_F(ExternalChanges, ClosingTheEditorChecksOnlyIfSomethingWasHeldBack) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    startStore({mine});
    store->setEditorPopoverOpen(true);
    writeOtherProcessFile({mine, palette(u"Theirs"_s, u"#81B29A"_s)}, kStart);
    // No check ran while it was open.
    store->setEditorPopoverOpen(false);
    EXPECT_EQ(store->templates().size(), 1);
    EXPECT_FALSE(monitor->externalChangeHeldBack());
}

// --- What is not a change ---------------------------------------------------------------------

TEST_F(ExternalChanges, ThisProgramsOwnBytesAreNotAChange) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    startStore({mine});

    // As after this program's own write: newer stamp, but the bytes' hash is the known one.
    const ColorTemplate written = palette(u"Written"_s, u"#81B29A"_s);
    writeOtherProcessFile({written}, kStart);
    store->setLastKnownDataHash(fileDataHash());
    monitor->checkForExternalChanges();
    EXPECT_EQ(idsOf(store->templates()), QList<QUuid>{mine.id});
    EXPECT_EQ(store->baselineStamp(), kLoadedStamp);

    // Different bytes under a newer stamp are someone else's.
    const ColorTemplate theirs = palette(u"Theirs"_s, u"#3B8077"_s);
    writeOtherProcessFile({written, theirs}, kStart + 1.0);
    monitor->checkForExternalChanges();
    EXPECT_EQ(store->templates().size(), 3);
}

struct StandBackCase {
    const char* label;
    std::function<void(ColorStorage&)> busy;
    std::function<void(ColorStorage&, FakeTemplateWriter&)> idle;
    // The reload asks only about pending saves (and the editor), not about sync.
    bool reloadStandsBack;
};

class ExternalChangesStandBack : public ExternalChanges,
                                 public ::testing::WithParamInterface<StandBackCase> {};

TEST_P(ExternalChangesStandBack, NoCheckWhileBusyThenItRuns) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    startStore({mine});
    GetParam().busy(*store);

    const ColorTemplate theirs = palette(u"Theirs"_s, u"#81B29A"_s);
    // Later than anything the busy step can have stamped.
    writeOtherProcessFile({mine, theirs}, kStart + 60'000.0);
    monitor->checkForExternalChanges();
    if (GetParam().reloadStandsBack)
        monitor->reloadFromDisk();
    EXPECT_EQ(store->templates().size(), 1);
    EXPECT_FALSE(monitor->externalChangeHeldBack());

    GetParam().idle(*store, writer);
    monitor->checkForExternalChanges();
    EXPECT_EQ(idsOf(store->templates()), (QList<QUuid>{mine.id, theirs.id}));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ExternalChangesStandBack,
    ::testing::Values(
        StandBackCase{"SavePending", [](ColorStorage& store) { store.saveTemplates(); },
                      [](ColorStorage& store, FakeTemplateWriter& writer) {
                          ASSERT_EQ(store.savingCount(), 1);
                          writer.completeNextAsRequested();
                          ASSERT_EQ(store.savingCount(), 0);
                      },
                      true},
        StandBackCase{"Syncing", [](ColorStorage& store) { store.setSyncing(true); },
                      [](ColorStorage& store, FakeTemplateWriter&) { store.setSyncing(false); },
                      false}),
    labelOf<StandBackCase>);

// A stamp that did not move past the baseline is no change, whatever the bytes say.
struct StampCase {
    const char* label;
    std::function<void(QJsonObject&)> stamp;
};

class ExternalChangesStamp : public ExternalChanges,
                             public ::testing::WithParamInterface<StampCase> {};

TEST_P(ExternalChangesStamp, IsIgnored) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    startStore({mine});
    const ColorTemplate theirs = palette(u"Theirs"_s, u"#81B29A"_s);
    QJsonObject object;
    object.insert(Keys::templates, TemplateJson::templatesToJson({theirs}));
    object.insert(Keys::schemaVersion, 2);
    GetParam().stamp(object);
    writeRaw(object);

    monitor->checkForExternalChanges();
    EXPECT_EQ(idsOf(store->templates()), QList<QUuid>{mine.id});
    EXPECT_EQ(saves(), 0u);

    // The same bytes under a stamp that did move are a change.
    object.insert(Keys::lastModified, kStart);
    writeRaw(object);
    monitor->checkForExternalChanges();
    EXPECT_EQ(idsOf(store->templates()), (QList<QUuid>{mine.id, theirs.id}));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ExternalChangesStamp,
    ::testing::Values(
        StampCase{"Equal", [](QJsonObject& o) { o.insert(Keys::lastModified, kLoadedStamp); }},
        StampCase{"WentBackwards",
                  [](QJsonObject& o) { o.insert(Keys::lastModified, kLoadedStamp - 1.0); }},
        StampCase{"Missing", [](QJsonObject&) {}},
        StampCase{"Text",
                  [](QJsonObject& o) { o.insert(Keys::lastModified, u"9999999999999"_s); }}),
    labelOf<StampCase>);

// Files another process left half-made or in a form this program doesn't know: no change, no
// save, and a later good file is still taken.
struct BadFileCase {
    const char* label;
    std::function<void(const QString& path)> write;
};

class ExternalChangesBadFile : public ExternalChanges,
                               public ::testing::WithParamInterface<BadFileCase> {};

TEST_P(ExternalChangesBadFile, IsNoChange) {
    const ColorTemplate mine = palette(u"Mine"_s, u"#E07A5F"_s);
    startStore({mine});
    QFile::remove(prefsPath);
    GetParam().write(prefsPath);

    monitor->checkForExternalChanges();
    monitor->reloadFromDisk();
    EXPECT_EQ(idsOf(store->templates()), QList<QUuid>{mine.id});
    EXPECT_EQ(store->baselineStamp(), kLoadedStamp);
    EXPECT_EQ(saves(), 0u);

    const ColorTemplate theirs = palette(u"Theirs"_s, u"#81B29A"_s);
    writeOtherProcessFile({mine, theirs}, kStart);
    monitor->checkForExternalChanges();
    EXPECT_EQ(store->templates().size(), 2);
}

void writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QJsonObject stampedWith(const QJsonValue& templates) {
    QJsonObject object;
    object.insert(Keys::templates, templates);
    object.insert(Keys::lastModified, 1'800'000'000'000.0);
    return object;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ExternalChangesBadFile,
    ::testing::Values(
        BadFileCase{"Missing", [](const QString&) {}},
        BadFileCase{"HalfWritten",
                    [](const QString& path) { writeBytes(path, R"({"colorTemplates": [)"); }},
        BadFileCase{"NotAnObject", [](const QString& path) { writeBytes(path, "[1, 2]"); }},
        BadFileCase{"NoPalettes",
                    [](const QString& path) {
                        QJsonObject object = stampedWith(QJsonValue());
                        object.remove(Keys::templates);
                        PreferencesFile::write(path, object);
                    }},
        BadFileCase{
            "PalettesAsText",
            [](const QString& path) { PreferencesFile::write(path, stampedWith(u"[]"_s)); }},
        BadFileCase{"APaletteWithoutId",
                    [](const QString& path) {
                        QJsonObject record =
                            TemplateJson::templateToJson(palette(u"Broken"_s, u"#000000"_s));
                        record.remove(u"id"_s);
                        PreferencesFile::write(path, stampedWith(QJsonArray{record}));
                    }}),
    labelOf<BadFileCase>);

// --- Applying a merge ---------------------------------------------------------------------------

TEST_F(ExternalChanges, APaletteDeletedElsewhereComesBackAndIsWritten) {
    const ColorTemplate kept = palette(u"Kept"_s, u"#E07A5F"_s);
    const ColorTemplate deletedThere = palette(u"Deleted there"_s, u"#81B29A"_s);
    startStore({kept, deletedThere});

    writeOtherProcessFile({kept}, kStart, uuidText(kept.id));
    const qint64 theirHash = fileDataHash();
    monitor->checkForExternalChanges();

    const QList<QUuid> both{kept.id, deletedThere.id};
    EXPECT_EQ(idsOf(store->templates()), both);
    EXPECT_EQ(idsOf(store->baselineTemplates()), both);
    EXPECT_EQ(store->baselineStamp(), kStart);
    EXPECT_EQ(store->lastKnownDataHash(), theirHash);
    ASSERT_EQ(saves(), 1u) << "the file lacks a palette, so the merge is written back";
    EXPECT_EQ(idsOf(writer.requests.at(0).templates), both);
}

TEST_F(ExternalChanges, WhatTheFileAlreadyHoldsIsNotWrittenBack) {
    const ColorTemplate base = palette(u"Shared"_s, u"#E07A5F"_s);
    const ColorTemplate other = palette(u"Other"_s, u"#81B29A"_s);
    startStore({base, other});
    // The baseline is the loaded list; here the same edit has been made and saved meanwhile.
    const ColorTemplate editedHere = renamed(base, u"Same edit"_s, kStart - 500.0);
    store->setTemplates({editedHere, other});

    const ColorTemplate editedThere = renamed(base, u"Same edit"_s, kStart - 100.0);
    const ColorTemplate added = palette(u"Added there"_s, u"#3B8077"_s);
    writeOtherProcessFile({editedThere, other, added}, kStart);
    monitor->checkForExternalChanges();

    EXPECT_EQ(idsOf(store->templates()), (QList<QUuid>{base.id, other.id, added.id}));
    EXPECT_EQ(store->templates().at(0).name, u"Same edit"_s);
    EXPECT_EQ(saves(), 0u) << "both sides agree, so the exchange ends here";
    EXPECT_EQ(store->baselineStamp(), kStart);
}

TEST_F(ExternalChanges, APaletteDeletedHereStaysDeleted) {
    const ColorTemplate kept = palette(u"Kept"_s, u"#E07A5F"_s);
    const ColorTemplate deletedHere = palette(u"Deleted here"_s, u"#81B29A"_s);
    startStore({kept, deletedHere});
    store->setTemplates({kept});

    // The other process still has it (its write began before this side's delete reached the
    // file) and added one of its own.
    const ColorTemplate added = palette(u"Added there"_s, u"#3B8077"_s);
    writeOtherProcessFile({kept, deletedHere, added}, kStart);
    monitor->checkForExternalChanges();
    const QList<QUuid> expected{kept.id, added.id};
    EXPECT_EQ(idsOf(store->templates()), expected);
    ASSERT_EQ(saves(), 1u);
    EXPECT_EQ(idsOf(writer.requests.at(0).templates), expected);
}

// Which palette is active after a merge.
struct ActiveCase {
    const char* label;
    // 0 and 1: the store's palettes; 2: one that only the other process has; -1: an id that
    // is nowhere.
    int storeActive;
    std::optional<QJsonValue> fileActive; // the value itself, built by the test
    int fileActiveIndex;                  // used when fileActive is unset
    QList<int> fileHolds;
    int expected;
};

class ExternalChangesActive : public ExternalChanges,
                              public ::testing::WithParamInterface<ActiveCase> {};

TEST_P(ExternalChangesActive, ChoosesTheActivePalette) {
    const ActiveCase& row = GetParam();
    const QList<ColorTemplate> pool{palette(u"Zero"_s, u"#000000"_s),
                                    palette(u"One"_s, u"#111111"_s),
                                    palette(u"Two"_s, u"#222222"_s)};
    const QUuid nowhere = QUuid::createUuid();
    const auto idAt = [&](int index) { return index < 0 ? nowhere : pool.at(index).id; };

    startStore({pool.at(0), pool.at(1)}, idAt(row.storeActive));
    QList<ColorTemplate> fileList;
    for (int index : row.fileHolds)
        fileList.append(pool.at(index));
    writeOtherProcessFile(fileList, kStart,
                          row.fileActive.value_or(QJsonValue(uuidText(idAt(row.fileActiveIndex)))));
    monitor->checkForExternalChanges();
    ASSERT_EQ(store->baselineStamp(), kStart) << "the check did not apply the file";
    EXPECT_EQ(store->activeTemplateId(), idAt(row.expected));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ExternalChangesActive,
    ::testing::Values(
        ActiveCase{"CurrentStaysWhenTheFileNamesAnother", 1, std::nullopt, 2, {0, 1, 2}, 1},
        // Deleted elsewhere, but the merge keeps it, and so it stays active.
        ActiveCase{"DeletedElsewhereStaysActive", 1, std::nullopt, 0, {0}, 1},
        ActiveCase{"CurrentPointsNowhereTheFilesIsTaken", -1, std::nullopt, 2, {0, 1, 2}, 2},
        ActiveCase{"FilesPointsNowhereTheFirstIsTaken", -1, std::nullopt, -1, {0, 1, 2}, 0},
        ActiveCase{"FilesIsNotAnIdTheFirstIsTaken", -1, QJsonValue(u"palette two"_s), 0, {1, 0}, 0},
        ActiveCase{"FilesIsANumberTheFirstIsTaken", -1, QJsonValue(2), 0, {0, 1, 2}, 0}),
    labelOf<ActiveCase>);

TEST_F(ExternalChanges, AnEmptyMergeLeavesTheActiveIdAlone) {
    const ColorTemplate only = palette(u"Only"_s, u"#E07A5F"_s);
    startStore({only});
    store->setTemplates({});
    // The other process edited the palette that was deleted here: it stays deleted, and
    // nothing is left to be active.
    writeOtherProcessFile({renamed(only, u"Edited there"_s, kStart)}, kStart,
                          uuidText(QUuid::createUuid()));
    monitor->checkForExternalChanges();
    EXPECT_TRUE(store->templates().isEmpty());
    EXPECT_EQ(store->activeTemplateId(), only.id);
    EXPECT_EQ(store->baselineStamp(), kStart);
    ASSERT_EQ(saves(), 1u) << "the file still holds the deleted palette";
    EXPECT_TRUE(writer.requests.at(0).templates.isEmpty());
}

// --- Reloading without a merge ------------------------------------------------------------------

TEST_F(ExternalChanges, ReloadReplacesInsteadOfMerging) {
    const ColorTemplate kept = palette(u"Kept"_s, u"#E07A5F"_s);
    const ColorTemplate gone = palette(u"Gone"_s, u"#81B29A"_s);
    startStore({kept, gone});
    // Even an older stamp is taken: the reload asks nothing of stamps and hashes.
    writeOtherProcessFile({kept}, kLoadedStamp - 5.0);
    monitor->reloadFromDisk();
    EXPECT_EQ(idsOf(store->templates()), QList<QUuid>{kept.id});
    EXPECT_EQ(idsOf(store->baselineTemplates()), QList<QUuid>{kept.id});
    EXPECT_EQ(store->baselineStamp(), kLoadedStamp - 5.0);
    EXPECT_EQ(store->lastKnownDataHash(), fileDataHash());
    EXPECT_EQ(saves(), 0u);
}

TEST_F(ExternalChanges, ReloadKeepsTheBaselineStampWhenTheFileHasNone) {
    const ColorTemplate kept = palette(u"Kept"_s, u"#E07A5F"_s);
    startStore({kept});
    QJsonObject object;
    object.insert(Keys::templates, TemplateJson::templatesToJson({kept}));
    object.insert(Keys::lastModified, u"yesterday"_s);
    writeRaw(object);
    monitor->reloadFromDisk();
    EXPECT_EQ(store->baselineStamp(), kLoadedStamp);
}

TEST_F(ExternalChanges, ReloadStandsBackWhileTheEditorIsOpen) {
    const ColorTemplate kept = palette(u"Kept"_s, u"#E07A5F"_s);
    startStore({kept});
    store->setEditorPopoverOpen(true);
    writeOtherProcessFile({}, kStart);
    monitor->reloadFromDisk();
    EXPECT_EQ(store->templates().size(), 1);
    EXPECT_FALSE(monitor->externalChangeHeldBack()) << "a reload is not held back for later";
}

struct ReloadActiveCase {
    const char* label;
    QList<int> fileHolds;
    // -1: absent from the file; -2: a valid id of no palette; else the index of a palette.
    int fileActive;
    std::optional<QJsonValue> rawActive; // replaces fileActive when set
    bool lowerCase;
    // -1: unchanged; -2: a fresh id; else the index of the palette that becomes active.
    int expected;
};

class ExternalChangesReloadActive : public ExternalChanges,
                                    public ::testing::WithParamInterface<ReloadActiveCase> {};

TEST_P(ExternalChangesReloadActive, FollowsTheFilesId) {
    const ReloadActiveCase& row = GetParam();
    const QList<ColorTemplate> pool{palette(u"Zero"_s, u"#000000"_s),
                                    palette(u"One"_s, u"#111111"_s),
                                    palette(u"Two"_s, u"#222222"_s)};
    startStore({pool.at(0), pool.at(1), pool.at(2)}, pool.at(2).id);
    const QUuid before = store->activeTemplateId();

    QList<ColorTemplate> fileList;
    for (int index : row.fileHolds)
        fileList.append(pool.at(index));
    QJsonValue active = QJsonValue::Undefined;
    if (row.rawActive)
        active = *row.rawActive;
    else if (row.fileActive == -2)
        active = uuidText(QUuid::createUuid());
    else if (row.fileActive >= 0)
        active = uuidText(pool.at(row.fileActive).id);
    if (row.lowerCase)
        active = active.toString().toLower();
    writeOtherProcessFile(fileList, kStart, active);

    monitor->reloadFromDisk();
    ASSERT_EQ(store->templates().size(), row.fileHolds.size()) << "the list was replaced";
    if (row.expected == -1) {
        EXPECT_EQ(store->activeTemplateId(), before);
    } else if (row.expected == -2) {
        EXPECT_FALSE(store->activeTemplateId().isNull());
        EXPECT_NE(store->activeTemplateId(), before);
        for (const ColorTemplate& known : pool)
            EXPECT_NE(store->activeTemplateId(), known.id);
    } else {
        EXPECT_EQ(store->activeTemplateId(), pool.at(row.expected).id);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ExternalChangesReloadActive,
    ::testing::Values(
        ReloadActiveCase{"InTheList", {0, 1}, 1, std::nullopt, false, 1},
        ReloadActiveCase{"InTheListLowerCase", {0, 1}, 1, std::nullopt, true, 1},
        ReloadActiveCase{"NotInTheListTakesTheFirst", {1, 0}, 2, std::nullopt, false, 1},
        ReloadActiveCase{"UnknownIdTakesTheFirst", {0, 1}, -2, std::nullopt, false, 0},
        ReloadActiveCase{"EmptyListGivesAFreshId", {}, 0, std::nullopt, false, -2},
        // Without a usable id in the file the active id stays, even pointing nowhere now.
        ReloadActiveCase{"MissingKeepsTheCurrent", {0, 1}, -1, std::nullopt, false, -1},
        ReloadActiveCase{"NumberKeepsTheCurrent", {0, 1}, 0, QJsonValue(7), false, -1},
        ReloadActiveCase{
            "MalformedKeepsTheCurrent", {0, 1}, 0, QJsonValue(u"{not-an-id}"_s), false, -1}),
    labelOf<ReloadActiveCase>);

} // namespace
} // namespace hueshelf::testing
