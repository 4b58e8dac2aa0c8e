// Derived views of single colours and lists: the ten-step shade ladder, pairs of near
// duplicates by Manhattan distance on bytes, and the label colour that reads on a swatch.

#include "color/ColorUtils.h"
#include "model/ColorItem.h"

#include <cmath>
#include <cstdlib>

namespace hueshelf::ColorUtils {

namespace {

struct LadderRung {
    int label;
    double lightness;
};

// The familiar 50...900 naming; lightness falls faster at the light end, where the eye tells
// steps apart more easily.
constexpr std::array<LadderRung, 10> ladder{{
    {50, 0.95},
    {100, 0.90},
    {200, 0.82},
    {300, 0.72},
    {400, 0.60},
    {500, 0.48},
    {600, 0.38},
    {700, 0.28},
    {800, 0.18},
    {900, 0.10},
}};

} // namespace

std::vector<ShadeStep> shadeLadder(const QString& hex) {
    const std::optional<HSL> hsl = hexToHSL(hex);
    if (!hsl) {
        return {};
    }
    std::vector<ShadeStep> steps;
    steps.reserve(ladder.size());
    std::size_t baseIndex = 0;
    double nearest = std::abs(ladder.front().lightness - hsl->l);
    for (std::size_t i = 0; i < ladder.size(); ++i) {
        steps.push_back(
            ShadeStep{ladder[i].label, hslToHex(hsl->h, hsl->s, ladder[i].lightness), false});
        const double distance = std::abs(ladder[i].lightness - hsl->l);
        if (distance < nearest) { // strict: the lighter step keeps a tie
            nearest = distance;
            baseIndex = i;
        }
    }
    // The base step shows the user's own text, so the colour itself is always on the ladder.
    steps[baseIndex].hex = hex;
    steps[baseIndex].isBase = true;
    return steps;
}

std::vector<std::pair<int, int>> similarPairs(const QList<ColorItem>& colors, int threshold) {
    std::vector<std::pair<int, int>> pairs;
    if (colors.size() < 2) {
        return pairs;
    }
    std::vector<std::optional<RGB>> bytes;
    bytes.reserve(static_cast<std::size_t>(colors.size()));
    for (const ColorItem& item : colors) {
        bytes.push_back(hexToRGB(item.hex));
    }
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (!bytes[i]) {
            continue;
        }
        for (std::size_t j = i + 1; j < bytes.size(); ++j) {
            if (!bytes[j]) {
                continue;
            }
            const RGB& a = *bytes[i];
            const RGB& b = *bytes[j];
            const int distance = std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b);
            if (distance < threshold) {
                pairs.emplace_back(static_cast<int>(i), static_cast<int>(j));
            }
        }
    }
    return pairs;
}

bool swatchLabelIsDark(const QString& hex) {
    const std::optional<HSL> hsl = hexToHSL(hex);
    return !hsl || hsl->l > 0.6;
}

} // namespace hueshelf::ColorUtils
