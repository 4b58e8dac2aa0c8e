#include "color/PaletteCheck.h"

#include <algorithm>

namespace hueshelf::PaletteCheck {

namespace {

QList<ColorItem> colorsInBand(const QList<ColorItem>& colors, Band band) {
    QList<ColorItem> result;
    for (const ColorItem& color : colors) {
        if (bandOf(color.hex) == band) {
            result.append(color);
        }
    }
    return result;
}

} // namespace

Band bandOf(const QString& hex) {
    const std::optional<ColorUtils::HSL> hsl = ColorUtils::hexToHSL(hex);
    if (!hsl) {
        // Darkness is what the check reads as text, so a colour without a value is tested as
        // text and fails on any light colour.
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

QList<ColorItem> lightColors(const QList<ColorItem>& colors) {
    return colorsInBand(colors, Band::light);
}

QList<ColorItem> darkColors(const QList<ColorItem>& colors) {
    return colorsInBand(colors, Band::dark);
}

QList<ColorItem> midToneColors(const QList<ColorItem>& colors) {
    return colorsInBand(colors, Band::midTone);
}

std::optional<ColorItem> lightestColor(const QList<ColorItem>& colors) {
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

double highestRatio(const QString& hex, const QList<ColorItem>& backgrounds) {
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

} // namespace hueshelf::PaletteCheck
