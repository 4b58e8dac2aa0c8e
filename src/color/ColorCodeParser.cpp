// Reading what a user pasted or typed: a hex code with stray "#"s, a CSS rgb()/rgba() or a CSS
// hsl()/hsla() function. Alpha is accepted and dropped, since a stored colour has none.

#include "color/ColorUtils.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace hueshelf::ColorUtils {

namespace {

// \d and \s follow Unicode. Digits the number readers below don't understand (Arabic-Indic,
// say) then make a group that can't be read, which counts 0 like any other.
constexpr auto patternOptions =
    QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption;

const QRegularExpression& rgbPattern() {
    static const QRegularExpression pattern = [] {
        QRegularExpression re(
            uR"(^rgba?\s*\(\s*(\d{1,3})\s*,\s*(\d{1,3})\s*,\s*(\d{1,3})(?:\s*,\s*[\d.]+)?\s*\)$)"_s,
            patternOptions);
        if (!re.isValid()) {
            // A fixed pattern that doesn't compile is a programming error, not bad input.
            qFatal("rgb() pattern does not compile");
        }
        re.optimize();
        return re;
    }();
    return pattern;
}

const QRegularExpression& hslPattern() {
    static const QRegularExpression pattern = [] {
        QRegularExpression re(
            uR"(^hsla?\s*\(\s*([\d.]+)\s*,\s*([\d.]+)%\s*,\s*([\d.]+)%(?:\s*,\s*[\d.]+)?\s*\)$)"_s,
            patternOptions);
        if (!re.isValid()) {
            qFatal("hsl() pattern does not compile");
        }
        re.optimize();
        return re;
    }();
    return pattern;
}

bool isAsciiHexDigit(QChar c) {
    const char16_t u = c.unicode();
    return (u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F');
}

int byteOrZero(QStringView digits) {
    bool ok = false;
    const int value = digits.toInt(&ok, 10);
    return ok ? std::clamp(value, 0, 255) : 0;
}

double numberOrZero(QStringView digits) {
    bool ok = false;
    const double value = digits.toDouble(&ok);
    return ok ? value : 0.0;
}

QString twoHexDigits(int byte) {
    return QString::number(byte, 16).toUpper().rightJustified(2, u'0');
}

} // namespace

std::optional<QString> parseColorCode(const QString& text) {
    const QString trimmed = text.trimmed();

    QString digits = trimmed;
    digits.remove(u'#');
    digits = digits.trimmed();
    if (digits.size() == 6 && std::all_of(digits.cbegin(), digits.cend(), isAsciiHexDigit)) {
        return u'#' + digits.toUpper();
    }

    if (const QRegularExpressionMatch m = rgbPattern().match(trimmed); m.hasMatch()) {
        return u'#' + twoHexDigits(byteOrZero(m.capturedView(1))) +
               twoHexDigits(byteOrZero(m.capturedView(2))) +
               twoHexDigits(byteOrZero(m.capturedView(3)));
    }

    if (const QRegularExpressionMatch m = hslPattern().match(trimmed); m.hasMatch()) {
        double hue = std::fmod(numberOrZero(m.capturedView(1)), 360.0);
        if (hue < 0.0) {
            hue += 360.0;
        }
        const double saturation = std::clamp(numberOrZero(m.capturedView(2)), 0.0, 100.0) / 100.0;
        const double lightness = std::clamp(numberOrZero(m.capturedView(3)), 0.0, 100.0) / 100.0;
        return hslToHex(hue, saturation, lightness);
    }

    return std::nullopt;
}

} // namespace hueshelf::ColorUtils
