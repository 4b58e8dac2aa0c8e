// The six texts a click on a swatch can put on the clipboard, and the identifiers under which
// the chosen one is remembered.

#include "color/ColorUtils.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace hueshelf::ColorUtils {

namespace {

struct CopyFormatInfo {
    CopyFormat format;
    const char16_t* identifier;
    const char16_t* label;
};

// Menu order; the identifiers reach the settings file and never change.
constexpr std::array<CopyFormatInfo, 6> copyFormatTable{{
    {CopyFormat::hex, u"hex", u"HEX"},
    {CopyFormat::hexNoHash, u"hex-no-hash", u"HEX (no #)"},
    {CopyFormat::rgb, u"rgb", u"RGB"},
    {CopyFormat::hsl, u"hsl", u"HSL"},
    {CopyFormat::cssVar, u"css-var", u"CSS Variable"},
    {CopyFormat::tailwind, u"tailwind", u"Tailwind"},
}};

const CopyFormatInfo& infoFor(CopyFormat format) {
    for (const CopyFormatInfo& info : copyFormatTable) {
        if (info.format == format) {
            return info;
        }
    }
    return copyFormatTable.front();
}

// Half away from zero: a hue of 2.5 degrees copies as 3, never as 2.
QString roundedText(double value) {
    return QString::number(static_cast<qint64>(std::round(value)));
}

bool isSlugCharacter(QChar c) {
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'0' && u <= u'9');
}

} // namespace

const std::array<CopyFormat, 6>& allCopyFormats() {
    static constexpr std::array<CopyFormat, 6> formats{
        CopyFormat::hex, CopyFormat::hexNoHash, CopyFormat::rgb,
        CopyFormat::hsl, CopyFormat::cssVar,    CopyFormat::tailwind,
    };
    return formats;
}

QString copyFormatIdentifier(CopyFormat format) {
    return QString::fromUtf16(infoFor(format).identifier);
}

QString copyFormatLabel(CopyFormat format) {
    return QString::fromUtf16(infoFor(format).label);
}

CopyFormat copyFormatFromIdentifier(const QString& identifier) {
    for (const CopyFormatInfo& info : copyFormatTable) {
        if (identifier == QStringView(info.identifier)) {
            return info.format;
        }
    }
    return CopyFormat::hex;
}

QString formattedCode(const QString& hex, CopyFormat format, const QString& name) {
    const QString code = canonicalHex(hex);
    switch (format) {
    case CopyFormat::hex:
        return code;
    case CopyFormat::hexNoHash:
        // Whatever the first character is: text that isn't a code loses it too.
        return code.mid(1);
    case CopyFormat::rgb: {
        const std::optional<RGB> rgb = hexToRGB(code);
        if (!rgb) {
            return code;
        }
        return u"rgb("_s + QString::number(rgb->r) + u", "_s + QString::number(rgb->g) + u", "_s +
               QString::number(rgb->b) + u')';
    }
    case CopyFormat::hsl: {
        const std::optional<HSL> hsl = hexToHSL(code);
        if (!hsl) {
            return code;
        }
        return u"hsl("_s + roundedText(hsl->h) + u", "_s + roundedText(hsl->s * 100.0) + u"%, "_s +
               roundedText(hsl->l * 100.0) + u"%)"_s;
    }
    case CopyFormat::cssVar:
        // No semicolon: the text is pasted into declarations that already have one as often
        // as into ones that don't.
        return u"--"_s + cssVariableSlug(name) + u": "_s + code;
    case CopyFormat::tailwind:
        return u"bg-["_s + code + u']';
    }
    return code;
}

QString cssVariableSlug(const QString& name) {
    // Runs of anything but a-z and 0-9 (after lower-casing) become one "-"; the ends lose them.
    const QString lower = name.toLower();
    QString slug;
    slug.reserve(lower.size());
    bool inRun = false;
    for (const QChar c : lower) {
        if (isSlugCharacter(c)) {
            slug.append(c);
            inRun = false;
        } else if (!inRun) {
            slug.append(u'-');
            inRun = true;
        }
    }
    qsizetype begin = 0;
    qsizetype end = slug.size();
    while (begin < end && slug.at(begin) == u'-') {
        ++begin;
    }
    while (end > begin && slug.at(end - 1) == u'-') {
        --end;
    }
    slug = slug.mid(begin, end - begin);
    return slug.isEmpty() ? u"color"_s : slug;
}

} // namespace hueshelf::ColorUtils
