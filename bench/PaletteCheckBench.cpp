// The palette check as the bar and the check popover run it: `detect` on each drawing of the
// bar, `issuesWithMoves` on each drawing of the popover, whose fix search may check the palette
// again up to 180 times per look-alike pair. Each is measured against the plain implementation
// kept in tests/support, on ordinary palettes and on palettes made of red-green look-alikes, the
// case where the fix search does the most work. The popover wants a whole answer inside one
// frame at 60 Hz (16.7 ms).
//
// Arguments: palette size, then 0 for an ordinary palette, 1 for a look-alike palette.

#include "StraightPaletteCheck.h"
#include "color/ColorUtils.h"
#include "color/PaletteCheck.h"
#include "model/ColorItem.h"

#include <QList>
#include <QUuid>

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <random>

using namespace Qt::StringLiterals;

namespace {

using hueshelf::ColorItem;

class CheckPaletteMaker {
public:
    explicit CheckPaletteMaker(std::uint32_t seed) : m_random(seed) {}

    QList<ColorItem> palette(int size, bool lookAlikes) {
        QList<ColorItem> colors;
        for (int i = 0; i < size; ++i) {
            ColorItem color;
            color.id = nextId();
            color.name = u"Color %1"_s.arg(i + 1);
            color.hex = lookAlikes ? lookAlikeHex(i) : ordinaryHex();
            color.isAutoNamed = true;
            color.isLocked = uniform(0.0, 1.0) < 0.1;
            colors.append(color);
        }
        return colors;
    }

private:
    QUuid nextId() {
        std::array<uchar, 16> bytes{};
        for (uchar& byte : bytes)
            byte = static_cast<uchar>(m_random() & 0xFFu);
        bytes[6] = static_cast<uchar>((bytes[6] & 0x0Fu) | 0x40u);
        bytes[8] = static_cast<uchar>((bytes[8] & 0x3Fu) | 0x80u);
        return QUuid::fromRfc4122(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
    }

    double uniform(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(m_random);
    }

    QString ordinaryHex() {
        return hueshelf::ColorUtils::hslToHex(uniform(0.0, 360.0), uniform(0.0, 1.0),
                                              uniform(0.05, 0.95));
    }

    // Saturated reds, oranges, olives and greens at middle lightness: under red-green vision
    // most of them collapse onto a few browns, and none is exempt as grey, light or very dark.
    // Every sixth colour is a light one and every eighth a dark one, so readability takes part.
    QString lookAlikeHex(int index) {
        if (index % 6 == 5)
            return hueshelf::ColorUtils::hslToHex(uniform(0.0, 360.0), uniform(0.2, 0.8),
                                                  uniform(0.8, 0.95));
        if (index % 8 == 7)
            return hueshelf::ColorUtils::hslToHex(uniform(0.0, 360.0), uniform(0.2, 0.8),
                                                  uniform(0.1, 0.3));
        return hueshelf::ColorUtils::hslToHex(uniform(0.0, 140.0), uniform(0.55, 0.95),
                                              uniform(0.3, 0.55));
    }

    std::mt19937 m_random;
};

QList<ColorItem> benchPalette(const benchmark::State& state) {
    CheckPaletteMaker maker(20240611u + static_cast<std::uint32_t>(state.range(0)));
    return maker.palette(static_cast<int>(state.range(0)), state.range(1) != 0);
}

void describe(benchmark::State& state, const QList<ColorItem>& colors) {
    const std::vector<hueshelf::PaletteCheck::Issue> issues =
        hueshelf::PaletteCheck::detect(colors);
    int lookAlikes = 0;
    for (const auto& issue : issues)
        lookAlikes += hueshelf::PaletteCheck::isLookAlike(issue.kind) ? 1 : 0;
    state.counters["issues"] = static_cast<double>(issues.size());
    state.counters["lookAlikes"] = lookAlikes;
    state.SetLabel(state.range(1) != 0 ? "look-alike palette" : "ordinary palette");
}

void BM_detect(benchmark::State& state) {
    const QList<ColorItem> colors = benchPalette(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(hueshelf::PaletteCheck::detect(colors));
    describe(state, colors);
}

void BM_detectStraight(benchmark::State& state) {
    const QList<ColorItem> colors = benchPalette(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(hueshelf::straight::detect(colors));
    describe(state, colors);
}

void BM_issuesWithMoves(benchmark::State& state) {
    const QList<ColorItem> colors = benchPalette(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(hueshelf::PaletteCheck::issuesWithMoves(colors));
    describe(state, colors);
}

void BM_issuesWithMovesStraight(benchmark::State& state) {
    const QList<ColorItem> colors = benchPalette(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(hueshelf::straight::issuesWithMoves(colors));
    describe(state, colors);
}

void paletteSizes(benchmark::internal::Benchmark* bench) {
    for (const int lookAlikes : {0, 1}) {
        for (const int size : {6, 12, 40, 100})
            bench->Args({size, lookAlikes});
    }
}

BENCHMARK(BM_detect)->Apply(paletteSizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_detectStraight)->Apply(paletteSizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_issuesWithMoves)->Apply(paletteSizes)->Unit(benchmark::kMillisecond);
// The plain search on a hundred look-alikes takes seconds a run: a few runs are enough.
BENCHMARK(BM_issuesWithMovesStraight)
    ->Apply(paletteSizes)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(0.5);

} // namespace
