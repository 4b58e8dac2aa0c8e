#include "color/SchemeGenerator.h"

#include "color/ColorUtils.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace hueshelf::SchemeGenerator {

using namespace Qt::StringLiterals;

namespace {

// Into 0...360 by whole turns. hslToHex reads a hue outside that range as its last sector, so
// every hue derived by adding or subtracting goes through here first.
double wrappedHue(double hue) {
    if (!std::isfinite(hue)) {
        return hue;
    }
    while (hue < 0.0) {
        hue += 360.0;
    }
    while (hue >= 360.0) {
        hue -= 360.0;
    }
    return hue;
}

QString hexAt(double h, double s, double l) {
    return ColorUtils::hslToHex(wrappedHue(h), s, l);
}

// Ratio of two codes, absent when either can't be read.
std::optional<double> ratioOf(const QString& first, const QString& second) {
    const std::optional<double> a = ColorUtils::relativeLuminance(first);
    const std::optional<double> b = ColorUtils::relativeLuminance(second);
    if (!a || !b) {
        return std::nullopt;
    }
    return ColorUtils::contrastRatio(*a, *b);
}

bool pairReadable(const QList<GeneratedColor>& colors, const ContrastPair& pair) {
    const std::optional<double> ratio =
        ratioOf(colors.at(pair.foreground).hex, colors.at(pair.background).hex);
    return ratio && *ratio >= targetRatio;
}

bool isSixHexDigits(const QString& text) {
    static const QRegularExpression sixDigits(u"^#?[0-9A-Fa-f]{6}$"_s);
    return sixDigits.match(text).hasMatch();
}

} // namespace

const std::array<SchemeStyle, 3>& allSchemeStyles() {
    static const std::array<SchemeStyle, 3> styles{SchemeStyle::warm, SchemeStyle::cool,
                                                   SchemeStyle::neutral};
    return styles;
}

QString styleLabel(SchemeStyle style) {
    switch (style) {
    case SchemeStyle::warm:
        return u"Warm"_s;
    case SchemeStyle::cool:
        return u"Cool"_s;
    case SchemeStyle::neutral:
        return u"Neutral"_s;
    }
    return u"Warm"_s;
}

QString styleIdentifier(SchemeStyle style) {
    switch (style) {
    case SchemeStyle::warm:
        return u"warm"_s;
    case SchemeStyle::cool:
        return u"cool"_s;
    case SchemeStyle::neutral:
        return u"neutral"_s;
    }
    return u"warm"_s;
}

std::optional<SchemeStyle> styleFromIdentifier(const QString& identifier) {
    for (SchemeStyle style : allSchemeStyles()) {
        if (styleIdentifier(style) == identifier) {
            return style;
        }
    }
    return std::nullopt;
}

const std::array<QString, roleCount>& roles() {
    static const std::array<QString, roleCount> names{u"Primary"_s,    u"Header"_s,  u"Accent"_s,
                                                      u"Background"_s, u"Surface"_s, u"Text"_s};
    return names;
}

QList<GeneratedColor> schemeColors(const QString& primaryHex, double h, double s, double l,
                                   SchemeStyle style) {
    // The header and text keep the starting hue and differ from it only in lightness, so they
    // read as the same family; the backgrounds are nearly grey with a trace of the hue.
    const QString headerHex = hexAt(h, std::min(s * 1.1, 1.0), 0.25);
    const double accentLightness = std::max(l, 0.4);

    QString accentHex;
    QString backgroundHex;
    QString surfaceHex;
    QString textHex;
    switch (style) {
    case SchemeStyle::warm:
        accentHex = hexAt(h + 30.0, s, accentLightness);
        backgroundHex = hexAt(h + 15.0, 0.15, 0.97);
        surfaceHex = hexAt(h + 15.0, 0.12, 0.93);
        textHex = hexAt(h, std::min(s * 0.8, 1.0), 0.15);
        break;
    case SchemeStyle::cool:
        accentHex = hexAt(h - 30.0, s, accentLightness);
        backgroundHex = hexAt(h - 15.0, 0.12, 0.97);
        surfaceHex = hexAt(h - 15.0, 0.1, 0.93);
        textHex = hexAt(h, std::min(s * 0.8, 1.0), 0.15);
        break;
    case SchemeStyle::neutral:
        accentHex = hexAt(h + 180.0, std::max(s * 0.7, 0.3), accentLightness);
        backgroundHex = hexAt(h, 0.05, 0.97);
        surfaceHex = hexAt(h, 0.04, 0.93);
        textHex = hexAt(h, 0.1, 0.15);
        break;
    }

    const std::array<QString, roleCount> hexes{primaryHex,    headerHex,  accentHex,
                                               backgroundHex, surfaceHex, textHex};
    QList<GeneratedColor> colors;
    colors.reserve(roleCount);
    for (qsizetype i = 0; i < roleCount; ++i) {
        const auto index = static_cast<std::size_t>(i);
        colors.append(GeneratedColor{QUuid::createUuid(), roles()[index], hexes[index], QString()});
    }
    return colors;
}

QList<GeneratedColor> withContrastPass(QList<GeneratedColor> colors) {
    if (colors.size() != roleCount) {
        return colors;
    }
    for (const ContrastPair& pair : contrastPairs) {
        if (pairReadable(colors, pair)) {
            continue;
        }
        GeneratedColor& foreground = colors[pair.foreground];
        if (const std::optional<QString> adjusted = ColorUtils::adjustedForContrast(
                foreground.hex, colors.at(pair.background).hex, targetRatio)) {
            foreground.hex = *adjusted;
        }
    }
    return colors;
}

bool allPairsReadable(const QList<GeneratedColor>& colors) {
    if (colors.size() != roleCount) {
        return false;
    }
    return std::all_of(contrastPairs.cbegin(), contrastPairs.cend(),
                       [&colors](const ContrastPair& pair) { return pairReadable(colors, pair); });
}

QList<GeneratedColor> withNames(QList<GeneratedColor> colors) {
    QStringList namesSoFar;
    namesSoFar.reserve(colors.size());
    for (GeneratedColor& color : colors) {
        color.name = ColorUtils::uniqueName(ColorUtils::colorName(color.hex), namesSoFar);
        namesSoFar.append(color.name);
    }
    return colors;
}

std::optional<GeneratedScheme> generateScheme(const QString& primaryHex, SchemeStyle style) {
    const std::optional<ColorUtils::HSL> hsl = ColorUtils::hexToHSL(primaryHex);
    if (!hsl) {
        return std::nullopt;
    }
    GeneratedScheme scheme;
    scheme.colors =
        withNames(withContrastPass(schemeColors(primaryHex, hsl->h, hsl->s, hsl->l, style)));
    scheme.allReadable = allPairsReadable(scheme.colors);
    return scheme;
}

StartingTextEdit startingTextEdit(const QString& typedText) {
    const std::optional<QString> parsed = ColorUtils::parseColorCode(typedText);
    if (!parsed) {
        return {};
    }
    StartingTextEdit edit;
    edit.generates = true;
    if (!isSixHexDigits(typedText)) {
        edit.replacementText = *parsed;
    }
    return edit;
}

QString defaultStartingHex(const QList<ColorItem>& paletteColors) {
    if (!paletteColors.isEmpty() && ColorUtils::hexToHSL(paletteColors.constFirst().hex)) {
        return paletteColors.constFirst().hex;
    }
    return defaultPrimaryHex;
}

QList<ColorItem> schemePaletteColors(const QList<GeneratedColor>& generated) {
    QList<ColorItem> colors;
    colors.reserve(generated.size());
    for (const GeneratedColor& color : generated) {
        colors.append(ColorItem::make(color.name, color.hex, true));
    }
    return colors;
}

} // namespace hueshelf::SchemeGenerator
