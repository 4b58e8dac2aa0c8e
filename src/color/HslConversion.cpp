// Conversions between sRGB bytes and HSL, the hexcone model of Smith (1978) as CSS Color
// Module Level 3 writes it: lightness is the mean of the largest and smallest channel, and the
// hue is found by sector. Everything runs in double precision; callers that feed a hue back in
// normalise it themselves.

#include "color/ColorUtils.h"

#include <algorithm>
#include <cmath>

namespace hueshelf::ColorUtils {

namespace {

// Saturation and lightness within 0...1 keep every channel within 0...255. Only a hue outside
// 0...360 can push the x component below zero (hslToHex(-10, 1, 0.5) computes blue as -43); a
// code must stay six digits, so the byte is held at its nearest end and that call reads as pure
// red, the colour its hue points at.
QString byteText(double channel) {
    const double rounded = std::round(channel); // half away from zero
    const int value = std::isnan(rounded) ? 0 : static_cast<int>(std::clamp(rounded, 0.0, 255.0));
    return QString::number(value, 16).toUpper().rightJustified(2, u'0');
}

} // namespace

std::optional<HSL> hexToHSL(const QString& hex) {
    const std::optional<RGB> rgb = hexToRGB(hex);
    if (!rgb) {
        return std::nullopt;
    }
    const double r = rgb->r / 255.0;
    const double g = rgb->g / 255.0;
    const double b = rgb->b / 255.0;
    const double max = std::max({r, g, b});
    const double min = std::min({r, g, b});
    HSL hsl;
    hsl.l = (max + min) * 0.5;
    if (max == min) {
        return hsl; // a grey: hue and saturation stay 0
    }
    const double d = max - min;
    hsl.s = hsl.l > 0.5 ? d / (2.0 - max - min) : d / (max + min);
    // Ties go to the earlier channel (red, then green), which decides the hue of e.g. #FFFF00.
    double hue = 0.0;
    if (max == r) {
        hue = (g - b) / d + (g < b ? 6.0 : 0.0);
    } else if (max == g) {
        hue = (b - r) / d + 2.0;
    } else {
        hue = (r - g) / d + 4.0;
    }
    hsl.h = hue / 6.0 * 360.0;
    return hsl;
}

QString hslToHex(double h, double s, double l) {
    const double c = (1.0 - std::abs(2.0 * l - 1.0)) * s;
    const double t = h / 60.0;
    // t modulo 2 by truncation, so a negative hue keeps its sign here rather than wrapping.
    const double x = c * (1.0 - std::abs((t - 2.0 * std::trunc(t * 0.5)) - 1.0));
    const double m = l - c * 0.5;

    struct Channels {
        double r, g, b;
    };
    Channels v{};
    if (h >= 0.0 && h < 60.0) {
        v = {c, x, 0.0};
    } else if (h >= 60.0 && h < 120.0) {
        v = {x, c, 0.0};
    } else if (h >= 120.0 && h < 180.0) {
        v = {0.0, c, x};
    } else if (h >= 180.0 && h < 240.0) {
        v = {0.0, x, c};
    } else if (h >= 240.0 && h < 300.0) {
        v = {x, 0.0, c};
    } else {
        // 300 and above, negative hues and NaN all land in the magenta-to-red sector.
        v = {c, 0.0, x};
    }
    return u'#' + byteText((m + v.r) * 255.0) + byteText((m + v.g) * 255.0) +
           byteText((m + v.b) * 255.0);
}

} // namespace hueshelf::ColorUtils
