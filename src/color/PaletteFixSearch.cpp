#include "color/PaletteCheck.h"
#include "color/PaletteCheckFacts.h"
#include "color/PaletteFixMoveSearch.h"

#include <cmath>
#include <limits>

namespace hueshelf::PaletteCheck {

namespace {

using detail::ColorFacts;
using detail::kVisionOrder;

double byteDistance(const ColorFacts& a, const ColorFacts& b, std::size_t type) {
    if (!a.readable || !b.readable) {
        return std::numeric_limits<double>::max();
    }
    return std::sqrt(static_cast<double>(detail::squaredDistance(a.seen[type], b.seen[type])));
}

} // namespace

double simulatedDistance(const QString& a, const QString& b) {
    const ColorFacts first = detail::factsOf(a);
    const ColorFacts second = detail::factsOf(b);
    double smallest = std::numeric_limits<double>::max();
    for (std::size_t t = 0; t < kVisionOrder.size(); ++t) {
        smallest = std::min(smallest, byteDistance(first, second, t));
    }
    return smallest;
}

std::optional<LightnessMove> findLightnessMove(const Issue& issue, const QList<ColorItem>& colors,
                                               const std::vector<Issue>& issues) {
    if (!isLookAlike(issue.kind)) {
        return std::nullopt;
    }
    detail::MoveSearch search(colors, detail::factsOf(colors), issues);
    return search.find(issue);
}

std::vector<Issue> issuesWithMoves(const QList<ColorItem>& colors) {
    std::vector<ColorFacts> facts = detail::factsOf(colors);
    std::vector<Issue> issues = detail::detectFromFacts(colors, facts);
    // One search for all issues: a colour's candidates, and whether each makes a new issue, are
    // the same whichever pair it is moved for.
    detail::MoveSearch search(colors, std::move(facts), issues);
    for (Issue& issue : issues) {
        if (!isLookAlike(issue.kind)) {
            continue;
        }
        issue.move = search.find(issue);
        issue.canFix = issue.move.has_value();
    }
    return issues;
}

} // namespace hueshelf::PaletteCheck
