#pragma once

// The palette check and its fix search written the plain way: every band, ratio, simulation and
// pair worked out again from the colours' text, and a full check of the changed palette for
// every candidate of the search. It is kept as the yardstick for the fast code in
// src/color: the equivalence test holds the two to identical output, and the benchmark
// measures the fast code against it. Change it only together with the meaning of the check.

#include "color/ColorUtils.h"
#include "color/ColorVisionSimulation.h"
#include "color/PaletteCheck.h"
#include "model/ColorItem.h"

#include <QList>
#include <QSet>
#include <QString>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace hueshelf::straight {

using namespace Qt::StringLiterals;
using PaletteCheck::Band;
using PaletteCheck::Issue;
using PaletteCheck::LightnessMove;

inline Band bandOf(const QString& hex) {
    const std::optional<ColorUtils::HSL> hsl = ColorUtils::hexToHSL(hex);
    if (!hsl) {
        return Band::dark;
    }
    if (hsl->l >= 0.6) {
        return Band::light;
    }
    if (hsl->l >= 0.4) {
        return Band::midTone;
    }
    return Band::dark;
}

inline QList<ColorItem> colorsInBand(const QList<ColorItem>& colors, Band band) {
    QList<ColorItem> result;
    for (const ColorItem& color : colors) {
        if (bandOf(color.hex) == band) {
            result.append(color);
        }
    }
    return result;
}

inline std::optional<ColorItem> lightestColor(const QList<ColorItem>& colors) {
    std::optional<ColorItem> lightest;
    double lightestL = 0.0;
    for (const ColorItem& color : colors) {
        const std::optional<ColorUtils::HSL> hsl = ColorUtils::hexToHSL(color.hex);
        if (!hsl || hsl->l < 0.6) {
            continue;
        }
        if (!lightest || hsl->l > lightestL) {
            lightest = color;
            lightestL = hsl->l;
        }
    }
    return lightest;
}

inline double highestRatio(const QString& hex, const QList<ColorItem>& backgrounds) {
    double highest = 1.0;
    const std::optional<double> luminance = ColorUtils::relativeLuminance(hex);
    if (!luminance) {
        return highest;
    }
    for (const ColorItem& background : backgrounds) {
        const std::optional<double> backgroundLuminance =
            ColorUtils::relativeLuminance(background.hex);
        if (backgroundLuminance) {
            highest =
                std::max(highest, ColorUtils::contrastRatio(*luminance, *backgroundLuminance));
        }
    }
    return highest;
}

inline QString pairKey(const ColorItem& first, const ColorItem& second) {
    return uuidText(first.id) + u'-' + uuidText(second.id);
}

inline std::vector<Issue> detect(const QList<ColorItem>& colors) {
    using ColorUtils::ContrastLevel;
    using ColorVisionSimulation::SimulationType;
    std::vector<Issue> issues;
    QSet<QString> pairKeys;

    const QList<ColorItem> lights = colorsInBand(colors, Band::light);
    if (!lights.isEmpty()) {
        const ColorItem lightest = *lightestColor(colors);
        for (const ColorItem& dark : colorsInBand(colors, Band::dark)) {
            const double ratio = highestRatio(dark.hex, lights);
            if (ratio >= 4.5) {
                continue;
            }
            Issue issue;
            issue.id = u"read-"_s + uuidText(dark.id);
            if (ratio >= 3.0) {
                issue.kind = PaletteCheck::Readability{ContrastLevel::lowContrast};
                issue.text = dark.name + u" only works for headings on "_s + lightest.name + u'.';
            } else {
                issue.kind = PaletteCheck::Readability{ContrastLevel::poor};
                issue.text = dark.name + u" is hard to read on "_s + lightest.name + u'.';
            }
            issue.color = dark;
            issue.other = lightest;
            issue.canFix = !dark.isLocked;
            issues.push_back(std::move(issue));
        }
    }

    for (const auto& [i, j] : ColorUtils::similarPairs(colors, 15)) {
        const ColorItem& first = colors.at(i);
        const ColorItem& second = colors.at(j);
        const QString key = pairKey(first, second);
        pairKeys.insert(key);
        Issue issue;
        issue.id = u"dupe-"_s + key;
        issue.kind = PaletteCheck::NearDuplicate{};
        issue.color = first;
        issue.other = second;
        issue.canFix = false;
        issue.text = first.name + u" and "_s + second.name + u" are almost the same color."_s;
        issues.push_back(std::move(issue));
    }

    std::vector<std::optional<ColorUtils::HSL>> hsl;
    for (const ColorItem& color : colors) {
        hsl.push_back(ColorUtils::hexToHSL(color.hex));
    }
    for (const SimulationType type :
         {SimulationType::deuteranopia, SimulationType::protanopia, SimulationType::tritanopia}) {
        for (const auto& [i, j] : ColorVisionSimulation::lookAlikePairs(colors, type, 30.0)) {
            const ColorItem& first = colors.at(i);
            const ColorItem& second = colors.at(j);
            QString key = pairKey(first, second);
            if (pairKeys.contains(key)) {
                continue;
            }
            const std::optional<ColorUtils::HSL>& a = hsl[static_cast<std::size_t>(i)];
            const std::optional<ColorUtils::HSL>& b = hsl[static_cast<std::size_t>(j)];
            if (a && b &&
                ((a->l >= 0.6 && b->l >= 0.6) || (a->l < 0.2 && b->l < 0.2) ||
                 (a->s < 0.1 && b->s < 0.1))) {
                continue;
            }
            Issue issue;
            issue.id = u"look-"_s + key;
            issue.kind = PaletteCheck::LookAlike{type};
            issue.color = first;
            issue.other = second;
            issue.canFix = false;
            issue.text = first.name + u" and "_s + second.name + u" look the same to "_s +
                         PaletteCheck::visionText(type) + u'.';
            pairKeys.insert(std::move(key));
            issues.push_back(std::move(issue));
        }
    }
    return issues;
}

inline double byteDistance(const QString& a, const QString& b) {
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

inline double simulatedDistance(const QString& a, const QString& b) {
    using ColorVisionSimulation::SimulationType;
    double smallest = std::numeric_limits<double>::max();
    for (const SimulationType type :
         {SimulationType::deuteranopia, SimulationType::protanopia, SimulationType::tritanopia}) {
        smallest = std::min(smallest, byteDistance(ColorVisionSimulation::simulated(a, type),
                                                   ColorVisionSimulation::simulated(b, type)));
    }
    return smallest;
}

inline std::optional<LightnessMove> findLightnessMove(const Issue& issue,
                                                      const QList<ColorItem>& colors,
                                                      const std::vector<Issue>& issues) {
    if (!PaletteCheck::isLookAlike(issue.kind)) {
        return std::nullopt;
    }
    QSet<QString> knownIds;
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
        qsizetype index = -1;
        for (qsizetype i = 0; i < colors.size(); ++i) {
            if (colors.at(i).id == moving.id) {
                index = i;
                break;
            }
        }
        if (!hsl || index < 0) {
            continue;
        }
        QList<ColorItem> trial = colors;
        for (const double direction : {-1.0, 1.0}) {
            for (int n = 1; n <= 45; ++n) {
                const double lightness = hsl->l + direction * n * 0.01;
                if (!(lightness > 0.03 && lightness < 0.97)) {
                    break;
                }
                const QString candidate = ColorUtils::hslToHex(hsl->h, hsl->s, lightness);
                if (straight::simulatedDistance(candidate, partner.hex) < 60.0) {
                    continue;
                }
                trial[index].hex = candidate;
                bool acceptable = true;
                for (const Issue& found : straight::detect(trial)) {
                    if (!knownIds.contains(found.id)) {
                        acceptable = false;
                        break;
                    }
                }
                if (!acceptable) {
                    continue;
                }
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

inline std::vector<Issue> issuesWithMoves(const QList<ColorItem>& colors) {
    std::vector<Issue> issues = straight::detect(colors);
    for (Issue& issue : issues) {
        if (!PaletteCheck::isLookAlike(issue.kind)) {
            continue;
        }
        issue.move = straight::findLightnessMove(issue, colors, issues);
        issue.canFix = issue.move.has_value();
    }
    return issues;
}

} // namespace hueshelf::straight
