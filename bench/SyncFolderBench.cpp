// What writing and reading the sync folder's palette files costs with 100, 1,000 and 10,000
// palettes of twelve colours: a push writes every palette's file, a pull reads them all.
//
// Each figure stands beside a floor taken in the same iteration on the same disk: the same
// bytes written with a plain atomic write (QSaveFile of bytes encoded beforehand), and the same
// files read with a plain listing and QFile reads. "sync/floor" is their ratio: what encoding,
// decoding, the tolerant reading and the folder filters add to the physical work.
//
// Everything is wall-clock time; the disk is part of the cost.

#include "BenchFiles.h"
#include "BenchPalettes.h"
#include "sync/SyncConversion.h"
#include "sync/SyncFolder.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>

using namespace Qt::StringLiterals;

namespace hueshelf::bench {
namespace {

constexpr std::uint32_t kSeed = 20240611;
const QString kDeviceId = u"0A0A0A0A-1111-4222-8333-444444444444"_s;

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

QList<SyncableTemplate> records(int count) {
    PaletteMaker maker(kSeed);
    QList<SyncableTemplate> list;
    list.reserve(count);
    for (const ColorTemplate& palette : maker.palettes(count))
        list.append(syncableFrom(palette, kDeviceId));
    return list;
}

// The least a pull must do: list the folder and read every file whole.
qint64 plainReadAll(const QString& folder) {
    qint64 total = 0;
    const QDir dir(folder);
    for (const QString& name : dir.entryList(QDir::Files, QDir::Name)) {
        QFile file(dir.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            total += file.readAll().size();
    }
    return total;
}

void paletteSizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime();
}

// The benchmark's own time holds both halves; the counters split them.
void BM_WriteTemplates(benchmark::State& state) {
    const QList<SyncableTemplate> list = records(int(state.range(0)));
    QList<std::pair<QString, QByteArray>> floorFiles;
    QTemporaryDir dir;
    const QString syncFolder = dir.filePath(u"sync"_s);
    const QString floorFolder = dir.filePath(u"floor"_s);
    QDir().mkpath(syncFolder);
    QDir().mkpath(floorFolder);
    qint64 bytes = 0;
    for (const SyncableTemplate& record : list) {
        const QByteArray encoded = SyncFolder::encode(record.toJson());
        bytes += encoded.size();
        floorFiles.append(
            {QDir(floorFolder).filePath(SyncFolder::templateFileName(record.id)), encoded});
    }

    // File by file, each write beside its floor, so that both meet the disk in the same state
    // (the journal, the directory's growth, other processes' load).
    double syncSeconds = 0.0;
    double floorSeconds = 0.0;
    bool failed = false;
    for (auto _ : state) {
        for (qsizetype i = 0; i < list.size(); ++i) {
            const auto syncStart = std::chrono::steady_clock::now();
            failed |= SyncFolder::writeTemplate(list.at(i), syncFolder).has_value();
            syncSeconds += secondsSince(syncStart);

            const auto floorStart = std::chrono::steady_clock::now();
            failed |= !plainAtomicWrite(floorFiles.at(i).first, floorFiles.at(i).second);
            floorSeconds += secondsSince(floorStart);
        }
    }
    if (failed)
        state.SkipWithError("a write failed");
    if (SyncFolder::readTemplatesFolder(syncFolder).size() != list.size())
        state.SkipWithError("the folder does not read back every palette");
    const double n = double(state.iterations());
    state.counters["file_kB"] = double(bytes) / double(list.size()) / 1e3;
    state.counters["sync_ms"] = syncSeconds / n * 1e3;
    state.counters["floor_ms"] = floorSeconds / n * 1e3;
    state.counters["sync/floor"] = floorSeconds > 0.0 ? syncSeconds / floorSeconds : 0.0;
}
BENCHMARK(BM_WriteTemplates)->Apply(paletteSizes);

void BM_ReadTemplates(benchmark::State& state) {
    const QList<SyncableTemplate> list = records(int(state.range(0)));
    QTemporaryDir dir;
    bool failed = false;
    for (const SyncableTemplate& record : list)
        failed |= SyncFolder::writeTemplate(record, dir.path()).has_value();
    if (failed) {
        state.SkipWithError("writing the folder failed");
        return;
    }

    double syncSeconds = 0.0;
    double floorSeconds = 0.0;
    qsizetype readCount = 0;
    qint64 floorBytes = 0;
    for (auto _ : state) {
        const auto syncStart = std::chrono::steady_clock::now();
        const QList<SyncableTemplate> read = SyncFolder::readTemplatesFolder(dir.path());
        syncSeconds += secondsSince(syncStart);
        readCount = read.size();

        state.PauseTiming();
        const auto floorStart = std::chrono::steady_clock::now();
        floorBytes = plainReadAll(dir.path());
        floorSeconds += secondsSince(floorStart);
        state.ResumeTiming();
    }
    if (readCount != list.size())
        state.SkipWithError("the folder did not read back every palette");
    const double n = double(state.iterations());
    state.counters["folder_MB"] = double(floorBytes) / 1e6;
    state.counters["sync_ms"] = syncSeconds / n * 1e3;
    state.counters["floor_ms"] = floorSeconds / n * 1e3;
    state.counters["sync/floor"] = floorSeconds > 0.0 ? syncSeconds / floorSeconds : 0.0;
}
BENCHMARK(BM_ReadTemplates)->Apply(paletteSizes);

} // namespace
} // namespace hueshelf::bench
