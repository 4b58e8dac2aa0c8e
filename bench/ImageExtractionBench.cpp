// What a palette from a dropped camera photo costs: extraction from a 24-megapixel JPEG and a
// 24-megapixel PNG, in the same run as ImageMagick making a six-colour 50x50 thumbnail and as
// the decode floor of the JPEG (libjpeg-turbo decoding at 1/8 scale and nothing else).
//
// Targets: the JPEG within twice the floor and faster than ImageMagick; peak memory that
// follows the scaled image, not the full one (a 24-megapixel RGBA bitmap alone is 92 MiB).
//
// Every contender runs as a child process, so that the times include the same process start
// and the peak resident size (from wait4) is each one's own. Our own child is this program,
// started again with --child-extract; --child-idle gives the size of the program doing nothing,
// which is what the extraction adds to. An in-process figure follows for the work alone.
//
// The two pictures are made once with ImageMagick's seeded plasma, which has the smooth
// gradients and noise of a photo, and kept in the temporary folder between runs.

#include "color/ExtractionRandom.h"
#include "color/ImageColorExtractor.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QString>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <optional>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <vector>

extern char** environ;

using namespace Qt::StringLiterals;

namespace {

struct ChildRun {
    double seconds = 0;
    double peakMiB = 0;
    int status = -1;
};

std::string g_self;

// Starts a program with its output thrown away and waits for it, timing it and reading its
// peak resident size from the kernel.
ChildRun runChild(const std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);

    ChildRun run;
    const auto start = std::chrono::steady_clock::now();
    pid_t pid = 0;
    if (posix_spawnp(&pid, argv.front(), &actions, nullptr, argv.data(), environ) != 0) {
        posix_spawn_file_actions_destroy(&actions);
        return run;
    }
    int status = 0;
    rusage usage{};
    wait4(pid, &status, 0, &usage);
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run.peakMiB = static_cast<double>(usage.ru_maxrss) / 1024.0; // ru_maxrss is in KiB
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    posix_spawn_file_actions_destroy(&actions);
    return run;
}

struct Pictures {
    std::string jpeg;
    std::string png;
};

std::optional<Pictures> g_pictures;

std::optional<Pictures> makePictures() {
    const QString folder = QDir::tempPath() + u"/hueshelf-bench-images"_s;
    QDir().mkpath(folder);
    Pictures pictures{QString(folder + u"/photo-6000x4000.jpg"_s).toStdString(),
                      QString(folder + u"/photo-6000x4000.png"_s).toStdString()};
    const std::string source = QString(folder + u"/photo-6000x4000.miff"_s).toStdString();
    const auto exists = [](const std::string& path) {
        return QFileInfo::exists(QString::fromStdString(path));
    };
    if (!exists(pictures.jpeg) || !exists(pictures.png)) {
        std::fprintf(stderr, "Making the 24-megapixel pictures in %s (once)...\n",
                     qPrintable(folder));
        if (runChild({"convert", "-seed", "7", "-size", "6000x4000", "plasma:fractal", source})
                    .status != 0 ||
            runChild({"convert", source, "-quality", "90", pictures.jpeg}).status != 0 ||
            runChild({"convert", source, pictures.png}).status != 0) {
            return std::nullopt;
        }
        QFile::remove(QString::fromStdString(source));
    }
    return pictures;
}

// Medians of the child runs, for the summary at the end.
std::map<std::string, ChildRun> g_results;

void reportChild(benchmark::State& state, const std::string& key,
                 const std::vector<std::string>& arguments) {
    if (!g_pictures) {
        state.SkipWithError("ImageMagick could not make the pictures");
        return;
    }
    std::vector<ChildRun> runs;
    for (auto _ : state) {
        const ChildRun run = runChild(arguments);
        if (run.status != 0) {
            state.SkipWithError(("child failed: " + arguments.front()).c_str());
            return;
        }
        state.SetIterationTime(run.seconds);
        runs.push_back(run);
    }
    std::sort(runs.begin(), runs.end(),
              [](const ChildRun& a, const ChildRun& b) { return a.seconds < b.seconds; });
    const ChildRun median = runs[runs.size() / 2];
    double peak = 0;
    for (const ChildRun& run : runs)
        peak = std::max(peak, run.peakMiB);
    state.counters["peak_MiB"] = peak;
    g_results[key] = ChildRun{median.seconds, peak, 0};
}

void BM_Idle_Ours(benchmark::State& state) {
    reportChild(state, "idle", {g_self, "--child-idle"});
}

void BM_Jpeg_Ours(benchmark::State& state) {
    reportChild(state, "jpeg/ours", {g_self, "--child-extract", g_pictures->jpeg});
}

void BM_Jpeg_ImageMagick(benchmark::State& state) {
    reportChild(state, "jpeg/imagemagick",
                {"convert", "-define", "jpeg:size=100x100", g_pictures->jpeg, "-thumbnail",
                 "50x50!", "-colors", "6", "null:"});
}

void BM_Jpeg_DecodeFloor(benchmark::State& state) {
    reportChild(state, "jpeg/floor", {"djpeg", "-scale", "1/8", g_pictures->jpeg});
}

void BM_Png_Ours(benchmark::State& state) {
    reportChild(state, "png/ours", {g_self, "--child-extract", g_pictures->png});
}

void BM_Png_ImageMagick(benchmark::State& state) {
    reportChild(state, "png/imagemagick",
                {"convert", g_pictures->png, "-thumbnail", "50x50!", "-colors", "6", "null:"});
}

// The work alone, without a process around it.
void BM_InProcess(benchmark::State& state, bool jpeg) {
    if (!g_pictures) {
        state.SkipWithError("ImageMagick could not make the pictures");
        return;
    }
    const QString path = QString::fromStdString(jpeg ? g_pictures->jpeg : g_pictures->png);
    hueshelf::ExtractionRandom random(1);
    for (auto _ : state) {
        const auto colors = hueshelf::ImageColorExtractor::extractColors(path, 6, random);
        if (!colors || colors->isEmpty()) {
            state.SkipWithError("no colours extracted");
            return;
        }
        benchmark::DoNotOptimize(colors);
    }
}

void printSummary() {
    const auto has = [](const char* key) { return g_results.count(key) > 0; };
    if (!has("jpeg/ours") || !has("jpeg/floor") || !has("jpeg/imagemagick"))
        return;
    const ChildRun& ours = g_results["jpeg/ours"];
    const ChildRun& floor = g_results["jpeg/floor"];
    const ChildRun& magick = g_results["jpeg/imagemagick"];
    std::printf("\nJPEG 24 MP: ours %.1f ms, floor %.1f ms (ours/floor %.2f, target <= 2), "
                "ImageMagick %.1f ms (ours/ImageMagick %.2f, target < 1)\n",
                ours.seconds * 1e3, floor.seconds * 1e3, ours.seconds / floor.seconds,
                magick.seconds * 1e3, ours.seconds / magick.seconds);
    const double idle = has("idle") ? g_results["idle"].peakMiB : 0.0;
    std::printf("JPEG 24 MP peak: ours %.1f MiB (%.1f over the idle program), floor %.1f MiB, "
                "ImageMagick %.1f MiB\n",
                ours.peakMiB, ours.peakMiB - idle, floor.peakMiB, magick.peakMiB);
    if (has("png/ours") && has("png/imagemagick")) {
        const ChildRun& png = g_results["png/ours"];
        const ChildRun& pngMagick = g_results["png/imagemagick"];
        std::printf("PNG 24 MP: ours %.1f ms, %.1f MiB peak (%.1f over idle); ImageMagick "
                    "%.1f ms, %.1f MiB peak\n",
                    png.seconds * 1e3, png.peakMiB, png.peakMiB - idle, pngMagick.seconds * 1e3,
                    pngMagick.peakMiB);
    }
}

} // namespace

int main(int argc, char** argv) {
    // The child modes: one extraction, or nothing, then out.
    if (argc >= 2 && std::strcmp(argv[1], "--child-idle") == 0)
        return 0;
    if (argc == 3 && std::strcmp(argv[1], "--child-extract") == 0) {
        hueshelf::ExtractionRandom random(1);
        const auto colors = hueshelf::ImageColorExtractor::extractColors(
            QString::fromLocal8Bit(argv[2]), 6, random);
        return colors && !colors->isEmpty() ? 0 : 1;
    }

    g_self = argv[0];
    g_pictures = makePictures();
    if (g_pictures) {
        constexpr int runs = 7;
        benchmark::RegisterBenchmark("child/idle_program", BM_Idle_Ours)
            ->Iterations(runs)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("child/jpeg24mp/hueshelf", BM_Jpeg_Ours)
            ->Iterations(runs)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("child/jpeg24mp/djpeg_scale_1_8_floor", BM_Jpeg_DecodeFloor)
            ->Iterations(runs)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("child/jpeg24mp/imagemagick", BM_Jpeg_ImageMagick)
            ->Iterations(runs)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("child/png24mp/hueshelf", BM_Png_Ours)
            ->Iterations(3)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("child/png24mp/imagemagick", BM_Png_ImageMagick)
            ->Iterations(3)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("in_process/jpeg24mp", BM_InProcess, true)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("in_process/png24mp", BM_InProcess, false)
            ->Unit(benchmark::kMillisecond);
    } else {
        std::fprintf(stderr, "ImageMagick's convert is needed to make the pictures\n");
    }

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    printSummary();
    return 0;
}
