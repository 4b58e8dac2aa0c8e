#include "color/ColorUtils.h"

namespace hueshelf::ColorUtils {

namespace {

bool isAsciiHexDigit(QChar c) {
    const char16_t u = c.unicode();
    return (u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F');
}

int asciiHexValue(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9') {
        return u - u'0';
    }
    if (u >= u'a' && u <= u'f') {
        return u - u'a' + 10;
    }
    return u - u'A' + 10;
}

// Callers have checked every character with isAsciiHexDigit; at most eight digits fit easily.
quint32 readHexNumber(const QString& digits) {
    quint32 value = 0;
    for (const QChar c : digits) {
        value = value * 16u + static_cast<quint32>(asciiHexValue(c));
    }
    return value;
}

bool allAsciiHex(const QString& text) {
    for (const QChar c : text) {
        if (!isAsciiHexDigit(c)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<QString> normalizedDigits(const QString& text) {
    // Upper-casing before the check keeps the strict reader case-blind without a second pass.
    QString digits = text.trimmed().toUpper();
    if (digits.startsWith(u'#')) {
        digits.remove(0, 1);
    }
    if (digits.size() != 6) {
        return std::nullopt;
    }
    for (const QChar c : digits) {
        const char16_t u = c.unicode();
        if (!((u >= u'0' && u <= u'9') || (u >= u'A' && u <= u'F'))) {
            return std::nullopt;
        }
    }
    return digits;
}

QString canonicalHex(const QString& text) {
    QString digits = text.trimmed();
    if (digits.startsWith(u'#')) {
        digits.remove(0, 1);
    }
    if ((digits.size() != 3 && digits.size() != 6) || !allAsciiHex(digits)) {
        // Not a code: the caller shows or stores the user's text as it came.
        return text;
    }
    if (digits.size() == 3) {
        QString doubled;
        doubled.reserve(6);
        for (const QChar c : digits) {
            doubled.append(c);
            doubled.append(c);
        }
        digits = doubled;
    }
    return u'#' + digits.toUpper();
}

std::optional<DisplayColor> parseDisplayColor(const QString& text) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && !text.at(begin).isLetterOrNumber()) {
        ++begin;
    }
    while (end > begin && !text.at(end - 1).isLetterOrNumber()) {
        --end;
    }
    const QString digits = text.mid(begin, end - begin);
    if (!allAsciiHex(digits)) {
        return std::nullopt;
    }
    const quint32 value = readHexNumber(digits);
    const auto byte = [value](int shift) { return static_cast<double>((value >> shift) & 0xFFu); };
    switch (digits.size()) {
    case 8:
        // Alpha leads in the eight-digit form (AARRGGBB).
        return DisplayColor{byte(16) / 255.0, byte(8) / 255.0, byte(0) / 255.0, byte(24) / 255.0};
    case 6:
        return DisplayColor{byte(16) / 255.0, byte(8) / 255.0, byte(0) / 255.0, 1.0};
    case 3: {
        // One digit d stands for the byte dd, that is d * 17.
        const auto nibble = [value](int shift) {
            return static_cast<double>(((value >> shift) & 0xFu) * 17u);
        };
        return DisplayColor{nibble(8) / 255.0, nibble(4) / 255.0, nibble(0) / 255.0, 1.0};
    }
    default:
        return std::nullopt;
    }
}

std::optional<RGB> hexToRGB(const QString& hex) {
    const std::optional<QString> digits = normalizedDigits(hex);
    if (!digits) {
        return std::nullopt;
    }
    const quint32 value = readHexNumber(*digits);
    return RGB{static_cast<int>((value >> 16) & 0xFFu), static_cast<int>((value >> 8) & 0xFFu),
               static_cast<int>(value & 0xFFu)};
}

} // namespace hueshelf::ColorUtils
