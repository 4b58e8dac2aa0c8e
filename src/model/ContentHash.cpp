#include "model/ContentHash.h"

#include <QCryptographicHash>

namespace hueshelf {

namespace {
QLatin1StringView boolText(bool value) {
    return value ? QLatin1StringView("true") : QLatin1StringView("false");
}
} // namespace

QString contentHashText(const QString& name, const QList<ColorItem>& colors) {
    QString text = name;
    for (const ColorItem& color : colors) {
        text += u'|' + uuidText(color.id) + u':' + color.name + u':' + color.hex + u':' +
                boolText(color.isAutoNamed) + u':' + boolText(color.isLocked);
        // A label left behind on a colour that no longer starts a group must not count.
        if (color.dividerBefore) {
            if (color.dividerLabel.isEmpty())
                text += u"|d";
            else
                text += u"|d:" + color.dividerLabel;
        }
    }
    return text;
}

namespace {

// As QString::toUtf8 converts it. Each piece of the hashed text stands between ASCII separators,
// so no surrogate pair can straddle two pieces and converting them one by one gives the bytes of
// converting the whole text.
void appendUtf8(QByteArray& out, const QString& text) {
    const char16_t* const units = QStringView(text).utf16();
    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size; ++i) {
        if (units[i] >= 0x80) {
            out += text.toUtf8();
            return;
        }
    }
    const qsizetype start = out.size();
    out.resize(start + size);
    char* cursor = out.data() + start;
    for (qsizetype i = 0; i < size; ++i)
        cursor[i] = char(units[i]);
}

void appendBool(QByteArray& out, bool value) {
    out += value ? QByteArrayView("true") : QByteArrayView("false");
}

// contentHashText(name, colors).toUtf8(), built without the intermediate UTF-16 text: stamping,
// merging and reading records without a stored hash all hash whole lists of palettes.
QByteArray contentHashBytes(const QString& name, const QList<ColorItem>& colors) {
    QByteArray text;
    text.reserve(name.size() + colors.size() * 96);
    appendUtf8(text, name);
    for (const ColorItem& color : colors) {
        text += '|';
        appendUuidText(text, color.id);
        text += ':';
        appendUtf8(text, color.name);
        text += ':';
        appendUtf8(text, color.hex);
        text += ':';
        appendBool(text, color.isAutoNamed);
        text += ':';
        appendBool(text, color.isLocked);
        if (color.dividerBefore) {
            text += QByteArrayView("|d");
            if (!color.dividerLabel.isEmpty()) {
                text += ':';
                appendUtf8(text, color.dividerLabel);
            }
        }
    }
    return text;
}

} // namespace

QString computeContentHash(const QString& name, const QList<ColorItem>& colors) {
    const QByteArray digest =
        QCryptographicHash::hash(contentHashBytes(name, colors), QCryptographicHash::Sha256);
    return QString::fromLatin1(digest.left(8).toHex());
}

} // namespace hueshelf
