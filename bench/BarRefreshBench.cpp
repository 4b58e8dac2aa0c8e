// How long an edit takes to reach the bar: the store changes one colour, the bar's model works
// out its swatches and the check's count, and the real window (offscreen) rebuilds its row and
// takes its new width. Measured for palettes of 6, 40 and 200 colours, the last being the
// largest a palette file may hold.

#include "BenchPalettes.h"
#include "app/BarModel.h"
#include "app/FloatingWindow.h"
#include "app/ToastManager.h"
#include "model/ColorStorage.h"
#include "model/RecentColorsManager.h"
#include "model/TemplateWriter.h"
#include "platform/fake/FakePlatform.h"
#include "util/Clock.h"
#include "util/QtScheduler.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace hueshelf::bench {
namespace {

// Saves go nowhere: the file work is measured elsewhere.
class DiscardingWriter final : public TemplateWriter {
public:
    void writeTemplates(const SaveRequest&, Written, Finished finished) override { finished(); }
    void writeShadowState(const QByteArray&) override {}
};

void ensureApplication() {
    if (QApplication::instance())
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "hueshelf_bench_barrefresh";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv);
}

void BM_editReachesTheBar(benchmark::State& state) {
    ensureApplication();
    PaletteMaker maker(7);
    ColorTemplate palette = maker.nextPalette(0);
    palette.colors.clear();
    for (int i = 0; i < state.range(0); ++i)
        palette.colors.append(maker.nextColor(i));
    LoadedTemplates loaded;
    loaded.templates = {palette};
    loaded.activeTemplateId = palette.id;

    QtScheduler scheduler;
    DiscardingWriter writer;
    ColorStorage storage(SystemClock::instance(), scheduler, loaded);
    storage.setWriter(&writer);
    FakePlatform platform;
    QTemporaryDir dir;
    QSettings settings(dir.filePath(u"bench.conf"_s), QSettings::IniFormat);
    RecentColorsManager recent(settings);
    app::ToastManager toasts(scheduler, [] { return app::ToastManager::BarState{}; });
    app::BarModel model(
        app::BarModel::Services{{storage, platform, settings, recent, toasts, scheduler}});
    app::FloatingWindow window(model);

    for (auto _ : state) {
        const ColorItem& first = storage.activeTemplate()->colors.constFirst();
        storage.updateColor(first.id, first.name, maker.nextHex(), false);
        benchmark::DoNotOptimize(window.width());
        // The replaced swatches go on the next turn of the loop, as they do in the program.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    state.counters["issues"] = model.issueCount();
}

BENCHMARK(BM_editReachesTheBar)->Arg(6)->Arg(40)->Arg(200)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace hueshelf::bench
