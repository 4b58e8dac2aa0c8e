// Several devices in one process, each with a home, preferences file, settings and writer
// thread of its own, meeting only in one shared sync folder. Time is the manual clock; folder
// reads run when the test settles, so every step sees the folder as the previous one left it.

#include "SyncEngineTestSupport.h"
#include "model/PreferencesWriter.h"
#include "model/SettingsStore.h"
#include "model/StorageLocations.h"
#include "model/TemplateLoader.h"
#include "sync/WriterIoQueue.h"

#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace hueshelf::testing {
namespace {

class Device {
public:
    Device(ManualClock& clock, ManualScheduler& scheduler, QString name)
        : m_clock(clock), m_scheduler(scheduler), m_name(std::move(name)),
          m_locations(StorageLocations::resolve(m_home.paths(), QProcessEnvironment())) {}
    ~Device() { close(); }

    // As the application starts: settings, the load at start, the writer, sync. Given palettes
    // replace what the load found, as if the user had them already.
    void open(const std::optional<QList<ColorTemplate>>& templates = std::nullopt) {
        settings = SettingsStore::open(m_locations);
        LoadedTemplates loaded = TemplateLoader::loadAtStart(m_locations, *settings, m_clock);
        if (templates) {
            loaded.templates = *templates;
            loaded.activeTemplateId =
                templates->isEmpty() ? QUuid::createUuid() : templates->constFirst().id;
        }
        store = std::make_unique<ColorStorage>(m_clock, m_scheduler, loaded);
        writer = std::make_unique<PreferencesWriter>(m_locations.preferencesFile, *settings);
        store->setWriter(writer.get());
        auto fakeWatch = std::make_unique<FakeFolderWatch>();
        watch = fakeWatch.get();
        sync = std::make_unique<SyncManager>(m_clock, m_scheduler, *settings, m_name, u"1.0"_s,
                                             std::move(fakeWatch));
        storeSync = std::make_unique<StoreSync>(*store, *sync, io, *settings, m_clock, m_scheduler);
    }

    // As the application quits: the last writes reach the files, then everything goes.
    void close() {
        if (!writer)
            return;
        writer->drain();
        storeSync.reset();
        sync.reset();
        writer.reset();
        store.reset();
        settings->sync();
        settings.reset();
    }

    // Folder reads asked for so far, their merges, and every write with its push.
    void settle() {
        io.flush();
        writer->drain();
    }

    void editAndSave(const QUuid& id, const std::function<void(ColorTemplate&)>& edit) {
        ASSERT_TRUE(store->editTemplate(id, edit));
        store->saveTemplates();
        settle();
    }

    // What a user would compare: each palette's id, name and colours, in any order.
    QStringList content() const {
        QStringList lines;
        for (const ColorTemplate& palette : store->templates()) {
            QStringList colors;
            for (const ColorItem& color : palette.colors)
                colors.append(color.name + u':' + color.hex);
            lines.append(uuidText(palette.id) + u' ' + palette.name + u' ' + colors.join(u','));
        }
        lines.sort();
        return lines;
    }
    QStringList names() const {
        QStringList names = namesOf(store->templates());
        names.sort();
        return names;
    }
    std::optional<ColorTemplate> palette(const QUuid& id) const {
        for (const ColorTemplate& palette : store->templates()) {
            if (palette.id == id)
                return palette;
        }
        return std::nullopt;
    }

    std::unique_ptr<QSettings> settings;
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<PreferencesWriter> writer;
    ManualIoQueue io;
    FakeFolderWatch* watch = nullptr;
    std::unique_ptr<SyncManager> sync;
    std::unique_ptr<StoreSync> storeSync;

private:
    ManualClock& m_clock;
    ManualScheduler& m_scheduler;
    QString m_name;
    TempHome m_home;
    StorageLocations m_locations;
};

class MultiDeviceSync : public ::testing::Test {
protected:
    static constexpr double kStart = 1'700'000'000'000.0;

    MultiDeviceSync() { ensureSyncTestApplication(); }
    ~MultiDeviceSync() override {
        for (auto& device : devices)
            device->close();
    }

    // The first device sets the folder up, the others connect to it; each starts as the
    // application does, with a full sync.
    Device& join(const QString& name,
                 const std::optional<QList<ColorTemplate>>& templates = std::nullopt) {
        devices.push_back(std::make_unique<Device>(clock, scheduler, name));
        Device& device = *devices.back();
        device.open(templates);
        startSync(device);
        return device;
    }

    void startSync(Device& device) {
        if (!device.sync->isEnabled()) {
            const std::optional<SyncError> error =
                devices.size() == 1 ? device.sync->setupSync(shared.path(), u"Dropbox"_s)
                                    : device.sync->connectToExisting(shared.path(), u"Dropbox"_s);
            EXPECT_FALSE(error.has_value()) << error->description().toStdString();
        }
        device.storeSync->start();
        settleAll();
    }

    void settleAll() {
        // Deferred steps may start reads, and merges may start writes: a few rounds.
        for (int round = 0; round < 3; ++round) {
            scheduler.runDue();
            for (auto& device : devices)
                device->settle();
        }
    }

    void advance(double seconds) {
        scheduler.advance(seconds);
        settleAll();
    }

    // Every device looks at the folder: past everyone's echo window, one folder event each,
    // then the debounce and the reads.
    void exchange() {
        advance(2.5);
        for (auto& device : devices)
            device->watch->fire();
        advance(SyncManager::debounceSeconds);
    }

    void expectConverged() {
        for (std::size_t i = 1; i < devices.size(); ++i)
            EXPECT_EQ(devices.at(i)->content(), devices.front()->content()) << "device " << i;
    }

    QString templatesFolder() const {
        return SyncFolder::templatesFolderPath(
            QDir(shared.path()).filePath(SyncFolder::folderName));
    }
    std::optional<SyncableTemplate> recordOf(const QUuid& id) const {
        return SyncFolder::readTemplateFile(SyncFolder::templateFilePath(templatesFolder(), id));
    }
    qsizetype filesInFolder() const {
        return QDir(templatesFolder()).entryList(QDir::Files).size();
    }
    void takeFolderAway() const {
        ASSERT_TRUE(QDir().rename(QDir(shared.path()).filePath(SyncFolder::folderName),
                                  QDir(shared.path()).filePath(u"away"_s)));
    }
    void bringFolderBack() const {
        ASSERT_TRUE(QDir().rename(QDir(shared.path()).filePath(u"away"_s),
                                  QDir(shared.path()).filePath(SyncFolder::folderName)));
    }

    static QList<ColorTemplate> threePalettes() {
        return {makePalette(u"Brand"_s, {makeColor(u"Ink"_s, u"#101010"_s),
                                         makeColor(u"Paper"_s, u"#FAFAFA"_s)}),
                makePalette(u"Sea"_s, {makeColor(u"Deep"_s, u"#003366"_s)}),
                makePalette(u"Forest"_s, {makeColor(u"Moss"_s, u"#4A6B3A"_s)})};
    }

    ManualClock clock{kStart};
    ManualScheduler scheduler{clock};
    QTemporaryDir shared;
    std::vector<std::unique_ptr<Device>> devices;
};

TEST_F(MultiDeviceSync, EditsReachEveryDevice) {
    const QList<ColorTemplate> palettes = threePalettes();
    Device& a = join(u"Desk"_s, palettes);
    Device& b = join(u"Laptop"_s, QList<ColorTemplate>());
    Device& c = join(u"Tablet"_s, QList<ColorTemplate>());
    expectConverged();
    EXPECT_EQ(b.names(), (QStringList{u"Brand"_s, u"Forest"_s, u"Sea"_s}));
    EXPECT_EQ(filesInFolder(), 3);

    advance(1.0);
    a.editAndSave(palettes.at(0).id, [](ColorTemplate& p) { p.name = u"Brand v2"_s; });
    exchange();
    expectConverged();
    const ColorTemplate onC = c.palette(palettes.at(0).id).value();
    EXPECT_EQ(onC.name, u"Brand v2"_s);
    EXPECT_EQ(onC.revision, 2);
    EXPECT_EQ(onC.updatedByDeviceId, a.sync->deviceId());

    c.editAndSave(palettes.at(1).id,
                  [](ColorTemplate& p) { p.colors.append(makeColor(u"Foam"_s, u"#E0F0FF"_s)); });
    exchange();
    expectConverged();
    EXPECT_EQ(a.palette(palettes.at(1).id)->colors.size(), 2);
    for (const auto& device : devices) {
        EXPECT_EQ(device->store->savingCount(), 0);
        EXPECT_FALSE(device->store->isSyncing());
        EXPECT_EQ(device->sync->syncStatus(), SyncStatus::synced());
        EXPECT_TRUE(device->store->pendingConflicts().isEmpty());
    }

    // Quiet folder: more rounds change nothing, and no conflict copies appear.
    const QStringList before = a.content();
    exchange();
    advance(60.0);
    expectConverged();
    EXPECT_EQ(a.content(), before);
}

TEST_F(MultiDeviceSync, DeletionsAndRestorationsTravel) {
    const QList<ColorTemplate> palettes = threePalettes();
    Device& a = join(u"Desk"_s, palettes);
    Device& b = join(u"Laptop"_s, QList<ColorTemplate>());
    const QUuid gone = palettes.at(1).id;

    advance(1.0);
    ASSERT_TRUE(a.store->confirmDeleteTemplate(gone));
    a.settle();
    EXPECT_TRUE(recordOf(gone)->deleted);
    exchange();
    expectConverged();
    EXPECT_FALSE(b.palette(gone).has_value());
    EXPECT_EQ(a.sync->recentlyDeletedTemplates().size(), 1);
    EXPECT_TRUE(b.sync->recentlyDeletedTemplates().isEmpty());

    // Later saves on either side leave the record alone.
    b.editAndSave(palettes.at(0).id, [](ColorTemplate& p) { p.name = u"Brand b"_s; });
    exchange();
    EXPECT_TRUE(recordOf(gone)->deleted);
    expectConverged();

    ASSERT_FALSE(a.sync->restoreTemplate(gone).has_value());
    EXPECT_TRUE(a.sync->recentlyDeletedTemplates().isEmpty());
    exchange();
    expectConverged();
    EXPECT_EQ(a.palette(gone)->name, u"Sea"_s);
    EXPECT_EQ(b.palette(gone)->name, u"Sea"_s);
}

TEST_F(MultiDeviceSync, BothEditedWhileApartEndsInAConflictCopy) {
    const QList<ColorTemplate> palettes = threePalettes();
    const QUuid id = palettes.at(0).id;
    Device& a = join(u"Desk"_s, palettes);
    Device& b = join(u"Laptop"_s, QList<ColorTemplate>());

    // The laptop edits while the folder is out of reach; its push can't land.
    advance(1.0);
    takeFolderAway();
    b.editAndSave(id, [](ColorTemplate& p) { p.colors[0].hex = u"#220000"_s; });
    EXPECT_TRUE(b.sync->pendingTemplateChanges().contains(id));
    EXPECT_EQ(b.store->cloudSyncStatus().state, CloudSyncStatus::State::failed);
    bringFolderBack();

    // Meanwhile the desk makes its own edit of the same palette.
    a.editAndSave(id, [](ColorTemplate& p) { p.colors[0].hex = u"#000022"_s; });
    exchange();

    // The laptop keeps its version and holds the desk's as a copy.
    EXPECT_EQ(b.palette(id)->colors.at(0).hex, u"#220000"_s);
    EXPECT_EQ(b.names(), (QStringList{u"Brand"_s, u"Brand (Conflict)"_s, u"Forest"_s, u"Sea"_s}));
    EXPECT_EQ(b.store->pendingConflicts().size(), 1);

    // Its next save writes both; then the desk takes the laptop's version and the copy.
    b.store->selectTemplate(id);
    b.settle();
    EXPECT_FALSE(b.sync->hasPendingLocalChanges());
    exchange();
    expectConverged();
    EXPECT_EQ(a.palette(id)->colors.at(0).hex, u"#220000"_s);
    EXPECT_EQ(a.names(), b.names());
    EXPECT_TRUE(a.store->pendingConflicts().isEmpty());

    // And it stays so: no second copy on later rounds.
    exchange();
    advance(30.0);
    expectConverged();
    EXPECT_EQ(a.store->templates().size(), 4);
}

struct RaceCase {
    const char* label;
    bool editorPullsFirst;
};

class DeleteVersusEdit : public MultiDeviceSync, public ::testing::WithParamInterface<RaceCase> {};

TEST_P(DeleteVersusEdit, WhoeverReachesTheFolderFirstDecides) {
    const QList<ColorTemplate> palettes = threePalettes();
    const QUuid id = palettes.at(2).id;
    Device& a = join(u"Desk"_s, palettes);
    Device& b = join(u"Laptop"_s, QList<ColorTemplate>());
    advance(1.0);

    ASSERT_TRUE(a.store->confirmDeleteTemplate(id));
    a.settle();
    // The laptop edits the palette before it has seen the deletion.
    ASSERT_TRUE(b.store->editTemplate(id, [](ColorTemplate& p) { p.name = u"Woods"_s; }));

    if (GetParam().editorPullsFirst) {
        advance(2.5);
        b.watch->fire();
        advance(SyncManager::debounceSeconds);
        EXPECT_FALSE(b.palette(id).has_value()); // the deletion wins over the edit
        b.store->saveTemplates();
        b.settle();
        EXPECT_TRUE(recordOf(id)->deleted);
    } else {
        b.store->saveTemplates();
        b.settle();
        EXPECT_FALSE(recordOf(id)->deleted); // the live palette overwrote the record
    }
    exchange();
    expectConverged();
    EXPECT_EQ(a.palette(id).has_value(), !GetParam().editorPullsFirst);
    if (!GetParam().editorPullsFirst) {
        EXPECT_EQ(a.palette(id)->name, u"Woods"_s);
    }
}

INSTANTIATE_TEST_SUITE_P(MultiDeviceSync, DeleteVersusEdit,
                         ::testing::Values(RaceCase{"EditorPullsFirst", true},
                                           RaceCase{"EditorPushesFirst", false}),
                         [](const auto& testParam) { return std::string(testParam.param.label); });

TEST_F(MultiDeviceSync, TwoDevicesMakingTheSamePaletteKeepOneEach) {
    // Both start as on first launch: the same two palettes under different ids.
    Device& a = join(u"Desk"_s);
    Device& b = join(u"Laptop"_s);
    EXPECT_EQ(a.names(), (QStringList{u"Example"_s, u"Starter"_s}));
    EXPECT_EQ(b.names(), a.names());
    EXPECT_NE(b.content(), a.content());

    const QList<ColorItem> colors = {makeColor(u"Ink"_s, u"#101010"_s)};
    advance(1.0);
    a.store->createTemplate(u"Brand"_s, colors);
    b.store->createTemplate(u"Brand"_s, {makeColor(u"Ink"_s, u"#101010"_s)});
    a.settle();
    b.settle();
    exchange();
    EXPECT_EQ(a.names(), (QStringList{u"Brand"_s, u"Example"_s, u"Starter"_s}));
    EXPECT_EQ(b.names(), a.names());
    EXPECT_EQ(filesInFolder(), 6);

    // A full sync, as on activation, removes nothing either.
    a.storeSync->fullSync();
    b.storeSync->fullSync();
    settleAll();
    EXPECT_EQ(a.store->templates().size(), 3);
    EXPECT_EQ(b.store->templates().size(), 3);
}

TEST_F(MultiDeviceSync, APendingPaletteIsPushedByTheFirstSaveAfterARestart) {
    const QList<ColorTemplate> palettes = threePalettes();
    const QUuid id = palettes.at(1).id;
    Device& a = join(u"Desk"_s, palettes);
    Device& b = join(u"Laptop"_s, QList<ColorTemplate>());
    advance(1.0);

    takeFolderAway();
    b.editAndSave(id, [](ColorTemplate& p) { p.name = u"Ocean"_s; });
    b.close();
    bringFolderBack();

    b.open();
    EXPECT_TRUE(b.sync->isEnabled());
    EXPECT_TRUE(b.sync->hasPendingLocalChanges());
    EXPECT_EQ(b.palette(id)->name, u"Ocean"_s);
    b.storeSync->start();
    settleAll();
    // The full sync at start leaves the local edit alone and the folder as it was.
    EXPECT_EQ(b.palette(id)->name, u"Ocean"_s);
    EXPECT_EQ(recordOf(id)->name, u"Sea"_s);

    b.store->selectTemplate(id);
    b.settle();
    EXPECT_FALSE(b.sync->hasPendingLocalChanges());
    exchange();
    expectConverged();
    EXPECT_EQ(a.palette(id)->name, u"Ocean"_s);
}

TEST_F(MultiDeviceSync, FolderReadsRunOnTheWritersThreadBehindItsWrites) {
    Device& a = join(u"Desk"_s, threePalettes());
    const Qt::HANDLE mainThread = QThread::currentThreadId();
    Qt::HANDLE readThread = nullptr;
    Qt::HANDLE stepThread = nullptr;
    QStringList order;
    QObject::connect(a.store.get(), &ColorStorage::templatesWritten,
                     [&] { order.append(u"written"_s); });

    WriterIoQueue queue(*a.writer);
    a.store->saveTemplates();
    queue.run([&]() -> IoQueue::MainThreadStep {
        readThread = QThread::currentThreadId();
        return [&] {
            stepThread = QThread::currentThreadId();
            order.append(u"read"_s);
        };
    });
    a.writer->drain();

    EXPECT_NE(readThread, mainThread);
    EXPECT_EQ(stepThread, mainThread);
    EXPECT_EQ(order, (QStringList{u"written"_s, u"read"_s}));
}

} // namespace
} // namespace hueshelf::testing
