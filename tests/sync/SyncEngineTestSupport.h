#pragma once

#include "../model/ModelTestSupport.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "SyncTestSupport.h"
#include "TempHome.h"
#include "model/ColorStorage.h"
#include "sync/FolderWatch.h"
#include "sync/IoQueue.h"
#include "sync/StoreSync.h"
#include "sync/SyncConversion.h"
#include "sync/SyncFolder.h"
#include "sync/SyncManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <utility>

namespace hueshelf::testing {

// Real writer threads and file watches want an application object; one for the whole run.
inline void ensureSyncTestApplication() {
    if (QCoreApplication::instance())
        return;
    static int argc = 1;
    static char name[] = "hueshelf_sync_tests";
    static char* argv[] = {name, nullptr};
    static auto* application = new QCoreApplication(argc, argv);
    Q_UNUSED(application);
}

// A folder watch whose events the test fires by hand.
class FakeFolderWatch final : public FolderWatch {
public:
    bool start(const QString& path, Handler onChange) override {
        stop();
        ++starts;
        // Like the real watch: a folder that isn't there can't be watched.
        if (refuse || !QFileInfo(path).isDir())
            return false;
        watchedPath = path;
        m_handler = std::move(onChange);
        return true;
    }
    void stop() override {
        m_handler = nullptr;
        watchedPath.clear();
    }
    bool isWatching() const override { return m_handler != nullptr; }

    // One change of the folder's entries, as the platform would report it.
    void fire() {
        if (m_handler)
            m_handler();
    }

    bool refuse = false;
    int starts = 0;
    QString watchedPath;

private:
    Handler m_handler;
};

// Folder reads that wait until the test lets them run, so a test can act while a pass is in
// the middle of its read.
class ManualIoQueue final : public IoQueue {
public:
    void run(Work work) override { m_work.push_back(std::move(work)); }

    // Runs every queued read, then its step, in order, including reads queued meanwhile.
    void flush() {
        while (!m_work.empty()) {
            Work work = std::move(m_work.front());
            m_work.pop_front();
            work()();
        }
    }
    std::size_t pending() const { return m_work.size(); }

private:
    std::deque<Work> m_work;
};

// One device: a store with a fake writer, the manager over a fake watch, the store's sync half,
// all on a manual clock; the sync folder lives in a temporary home.
class SyncEngineFixture : public ::testing::Test {
protected:
    static constexpr double kStart = 1'700'000'000'000.0;

    SyncEngineFixture() {
        ensureSyncTestApplication();
        root = QDir(home.path()).filePath(u"Dropbox"_s);
        QDir().mkpath(root);
        settings = std::make_unique<QSettings>(QDir(home.path()).filePath(u"hueshelf.conf"_s),
                                               QSettings::IniFormat);
    }

    ~SyncEngineFixture() override {
        storeSync.reset();
        sync.reset();
        store.reset();
    }

    // The manager as it starts from whatever the settings hold.
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

    // Completes every write the store handed over, as if the file now held what was asked.
    void completeWrites() {
        while (!writer.pending.empty())
            writer.completeNextAsRequested();
    }

    TempHome home;
    QString root;
    std::unique_ptr<QSettings> settings;
    ManualClock clock{kStart};
    ManualScheduler scheduler{clock};
    FakeTemplateWriter writer;
    ManualIoQueue io;
    std::unique_ptr<ColorStorage> store;
    FakeFolderWatch* watch = nullptr;
    std::unique_ptr<SyncManager> sync;
    std::unique_ptr<StoreSync> storeSync;
};

// A record as another device writes it: its own clock, its own device id.
inline SyncableTemplate remoteRecord(const ColorTemplate& palette, double lastModified,
                                     const QString& device = kDeviceB) {
    SyncableTemplate record = syncableFrom(palette, device);
    record.contentHash = syncableContentHash(record.name, record.colors);
    record.lastModified = lastModified;
    record.modifiedBy = device;
    return record;
}

inline SyncableTemplate deletionRecord(SyncableTemplate record, double at) {
    record.deleted = true;
    record.deletedAt = at;
    record.deletedBy = kDeviceB;
    return record;
}

} // namespace hueshelf::testing
