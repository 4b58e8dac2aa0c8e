// Finding a lightness that makes a colour readable on a background, keeping its hue and
// saturation. A bisection over HSL lightness; twenty halvings resolve lightness to about 1e-6,
// far below one step of an 8-bit channel.

#include "color/ColorUtils.h"

namespace hueshelf::ColorUtils {

namespace {

constexpr int bisectionSteps = 20;

} // namespace

std::optional<QString> adjustedForContrast(const QString& hex, const QString& background,
                                           double target) {
    const std::optional<HSL> colour = hexToHSL(hex);
    const std::optional<HSL> backgroundHsl = hexToHSL(background);
    const std::optional<double> backgroundLuminance = relativeLuminance(background);
    if (!colour || !backgroundHsl || !backgroundLuminance) {
        return std::nullopt;
    }
    const double h = colour->h;
    const double s = colour->s;
    const double l = colour->l;

    const auto ratioAt = [&](double lightness) {
        const std::optional<double> luminance = relativeLuminance(hslToHex(h, s, lightness));
        // Lightness within 0...1 always gives a readable code; anything else simply fails.
        return luminance ? contrastRatio(*luminance, *backgroundLuminance) : 0.0;
    };

    // Light backgrounds want darker text first; a background of lightness exactly 0.5 counts
    // as dark.
    const bool isLightBackground = backgroundHsl->l > 0.5;

    double high = isLightBackground ? l : 1.0;
    double low = isLightBackground ? 0.0 : l;
    const double firstExtreme = isLightBackground ? 0.0 : 1.0;
    if (ratioAt(firstExtreme) < target) {
        // The other way round. The bisection below keeps the update rule of the background,
        // not of the direction, so here it runs to the extreme if the first midpoint passes
        // and back to the colour's own lightness if it fails. Fixes and generated schemes are
        // built on exactly this outcome; it is deliberately not the nearest passing lightness.
        high = isLightBackground ? 1.0 : l;
        low = isLightBackground ? l : 0.0;
        const double secondExtreme = isLightBackground ? 1.0 : 0.0;
        if (ratioAt(secondExtreme) < target) {
            return std::nullopt;
        }
    }

    double best = isLightBackground ? low : high;
    for (int step = 0; step < bisectionSteps; ++step) {
        const double mid = (high + low) * 0.5;
        if (ratioAt(mid) >= target) {
            best = mid;
            (isLightBackground ? low : high) = mid;
        } else {
            (isLightBackground ? high : low) = mid;
        }
    }
    return hslToHex(h, s, best);
}

} // namespace hueshelf::ColorUtils
