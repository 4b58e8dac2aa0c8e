#pragma once

#include <QString>

#include <ostream>

// Readable failures for Qt text, declared before GoogleTest's printers are seen.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

#include "../model/PersistenceFixture.h"
#include "model/ColorStorage.h"
#include "model/ContentHash.h"
#include "sync/FolderWatch.h"
#include "sync/IoQueue.h"
#include "sync/StoreSync.h"
#include "sync/SyncConversion.h"
#include "sync/SyncFolder.h"
#include "sync/SyncManager.h"

#include <QFile>
#include <QFileInfo>

#include <deque>
#include <tuple>
#include <utility>

namespace hueshelf::testing {

using namespace Qt::StringLiterals;

inline const QString kDeviceA = u"0A0A0A0A-1111-4222-8333-444444444444"_s;
inline const QString kDeviceB = u"0B0B0B0B-5555-4666-8777-888888888888"_s;

// One colour entry as a palette file holds it.
inline QJsonObject colorEntry(const QString& id, const QString& name, const QString& hex) {
    return {{u"id"_s, id}, {u"name"_s, name}, {u"hex"_s, hex}, {u"isLocked"_s, false}};
}

// A folder watch whose events the test fires by hand. Like the real one, it refuses a folder
// that isn't there.
class FakeFolderWatch final : public FolderWatch {
public:
    bool start(const QString& path, Handler onChange) override {
        handler = refuse || !QFileInfo(path).isDir() ? nullptr : std::move(onChange);
        watched = handler ? path : QString();
        return handler != nullptr;
    }
    void stop() override { handler = nullptr; }
    bool isWatching() const override { return handler != nullptr; }
    void fire() { handler ? handler() : void(); }
    bool refuse = false;
    Handler handler;
    QString watched;
};

// Folder reads that wait until the test lets them run, so a test can act while a pass is in
// the middle of its read.
class ManualIoQueue final : public IoQueue {
public:
    void run(Work work) override { work_.push_back(std::move(work)); }
    void flush() {
        for (; !work_.empty(); work_.pop_front())
            work_.front()()();
    }
    std::size_t pending() const { return work_.size(); }
    std::deque<Work> work_;
};

// One device: a store with a fake writer, the manager over a fake watch, the store's sync half,
// all on a manual clock; the sync folder lives in a temporary home.
class SyncEngineFixture : public ::testing::Test {
protected:
    static constexpr double kStart = 1'700'000'000'000.0;

    SyncEngineFixture() {
        ensureCoreApplication();
        QDir().mkpath(root);
    }

    void makeManager() {
        auto fakeWatch = std::make_unique<FakeFolderWatch>();
        watch = fakeWatch.get();
        sync = std::make_unique<SyncManager>(clock, scheduler, *settings, u"Test Machine"_s,
                                             u"1.2.3"_s, std::move(fakeWatch));
    }

    // A store of these palettes, the manager, and sync set up in `root` unless asked not to.
    void startDevice(const QList<ColorTemplate>& templates, bool setUp = true) {
        LoadedTemplates load;
        load.templates = templates;
        load.activeTemplateId = templates.isEmpty() ? QUuid() : templates.constFirst().id;
        store = std::make_unique<ColorStorage>(clock, scheduler, load);
        store->setWriter(&writer);
        makeManager();
        if (setUp) {
            ASSERT_FALSE(sync->setupSync(root, u"Dropbox"_s).has_value());
        }
        storeSync = std::make_unique<StoreSync>(*store, *sync, io, *settings, clock, scheduler);
    }

    QString syncFolder() const { return QDir(root).filePath(SyncFolder::folderName); }
    QString templatesFolder() const { return SyncFolder::templatesFolderPath(syncFolder()); }
    QString fileOf(const QUuid& id) const {
        return SyncFolder::templateFilePath(templatesFolder(), id);
    }
    std::optional<SyncableTemplate> recordOf(const QUuid& id) const {
        return SyncFolder::readTemplateFile(fileOf(id));
    }
    void putRecord(const SyncableTemplate& record) const {
        ASSERT_FALSE(SyncFolder::writeTemplate(record, templatesFolder()).has_value());
    }
    void takeFolderAway() { ASSERT_TRUE(QDir().rename(syncFolder(), syncFolder() + u"~"_s)); }
    void bringFolderBack() { ASSERT_TRUE(QDir().rename(syncFolder() + u"~"_s, syncFolder())); }

    // Completes every write the store handed over, as if the file now held what was asked.
    void completeWrites() {
        while (!writer.pending.empty())
            writer.completeNext();
    }

    TempHome home;
    QString root = home.path() + u"/Dropbox"_s;
    std::unique_ptr<QSettings> settings =
        std::make_unique<QSettings>(home.path() + u"/hueshelf.conf"_s, QSettings::IniFormat);
    ManualClock clock{kStart};
    ManualScheduler scheduler{clock};
    FakeTemplateWriter writer;
    ManualIoQueue io;
    std::unique_ptr<ColorStorage> store;
    FakeFolderWatch* watch = nullptr;
    std::unique_ptr<SyncManager> sync;
    std::unique_ptr<StoreSync> storeSync;
};

// A palette from "Name:#HEX Name:#HEX ...", each colour with an id of its own.
inline ColorTemplate paletteOf(const QString& name, const QString& colors) {
    QList<ColorItem> items;
    for (const QString& color : colors.split(u' ', Qt::SkipEmptyParts))
        items.append(makeColor(color.section(u':', 0, 0), color.section(u':', 1)));
    return makePalette(name, items);
}

// A record as another device writes it: its own clock, its own device id.
inline SyncableTemplate remoteRecord(const ColorTemplate& palette, double lastModified) {
    SyncableTemplate record = syncableFrom(palette, kDeviceB);
    record.contentHash = syncableContentHash(record.name, record.colors);
    record.lastModified = lastModified;
    record.modifiedBy = kDeviceB;
    return record;
}

// A complete, valid palette record of two colours, as another device would have written it.
inline QJsonObject paletteObject(const QString& id = u"D1D1D1D1-AAAA-4BBB-8CCC-DDDDDDDDDDDD"_s) {
    ColorTemplate palette = paletteOf(u"Starter"_s, u"Primary:#FFA69E Accent:#B8F2E6"_s);
    palette.colors[1].isLocked = palette.colors[1].dividerBefore = true;
    palette.revision = 7;
    QJsonObject object = remoteRecord(palette, 1700000000123.4567).toJson();
    object.insert(u"id"_s, id);
    return object;
}

inline SyncableTemplate deletionRecord(const ColorTemplate& palette, double at) {
    SyncableTemplate record = remoteRecord(palette, at);
    std::tie(record.deleted, record.deletedAt, record.deletedBy) = std::tuple(true, at, kDeviceB);
    return record;
}

} // namespace hueshelf::testing
