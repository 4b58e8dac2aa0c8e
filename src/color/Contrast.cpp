// Readability of text on a background by WCAG 2.x: relative luminance of sRGB
// (https://www.w3.org/TR/WCAG21/#dfn-relative-luminance) and the contrast ratio
// (L1 + 0.05) / (L2 + 0.05) (https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio), with the
// success-criterion 1.4.3 limits: 4.5 for body text, 3.0 for large text and headings.

#include "color/ColorUtils.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace hueshelf::ColorUtils {

namespace {

// WCAG 2 writes the sRGB linearisation threshold as 0.03928. The colour-vision simulation uses
// the IEC 61966-2-1 value 0.04045 instead; the two differ on purpose and must stay apart.
double linearised(int byte) {
    const double v = byte / 255.0;
    return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

} // namespace

std::optional<double> relativeLuminance(const QString& hex) {
    const std::optional<RGB> rgb = hexToRGB(hex);
    if (!rgb) {
        return std::nullopt;
    }
    return 0.2126 * linearised(rgb->r) + 0.7152 * linearised(rgb->g) + 0.0722 * linearised(rgb->b);
}

double contrastRatio(double luminance1, double luminance2) {
    return (std::max(luminance1, luminance2) + 0.05) / (std::min(luminance1, luminance2) + 0.05);
}

ContrastLevel contrastLevelForRatio(double ratio) {
    if (ratio >= 4.5) {
        return ContrastLevel::readable;
    }
    if (ratio >= 3.0) {
        return ContrastLevel::lowContrast;
    }
    return ContrastLevel::poor;
}

ContrastLevel contrastLevel(const QString& hex1, const QString& hex2) {
    const std::optional<double> l1 = relativeLuminance(hex1);
    const std::optional<double> l2 = relativeLuminance(hex2);
    if (!l1 || !l2) {
        return ContrastLevel::poor;
    }
    return contrastLevelForRatio(contrastRatio(*l1, *l2));
}

QString badgeText(ContrastLevel level) {
    switch (level) {
    case ContrastLevel::readable:
        return u"Readable"_s;
    case ContrastLevel::lowContrast:
        return u"OK for headings"_s;
    case ContrastLevel::poor:
        break;
    }
    return u"Hard to read"_s;
}

QString inlineWord(ContrastLevel level) {
    switch (level) {
    case ContrastLevel::readable:
        return u"readable"_s;
    case ContrastLevel::lowContrast:
        return u"OK for headings"_s;
    case ContrastLevel::poor:
        break;
    }
    return u"hard to read"_s;
}

DisplayColor badgeColor(ContrastLevel level) {
    // The interface's good, caution and bad colours.
    switch (level) {
    case ContrastLevel::readable:
        return DisplayColor{0.36, 0.68, 0.42, 1.0};
    case ContrastLevel::lowContrast:
        return DisplayColor{0.83, 0.64, 0.30, 1.0};
    case ContrastLevel::poor:
        break;
    }
    return DisplayColor{0.81, 0.42, 0.39, 1.0};
}

QString contrastLevelIdentifier(ContrastLevel level) {
    switch (level) {
    case ContrastLevel::readable:
        return u"readable"_s;
    case ContrastLevel::lowContrast:
        return u"lowContrast"_s;
    case ContrastLevel::poor:
        break;
    }
    return u"poor"_s;
}

} // namespace hueshelf::ColorUtils
