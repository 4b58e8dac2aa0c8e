#include "color/PaletteFixMoveSearch.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteCheck::detail {

namespace {

constexpr double kStep = 0.01;
// Exclusive: near black and white a lightness change stops changing anything that matters.
constexpr double kLowestLightness = 0.03;
constexpr double kHighestLightness = 0.97;

// "read-" + id, and "dupe-" or "look-" + id + "-" + id, with ids of 36 characters.
constexpr qsizetype kPrefixLength = 5;
constexpr qsizetype kIdLength = 36;
constexpr qsizetype kReadIdLength = kPrefixLength + kIdLength;
constexpr qsizetype kPairIdLength = kPrefixLength + 2 * kIdLength + 1;

qsizetype indexOfColor(const QList<ColorItem>& colors, const QUuid& id) {
    for (qsizetype i = 0; i < colors.size(); ++i) {
        if (colors.at(i).id == id) {
            return i;
        }
    }
    return -1;
}

// Whether the moved pair is still closer than twice the flagging distance for some type.
bool staysClose(const ColorFacts& candidate, const ColorFacts& partner) {
    if (!candidate.readable || !partner.readable) {
        return false; // no distance to measure counts as far apart
    }
    for (std::size_t t = 0; t < kVisionOrder.size(); ++t) {
        if (squaredDistance(candidate.seen[t], partner.seen[t]) < kSeparationSquared) {
            return true;
        }
    }
    return false;
}

} // namespace

MoveSearch::MoveSearch(const QList<ColorItem>& colors, std::vector<ColorFacts> facts,
                       const std::vector<Issue>& knownIssues)
    : m_colors(colors), m_facts(std::move(facts)) {
    m_knownIds.reserve(static_cast<qsizetype>(knownIssues.size()));
    for (const Issue& known : knownIssues) {
        m_knownIds.insert(known.id);
    }
    QSet<QUuid> ids;
    for (const ColorItem& color : colors) {
        ids.insert(color.id);
    }
    m_distinctIds = ids.size() == colors.size();
    m_moving.resize(static_cast<std::size_t>(colors.size()));
    if (!m_distinctIds) {
        return;
    }
    readKnownIds(knownIssues);
    countUnknownPairs();
    for (qsizetype i = 0; i < colors.size(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (m_facts[at].band == Band::dark && !m_readKnown[at]) {
            m_watchedDarks.push_back(i);
        }
    }
}

MoveSearch::PairIssue MoveSearch::pairIssue(const ColorFacts& a, const ColorFacts& b) {
    if (!a.readable || !b.readable) {
        return PairIssue::none;
    }
    if (isNearDuplicatePair(a, b)) {
        return PairIssue::nearDuplicate;
    }
    // With distinct ids a pair's key is its own, so only its near-duplicate entry can hide its
    // look-alike, and whatever type it collapses under first, its id is the same.
    if (isUninformativePair(a, b)) {
        return PairIssue::none;
    }
    for (std::size_t t = 0; t < kVisionOrder.size(); ++t) {
        if (squaredDistance(a.seen[t], b.seen[t]) < kLookAlikeSquared) {
            return PairIssue::lookAlike;
        }
    }
    return PairIssue::none;
}

// Turns the known ids into flags by colour and pair. An id names colours by their id text, and
// a pair id puts the earlier colour first, so an id whose colours stand the other way round
// can't come up and is left out.
void MoveSearch::readKnownIds(const std::vector<Issue>& knownIssues) {
    const auto count = static_cast<std::size_t>(m_colors.size());
    QHash<QString, qsizetype> indexById;
    indexById.reserve(m_colors.size());
    for (qsizetype i = 0; i < m_colors.size(); ++i) {
        indexById.insert(uuidText(m_colors.at(i).id), i);
    }
    m_readKnown.assign(count, 0);
    m_knownPairs.assign(count * count, 0);
    for (const Issue& known : knownIssues) {
        const QString& id = known.id;
        if (id.size() == kReadIdLength && id.startsWith(u"read-"_s)) {
            const qsizetype index = indexById.value(id.mid(kPrefixLength), -1);
            if (index >= 0) {
                m_readKnown[static_cast<std::size_t>(index)] = 1;
            }
            continue;
        }
        if (id.size() != kPairIdLength || id.at(kPrefixLength + kIdLength) != u'-') {
            continue;
        }
        unsigned char bit = 0;
        if (id.startsWith(u"dupe-"_s)) {
            bit = kKnownNearDuplicate;
        } else if (id.startsWith(u"look-"_s)) {
            bit = kKnownLookAlike;
        } else {
            continue;
        }
        const qsizetype first = indexById.value(id.mid(kPrefixLength, kIdLength), -1);
        const qsizetype second = indexById.value(id.mid(kPrefixLength + kIdLength + 1), -1);
        if (first >= 0 && second > first) {
            m_knownPairs[static_cast<std::size_t>(first) * count +
                         static_cast<std::size_t>(second)] |= bit;
        }
    }
}

// Pairs without the moved colour keep their issue through every candidate: one whose id isn't
// known makes every candidate of the other colours unacceptable.
void MoveSearch::countUnknownPairs() {
    const std::size_t count = m_facts.size();
    m_unknownPairsWith.assign(count, 0);
    for (std::size_t a = 0; a < count; ++a) {
        for (std::size_t b = a + 1; b < count; ++b) {
            const unsigned char known = m_knownPairs[a * count + b];
            const PairIssue issue = pairIssue(m_facts[a], m_facts[b]);
            if ((issue == PairIssue::nearDuplicate && !(known & kKnownNearDuplicate)) ||
                (issue == PairIssue::lookAlike && !(known & kKnownLookAlike))) {
                ++m_unknownPairsWith[a];
                ++m_unknownPairsWith[b];
                ++m_unknownPairs;
            }
        }
    }
}

MoveSearch::MovingColor& MoveSearch::movingColor(qsizetype index) {
    std::unique_ptr<MovingColor>& slot = m_moving[static_cast<std::size_t>(index)];
    if (slot) {
        return *slot;
    }
    slot = std::make_unique<MovingColor>();
    for (qsizetype i = 0; i < m_colors.size(); ++i) {
        const ColorFacts& color = m_facts[static_cast<std::size_t>(i)];
        if (i == index || color.band != Band::light) {
            continue;
        }
        if (slot->lightCount == 0) {
            slot->lowestLight = slot->highestLight = color.luminance;
        } else {
            slot->lowestLight = std::min(slot->lowestLight, color.luminance);
            slot->highestLight = std::max(slot->highestLight, color.luminance);
        }
        ++slot->lightCount;
    }
    return *slot;
}

MoveSearch::Candidate& MoveSearch::candidate(qsizetype index, bool cached,
                                             const ColorUtils::HSL& hsl, int direction, int steps,
                                             double lightness) {
    Candidate* slot = &m_scratch;
    if (cached) {
        std::optional<Candidate>& entry =
            movingColor(index)
                .candidates[static_cast<std::size_t>((direction < 0 ? 0 : kMaxSteps) + steps - 1)];
        if (entry) {
            return *entry;
        }
        entry = Candidate{};
        slot = &*entry;
    } else {
        m_scratch.acceptable = -1;
    }
    slot->hex = ColorUtils::hslToHex(hsl.h, hsl.s, lightness);
    slot->facts = factsOf(slot->hex);
    return *slot;
}

bool MoveSearch::isAcceptable(qsizetype index, Candidate& candidate) {
    if (candidate.acceptable < 0) {
        const bool acceptable = m_distinctIds ? makesNoNewIssue(index, candidate)
                                              : makesNoNewIssueByFullCheck(index, candidate);
        candidate.acceptable = acceptable ? 1 : 0;
    }
    return candidate.acceptable == 1;
}

bool MoveSearch::makesNoNewIssue(qsizetype index, const Candidate& candidate) {
    const auto moved = static_cast<std::size_t>(index);
    if (m_unknownPairs - m_unknownPairsWith[moved] > 0) {
        return false;
    }
    const ColorFacts& facts = candidate.facts;

    // Readability of every dark colour against the light ones, this one's new code included.
    const MovingColor& others = movingColor(index);
    int lightCount = others.lightCount;
    double lowestLight = others.lowestLight;
    double highestLight = others.highestLight;
    if (facts.band == Band::light) {
        lowestLight = lightCount == 0 ? facts.luminance : std::min(lowestLight, facts.luminance);
        highestLight = lightCount == 0 ? facts.luminance : std::max(highestLight, facts.luminance);
        ++lightCount;
    }
    if (lightCount > 0) {
        for (const qsizetype dark : m_watchedDarks) {
            if (dark != index && highestRatioAgainst(m_facts[static_cast<std::size_t>(dark)],
                                                     lowestLight, highestLight) < 4.5) {
                return false;
            }
        }
        if (facts.band == Band::dark && !m_readKnown[moved] &&
            highestRatioAgainst(facts, lowestLight, highestLight) < 4.5) {
            return false;
        }
    }

    // The pairs with the moved colour.
    const std::size_t count = m_facts.size();
    for (std::size_t other = 0; other < count; ++other) {
        if (other == moved) {
            continue;
        }
        const PairIssue issue = pairIssue(facts, m_facts[other]);
        if (issue == PairIssue::none) {
            continue;
        }
        const unsigned char known =
            m_knownPairs[std::min(moved, other) * count + std::max(moved, other)];
        if ((issue == PairIssue::nearDuplicate && !(known & kKnownNearDuplicate)) ||
            (issue == PairIssue::lookAlike && !(known & kKnownLookAlike))) {
            return false;
        }
    }
    return true;
}

bool MoveSearch::makesNoNewIssueByFullCheck(qsizetype index, const Candidate& candidate) const {
    std::vector<ColorFacts> facts = m_facts;
    facts[static_cast<std::size_t>(index)] = candidate.facts;
    QList<ColorItem> trial = m_colors;
    trial[index].hex = candidate.hex;
    for (const Issue& issue : detectFromFacts(trial, facts)) {
        if (!m_knownIds.contains(issue.id)) {
            return false;
        }
    }
    return true;
}

std::optional<LightnessMove> MoveSearch::find(const Issue& issue) {
    if (!isLookAlike(issue.kind)) {
        return std::nullopt;
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
        const qsizetype index = indexOfColor(m_colors, moving.id);
        if (!hsl || index < 0) {
            continue;
        }
        // The issue's copy of the colour is what moves; the palette's own entry is replaced.
        // They agree unless the caller kept an issue across an edit.
        const bool cached = moving.hex == m_colors.at(index).hex;
        const ColorFacts partnerFacts = factsOf(partner.hex);
        for (const int direction : {-1, 1}) { // darker first
            for (int n = 1; n <= kMaxSteps; ++n) {
                const double lightness = hsl->l + static_cast<double>(direction) * n * kStep;
                if (!(lightness > kLowestLightness && lightness < kHighestLightness)) {
                    break;
                }
                Candidate& step = candidate(index, cached, *hsl, direction, n, lightness);
                if (staysClose(step.facts, partnerFacts) || !isAcceptable(index, step)) {
                    continue;
                }
                // Steps are compared rather than |L - l|, whose last bits differ between the
                // two directions: an equal change must keep the earlier candidate.
                if (!best || n < bestSteps) {
                    best = LightnessMove{moving.id, moving.name, moving.hex, step.hex,
                                         lightness - hsl->l};
                    bestSteps = n;
                }
                break;
            }
        }
    }
    return best;
}

} // namespace hueshelf::PaletteCheck::detail
