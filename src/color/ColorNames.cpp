// Automatic colour names. The limits below give the program its vocabulary; they are tuned by
// eye on sRGB HSL values and are to be kept exactly, boundaries included.

#include "color/ColorUtils.h"

#include <QSet>

#include <array>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace hueshelf::ColorUtils {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// from <= v < to.
struct Span {
    double from = -infinity;
    double to = infinity;
    bool contains(double v) const { return from <= v && v < to; }
};

// A hue span may wrap through 0: {340, 10} means h >= 340 or h < 10.
struct HueSpan {
    double from = -infinity;
    double to = infinity;
    bool contains(double h) const {
        return from <= to ? (from <= h && h < to) : (h >= from || h < to);
    }
};

constexpr Span atLeast(double from) {
    return Span{from, infinity};
}

struct NamedRegion {
    Span l;
    HueSpan h;
    Span s;
    const char16_t* name;
};

// First match wins. Pastels share one lightness and saturation band; where a region names two
// lightnesses it appears twice, the lighter one first.
constexpr Span pastelL = atLeast(0.75);
constexpr Span pastelS{0.15, 0.55};
constexpr std::array<NamedRegion, 29> namedRegions{{
    {{0.6, 0.85}, {0, 25}, atLeast(0.4), u"Salmon"},
    {atLeast(0.8), {340, 5}, atLeast(0.5), u"Light Pink"},
    {pastelL, {340, 15}, pastelS, u"Blush"},
    {atLeast(0.82), {15, 30}, pastelS, u"Peach"},
    {pastelL, {15, 30}, pastelS, u"Salmon"},
    {pastelL, {40, 55}, pastelS, u"Vanilla"},
    {pastelL, {55, 70}, pastelS, u"Butter"},
    {atLeast(0.93), {40, 70}, {}, u"Ivory"},
    {atLeast(0.88), {40, 70}, {}, u"Cream"},
    {{0.7, 0.9}, {20, 40}, atLeast(0.35), u"Peach"},
    {atLeast(0.7), {110, 175}, atLeast(0.25), u"Mint"},
    {atLeast(0.85), {230, 290}, atLeast(0.2), u"Lavender"},
    {{0.2, 0.5}, {165, 185}, atLeast(0.5), u"Teal"},
    {{0.15, 0.35}, {210, 250}, atLeast(0.4), u"Navy"},
    {{0.15, 0.3}, {340, 10}, atLeast(0.4), u"Maroon"},
    {{0.2, 0.45}, {50, 90}, atLeast(0.2), u"Olive"},
    {{0.2, 0.55}, {10, 40}, {0.4, 0.8}, u"Brown"},
    {{0.5, 0.75}, {30, 55}, {0.2, 0.5}, u"Tan"},
    {{0.35, 0.55}, {350, 10}, atLeast(0.7), u"Ruby"},
    {{0.2, 0.35}, {0, 15}, atLeast(0.5), u"Burgundy"},
    {{0.25, 0.45}, {280, 320}, atLeast(0.4), u"Plum"},
    {{0.45, 0.65}, {35, 50}, atLeast(0.6), u"Amber"},
    {{0.35, 0.55}, {15, 35}, atLeast(0.5), u"Copper"},
    {{0.35, 0.55}, {150, 170}, atLeast(0.5), u"Turquoise"},
    {{0.5, 0.7}, {190, 210}, atLeast(0.5), u"Azure"},
    {{0.35, 0.55}, {210, 240}, atLeast(0.7), u"Sapphire"},
    {{0.35, 0.55}, {130, 160}, atLeast(0.6), u"Emerald"},
    {{0.35, 0.55}, {90, 130}, {0.2, 0.5}, u"Sage"},
    {{0.3, 0.6}, {200, 230}, {0.08, 0.25}, u"Slate"},
}};

bool isBlank(QChar c) {
    // Blanks are spaces and tabs; a newline inside a name is the user's business.
    return c == u'\t' || c.category() == QChar::Separator_Space;
}

QString trimmedBlanks(const QString& text) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text.at(begin))) {
        ++begin;
    }
    while (end > begin && isBlank(text.at(end - 1))) {
        --end;
    }
    return text.mid(begin, end - begin);
}

} // namespace

QString colorName(const QString& hex) {
    const std::optional<HSL> hsl = hexToHSL(hex);
    if (!hsl) {
        return u"New Color"_s;
    }
    const double h = hsl->h;
    const double s = hsl->s;
    const double l = hsl->l;

    if (l >= 0.97) {
        return (Span{50, 70}.contains(h) && s >= 0.5) ? u"Ivory"_s : u"White"_s;
    }
    if (l >= 0.88 && s < 0.25) {
        if (Span{30, 70}.contains(h)) {
            return l >= 0.93 ? u"Ivory"_s : u"Cream"_s;
        }
        return u"Off White"_s;
    }
    if (l <= 0.06) {
        return u"Black"_s;
    }
    if (l <= 0.12) {
        return s < 0.15 ? u"Charcoal"_s : u"Dark "_s + hueName(h, s, l);
    }
    if (s < 0.08) {
        if (l < 0.25) {
            return u"Dark Gray"_s;
        }
        if (l < 0.55) {
            return u"Gray"_s;
        }
        return l < 0.8 ? u"Silver"_s : u"Light Gray"_s;
    }
    for (const NamedRegion& region : namedRegions) {
        if (region.l.contains(l) && region.h.contains(h) && region.s.contains(s)) {
            return QString::fromUtf16(region.name);
        }
    }
    return nameModifier(s, l) + hueName(h, s, l);
}

QString hueName(double h, double s, double l) {
    if (!std::isfinite(h)) {
        return u"Color"_s;
    }
    // Removing whole turns is exact in double precision, so fmod gives what repeated
    // subtraction would, without the loop.
    h = std::fmod(h, 360.0);
    while (h < 0.0) {
        h += 360.0;
    }
    while (h >= 360.0) {
        h -= 360.0;
    }

    if (h >= 350.0 || h < 10.0) {
        return (l >= 0.65 && s < 0.5) ? u"Rose"_s : u"Red"_s;
    }
    if (h < 20.0) {
        return s >= 0.6 ? u"Red"_s : u"Coral"_s;
    }
    if (h < 35.0) {
        return u"Coral"_s;
    }
    if (h < 45.0) {
        return u"Orange"_s;
    }
    if (h < 55.0) {
        return u"Gold"_s;
    }
    if (h < 70.0) {
        return u"Yellow"_s;
    }
    if (h < 85.0) {
        return s >= 0.5 ? u"Lime"_s : u"Yellow"_s;
    }
    if (h < 105.0) {
        return u"Lime"_s;
    }
    if (h < 145.0) {
        return l < 0.35 ? u"Forest"_s : u"Green"_s;
    }
    if (h < 165.0) {
        return u"Teal"_s;
    }
    if (h < 185.0) {
        return u"Cyan"_s;
    }
    if (h < 205.0) {
        return u"Sky"_s;
    }
    if (h < 250.0) {
        return u"Blue"_s;
    }
    if (h < 270.0) {
        return u"Indigo"_s;
    }
    if (h < 290.0) {
        return u"Purple"_s;
    }
    if (h < 320.0) {
        return l >= 0.6 ? u"Orchid"_s : u"Magenta"_s;
    }
    return u"Pink"_s;
}

QString nameModifier(double s, double l) {
    // Rows by lightness (light to dark), columns by saturation (strong to weak).
    static constexpr std::array<double, 4> rowFloors{0.8, 0.65, 0.45, 0.3};
    static constexpr std::array<double, 6> columnFloors{0.7, 0.65, 0.6, 0.5, 0.35, 0.25};
    static constexpr std::array<std::array<const char16_t*, 7>, 5> words{{
        {u"Bright ", u"Bright ", u"Light ", u"Light ", u"Light ", u"Pale ", u"Pale "},
        {u"Vivid ", u"Bright ", u"Bright ", u"Bright ", u"Soft ", u"Soft ", u"Muted "},
        {u"Bold ", u"Rich ", u"Rich ", u"Rich ", u"Dusty ", u"Dusty ", u"Muted "},
        {u"Deep ", u"Deep ", u"Deep ", u"Dark ", u"Dark ", u"Muted ", u"Muted "},
        {u"Deep ", u"Deep ", u"Deep ", u"Deep ", u"Dark ", u"Dark ", u"Dark "},
    }};
    std::size_t row = 0;
    while (row < rowFloors.size() && !(l >= rowFloors[row])) {
        ++row;
    }
    std::size_t column = 0;
    while (column < columnFloors.size() && !(s >= columnFloors[column])) {
        ++column;
    }
    return QString::fromUtf16(words[row][column]);
}

QString uniqueName(const QString& wanted, const QStringList& existing) {
    QSet<QString> taken;
    taken.reserve(existing.size());
    for (const QString& name : existing) {
        taken.insert(trimmedBlanks(name).toLower());
    }
    QString base = trimmedBlanks(wanted);
    if (base.isEmpty()) {
        base = u"Color"_s;
    }
    if (!taken.contains(base.toLower())) {
        return base;
    }
    for (int n = 2;; ++n) {
        const QString candidate = base + u' ' + QString::number(n);
        if (!taken.contains(candidate.toLower())) {
            return candidate;
        }
    }
}

} // namespace hueshelf::ColorUtils
