// Another process writes the shared file: how that is noticed, when it is no change, when the
// store stands back, and what the merge does to the list, the active palette and the file.

#include "PersistenceFixture.h"
#include "model/ColorStorage.h"
#include "model/ExternalChangeMonitor.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using Monitor = ExternalChangeMonitor;

// The stamp of the file as the store loaded it, a minute before the run.
constexpr double kLoaded = 1'700'000'000'000.0 - 60'000.0;

ColorTemplate palette(const QString& name) {
    return makePalette(name, {makeColor(u"First"_s, u"#E07A5F"_s)});
}

class ExternalChanges : public PersistenceFixture {
protected:
    // The store as the load leaves it: the file holds `templates`, stamped kLoaded.
    void startStore(const QList<ColorTemplate>& templates, std::optional<QUuid> active = {}) {
        const QUuid activeId = active.value_or(templates.value(0).id);
        otherWrites(templates, kLoaded, uuidText(activeId));
        store = std::make_unique<ColorStorage>(
            clock, scheduler, LoadedTemplates{templates, activeId, kLoaded, fileDataHash(), {}});
        store->setWriter(&writer);
        monitor =
            std::make_unique<Monitor>(*store, clock, scheduler, prefsPath(), locations.prefsDir);
    }
    void otherWrites(const QList<ColorTemplate>& templates, double stamp,
                     const QJsonValue& active = QJsonValue::Undefined) {
        QJsonObject object = preferencesObject(templates, QUuid(), stamp);
        object.insert(PreferencesKeys::activeTemplateId, active);
        ASSERT_TRUE(PreferencesFile::write(prefsPath(), object));
    }
    QList<QUuid> ids() const { return idsOf(store->templates()); }

    FakeTemplateWriter writer;
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<Monitor> monitor;
    const ColorTemplate mine = palette(u"Mine"_s);
    const ColorTemplate theirs = palette(u"Theirs"_s);
};

TEST_F(ExternalChanges, EveryWayToACheck) {
    startStore({mine});
    QList<ColorTemplate> list{mine, theirs};
    otherWrites(list, kStart);
    // A burst of file events gives one check, 0.25 s after the last.
    for (int i = 0; i < 3; ++i) {
        monitor->preferencesDirectoryChanged();
        scheduler.advance(0.1);
    }
    EXPECT_EQ(scheduler.pendingCount(), 1) << "each event replaces the pending check";
    scheduler.advance(0.149);
    EXPECT_EQ(store->templates().size(), 1);
    scheduler.advance(0.001);
    EXPECT_EQ(ids(), idsOf(list));

    // The start-up poll checks at once, then every 0.1 s; the thirtieth tick is its last, and
    // it doesn't start again.
    for (int tick = 0; tick <= 31; ++tick) {
        list.append(palette(QString::number(tick)));
        otherWrites(list, kStart + 1e6 + tick);
        EXPECT_EQ(monitor->initialSyncComplete(), tick == 31) << tick;
        tick == 0 ? monitor->start() : scheduler.advance(Monitor::startupPollIntervalSeconds);
        EXPECT_EQ(store->templates().size(), std::min(list.size(), qsizetype(33))) << tick;
    }
    monitor->start();
    EXPECT_EQ(store->templates().size(), 33);

    // The real watch on the directory sees an atomic replacement of the file.
    ASSERT_TRUE(spinUntil([&] { return monitor->isCheckPending(); })) << "the watch was blind";
    scheduler.advance(Monitor::externalChangeDebounceSeconds);
    EXPECT_EQ(store->templates().size(), 34);
}

// Held back under an open editor (a reload stands back too), and read again when it closes,
// so the newest file wins. Nor does a check run while a save is pending or a sync pass runs.
TEST_F(ExternalChanges, TheCheckWaitsForTheEditorTheSaveAndTheSyncPass) {
    startStore({mine});
    store->setEditorPopoverOpen(true);
    otherWrites({mine, theirs}, kStart);
    monitor->checkForExternalChanges();
    monitor->reloadFromDisk();
    EXPECT_EQ(store->templates().size(), 1);
    EXPECT_TRUE(monitor->externalChangeHeldBack());
    const ColorTemplate newest = palette(u"Newest"_s);
    otherWrites({mine, theirs, newest}, kStart + 10.0);
    store->setEditorPopoverOpen(false);
    EXPECT_FALSE(monitor->externalChangeHeldBack());
    EXPECT_EQ(ids(), (QList<QUuid>{mine.id, theirs.id, newest.id}));

    store->saveTemplates();
    store->setSyncing(true);
    otherWrites({mine, theirs}, kStart + 60'000.0);
    monitor->checkForExternalChanges();
    monitor->reloadFromDisk();
    EXPECT_EQ(store->templates().size(), 3);
    writer.completeNext();
    monitor->checkForExternalChanges();
    EXPECT_EQ(store->templates().size(), 3) << "a sync pass runs";
    monitor->reloadFromDisk(); // asks only about saves
    EXPECT_EQ(store->templates().size(), 2);
}

// Files that are no change, or that can't be read: nothing moves, nothing is saved, and the
// same palettes under a stamp that did move are still taken afterwards.
TEST_F(ExternalChanges, WhatIsNoChangeLeavesTheStoreAlone) {
    const QJsonArray both = TemplateJson::templatesToJson({mine, theirs});
    const auto file = [](const QJsonValue& stamp, const QJsonValue& list) {
        return QJsonDocument(QJsonObject{{PreferencesKeys::templates, list},
                                         {PreferencesKeys::lastModified, stamp}})
            .toJson();
    };
    QJsonObject noId = TemplateJson::templateToJson(theirs);
    noId.remove(u"id"_s);
    // Readable ones first (a reload takes those as they are), then unreadable ones.
    const QByteArray rows[] = {file(kLoaded, both),
                               file(kLoaded - 1.0, both),
                               file(QJsonValue::Undefined, both),
                               file(kStart, TemplateJson::templatesToJson({theirs})),
                               "missing",
                               R"({"colorTemplates": [)",
                               file(kStart, QJsonValue::Undefined),
                               file(kStart, u"[]"_s),
                               file(kStart, QJsonArray{noId})};
    for (std::size_t r = 0; r < std::size(rows); ++r) {
        SCOPED_TRACE(rows[r].constData());
        startStore({mine});
        if (rows[r] == "missing")
            QFile::remove(prefsPath());
        else
            writeBytes(prefsPath(), rows[r]);
        if (r == 3)
            store->setLastKnownDataHash(fileDataHash());
        monitor->checkForExternalChanges();
        if (r > 3)
            monitor->reloadFromDisk();
        EXPECT_EQ(ids(), QList<QUuid>{mine.id});
        EXPECT_EQ(store->baselineStamp(), kLoaded);
        EXPECT_EQ(writer.requests.size(), 0u);
        otherWrites({mine, theirs}, kStart + 1.0);
        monitor->checkForExternalChanges();
        EXPECT_EQ(ids(), (QList<QUuid>{mine.id, theirs.id}));
        writer = {};
    }
}

// The merge (its rules: MergeTemplates) is written back only when the file lacks part of it.
TEST_F(ExternalChanges, TheMergeIsWrittenBackOnlyWhenTheFileLacksPartOfIt) {
    startStore({mine, theirs});
    otherWrites({mine}, kStart); // deleted there: kept here, so the file lacks it
    monitor->checkForExternalChanges();
    EXPECT_EQ(ids(), (QList<QUuid>{mine.id, theirs.id}));
    EXPECT_EQ(idsOf(store->baselineTemplates()), ids());
    EXPECT_EQ(store->baselineStamp(), kStart);
    EXPECT_EQ(store->lastKnownDataHash(), fileDataHash());
    ASSERT_EQ(writer.requests.size(), 1u);
    EXPECT_EQ(idsOf(writer.requests.at(0).templates), ids());
    writer.completeNext();
    const ColorTemplate added = palette(u"Added there"_s);
    otherWrites({mine, theirs, added}, kStart + 1e4);
    monitor->checkForExternalChanges();
    EXPECT_EQ(ids(), (QList<QUuid>{mine.id, theirs.id, added.id}));
    EXPECT_EQ(writer.requests.size(), 1u);
}

// Rows: the active palette, the file's palettes and active one (-1 an id of none; `raw` replaces
// it), then the active palette after a merge and after a reload (-2 unchanged, -3 a fresh id).
TEST_F(ExternalChanges, TheActivePaletteAfterAMergeAndAfterAReload) {
    const QList<ColorTemplate> pool{palette(u"Zero"_s), palette(u"One"_s), palette(u"Two"_s)};
    const QUuid nowhere = QUuid::createUuid();
    const auto id = [&](int i) { return i < 0 ? nowhere : pool.at(i).id; };
    const struct {
        int storeActive;
        QList<int> fileHolds;
        int fileActive;
        std::optional<QJsonValue> raw;
        int merged, reloaded;
    } rows[] = {{1, {0, 1, 2}, 2, {}, 1, 2},
                {1, {0}, 0, {}, 1, 0}, // deleted elsewhere, kept by the merge
                {-1, {0, 1, 2}, 2, {}, 2, 2},
                {-1, {0, 1, 2}, -1, {}, 0, 0},
                {-1, {1, 0}, 0, u"palette two"_s, 0, -2},
                {-1, {1, 0}, 0, QJsonValue::Undefined, 0, -2},
                {0, {0, 1, 2}, 1, uuidText(pool.at(1).id).toLower(), 0, 1},
                {1, {}, 0, {}, 1, -3}};
    for (std::size_t r = 0; r < std::size(rows) * 2; ++r) {
        const auto& row = rows[r / 2];
        const bool reload = r % 2 == 1;
        SCOPED_TRACE(::testing::Message() << "row " << r / 2 << (reload ? " reloaded" : " merged"));
        startStore({pool.at(0), pool.at(1)}, id(row.storeActive));
        QList<ColorTemplate> inFile;
        for (int i : row.fileHolds)
            inFile.append(pool.at(i));
        otherWrites(inFile, kStart, row.raw.value_or(uuidText(id(row.fileActive))));
        reload ? monitor->reloadFromDisk() : monitor->checkForExternalChanges();
        ASSERT_EQ(store->baselineStamp(), kStart) << "the file was not applied";
        const int expected = reload ? row.reloaded : row.merged;
        const QUuid active = store->activeTemplateId();
        if (expected == -3)
            EXPECT_FALSE(active.isNull() || idsOf(pool).contains(active));
        else
            EXPECT_EQ(active, id(expected == -2 ? row.storeActive : expected));
    }
}

} // namespace
} // namespace hueshelf::testing
