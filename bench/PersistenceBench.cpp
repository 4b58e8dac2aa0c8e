// What a save, a load and a merge of the palette store cost with 100, 1,000 and 10,000
// palettes of twelve colours, next to the physical floor of replacing a file of the same size.
//
// Targets: at 1,000 palettes the main-thread part of a save (stamping with one palette changed,
// encoding, the copies handed to the writer) stays under a tenth of a 60 Hz frame, 1.67 ms; the
// whole save (that part, then the writer's read-merge-write cycle on a real file) stays within
// three times the floor. Each whole-save iteration also replaces a same-sized file with a plain
// atomic write, so both figures see the same disk and the same load; "save/floor" is their
// ratio.
//
// Everything is wall-clock time: the writer works on its own thread and the disk is part of
// the cost.

#include "BenchFiles.h"
#include "BenchPalettes.h"
#include "model/ColorStorage.h"
#include "model/LoadedTemplates.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/PreferencesWrite.h"
#include "model/PreferencesWriter.h"
#include "model/TemplateJson.h"
#include "model/TemplateLoader.h"
#include "model/TemplateMerge.h"
#include "model/TemplateWriter.h"
#include "util/Clock.h"
#include "util/QtScheduler.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QSettings>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace hueshelf::bench {
namespace {

constexpr std::uint32_t kSeed = 20240611;

void ensureCoreApplication() {
    if (QCoreApplication::instance())
        return;
    static int argc = 1;
    static char name[] = "hueshelf_bench_persistence";
    static char* argv[] = {name, nullptr};
    static auto* application = new QCoreApplication(argc, argv);
    Q_UNUSED(application);
}

// Moves on by a millisecond at each reading, so every save has its own stamp and the file's
// stamp never goes backwards.
class SteppingClock final : public Clock {
public:
    double nowMs() const override { return m_now += 1.0; }

private:
    mutable double m_now = kEpochMs;
};

// Takes the request and lets it go: what remains is exactly the store's own work.
class DiscardingWriter final : public TemplateWriter {
public:
    void writeTemplates(const SaveRequest& request, Written written, Finished finished) override {
        Q_UNUSED(written);
        benchmark::DoNotOptimize(request.json.constData());
        finished();
    }
    void writeShadowState(const QByteArray& json) override { Q_UNUSED(json); }
};

LoadedTemplates loadedFrom(const QList<ColorTemplate>& templates) {
    LoadedTemplates loaded;
    loaded.templates = templates;
    loaded.activeTemplateId = templates.constFirst().id;
    loaded.baselineStamp = 0.0;
    return loaded;
}

// The kind of edit that ends in a save: a new code for one colour of one palette.
void editOne(ColorStorage& store, PaletteMaker& maker) {
    const QList<ColorTemplate>& templates = store.templates();
    const QUuid id = templates.at(qsizetype(maker.below(std::uint32_t(templates.size())))).id;
    const QString hex = maker.nextHex();
    store.editTemplate(id, [&](ColorTemplate& palette) { palette.colors[0].hex = hex; });
}

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// A temporary home for one store with its real writer, and a preferences file that another
// process has also written to (it holds a key of its own that every save must keep).
class SaveRig {
public:
    explicit SaveRig(int paletteCount) : m_maker(kSeed) {
        ensureCoreApplication();
        preferencesPath = m_dir.filePath(u"hueshelf/io.hueshelf.Hueshelf.json"_s);
        floorPath = m_dir.filePath(u"hueshelf/floor.json"_s);
        QDir().mkpath(m_dir.filePath(u"hueshelf"_s));
        QJsonObject other;
        other.insert(u"helper.lastSeenVersion"_s, u"0.1.0"_s);
        QFile file(preferencesPath);
        if (file.open(QIODevice::WriteOnly))
            file.write(QJsonDocument(other).toJson());
        file.close();

        m_settings = std::make_unique<QSettings>(m_dir.filePath(u"hueshelf/hueshelf.conf"_s),
                                                 QSettings::IniFormat);
        m_store = std::make_unique<ColorStorage>(m_clock, m_scheduler,
                                                 loadedFrom(m_maker.palettes(paletteCount)));
        m_writer = std::make_unique<PreferencesWriter>(preferencesPath, *m_settings);
        m_store->setWriter(m_writer.get());
        // The first save writes every palette; the ones measured find the file as it stays.
        save();
    }

    ~SaveRig() {
        m_store->setWriter(nullptr);
        m_writer.reset();
        QCoreApplication::processEvents();
    }

    void editOne() { bench::editOne(*m_store, m_maker); }

    void save() {
        m_store->saveTemplates();
        m_writer->drain();
    }

    // Lets go of the writer's queued wake-ups; drain() has already delivered their work.
    void settle() { QCoreApplication::processEvents(); }

    qint64 fileSize() const { return QFileInfo(preferencesPath).size(); }
    QByteArray fileBytes() const { return bench::fileBytes(preferencesPath); }

    bool fileKeptOtherKey() const {
        const std::optional<QJsonObject> object = PreferencesFile::read(preferencesPath);
        return object && object->contains(u"helper.lastSeenVersion"_s);
    }

    const ColorStorage& store() const { return *m_store; }
    QSettings& settings() { return *m_settings; }

    QString preferencesPath;
    QString floorPath;

private:
    QTemporaryDir m_dir;
    PaletteMaker m_maker;
    SteppingClock m_clock;
    QtScheduler m_scheduler;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<ColorStorage> m_store;
    std::unique_ptr<PreferencesWriter> m_writer;
};

void paletteSizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime();
}

// --- The main-thread part of a save ----------------------------------------------------------

void BM_SaveMainThread(benchmark::State& state) {
    ensureCoreApplication();
    const int count = int(state.range(0));
    PaletteMaker maker(kSeed);
    SteppingClock clock;
    QtScheduler scheduler;
    ColorStorage store(clock, scheduler, loadedFrom(maker.palettes(count)));
    DiscardingWriter writer;
    store.setWriter(&writer);
    // The first save after start hashes everything; the edits measured below follow it.
    store.saveTemplates();

    qint64 revisions = 0;
    for (const ColorTemplate& palette : store.templates())
        revisions += palette.revision;
    for (auto _ : state) {
        state.PauseTiming();
        editOne(store, maker);
        state.ResumeTiming();
        store.saveTemplates();
    }
    qint64 after = 0;
    for (const ColorTemplate& palette : store.templates())
        after += palette.revision;
    // Each save must have stamped exactly the palette that was edited (an edit that happened to
    // restore an earlier content is possible in principle, so only more stamps are an error).
    if (after - revisions > qint64(state.iterations()) || after == revisions)
        state.SkipWithError("saves did not stamp the edited palettes");
    state.counters["palettes"] = double(count);
}
BENCHMARK(BM_SaveMainThread)->Apply(paletteSizes);

// --- The whole save, and the floor beside it -------------------------------------------------

void BM_WholeSave(benchmark::State& state) {
    SaveRig rig(int(state.range(0)));
    const QByteArray floorBytes = rig.fileBytes();
    double saveSeconds = 0.0;
    double floorSeconds = 0.0;
    bool floorFailed = false;
    for (auto _ : state) {
        state.PauseTiming();
        rig.editOne();
        rig.settle();
        state.ResumeTiming();

        const auto saveStart = std::chrono::steady_clock::now();
        rig.save();
        saveSeconds += secondsSince(saveStart);

        state.PauseTiming();
        const auto floorStart = std::chrono::steady_clock::now();
        floorFailed |= !plainAtomicWrite(rig.floorPath, floorBytes);
        floorSeconds += secondsSince(floorStart);
        state.ResumeTiming();
    }
    if (floorFailed)
        state.SkipWithError("the plain atomic write failed");
    if (!rig.fileKeptOtherKey())
        state.SkipWithError("a save lost another process's key");
    const double n = double(state.iterations());
    state.counters["file_MB"] = double(rig.fileSize()) / 1e6;
    state.counters["save_ms"] = saveSeconds / n * 1e3;
    state.counters["floor_ms"] = floorSeconds / n * 1e3;
    state.counters["save/floor"] = floorSeconds > 0.0 ? saveSeconds / floorSeconds : 0.0;
}
BENCHMARK(BM_WholeSave)->Apply(paletteSizes);

void BM_AtomicWriteFloor(benchmark::State& state) {
    SaveRig rig(int(state.range(0)));
    const QByteArray bytes = rig.fileBytes();
    bool failed = false;
    for (auto _ : state)
        failed |= !plainAtomicWrite(rig.floorPath, bytes);
    if (failed)
        state.SkipWithError("the plain atomic write failed");
    state.counters["file_MB"] = double(bytes.size()) / 1e6;
}
BENCHMARK(BM_AtomicWriteFloor)->Apply(paletteSizes);

// The writer's cycle when it meets a file it didn't write itself (the first save after start, or
// one after another process wrote): the whole file is parsed and its palettes decoded, then
// written with the four keys set. Nobody wrote since the baseline, so nothing is merged.
void BM_WriterCycleForeignFile(benchmark::State& state) {
    SaveRig rig(int(state.range(0)));
    const std::optional<QJsonObject> file = PreferencesFile::read(rig.preferencesPath);
    const SteppingClock clock;
    const auto templates =
        TemplateJson::decodeTemplates(PreferencesFile::templatesData(*file).value(), clock);
    SaveRequest request;
    request.templates = *templates;
    request.json = TemplateJson::encodeTemplates(request.templates);
    request.baselineTemplates = request.templates;
    request.activeTemplateId = uuidText(request.templates.constFirst().id);
    double stamp = file->value(PreferencesKeys::lastModified).toDouble();
    bool failed = false;
    for (auto _ : state) {
        std::optional<OwnWrite> noOwnWrite;
        request.baselineStamp = stamp;
        stamp += 1.0;
        request.nowMs = stamp;
        const SaveOutcome outcome = writePreferences(rig.preferencesPath, request, noOwnWrite);
        failed |= !outcome.wroteFile;
    }
    if (failed)
        state.SkipWithError("the write failed");
}
BENCHMARK(BM_WriterCycleForeignFile)->Apply(paletteSizes);

// --- The load at start -----------------------------------------------------------------------

void BM_Load(benchmark::State& state) {
    const int count = int(state.range(0));
    SaveRig rig(count);
    const SteppingClock clock;
    qsizetype loadedCount = 0;
    for (auto _ : state) {
        const LoadedTemplates loaded =
            TemplateLoader::load(rig.preferencesPath, rig.settings(), clock);
        loadedCount = loaded.templates.size();
        benchmark::DoNotOptimize(loaded.dataHash);
    }
    if (loadedCount != count)
        state.SkipWithError("the load did not find every palette");
}
BENCHMARK(BM_Load)->Apply(paletteSizes);

// --- The three-way merge ---------------------------------------------------------------------

// Both sides started from `base`: each edited, added and deleted a handful of palettes, and one
// palette was edited on both sides.
struct MergeCase {
    QList<ColorTemplate> base;
    QList<ColorTemplate> local;
    QList<ColorTemplate> incoming;
    QByteArray incomingJson;
    double baseStamp = kEpochMs;
    double incomingStamp = kEpochMs + 60'000.0;
    qsizetype expectedSize = 0;
};

MergeCase makeMergeCase(int count) {
    constexpr int kChanged = 5;
    constexpr int kAdded = 3;
    constexpr int kDeleted = 3;
    PaletteMaker maker(kSeed);
    MergeCase merge;
    merge.base = maker.palettes(count);
    merge.local = merge.base;
    merge.incoming = merge.base;
    const qsizetype n = merge.base.size();
    // Local works near the front, the other process near the back, both on the middle one.
    for (int i = 0; i < kChanged; ++i) {
        maker.edit(merge.local[1 + i * 3], kEpochMs + 10'000.0);
        maker.edit(merge.incoming[n - 2 - i * 3], kEpochMs + 20'000.0);
    }
    maker.edit(merge.local[n / 2], kEpochMs + 30'000.0);
    maker.edit(merge.incoming[n / 2], kEpochMs + 40'000.0);
    for (int i = 0; i < kDeleted; ++i) {
        merge.local.removeAt(n / 4 + 1);
        merge.incoming.removeAt(3 * n / 4 - 1);
    }
    for (int i = 0; i < kAdded; ++i) {
        merge.local.append(maker.nextPalette(count + i));
        merge.incoming.append(maker.nextPalette(count + kAdded + i));
    }
    merge.incomingJson = TemplateJson::encodeTemplates(merge.incoming);
    // Local's deletions stay deleted, the other side's don't, and both sides' additions stay.
    merge.expectedSize = n - kDeleted + kAdded + kAdded;
    return merge;
}

// As a save or the external-change check meets it: the other side's list still as bytes.
void BM_MergeWithDecode(benchmark::State& state) {
    const MergeCase merge = makeMergeCase(int(state.range(0)));
    const SteppingClock clock;
    qsizetype mergedSize = 0;
    for (auto _ : state) {
        const std::optional<QList<ColorTemplate>> incoming =
            TemplateJson::decodeTemplates(merge.incomingJson, clock);
        const QList<ColorTemplate> merged = mergeTemplates(
            merge.base, merge.local, incoming.value(), merge.baseStamp, merge.incomingStamp);
        mergedSize = merged.size();
    }
    if (mergedSize != merge.expectedSize)
        state.SkipWithError("the merge result has the wrong size");
}
BENCHMARK(BM_MergeWithDecode)->Apply(paletteSizes);

void BM_MergeOnly(benchmark::State& state) {
    const MergeCase merge = makeMergeCase(int(state.range(0)));
    qsizetype mergedSize = 0;
    for (auto _ : state) {
        const QList<ColorTemplate> merged = mergeTemplates(merge.base, merge.local, merge.incoming,
                                                           merge.baseStamp, merge.incomingStamp);
        mergedSize = merged.size();
    }
    if (mergedSize != merge.expectedSize)
        state.SkipWithError("the merge result has the wrong size");
}
BENCHMARK(BM_MergeOnly)->Apply(paletteSizes);

} // namespace
} // namespace hueshelf::bench
