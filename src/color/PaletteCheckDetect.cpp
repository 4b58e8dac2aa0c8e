#include "color/PaletteCheck.h"
#include "color/PaletteCheckFacts.h"

#include <QSet>

#include <utility>

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteCheck {

namespace detail {

namespace {

using ColorUtils::ContrastLevel;

// A pair's key is its two ids in palette order. Two pairs share a key exactly when their ids
// are equal, so the ids themselves stand in for the text.
using PairKey = std::pair<QUuid, QUuid>;

QString pairKeyText(const ColorItem& first, const ColorItem& second) {
    return uuidText(first.id) + u'-' + uuidText(second.id);
}

void appendReadabilityIssues(const QList<ColorItem>& colors, const std::vector<ColorFacts>& facts,
                             std::vector<Issue>& issues) {
    qsizetype lightest = -1;
    double lowestLight = 0.0;
    double highestLight = 0.0;
    for (qsizetype i = 0; i < colors.size(); ++i) {
        const ColorFacts& color = facts[static_cast<std::size_t>(i)];
        if (color.band != Band::light) {
            continue;
        }
        if (lightest < 0) {
            lowestLight = highestLight = color.luminance;
        } else {
            lowestLight = std::min(lowestLight, color.luminance);
            highestLight = std::max(highestLight, color.luminance);
        }
        // The first of equals stays.
        if (lightest < 0 || color.hsl.l > facts[static_cast<std::size_t>(lightest)].hsl.l) {
            lightest = i;
        }
    }
    if (lightest < 0) {
        return;
    }
    const ColorItem& background = colors.at(lightest);
    for (qsizetype i = 0; i < colors.size(); ++i) {
        const ColorFacts& color = facts[static_cast<std::size_t>(i)];
        if (color.band != Band::dark) {
            continue;
        }
        // A dark colour passes if it reads on any light colour; the sentence still names the
        // lightest, the background a reader would try first.
        const double ratio = highestRatioAgainst(color, lowestLight, highestLight);
        if (ratio >= 4.5) {
            continue;
        }
        const ColorItem& dark = colors.at(i);
        Issue issue;
        issue.id = u"read-"_s + uuidText(dark.id);
        if (ratio >= 3.0) {
            issue.kind = Readability{ContrastLevel::lowContrast};
            issue.text = dark.name + u" only works for headings on "_s + background.name + u'.';
        } else {
            issue.kind = Readability{ContrastLevel::poor};
            issue.text = dark.name + u" is hard to read on "_s + background.name + u'.';
        }
        issue.color = dark;
        issue.other = background;
        issue.canFix = !dark.isLocked;
        issues.push_back(std::move(issue));
    }
}

void appendNearDuplicateIssues(const QList<ColorItem>& colors, const std::vector<ColorFacts>& facts,
                               QSet<PairKey>& pairKeys, std::vector<Issue>& issues) {
    const std::size_t count = facts.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (!facts[i].readable) {
            continue;
        }
        for (std::size_t j = i + 1; j < count; ++j) {
            if (!facts[j].readable || !isNearDuplicatePair(facts[i], facts[j])) {
                continue;
            }
            const ColorItem& first = colors.at(static_cast<qsizetype>(i));
            const ColorItem& second = colors.at(static_cast<qsizetype>(j));
            pairKeys.insert(PairKey{first.id, second.id});
            Issue issue;
            issue.id = u"dupe-"_s + pairKeyText(first, second);
            issue.kind = NearDuplicate{};
            issue.color = first;
            issue.other = second;
            issue.canFix = false;
            issue.text = first.name + u" and "_s + second.name + u" are almost the same color."_s;
            issues.push_back(std::move(issue));
        }
    }
}

void appendLookAlikeIssues(const QList<ColorItem>& colors, const std::vector<ColorFacts>& facts,
                           QSet<PairKey>& pairKeys, std::vector<Issue>& issues) {
    const std::size_t count = facts.size();
    for (std::size_t t = 0; t < kVisionOrder.size(); ++t) {
        for (std::size_t i = 0; i < count; ++i) {
            if (!facts[i].readable) {
                continue;
            }
            for (std::size_t j = i + 1; j < count; ++j) {
                if (!facts[j].readable ||
                    squaredDistance(facts[i].seen[t], facts[j].seen[t]) >= kLookAlikeSquared) {
                    continue;
                }
                const ColorItem& first = colors.at(static_cast<qsizetype>(i));
                const ColorItem& second = colors.at(static_cast<qsizetype>(j));
                PairKey key{first.id, second.id};
                if (pairKeys.contains(key) || isUninformativePair(facts[i], facts[j])) {
                    continue;
                }
                Issue issue;
                issue.id = u"look-"_s + pairKeyText(first, second);
                issue.kind = LookAlike{kVisionOrder[t]};
                issue.color = first;
                issue.other = second;
                issue.canFix = false;
                issue.text = first.name + u" and "_s + second.name + u" look the same to "_s +
                             visionText(kVisionOrder[t]) + u'.';
                pairKeys.insert(std::move(key));
                issues.push_back(std::move(issue));
            }
        }
    }
}

} // namespace

std::vector<Issue> detectFromFacts(const QList<ColorItem>& colors,
                                   const std::vector<ColorFacts>& facts) {
    std::vector<Issue> issues;
    QSet<PairKey> pairKeys;
    appendReadabilityIssues(colors, facts, issues);
    appendNearDuplicateIssues(colors, facts, pairKeys, issues);
    appendLookAlikeIssues(colors, facts, pairKeys, issues);
    return issues;
}

} // namespace detail

std::vector<Issue> detect(const QList<ColorItem>& colors) {
    // Each colour is read, measured and simulated once; the passes compare numbers.
    return detail::detectFromFacts(colors, detail::factsOf(colors));
}

} // namespace hueshelf::PaletteCheck
