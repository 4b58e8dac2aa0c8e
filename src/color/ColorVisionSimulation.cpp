// Dichromat simulation after Machado, Oliveira and Fernandes, "A Physiologically-based Model for
// Simulation of Color Vision Deficiency" (IEEE TVCG 2009), severity 1.0: one 3x3 matrix per type
// applied to linear sRGB, then encoded back to sRGB bytes. The linearisation uses the
// IEC 61966-2-1 threshold 0.04045, not the WCAG 0.03928 of the luminance code; the two differ on
// purpose and must stay apart.

#include "color/ColorVisionSimulation.h"

#include "color/ColorUtils.h"
#include "model/ColorItem.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace hueshelf::ColorVisionSimulation {

namespace {

using Matrix = std::array<std::array<double, 3>, 3>;

// Rows give R', G', B' from R, G, B. The published values, unchanged; each row sums to about 1,
// so white stays (nearly) white.
constexpr Matrix protanopiaMatrix{{
    {0.152286, 1.052583, -0.204868},
    {0.114503, 0.786281, 0.099216},
    {-0.003882, -0.048116, 1.051998},
}};
constexpr Matrix deuteranopiaMatrix{{
    {0.367322, 0.860646, -0.227968},
    {0.280085, 0.672501, 0.047413},
    {-0.01182, 0.04294, 0.968881},
}};
constexpr Matrix tritanopiaMatrix{{
    {1.255528, -0.076749, -0.178779},
    {-0.078411, 0.930809, 0.147602},
    {0.004733, 0.691367, 0.3039},
}};

const Matrix* matrixOf(SimulationType type) {
    switch (type) {
    case SimulationType::protanopia:
        return &protanopiaMatrix;
    case SimulationType::deuteranopia:
        return &deuteranopiaMatrix;
    case SimulationType::tritanopia:
        return &tritanopiaMatrix;
    case SimulationType::normal:
        break;
    }
    return nullptr;
}

double linearised(int byte) {
    const double v = byte / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double clampedUnit(double value) {
    return std::clamp(value, 0.0, 1.0);
}

// The product of a matrix row can leave 0...1 (a pure red under protanopia has a negative blue),
// so each channel is held at its nearest end rather than wrapped.
double row(const std::array<double, 3>& weights, const LinearRGB& c) {
    return clampedUnit(weights[0] * c.r + weights[1] * c.g + weights[2] * c.b);
}

QString byteText(double channel) {
    const double x = clampedUnit(channel);
    const double encoded =
        x <= 0.0031308 ? x * 12.92 : 1.055 * std::pow(x, 0.4166666666666667) - 0.055;
    const int value = static_cast<int>(std::clamp(std::round(encoded * 255.0), 0.0, 255.0));
    return QString::number(value, 16).toUpper().rightJustified(2, u'0');
}

} // namespace

const std::array<SimulationType, 4>& allSimulationTypes() {
    static constexpr std::array<SimulationType, 4> all{
        SimulationType::normal, SimulationType::protanopia, SimulationType::deuteranopia,
        SimulationType::tritanopia};
    return all;
}

QString identifier(SimulationType type) {
    switch (type) {
    case SimulationType::normal:
        break;
    case SimulationType::protanopia:
        return u"protanopia"_s;
    case SimulationType::deuteranopia:
        return u"deuteranopia"_s;
    case SimulationType::tritanopia:
        return u"tritanopia"_s;
    }
    return u"normal"_s;
}

std::optional<SimulationType> simulationTypeFromIdentifier(const QString& text) {
    for (const SimulationType type : allSimulationTypes()) {
        if (identifier(type) == text) {
            return type;
        }
    }
    return std::nullopt;
}

QString lensLabel(SimulationType type) {
    switch (type) {
    case SimulationType::normal:
        break;
    case SimulationType::protanopia:
        return u"Red-green (less common)"_s;
    case SimulationType::deuteranopia:
        return u"Red-green (most common)"_s;
    case SimulationType::tritanopia:
        return u"Blue-yellow"_s;
    }
    return u"Off"_s;
}

std::optional<QString> tooltipShortName(SimulationType type) {
    if (type == SimulationType::normal) {
        return std::nullopt;
    }
    return lensLabel(type);
}

QString detailsLabel(SimulationType type) {
    switch (type) {
    case SimulationType::normal:
        break;
    case SimulationType::protanopia:
        return u"Red-green, less common"_s;
    case SimulationType::deuteranopia:
        return u"Red-green, most common"_s;
    case SimulationType::tritanopia:
        return u"Blue-yellow, rare"_s;
    }
    return u"Normal vision"_s;
}

QString detailsLongLabel(SimulationType type) {
    switch (type) {
    case SimulationType::normal:
        break;
    case SimulationType::protanopia:
        return u"Red-green color blindness (less common)"_s;
    case SimulationType::deuteranopia:
        return u"Red-green color blindness (most common)"_s;
    case SimulationType::tritanopia:
        return u"Blue-yellow color blindness"_s;
    }
    return u"Normal vision"_s;
}

std::optional<QString> technicalName(SimulationType type) {
    switch (type) {
    case SimulationType::normal:
        break;
    case SimulationType::protanopia:
        return u"Protanopia"_s;
    case SimulationType::deuteranopia:
        return u"Deuteranopia"_s;
    case SimulationType::tritanopia:
        return u"Tritanopia"_s;
    }
    return std::nullopt;
}

QString lensMenuTitle() {
    return u"How others see it"_s;
}

QString lensMenuNote() {
    return u"Draws the bar as they see it. Copying still copies the real color."_s;
}

QString lensTooltip(SimulationType type) {
    if (type == SimulationType::normal) {
        return lensMenuTitle();
    }
    return u"Seeing as "_s + lensLabel(type) + u" \u2014 click to change"_s;
}

QString lensAccessibleValue(SimulationType type) {
    return u"How others see it, showing "_s + lensLabel(type);
}

QString detailsAccessibleText(SimulationType type) {
    const std::optional<QString> technical = technicalName(type);
    if (!technical) {
        return u"Normal vision"_s;
    }
    return detailsLongLabel(type) + u" \u2014 "_s + *technical;
}

std::optional<LinearRGB> linearRGB(const QString& hex) {
    const std::optional<ColorUtils::RGB> rgb = ColorUtils::hexToRGB(hex);
    if (!rgb) {
        return std::nullopt;
    }
    return LinearRGB{linearised(rgb->r), linearised(rgb->g), linearised(rgb->b)};
}

QString encodedHex(const LinearRGB& linear) {
    return u'#' + byteText(linear.r) + byteText(linear.g) + byteText(linear.b);
}

QString simulated(const QString& hex, SimulationType type) {
    const Matrix* matrix = matrixOf(type);
    if (!matrix) {
        return hex;
    }
    const std::optional<LinearRGB> linear = linearRGB(hex);
    if (!linear) {
        return hex;
    }
    const Matrix& m = *matrix;
    return encodedHex(LinearRGB{row(m[0], *linear), row(m[1], *linear), row(m[2], *linear)});
}

std::vector<std::pair<int, int>> lookAlikePairs(const QList<ColorItem>& colors, SimulationType type,
                                                double threshold) {
    std::vector<std::pair<int, int>> pairs;
    if (type == SimulationType::normal || colors.size() < 2) {
        return pairs;
    }
    // Unreadable text simulates to itself and so reads as nothing here: it pairs with no one.
    std::vector<std::optional<ColorUtils::RGB>> seen;
    seen.reserve(static_cast<std::size_t>(colors.size()));
    for (const ColorItem& item : colors) {
        seen.push_back(ColorUtils::hexToRGB(simulated(item.hex, type)));
    }
    for (std::size_t i = 0; i < seen.size(); ++i) {
        if (!seen[i]) {
            continue;
        }
        for (std::size_t j = i + 1; j < seen.size(); ++j) {
            if (!seen[j]) {
                continue;
            }
            const double dr = seen[i]->r - seen[j]->r;
            const double dg = seen[i]->g - seen[j]->g;
            const double db = seen[i]->b - seen[j]->b;
            if (std::sqrt(dr * dr + dg * dg + db * db) < threshold) {
                pairs.emplace_back(static_cast<int>(i), static_cast<int>(j));
            }
        }
    }
    return pairs;
}

} // namespace hueshelf::ColorVisionSimulation
