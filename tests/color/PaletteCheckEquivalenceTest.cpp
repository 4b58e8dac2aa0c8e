// The fast palette check against the plain one kept in tests/support, on many random palettes
// built to hit what the fast code handles on its own: look-alike crowds, near-duplicates, greys,
// codes that can't be read or are written loosely, locks, repeated ids, and issues that no
// longer match the palette they are searched in. Every field of every issue must agree.

#include "PaletteTestSupport.h"
#include "StraightPaletteCheck.h"
#include "color/ColorUtils.h"
#include "color/ColorVisionSimulation.h"
#include "color/PaletteCheck.h"
#include "color/PaletteCheckFacts.h"

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;

namespace hueshelf {
namespace {

using PaletteCheck::Issue;

class RandomPalettes {
public:
    explicit RandomPalettes(std::uint32_t seed) : m_random(seed) {}

    int below(int bound) { return static_cast<int>(m_random() % static_cast<unsigned>(bound)); }
    double uniform(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(m_random);
    }

    QString hexOf(int r, int g, int b) {
        return u"#%1%2%3"_s.arg(r, 2, 16, QChar(u'0'))
            .arg(g, 2, 16, QChar(u'0'))
            .arg(b, 2, 16, QChar(u'0'))
            .toUpper();
    }

    QString code(const QList<ColorItem>& before) {
        switch (below(14)) {
        case 0:
        case 1:
            return hexOf(below(256), below(256), below(256));
        case 2: { // a near-duplicate of an earlier colour
            if (before.isEmpty())
                break;
            const auto rgb = ColorUtils::hexToRGB(before.at(below(int(before.size()))).hex);
            if (!rgb)
                break;
            auto nudge = [this](int v) { return std::clamp(v + below(13) - 6, 0, 255); };
            return hexOf(nudge(rgb->r), nudge(rgb->g), nudge(rgb->b));
        }
        case 3: // greys, which pair with nothing among themselves
            return ColorUtils::hslToHex(uniform(0, 360), uniform(0, 0.12), uniform(0.02, 0.98));
        case 4: // light colours
            return ColorUtils::hslToHex(uniform(0, 360), uniform(0, 1), uniform(0.55, 0.97));
        case 5: // dark colours
            return ColorUtils::hslToHex(uniform(0, 360), uniform(0, 1), uniform(0.03, 0.42));
        case 6: { // written as people paste them, or not a code at all
            static const QStringList odd{u"#abcdef"_s, u" #3B8077 "_s, u"ff0000"_s,
                                         u"nope"_s,    u""_s,          u"#12345"_s,
                                         u"#GGGGGG"_s, u"##00FF00"_s,  u"#0000FF\n"_s};
            return odd.at(below(int(odd.size())));
        }
        // Dark yellows outshine light blues in luminance, so a dark colour's best background
        // can be the dimmest light colour rather than the brightest.
        case 7:
            return ColorUtils::hslToHex(uniform(45, 75), uniform(0.8, 1), uniform(0.3, 0.4));
        case 8:
            return ColorUtils::hslToHex(uniform(210, 270), uniform(0.8, 1), uniform(0.6, 0.72));
        default: // the red-green crowd
            return ColorUtils::hslToHex(uniform(0, 140), uniform(0.4, 1.0), uniform(0.2, 0.6));
        }
        return hexOf(below(256), below(256), below(256));
    }

    QList<ColorItem> palette(int size, bool repeatIds) {
        QList<ColorItem> colors;
        for (int i = 0; i < size; ++i) {
            ColorItem color = testing_palette::colorItem(i, code(colors), below(6) == 0);
            if (below(5) == 0)
                color.name = u"Name %1"_s.arg(below(4)); // names repeat, ids don't
            if (repeatIds && !colors.isEmpty() && below(4) == 0)
                color.id = colors.at(below(int(colors.size()))).id;
            colors.append(color);
        }
        return colors;
    }

private:
    std::mt19937 m_random;
};

QString describe(const ColorItem& c) {
    return u"%1|%2|%3|%4|%5|%6|%7"_s.arg(uuidText(c.id), c.name, c.hex)
        .arg(c.isAutoNamed)
        .arg(c.isLocked)
        .arg(c.dividerBefore)
        .arg(c.dividerLabel);
}

QString describe(const std::optional<PaletteCheck::LightnessMove>& move) {
    if (!move)
        return u"no move"_s;
    return u"%1|%2|%3|%4|%5"_s.arg(uuidText(move->colorID), move->name, move->fromHex, move->toHex)
        .arg(move->lightnessChange, 0, 'g', 17);
}

QString kindText(const PaletteCheck::Kind& kind) {
    if (const auto* readability = std::get_if<PaletteCheck::Readability>(&kind))
        return u"read:"_s + ColorUtils::contrastLevelIdentifier(readability->level);
    if (const auto* lookAlike = std::get_if<PaletteCheck::LookAlike>(&kind))
        return u"look:"_s + ColorVisionSimulation::identifier(lookAlike->vision);
    return u"dupe"_s;
}

// Every field, so that a difference shows as text in the failure.
QStringList describe(const std::vector<Issue>& issues) {
    QStringList lines;
    for (const Issue& issue : issues) {
        lines << u"%1 %2 [%3] [%4] %5 %6 (%7)"_s
                     .arg(issue.id, kindText(issue.kind), describe(issue.color),
                          describe(issue.other))
                     .arg(issue.canFix)
                     .arg(issue.text, describe(issue.move));
    }
    return lines;
}

TEST(PaletteCheckEquivalence, detectAgreesOnRandomPalettes) {
    RandomPalettes random(7);
    int issuesSeen = 0;
    for (int round = 0; round < 600; ++round) {
        const QList<ColorItem> colors = random.palette(random.below(42), round % 5 == 0);
        const std::vector<Issue> expected = straight::detect(colors);
        issuesSeen += int(expected.size());
        ASSERT_EQ(describe(PaletteCheck::detect(colors)), describe(expected)) << "round " << round;
    }
    EXPECT_GT(issuesSeen, 3000); // the palettes really are full of issues
}

TEST(PaletteCheckEquivalence, issuesWithMovesAgreesOnRandomPalettes) {
    RandomPalettes random(11);
    int movesSeen = 0;
    int unfixableSeen = 0;
    for (int round = 0; round < 250; ++round) {
        const QList<ColorItem> colors = random.palette(2 + random.below(16), round % 6 == 0);
        const std::vector<Issue> expected = straight::issuesWithMoves(colors);
        for (const Issue& issue : expected) {
            if (PaletteCheck::isLookAlike(issue.kind))
                (issue.move ? movesSeen : unfixableSeen) += 1;
        }
        ASSERT_EQ(describe(PaletteCheck::issuesWithMoves(colors)), describe(expected))
            << "round " << round;
    }
    // Both ends of the search were reached.
    EXPECT_GT(movesSeen, 500);
    EXPECT_GT(unfixableSeen, 15);
}

// The search with only part of the palette's issues known, and with issues whose colours have
// since been edited: every path of the search that issuesWithMoves never takes.
TEST(PaletteCheckEquivalence, findLightnessMoveAgreesWithPartlyKnownAndStaleIssues) {
    RandomPalettes random(23);
    int compared = 0;
    for (int round = 0; round < 200; ++round) {
        QList<ColorItem> colors = random.palette(3 + random.below(10), round % 4 == 0);
        const std::vector<Issue> issues = straight::detect(colors);
        std::vector<Issue> known;
        for (const Issue& issue : issues) {
            if (random.below(4) != 0)
                known.push_back(issue);
        }
        if (round % 3 == 0 && !colors.isEmpty()) // the palette moved on since the check
            colors[random.below(int(colors.size()))].hex = random.code(colors);
        for (const Issue& issue : issues) {
            const auto expected = straight::findLightnessMove(issue, colors, known);
            ASSERT_EQ(describe(PaletteCheck::findLightnessMove(issue, colors, known)),
                      describe(expected))
                << "round " << round << ", " << issue.id.toStdString();
            ++compared;
        }
    }
    EXPECT_GT(compared, 300);
}

TEST(PaletteCheckEquivalence, simulatedDistanceAgrees) {
    RandomPalettes random(31);
    const QList<ColorItem> codes = random.palette(400, false);
    for (qsizetype i = 0; i + 1 < codes.size(); ++i) {
        const QString& a = codes.at(i).hex;
        const QString& b = codes.at(i + 1).hex;
        ASSERT_EQ(PaletteCheck::simulatedDistance(a, b), straight::simulatedDistance(a, b))
            << a.toStdString() << " " << b.toStdString();
    }
}

// The check reads simulated bytes without printing codes; they must be the lens's codes.
TEST(PaletteCheckEquivalence, factsMatchTheColourFunctions) {
    std::mt19937 random(5);
    QStringList codes{u"#000000"_s, u"#FFFFFF"_s, u"#FF0000"_s, u"#00FF00"_s, u"#0000FF"_s,
                      u"#010101"_s, u"#0A0A0A"_s, u"#FEFEFE"_s, u"abc"_s,     u" #00ff7F "_s};
    for (int i = 0; i < 30000; ++i)
        codes << u"#%1"_s.arg(random() & 0xFFFFFFu, 6, 16, QChar(u'0'));
    for (const QString& code : codes) {
        const PaletteCheck::detail::ColorFacts facts = PaletteCheck::detail::factsOf(code);
        const std::optional<ColorUtils::RGB> rgb = ColorUtils::hexToRGB(code);
        ASSERT_EQ(facts.readable, rgb.has_value()) << code.toStdString();
        if (!rgb)
            continue;
        ASSERT_EQ(facts.band, PaletteCheck::bandOf(code));
        ASSERT_EQ(facts.luminance, *ColorUtils::relativeLuminance(code));
        for (std::size_t t = 0; t < PaletteCheck::detail::kVisionOrder.size(); ++t) {
            const auto seen = ColorUtils::hexToRGB(
                ColorVisionSimulation::simulated(code, PaletteCheck::detail::kVisionOrder[t]));
            ASSERT_TRUE(seen.has_value());
            ASSERT_EQ(std::tie(facts.seen[t].r, facts.seen[t].g, facts.seen[t].b),
                      std::tie(seen->r, seen->g, seen->b))
                << code.toStdString() << " type " << t;
        }
    }
}

} // namespace
} // namespace hueshelf
