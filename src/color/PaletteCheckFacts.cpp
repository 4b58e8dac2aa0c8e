#include "color/PaletteCheckFacts.h"

#include "model/ColorItem.h"

#include <algorithm>
#include <cmath>

namespace hueshelf::PaletteCheck::detail {

namespace {

using ColorVisionSimulation::LinearRGB;
using ColorVisionSimulation::SimulationType;
using Matrix = std::array<std::array<double, 3>, 3>;

// The simulation's matrices and encoding as the lens draws them (the published values of
// Machado, Oliveira and Fernandes at severity 1.0), kept here so the check gets bytes without
// printing and reading back a code per colour. The facts test holds them to the lens's codes.
constexpr Matrix kProtanopia{{
    {0.152286, 1.052583, -0.204868},
    {0.114503, 0.786281, 0.099216},
    {-0.003882, -0.048116, 1.051998},
}};
constexpr Matrix kDeuteranopia{{
    {0.367322, 0.860646, -0.227968},
    {0.280085, 0.672501, 0.047413},
    {-0.01182, 0.04294, 0.968881},
}};
constexpr Matrix kTritanopia{{
    {1.255528, -0.076749, -0.178779},
    {-0.078411, 0.930809, 0.147602},
    {0.004733, 0.691367, 0.3039},
}};

// Normal vision sees the colour itself.
constexpr Matrix kIdentity{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};

const Matrix& matrixOf(SimulationType type) {
    switch (type) {
    case SimulationType::protanopia:
        return kProtanopia;
    case SimulationType::deuteranopia:
        return kDeuteranopia;
    case SimulationType::tritanopia:
        return kTritanopia;
    case SimulationType::normal:
        break;
    }
    return kIdentity;
}

double clampedUnit(double value) {
    return std::clamp(value, 0.0, 1.0);
}

double row(const std::array<double, 3>& weights, const LinearRGB& c) {
    return clampedUnit(weights[0] * c.r + weights[1] * c.g + weights[2] * c.b);
}

int encodedByte(double channel) {
    const double x = clampedUnit(channel);
    const double encoded =
        x <= 0.0031308 ? x * 12.92 : 1.055 * std::pow(x, 0.4166666666666667) - 0.055;
    return static_cast<int>(std::clamp(std::round(encoded * 255.0), 0.0, 255.0));
}

Band bandOfLightness(double l) {
    if (l >= 0.6) {
        return Band::light;
    }
    if (l >= 0.4) {
        return Band::midTone;
    }
    return Band::dark;
}

} // namespace

ColorUtils::RGB simulatedBytes(const LinearRGB& linear, SimulationType type) {
    const Matrix& m = matrixOf(type);
    return ColorUtils::RGB{encodedByte(row(m[0], linear)), encodedByte(row(m[1], linear)),
                           encodedByte(row(m[2], linear))};
}

ColorFacts factsOf(const QString& hex) {
    ColorFacts facts;
    const std::optional<ColorUtils::RGB> rgb = ColorUtils::hexToRGB(hex);
    const std::optional<ColorUtils::HSL> hsl = ColorUtils::hexToHSL(hex);
    const std::optional<double> luminance = ColorUtils::relativeLuminance(hex);
    const std::optional<LinearRGB> linear = ColorVisionSimulation::linearRGB(hex);
    if (!rgb || !hsl || !luminance || !linear) {
        // A colour without a value is tested as text and pairs with nothing.
        return facts;
    }
    facts.readable = true;
    facts.rgb = *rgb;
    facts.hsl = *hsl;
    facts.luminance = *luminance;
    facts.band = bandOfLightness(hsl->l);
    for (std::size_t t = 0; t < kVisionOrder.size(); ++t) {
        facts.seen[t] = simulatedBytes(*linear, kVisionOrder[t]);
    }
    return facts;
}

std::vector<ColorFacts> factsOf(const QList<ColorItem>& colors) {
    std::vector<ColorFacts> facts;
    facts.reserve(static_cast<std::size_t>(colors.size()));
    for (const ColorItem& color : colors) {
        facts.push_back(factsOf(color.hex));
    }
    return facts;
}

} // namespace hueshelf::PaletteCheck::detail
