#include "exchange/LinkPercentEncoding.h"

#include <QByteArray>
#include <QStringDecoder>
#include <QStringView>

namespace hueshelf::LinkPercentEncoding {

namespace {

bool isKeptRaw(char32_t codePoint) {
    switch (QChar::category(codePoint)) {
    case QChar::Letter_Uppercase:
    case QChar::Letter_Lowercase:
    case QChar::Letter_Titlecase:
    case QChar::Letter_Modifier:
    case QChar::Letter_Other:
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
    case QChar::Number_DecimalDigit:
    case QChar::Number_Letter:
    case QChar::Number_Other:
        return true;
    default:
        break;
    }
    return codePoint < 0x80 && QByteArrayView("-_.!~*'()").contains(static_cast<char>(codePoint));
}

int hexValue(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

} // namespace

QString encode(const QString& text) {
    if (!text.isValidUtf16())
        return text;
    static constexpr char16_t digits[] = u"0123456789ABCDEF";
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size();) {
        // Valid UTF-16 here, so a high surrogate always has its low one behind it.
        const bool isPair = text.at(i).isHighSurrogate();
        const qsizetype width = isPair ? 2 : 1;
        const char32_t codePoint = isPair ? QChar::surrogateToUcs4(text.at(i), text.at(i + 1))
                                          : char32_t(text.at(i).unicode());
        const QStringView unit = QStringView(text).mid(i, width);
        if (isKeptRaw(codePoint)) {
            out.append(unit);
        } else {
            for (const char byte : unit.toUtf8()) {
                const auto value = static_cast<unsigned char>(byte);
                out.append(u'%');
                out.append(QChar(digits[value >> 4]));
                out.append(QChar(digits[value & 0xF]));
            }
        }
        i += width;
    }
    return out;
}

std::optional<QString> decode(const QString& text) {
    // A raw unpaired surrogate has no UTF-8 form, so it can't be part of a valid name either.
    if (!text.isValidUtf16())
        return std::nullopt;
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size();) {
        if (text.at(i) != u'%') {
            qsizetype end = i;
            while (end < text.size() && text.at(end) != u'%')
                ++end;
            bytes.append(QStringView(text).mid(i, end - i).toUtf8());
            i = end;
            continue;
        }
        if (i + 2 >= text.size())
            return std::nullopt;
        const int high = hexValue(text.at(i + 1));
        const int low = hexValue(text.at(i + 2));
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes.append(static_cast<char>(high * 16 + low));
        i += 3;
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    QString decoded = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return decoded;
}

} // namespace hueshelf::LinkPercentEncoding
