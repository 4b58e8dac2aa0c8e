// What a whole push and a whole pull cost with 100, 1,000 and 10,000 palettes of twelve colours:
// every save pushes every palette, and every pull reads them all.
//
// Target: at 1,000 palettes each pass stays within twice its floor, taken in the same iteration
// on the same disk by plain code doing the least the pass must do:
//  - push: the same files (every palette and settings.json) replaced one by one with QSaveFile,
//    their bytes encoded beforehand. The push also reads the whole folder first, for the
//    creation stamps it keeps; "push_read_ms" shows what that read alone costs.
//  - pull: two floors. "raw" lists the folder and reads every file whole; "json" does that and
//    parses every file with QJsonDocument. "pull/raw" is the figure the target is about; "pull/
//    json" shows what is left once Qt's own parse is paid. "pull_read_ms" is the folder read
//    alone (read, parse and decode, shared among threads); the rest of the pull is the merge.
//
// The passes run through the store's own StoreSync on a real folder, with the real SyncManager;
// the pull reads on an inline io queue, so its read, decode and merge are all in the figure.
// The store's shadow state goes to QSettings as in the application; the preferences-file write
// that a merge hands over is the writer thread's business and is dropped here.
//
// Everything is wall-clock time; the disk is part of the cost.

#include "BenchFiles.h"
#include "BenchPalettes.h"
#include "model/ColorStorage.h"
#include "model/LoadedTemplates.h"
#include "model/SettingsStore.h"
#include "model/TemplateWriter.h"
#include "sync/FolderWatch.h"
#include "sync/InlineIoQueue.h"
#include "sync/StoreSync.h"
#include "sync/SyncConversion.h"
#include "sync/SyncFolder.h"
#include "sync/SyncManager.h"
#include "util/Clock.h"
#include "util/QtScheduler.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>
#include <QSettings>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>

using namespace Qt::StringLiterals;

namespace hueshelf::bench {
namespace {

constexpr std::uint32_t kSeed = 20240611;
const QString kOtherDevice = u"0B0B0B0B-2222-4333-8444-555555555555"_s;

void ensureCoreApplication() {
    if (QCoreApplication::instance())
        return;
    static int argc = 1;
    static char name[] = "hueshelf_bench_syncpass";
    static char* argv[] = {name, nullptr};
    static auto* application = new QCoreApplication(argc, argv);
    Q_UNUSED(application);
}

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The shadow state is stored as the application's writer stores it; the preferences file is
// written on the writer's own thread, which is not part of either pass.
class ShadowOnlyWriter final : public TemplateWriter {
public:
    explicit ShadowOnlyWriter(QSettings& settings) : m_settings(settings) {}
    void writeTemplates(const SaveRequest& request, Written written, Finished finished) override {
        Q_UNUSED(written);
        benchmark::DoNotOptimize(request.json.constData());
        finished();
    }
    void writeShadowState(const QByteArray& json) override {
        SettingsStore::storeShadowState(m_settings, json);
    }

private:
    QSettings& m_settings;
};

// No watch, and so no poll: the passes are started by hand.
class NoFolderWatch final : public FolderWatch {
public:
    bool start(const QString& path, Handler onChange) override {
        Q_UNUSED(path);
        Q_UNUSED(onChange);
        return false;
    }
    void stop() override {}
    bool isWatching() const override { return false; }
};

// One device with sync set up in a temporary folder: the store, its writer, the manager and
// the store's sync half, on the system clock.
class Device {
public:
    explicit Device(const LoadedTemplates& loaded) {
        ensureCoreApplication();
        m_settings =
            std::make_unique<QSettings>(m_home.filePath(u"hueshelf.conf"_s), QSettings::IniFormat);
        m_writer = std::make_unique<ShadowOnlyWriter>(*m_settings);
        store = std::make_unique<ColorStorage>(m_clock, m_scheduler, loaded);
        store->setWriter(m_writer.get());
        sync = std::make_unique<SyncManager>(m_clock, m_scheduler, *m_settings, u"Bench"_s,
                                             u"0.1.0"_s, std::make_unique<NoFolderWatch>());
        const QString root = m_home.filePath(u"Dropbox"_s);
        QDir().mkpath(root);
        setUp = !sync->setupSync(root, u"Dropbox"_s).has_value();
        storeSync =
            std::make_unique<StoreSync>(*store, *sync, m_io, *m_settings, m_clock, m_scheduler);
    }

    ~Device() {
        storeSync.reset();
        sync.reset();
        store->setWriter(nullptr);
        store.reset();
        QCoreApplication::processEvents();
    }

    QString templatesFolder() const { return sync->templatesFolderPath().value_or(QString()); }
    QString syncFolder() const { return sync->syncFolderPath().value_or(QString()); }
    QString scratchFolder(const QString& name) {
        const QString path = m_home.filePath(name);
        QDir().mkpath(path);
        return path;
    }

    bool setUp = false;
    std::unique_ptr<ColorStorage> store;
    std::unique_ptr<SyncManager> sync;
    std::unique_ptr<StoreSync> storeSync;

private:
    QTemporaryDir m_home;
    SystemClock m_clock;
    QtScheduler m_scheduler;
    InlineIoQueue m_io;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<ShadowOnlyWriter> m_writer;
};

LoadedTemplates loadedFrom(const QList<ColorTemplate>& templates) {
    LoadedTemplates loaded;
    loaded.templates = templates;
    loaded.activeTemplateId = templates.constFirst().id;
    return loaded;
}

// The least a pull must do: list the folder and read every file whole. With `parse`, every file
// also goes through Qt's JSON parser, the least any decoding of them costs.
qint64 plainReadAll(const QString& folder, bool parse) {
    qint64 total = 0;
    const QDir dir(folder);
    for (const QString& name : dir.entryList(QDir::Files, QDir::Name)) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray bytes = file.readAll();
        total += bytes.size();
        if (parse)
            total += QJsonDocument::fromJson(bytes).isObject() ? 1 : 0;
    }
    return total;
}

void paletteSizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime();
}

// --- Push ------------------------------------------------------------------------------------

void BM_Push(benchmark::State& state) {
    const int count = int(state.range(0));
    PaletteMaker maker(kSeed);
    Device device(loadedFrom(maker.palettes(count)));
    if (!device.setUp) {
        state.SkipWithError("sync could not be set up");
        return;
    }
    // The first push creates the files; the ones measured replace them, as every save does.
    device.storeSync->pushToCloud();

    // The floor replaces the same files with the bytes the push wrote.
    QList<std::pair<QString, QByteArray>> floorFiles;
    const QString floorFolder = device.scratchFolder(u"floor"_s);
    const QDir templates(device.templatesFolder());
    qint64 bytes = 0;
    for (const QString& name : templates.entryList(QDir::Files, QDir::Name))
        floorFiles.append({QDir(floorFolder).filePath(name), fileBytes(templates.filePath(name))});
    floorFiles.append({QDir(floorFolder).filePath(SyncFolder::settingsFileName),
                       fileBytes(SyncFolder::settingsPath(device.syncFolder()))});
    for (const auto& [path, content] : floorFiles) {
        bytes += content.size();
        plainAtomicWrite(path, content);
    }

    double pushSeconds = 0.0;
    double floorSeconds = 0.0;
    double readSeconds = 0.0;
    bool failed = false;
    for (auto _ : state) {
        const auto pushStart = std::chrono::steady_clock::now();
        device.storeSync->pushToCloud();
        pushSeconds += secondsSince(pushStart);

        state.PauseTiming();
        failed |= device.sync->syncStatus().kind != SyncStatus::Kind::synced;
        const auto floorStart = std::chrono::steady_clock::now();
        for (const auto& [path, content] : floorFiles)
            failed |= !plainAtomicWrite(path, content);
        floorSeconds += secondsSince(floorStart);

        const auto readStart = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(device.sync->readTemplatesFolder().size());
        readSeconds += secondsSince(readStart);
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
    if (failed)
        state.SkipWithError("a write failed");
    if (device.sync->readTemplatesFolder().size() != count)
        state.SkipWithError("the folder does not hold every palette");
    const double n = double(state.iterations());
    state.counters["folder_MB"] = double(bytes) / 1e6;
    state.counters["push_ms"] = pushSeconds / n * 1e3;
    state.counters["floor_ms"] = floorSeconds / n * 1e3;
    state.counters["push_read_ms"] = readSeconds / n * 1e3;
    state.counters["push/floor"] = floorSeconds > 0.0 ? pushSeconds / floorSeconds : 0.0;
}
BENCHMARK(BM_Push)->Apply(paletteSizes);

// --- Pull ------------------------------------------------------------------------------------

// This device and the folder agreed on every palette; then another device edited one palette and
// saved, which rewrote every file. The pull reads them all, takes the edited one and finds
// nothing to do for the rest.
void BM_Pull(benchmark::State& state) {
    const int count = int(state.range(0));
    PaletteMaker maker(kSeed);
    const QList<ColorTemplate> palettes = maker.palettes(count);
    LoadedTemplates loaded = loadedFrom(palettes);
    for (const ColorTemplate& palette : palettes)
        loaded.shadowState.insert(
            palette.id, ShadowTemplateState{palette.contentHash, palette.revision, kEpochMs});
    Device device(loaded);
    if (!device.setUp) {
        state.SkipWithError("sync could not be set up");
        return;
    }

    const double otherSave = kEpochMs + 60'000.0;
    int edited = 0;
    bool writeFailed = false;
    for (qsizetype i = 0; i < palettes.size(); ++i) {
        ColorTemplate theirs = palettes.at(i);
        if (i == palettes.size() / 2) {
            maker.edit(theirs, otherSave);
            ++edited;
        }
        SyncableTemplate record = syncableFrom(theirs, kOtherDevice);
        record.lastModified = otherSave;
        record.modifiedBy = kOtherDevice;
        writeFailed |= SyncFolder::writeTemplate(record, device.templatesFolder()).has_value();
    }
    if (writeFailed) {
        state.SkipWithError("the other device's files could not be written");
        return;
    }
    const QString folder = device.templatesFolder();

    double pullSeconds = 0.0;
    double readSeconds = 0.0;
    double rawSeconds = 0.0;
    double jsonSeconds = 0.0;
    bool wrong = false;
    for (auto _ : state) {
        // Back to the agreement before the other device's save.
        state.PauseTiming();
        device.store->setTemplates(palettes);
        for (const ColorTemplate& palette : palettes)
            device.store->setShadowState(palette.id, loaded.shadowState.value(palette.id));
        QCoreApplication::processEvents();
        state.ResumeTiming();

        const auto pullStart = std::chrono::steady_clock::now();
        device.storeSync->pullFromCloud();
        pullSeconds += secondsSince(pullStart);

        state.PauseTiming();
        int taken = 0;
        for (const ColorTemplate& palette : device.store->templates())
            taken += palette.updatedAt == otherSave ? 1 : 0;
        wrong |= device.store->isSyncing() || taken != edited ||
                 device.store->templates().size() != palettes.size();

        const auto readStart = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(SyncFolder::readTemplatesFolder(folder).size());
        readSeconds += secondsSince(readStart);
        const auto rawStart = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(plainReadAll(folder, false));
        rawSeconds += secondsSince(rawStart);
        const auto jsonStart = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(plainReadAll(folder, true));
        jsonSeconds += secondsSince(jsonStart);
        state.ResumeTiming();
    }
    if (wrong)
        state.SkipWithError("the pull did not take exactly the edited palette");
    const double n = double(state.iterations());
    state.counters["pull_ms"] = pullSeconds / n * 1e3;
    state.counters["pull_read_ms"] = readSeconds / n * 1e3;
    state.counters["raw_ms"] = rawSeconds / n * 1e3;
    state.counters["json_ms"] = jsonSeconds / n * 1e3;
    state.counters["pull/raw"] = rawSeconds > 0.0 ? pullSeconds / rawSeconds : 0.0;
    state.counters["pull/json"] = jsonSeconds > 0.0 ? pullSeconds / jsonSeconds : 0.0;
}
BENCHMARK(BM_Pull)->Apply(paletteSizes);

} // namespace
} // namespace hueshelf::bench
