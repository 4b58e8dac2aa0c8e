// Per-call cost of the colour functions that run for every swatch on each drawing of a list and
// inside the palette check's loops, over a fixed mix of codes.

#include "color/ColorUtils.h"

#include <benchmark/benchmark.h>

#include <array>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

const std::array<QString, 16>& sampleCodes() {
    static const std::array<QString, 16> codes{
        u"#3366FF"_s, u"#FF0000"_s, u"#00FF00"_s, u"#0000FF"_s, u"#FFFFFF"_s, u"#000000"_s,
        u"#808080"_s, u"#FFA500"_s, u"#800080"_s, u"#FFC0CB"_s, u"#2E8B57"_s, u"#D2B48C"_s,
        u"#F5F5DC"_s, u"#4682B4"_s, u"#8B0000"_s, u"#E6E6FA"_s,
    };
    return codes;
}

const std::array<QString, 8>& samplePastes() {
    static const std::array<QString, 8> pastes{
        u"#3366ff"_s,
        u"  ##ff00aa\n"_s,
        u"rgb(51, 102, 255)"_s,
        u"rgba(10, 20, 30, 0.5)"_s,
        u"hsl(225, 100%, 60%)"_s,
        u"HSLA(400, 50%, 50%, 0.3)"_s,
        u"#abc"_s,
        u"not a colour"_s,
    };
    return pastes;
}

void BM_colorName(benchmark::State& state) {
    const auto& codes = sampleCodes();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(colorName(codes[i++ % codes.size()]));
    }
}
BENCHMARK(BM_colorName);

void BM_contrastLevel(benchmark::State& state) {
    const auto& codes = sampleCodes();
    std::size_t i = 0;
    for (auto _ : state) {
        const QString& text = codes[i % codes.size()];
        const QString& background = codes[(i * 7 + 3) % codes.size()];
        benchmark::DoNotOptimize(contrastLevel(text, background));
        ++i;
    }
}
BENCHMARK(BM_contrastLevel);

void BM_parseColorCode(benchmark::State& state) {
    const auto& pastes = samplePastes();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseColorCode(pastes[i++ % pastes.size()]));
    }
}
BENCHMARK(BM_parseColorCode);

void BM_adjustedForContrast(benchmark::State& state) {
    const auto& codes = sampleCodes();
    std::size_t i = 0;
    for (auto _ : state) {
        const QString& text = codes[i % codes.size()];
        const QString& background = codes[(i * 5 + 1) % codes.size()];
        benchmark::DoNotOptimize(adjustedForContrast(text, background, 4.5));
        ++i;
    }
}
BENCHMARK(BM_adjustedForContrast);

} // namespace
