#pragma once

// Internal to the palette check: everything the check asks of one colour, read from its text
// once. The check and its fix search compare these numbers instead of parsing and simulating the
// same codes again for every pair and every candidate. Every field is exactly what the public
// colour functions give for the same text, so results don't move by a bit.

#include "color/ColorUtils.h"
#include "color/PaletteCheck.h"

#include <QList>
#include <QString>

#include <array>
#include <vector>

namespace hueshelf::PaletteCheck::detail {

// The vision types in the order the check tries them; `ColorFacts::seen` follows it.
inline constexpr std::array<ColorVisionSimulation::SimulationType, 3> kVisionOrder{
    ColorVisionSimulation::SimulationType::deuteranopia,
    ColorVisionSimulation::SimulationType::protanopia,
    ColorVisionSimulation::SimulationType::tritanopia};

// Squared byte distances: the distances are square roots of whole numbers, so comparing the
// squares with these decides exactly as comparing the roots with 30 and 60 does.
inline constexpr int kLookAlikeSquared = 30 * 30;
inline constexpr int kSeparationSquared = 60 * 60;
inline constexpr int kNearDuplicateDistance = 15;

struct ColorFacts {
    bool readable = false; // everything below is meaningless when false
    ColorUtils::RGB rgb;
    ColorUtils::HSL hsl;
    double luminance = 0.0; // WCAG relative luminance
    Band band = Band::dark;
    std::array<ColorUtils::RGB, 3> seen{}; // bytes of the simulated colour, in kVisionOrder
};

ColorFacts factsOf(const QString& hex);
std::vector<ColorFacts> factsOf(const QList<ColorItem>& colors);

// The bytes `simulated(hex, type)` would print, from the colour's linear values.
ColorUtils::RGB simulatedBytes(const ColorVisionSimulation::LinearRGB& linear,
                               ColorVisionSimulation::SimulationType type);

inline int squaredDistance(const ColorUtils::RGB& a, const ColorUtils::RGB& b) {
    const int dr = a.r - b.r;
    const int dg = a.g - b.g;
    const int db = a.b - b.b;
    return dr * dr + dg * dg + db * db;
}

inline bool isNearDuplicatePair(const ColorFacts& a, const ColorFacts& b) {
    const int distance =
        std::abs(a.rgb.r - b.rgb.r) + std::abs(a.rgb.g - b.rgb.g) + std::abs(a.rgb.b - b.rgb.b);
    return distance < kNearDuplicateDistance;
}

// Pairs that look alike to everybody, or whose hue carries no meaning, aren't worth a row.
inline bool isUninformativePair(const ColorFacts& a, const ColorFacts& b) {
    const bool bothLight = a.hsl.l >= 0.6 && b.hsl.l >= 0.6;
    const bool bothVeryDark = a.hsl.l < 0.2 && b.hsl.l < 0.2;
    const bool bothNearlyGrey = a.hsl.s < 0.1 && b.hsl.s < 0.1;
    return bothLight || bothVeryDark || bothNearlyGrey;
}

// The highest contrast of a colour against any light colour, given the lowest and highest
// luminance among the light colours. The ratio only grows as the light colour moves away from
// the colour in luminance, in floating point too, so one of the two ends always holds the
// highest ratio of the whole set.
inline double highestRatioAgainst(const ColorFacts& color, double lowestLight,
                                  double highestLight) {
    if (!color.readable) {
        return 1.0;
    }
    return std::max(1.0, std::max(ColorUtils::contrastRatio(color.luminance, highestLight),
                                  ColorUtils::contrastRatio(color.luminance, lowestLight)));
}

// `detect` over facts already read; `facts` holds one entry per colour.
std::vector<Issue> detectFromFacts(const QList<ColorItem>& colors,
                                   const std::vector<ColorFacts>& facts);

} // namespace hueshelf::PaletteCheck::detail
