#include "color/DarkVersion.h"

#include "color/ColorUtils.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace hueshelf::DarkVersion {

using namespace Qt::StringLiterals;

QList<ColorItem> darkVersion(const QList<ColorItem>& colors) {
    QList<ColorItem> inverted = colors;
    for (ColorItem& color : inverted) {
        if (const std::optional<ColorUtils::HSL> hsl = ColorUtils::hexToHSL(color.hex)) {
            const double lightness =
                std::max(std::min(1.0 - hsl->l, lightestLightness), darkestLightness);
            color.hex = ColorUtils::hslToHex(hsl->h, hsl->s, lightness);
        }
    }
    return darkContrastPass(std::move(inverted));
}

QList<ColorItem> darkContrastPass(QList<ColorItem> colors) {
    std::vector<qsizetype> dark;
    std::vector<qsizetype> light;
    for (qsizetype i = 0; i < colors.size(); ++i) {
        if (const std::optional<ColorUtils::HSL> hsl = ColorUtils::hexToHSL(colors.at(i).hex)) {
            (hsl->l < darkBelowLightness ? dark : light).push_back(i);
        }
    }

    // A later light colour may undo what an earlier one asked for; nothing goes back over them,
    // so a dark colour ends fixed against the last light colour that needed it.
    for (qsizetype d : dark) {
        for (qsizetype t : light) {
            const QString textHex = colors.at(t).hex;
            const std::optional<double> backgroundLuminance =
                ColorUtils::relativeLuminance(colors.at(d).hex);
            const std::optional<double> textLuminance = ColorUtils::relativeLuminance(textHex);
            if (backgroundLuminance && textLuminance &&
                ColorUtils::contrastRatio(*backgroundLuminance, *textLuminance) >= targetRatio) {
                continue;
            }
            if (const std::optional<QString> adjusted =
                    ColorUtils::adjustedForContrast(colors.at(d).hex, textHex, targetRatio)) {
                colors[d].hex = *adjusted;
            }
        }
    }
    return colors;
}

std::optional<QString> morePreviewLine(qsizetype colorCount) {
    const qsizetype hidden = colorCount - previewCount;
    if (hidden <= 0) {
        return std::nullopt;
    }
    return u"+"_s + QString::number(hidden) + (hidden == 1 ? u" more color"_s : u" more colors"_s) +
           u" not shown"_s;
}

QString defaultName(const std::optional<QString>& activeTemplateName) {
    return activeTemplateName.value_or(u"My Palette"_s) + u" (Dark)"_s;
}

QList<ColorItem> darkPaletteColors(const QList<ColorItem>& activeColors) {
    QList<ColorItem> colors;
    colors.reserve(activeColors.size());
    for (const ColorItem& dark : darkVersion(activeColors)) {
        ColorItem color = dark;
        color.id = QUuid::createUuid();
        color.isLocked = false;
        colors.append(color);
    }
    return colors;
}

} // namespace hueshelf::DarkVersion
