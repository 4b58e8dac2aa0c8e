// What kind of colour scheme a palette is, read off the HSL hue circle with no perceptual
// correction, and the notes on what could make it better. The clustering is deliberately plain:
// a cluster's centre is the arithmetic mean of its hues, so hues either side of 0 average to
// the opposite side of the circle. That is accepted behaviour and must not be "fixed" into a
// circular mean, or palettes would change their verdict.

#include "color/ColorUtils.h"
#include "model/ColorItem.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace hueshelf::ColorUtils {

namespace {

constexpr double chromaticSaturation = 0.1; // above this a colour has a hue worth reading
constexpr double clusterReach = 30.0;

struct Extent {
    double min = 0.0;
    double max = 0.0;
};

template <typename Field>
Extent extentOf(const std::vector<HSL>& entries, Field field) {
    Extent extent{field(entries.front()), field(entries.front())};
    for (const HSL& hsl : entries) {
        extent.min = std::min(extent.min, field(hsl));
        extent.max = std::max(extent.max, field(hsl));
    }
    return extent;
}

double largestHueDistance(const std::vector<HSL>& entries) {
    double largest = 0.0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        for (std::size_t j = i + 1; j < entries.size(); ++j) {
            largest = std::max(largest, hueDistance(entries[i].h, entries[j].h));
        }
    }
    return largest;
}

// Each cluster is measured from the hue that opened it, not from its growing centre, so the
// result depends on palette order and a cluster spans at most 60 degrees.
std::vector<double> clusterCentres(const std::vector<HSL>& chromatic) {
    std::vector<double> centres;
    std::vector<bool> taken(chromatic.size(), false);
    for (std::size_t i = 0; i < chromatic.size(); ++i) {
        if (taken[i]) {
            continue;
        }
        taken[i] = true;
        double sum = chromatic[i].h;
        int count = 1;
        for (std::size_t j = i + 1; j < chromatic.size(); ++j) {
            if (!taken[j] && hueDistance(chromatic[i].h, chromatic[j].h) <= clusterReach) {
                taken[j] = true;
                sum += chromatic[j].h;
                ++count;
            }
        }
        centres.push_back(sum / count);
    }
    return centres;
}

QString schemeOfClusters(const std::vector<double>& centres) {
    if (centres.size() == 2) {
        const double d = hueDistance(centres[0], centres[1]);
        if (d >= 140.0 && d <= 220.0) {
            return u"complementary"_s;
        }
        return d >= 60.0 ? u"split"_s : u"none"_s;
    }
    if (centres.size() == 3) {
        const auto third = [](double d) { return d >= 90.0 && d <= 150.0; };
        if (third(hueDistance(centres[0], centres[1])) &&
            third(hueDistance(centres[0], centres[2])) &&
            third(hueDistance(centres[1], centres[2]))) {
            return u"triadic"_s;
        }
    }
    return u"none"_s;
}

QString schemeOf(const std::vector<HSL>& chromatic, double largest) {
    if (largest <= 30.0) {
        return u"monochromatic"_s;
    }
    if (largest <= 60.0) {
        return u"analogous"_s;
    }
    if (chromatic.size() == 2) {
        const double d = hueDistance(chromatic[0].h, chromatic[1].h);
        if (d >= 150.0 && d <= 210.0) {
            return u"complementary"_s;
        }
        if (d >= 60.0 && d <= 150.0) {
            return u"split"_s;
        }
        return u"none"_s;
    }
    return schemeOfClusters(clusterCentres(chromatic));
}

const QString allLightPrefix = u"All your colors are light"_s;

} // namespace

double hueDistance(double a, double b) {
    const double d = std::fmod(std::abs(a - b), 360.0);
    return d > 180.0 ? 360.0 - d : d;
}

HarmonyAnalysis analyzeHarmony(const QList<ColorItem>& colors) {
    std::vector<HSL> all;
    for (const ColorItem& item : colors) {
        if (const std::optional<HSL> hsl = hexToHSL(item.hex)) {
            all.push_back(*hsl);
        }
    }
    if (all.size() < 2) {
        return {u"none"_s, {}};
    }
    std::vector<HSL> chromatic;
    std::copy_if(all.begin(), all.end(), std::back_inserter(chromatic),
                 [](const HSL& hsl) { return hsl.s > chromaticSaturation; });
    if (chromatic.size() < 2) {
        return {u"neutral"_s, {}};
    }
    const double largest = largestHueDistance(chromatic);
    HarmonyAnalysis analysis{schemeOf(chromatic, largest), {}};

    const Extent saturation = extentOf(chromatic, [](const HSL& hsl) { return hsl.s; });
    const Extent lightness = extentOf(chromatic, [](const HSL& hsl) { return hsl.l; });
    const auto someChromatic = [&chromatic](auto predicate) {
        return std::any_of(chromatic.begin(), chromatic.end(), predicate);
    };
    const bool allDark =
        std::all_of(all.begin(), all.end(), [](const HSL& hsl) { return hsl.l < 0.4; });
    const bool allLight =
        !allDark && std::all_of(all.begin(), all.end(), [](const HSL& hsl) { return hsl.l > 0.6; });
    const bool notAPair = chromatic.size() != 2;

    std::vector<HarmonyNote>& notes = analysis.notes;
    if (analysis.scheme == u"none"_s && largest > 90.0) {
        notes.push_back({u"Your colors don't have an obvious connection to each other. Try "
                         u"picking colors that sit next to each other or directly across from "
                         u"each other on a color wheel."_s,
                         u"noConnection"_s});
    }
    if (saturation.max - saturation.min > 0.5 && notAPair &&
        someChromatic([](const HSL& hsl) { return hsl.s > 0.6; }) &&
        someChromatic([](const HSL& hsl) { return hsl.s < 0.3; })) {
        notes.push_back({u"Some of your colors are bold and bright while others are soft and "
                         u"faded. Palettes tend to look more polished when colors share a similar "
                         u"energy level."_s,
                         u"energy"_s});
    }
    if (lightness.max - lightness.min < 0.2 && notAPair &&
        chromatic.size() == static_cast<std::size_t>(colors.size()) && !allDark && !allLight) {
        notes.push_back({u"Your colors are all about the same brightness. Adding some lighter or "
                         u"darker shades will help important things stand out."_s,
                         u"brightness"_s});
    }
    if (analysis.scheme == u"monochromatic"_s && chromatic.size() >= 4) {
        notes.push_back({u"Your palette is mostly variations of the same color. Adding one "
                         u"different color as a pop can make your design more interesting."_s,
                         u"variety"_s});
    }
    if (allDark) {
        notes.push_back({u"All your colors are dark. Adding a lighter color would create more "
                         u"contrast and make the palette more versatile."_s,
                         u"allDark"_s});
    }
    if (allLight) {
        notes.push_back({allLightPrefix + u". Adding a darker color would give you better "
                                          u"options for text and headings."_s,
                         u"allLight"_s});
    }
    return analysis;
}

std::optional<QString> schemeDisplayName(const QString& scheme) {
    if (scheme == u"monochromatic"_s) {
        return u"Monochromatic palette"_s;
    }
    if (scheme == u"analogous"_s) {
        return u"Analogous palette"_s;
    }
    if (scheme == u"complementary"_s) {
        return u"Complementary palette"_s;
    }
    if (scheme == u"triadic"_s) {
        return u"Triadic palette"_s;
    }
    if (scheme == u"split"_s) {
        return u"Split-complementary palette"_s;
    }
    if (scheme == u"neutral"_s) {
        return u"Mostly neutral palette"_s;
    }
    return std::nullopt;
}

std::optional<QString> schemeDisplayName(const QList<ColorItem>& colors) {
    return schemeDisplayName(analyzeHarmony(colors).scheme);
}

QStringList harmonyMessages(const QList<ColorItem>& colors) {
    // The check already says "No dark color to read as text" when nothing is dark; the same
    // advice twice would read as nagging. An unreadable code counts as dark, as in the check.
    const bool noDarkColor =
        !colors.isEmpty() && std::none_of(colors.begin(), colors.end(), [](const ColorItem& c) {
            const std::optional<HSL> hsl = hexToHSL(c.hex);
            return !hsl || hsl->l < 0.4;
        });
    QStringList messages;
    for (const HarmonyNote& note : analyzeHarmony(colors).notes) {
        if (noDarkColor && note.message.startsWith(allLightPrefix)) {
            continue;
        }
        messages << note.message;
    }
    return messages;
}

} // namespace hueshelf::ColorUtils
