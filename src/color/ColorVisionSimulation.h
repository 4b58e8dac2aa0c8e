#pragma once

#include <QList>
#include <QString>

#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace hueshelf {

struct ColorItem;

// How a colour looks to someone with one of the three dichromatic colour blindnesses: one 3x3
// matrix per type on linear sRGB (Machado, Oliveira and Fernandes 2009, severity 1.0). Pure.
namespace ColorVisionSimulation {

enum class SimulationType { normal, protanopia, deuteranopia, tritanopia };

const std::array<SimulationType, 4>& allSimulationTypes();
QString identifier(SimulationType type); // "normal", "protanopia", ...
std::optional<SimulationType> simulationTypeFromIdentifier(const QString& identifier);

// Display texts. Absent where the type has none (normal has no short name or technical name).
QString lensLabel(SimulationType type);
std::optional<QString> tooltipShortName(SimulationType type);
QString detailsLabel(SimulationType type);
QString detailsLongLabel(SimulationType type);
std::optional<QString> technicalName(SimulationType type);

// Wording of the bar's lens and of the check's details strips.
QString lensMenuTitle(); // "How others see it"
QString lensMenuNote();  // under the menu's rows
QString lensTooltip(SimulationType type);
QString lensAccessibleValue(SimulationType type);
QString detailsAccessibleText(SimulationType type);

struct LinearRGB {
    double r = 0.0;
    double g = 0.0;
    double b = 0.0;
};

// The canonical code of the colour as the type sees it; the input unchanged for normal vision
// or text that isn't a colour.
QString simulated(const QString& hex, SimulationType type);
std::optional<LinearRGB> linearRGB(const QString& hex);
QString encodedHex(const LinearRGB& linear);
// Pairs (i < j) whose simulated colours lie closer than `threshold` (Euclidean, bytes).
std::vector<std::pair<int, int>> lookAlikePairs(const QList<ColorItem>& colors, SimulationType type,
                                                double threshold);

} // namespace ColorVisionSimulation
} // namespace hueshelf
