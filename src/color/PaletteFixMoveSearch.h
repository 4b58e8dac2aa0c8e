#pragma once

// Internal to the palette check: the fix search for look-alike pairs, run for one palette and
// the issues known in it.

#include "color/PaletteCheck.h"
#include "color/PaletteCheckFacts.h"

#include <QList>
#include <QSet>
#include <QString>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace hueshelf::PaletteCheck::detail {

// Finds the smallest lightness move of a look-alike pair that separates it and makes no issue
// outside the known ones, with the result the full search gives: try each candidate, check the
// changed palette, keep it if every issue of that check is known.
//
// A candidate changes one colour, so instead of checking the whole palette again it recomputes
// only what that colour takes part in: the readability of the dark colours against the light
// ones (the set of light colours may have changed), and the pairs with the moved colour. Every
// other pair keeps the issue it had, which is known or not once and for all. That holds while
// the colours' ids are distinct, because then a pair's key belongs to that pair alone; a palette
// with repeated ids (which only a damaged file gives) takes the full check per candidate.
//
// A colour's candidates, and whether each makes a new issue, don't depend on the pair it is
// moved for, so one search object serves all issues of a palette and works each out once.
class MoveSearch {
public:
    MoveSearch(const QList<ColorItem>& colors, std::vector<ColorFacts> facts,
               const std::vector<Issue>& knownIssues);

    std::optional<LightnessMove> find(const Issue& issue);

private:
    static constexpr int kMaxSteps = 45;

    enum class PairIssue : unsigned char { none, nearDuplicate, lookAlike };
    // Bits of a known pair id.
    static constexpr unsigned char kKnownNearDuplicate = 1;
    static constexpr unsigned char kKnownLookAlike = 2;

    struct Candidate {
        QString hex;
        ColorFacts facts;
        signed char acceptable = -1; // not yet worked out
    };

    // What the search keeps per colour that moves.
    struct MovingColor {
        // The light colours other than this one: how many, and their luminance range.
        int lightCount = 0;
        double lowestLight = 0.0;
        double highestLight = 0.0;
        // Darker steps 1...45, then lighter steps 1...45.
        std::array<std::optional<Candidate>, 2 * kMaxSteps> candidates;
    };

    static PairIssue pairIssue(const ColorFacts& a, const ColorFacts& b);

    void readKnownIds(const std::vector<Issue>& knownIssues);
    void countUnknownPairs();
    MovingColor& movingColor(qsizetype index);
    Candidate& candidate(qsizetype index, bool cached, const ColorUtils::HSL& hsl, int direction,
                         int steps, double lightness);
    bool isAcceptable(qsizetype index, Candidate& candidate);
    bool makesNoNewIssue(qsizetype index, const Candidate& candidate);
    bool makesNoNewIssueByFullCheck(qsizetype index, const Candidate& candidate) const;

    const QList<ColorItem>& m_colors;
    std::vector<ColorFacts> m_facts;
    QSet<QString> m_knownIds;
    bool m_distinctIds = false;

    // Only while the ids are distinct:
    std::vector<char> m_readKnown;           // per colour: its readability issue is known
    std::vector<unsigned char> m_knownPairs; // per pair (row < column): kKnown... bits
    std::vector<int> m_unknownPairsWith;     // per colour: pairs with it whose issue isn't known
    int m_unknownPairs = 0;
    std::vector<qsizetype> m_watchedDarks; // dark colours whose readability issue isn't known
    std::vector<std::unique_ptr<MovingColor>> m_moving;

    Candidate m_scratch; // a candidate of a colour that the issue saw with another code
};

} // namespace hueshelf::PaletteCheck::detail
