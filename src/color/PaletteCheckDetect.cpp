#include "color/PaletteCheck.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteCheck {

namespace {

using ColorUtils::ContrastLevel;
using ColorUtils::HSL;
using ColorVisionSimulation::SimulationType;

// The order in which a pair is tried: it is reported under the first type it collapses in.
constexpr SimulationType kLookAlikeOrder[] = {
    SimulationType::deuteranopia, SimulationType::protanopia, SimulationType::tritanopia};

constexpr int kNearDuplicateDistance = 15;
constexpr double kLookAlikeDistance = 30.0;

QString pairKey(const ColorItem& first, const ColorItem& second) {
    return uuidText(first.id) + u'-' + uuidText(second.id);
}

void appendReadabilityIssues(const QList<ColorItem>& colors, std::vector<Issue>& issues) {
    const QList<ColorItem> lights = lightColors(colors);
    if (lights.isEmpty()) {
        return;
    }
    // There is a light colour, so there is a lightest one.
    const ColorItem lightest = *lightestColor(colors);
    for (const ColorItem& dark : darkColors(colors)) {
        // A dark colour passes if it reads on any light colour; the sentence still names the
        // lightest, the background a reader would try first.
        const double ratio = highestRatio(dark.hex, lights);
        if (ratio >= 4.5) {
            continue;
        }
        Issue issue;
        issue.id = u"read-"_s + uuidText(dark.id);
        if (ratio >= 3.0) {
            issue.kind = Readability{ContrastLevel::lowContrast};
            issue.text = dark.name + u" only works for headings on "_s + lightest.name + u'.';
        } else {
            issue.kind = Readability{ContrastLevel::poor};
            issue.text = dark.name + u" is hard to read on "_s + lightest.name + u'.';
        }
        issue.color = dark;
        issue.other = lightest;
        issue.canFix = !dark.isLocked;
        issues.push_back(std::move(issue));
    }
}

void appendNearDuplicateIssues(const QList<ColorItem>& colors, QSet<QString>& pairKeys,
                               std::vector<Issue>& issues) {
    for (const auto& [i, j] : ColorUtils::similarPairs(colors, kNearDuplicateDistance)) {
        const ColorItem& first = colors.at(i);
        const ColorItem& second = colors.at(j);
        const QString key = pairKey(first, second);
        pairKeys.insert(key);
        Issue issue;
        issue.id = u"dupe-"_s + key;
        issue.kind = NearDuplicate{};
        issue.color = first;
        issue.other = second;
        issue.canFix = false;
        issue.text = first.name + u" and "_s + second.name + u" are almost the same color."_s;
        issues.push_back(std::move(issue));
    }
}

// Pairs that look alike to everybody, or whose hue carries no meaning, aren't worth a row.
bool isUninformativePair(const std::optional<HSL>& a, const std::optional<HSL>& b) {
    if (!a || !b) {
        return false;
    }
    const bool bothLight = a->l >= 0.6 && b->l >= 0.6;
    const bool bothVeryDark = a->l < 0.2 && b->l < 0.2;
    const bool bothNearlyGrey = a->s < 0.1 && b->s < 0.1;
    return bothLight || bothVeryDark || bothNearlyGrey;
}

void appendLookAlikeIssues(const QList<ColorItem>& colors, QSet<QString>& pairKeys,
                           std::vector<Issue>& issues) {
    std::vector<std::optional<HSL>> hsl;
    hsl.reserve(static_cast<std::size_t>(colors.size()));
    for (const ColorItem& color : colors) {
        hsl.push_back(ColorUtils::hexToHSL(color.hex));
    }
    for (const SimulationType type : kLookAlikeOrder) {
        for (const auto& [i, j] :
             ColorVisionSimulation::lookAlikePairs(colors, type, kLookAlikeDistance)) {
            const ColorItem& first = colors.at(i);
            const ColorItem& second = colors.at(j);
            QString key = pairKey(first, second);
            if (pairKeys.contains(key)) {
                continue;
            }
            if (isUninformativePair(hsl[static_cast<std::size_t>(i)],
                                    hsl[static_cast<std::size_t>(j)])) {
                continue;
            }
            Issue issue;
            issue.id = u"look-"_s + key;
            issue.kind = LookAlike{type};
            issue.color = first;
            issue.other = second;
            issue.canFix = false;
            issue.text = first.name + u" and "_s + second.name + u" look the same to "_s +
                         visionText(type) + u'.';
            pairKeys.insert(std::move(key));
            issues.push_back(std::move(issue));
        }
    }
}

} // namespace

std::vector<Issue> detect(const QList<ColorItem>& colors) {
    std::vector<Issue> issues;
    QSet<QString> pairKeys;
    appendReadabilityIssues(colors, issues);
    appendNearDuplicateIssues(colors, pairKeys, issues);
    appendLookAlikeIssues(colors, pairKeys, issues);
    return issues;
}

} // namespace hueshelf::PaletteCheck
