#include "color/PaletteCheck.h"

#include <QSet>

#include <cmath>
#include <limits>

namespace hueshelf::PaletteCheck {

namespace {

using ColorVisionSimulation::SimulationType;

constexpr SimulationType kVisionTypes[] = {SimulationType::deuteranopia, SimulationType::protanopia,
                                           SimulationType::tritanopia};

// Twice the look-alike distance, so a fixed pair doesn't sit at the edge of being flagged again.
constexpr double kSeparation = 60.0;
constexpr int kMaxSteps = 45;
constexpr double kStep = 0.01;
// Exclusive: near black and white a lightness change stops changing anything that matters.
constexpr double kLowestLightness = 0.03;
constexpr double kHighestLightness = 0.97;

double byteDistance(const QString& a, const QString& b) {
    const std::optional<ColorUtils::RGB> first = ColorUtils::hexToRGB(a);
    const std::optional<ColorUtils::RGB> second = ColorUtils::hexToRGB(b);
    if (!first || !second) {
        return std::numeric_limits<double>::max();
    }
    const double dr = first->r - second->r;
    const double dg = first->g - second->g;
    const double db = first->b - second->b;
    return std::sqrt(dr * dr + dg * dg + db * db);
}

bool makesNoNewIssue(const std::vector<Issue>& issues, const QSet<QString>& knownIds) {
    for (const Issue& issue : issues) {
        if (!knownIds.contains(issue.id)) {
            return false;
        }
    }
    return true;
}

qsizetype indexOfColor(const QList<ColorItem>& colors, const QUuid& id) {
    for (qsizetype i = 0; i < colors.size(); ++i) {
        if (colors.at(i).id == id) {
            return i;
        }
    }
    return -1;
}

} // namespace

double simulatedDistance(const QString& a, const QString& b) {
    double smallest = std::numeric_limits<double>::max();
    for (const SimulationType type : kVisionTypes) {
        smallest = std::min(smallest, byteDistance(ColorVisionSimulation::simulated(a, type),
                                                   ColorVisionSimulation::simulated(b, type)));
    }
    return smallest;
}

std::optional<LightnessMove> findLightnessMove(const Issue& issue, const QList<ColorItem>& colors,
                                               const std::vector<Issue>& issues) {
    if (!isLookAlike(issue.kind)) {
        return std::nullopt;
    }
    QSet<QString> knownIds;
    knownIds.reserve(static_cast<qsizetype>(issues.size()));
    for (const Issue& known : issues) {
        knownIds.insert(known.id);
    }

    std::optional<LightnessMove> best;
    int bestSteps = 0;
    for (const bool movingFirst : {true, false}) {
        const ColorItem& moving = movingFirst ? issue.color : issue.other;
        const ColorItem& partner = movingFirst ? issue.other : issue.color;
        if (moving.isLocked) {
            continue;
        }
        const std::optional<ColorUtils::HSL> hsl = ColorUtils::hexToHSL(moving.hex);
        const qsizetype index = indexOfColor(colors, moving.id);
        if (!hsl || index < 0) {
            continue;
        }
        // One working copy per colour; each candidate only swaps the moving colour's hex.
        QList<ColorItem> trial = colors;
        for (const double direction : {-1.0, 1.0}) { // darker first
            for (int n = 1; n <= kMaxSteps; ++n) {
                const double lightness = hsl->l + direction * n * kStep;
                if (!(lightness > kLowestLightness && lightness < kHighestLightness)) {
                    break;
                }
                const QString candidate = ColorUtils::hslToHex(hsl->h, hsl->s, lightness);
                if (simulatedDistance(candidate, partner.hex) < kSeparation) {
                    continue;
                }
                trial[index].hex = candidate;
                if (!makesNoNewIssue(detect(trial), knownIds)) {
                    continue;
                }
                // Steps are compared rather than |L - l|, whose last bits differ between the
                // two directions: an equal change must keep the earlier candidate.
                if (!best || n < bestSteps) {
                    best = LightnessMove{moving.id, moving.name, moving.hex, candidate,
                                         lightness - hsl->l};
                    bestSteps = n;
                }
                break;
            }
        }
    }
    return best;
}

std::vector<Issue> issuesWithMoves(const QList<ColorItem>& colors) {
    std::vector<Issue> issues = detect(colors);
    for (Issue& issue : issues) {
        if (!isLookAlike(issue.kind)) {
            continue;
        }
        issue.move = findLightnessMove(issue, colors, issues);
        issue.canFix = issue.move.has_value();
    }
    return issues;
}

} // namespace hueshelf::PaletteCheck
