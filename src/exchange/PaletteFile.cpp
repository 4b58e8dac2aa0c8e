#include "exchange/PaletteFile.h"

#include "color/ColorUtils.h"
#include "util/UserCharacters.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteFile {

namespace {

bool isAllHex(const QString& digits) {
    for (const QChar c : digits) {
        const char16_t u = c.unicode();
        if (!((u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F')))
            return false;
    }
    return true;
}

PaletteFileResult failure(const QString& message) {
    PaletteFileResult result;
    result.errorMessage = message;
    return result;
}

std::optional<ColorItem> colorOf(const QJsonObject& entry) {
    const QJsonValue hexValue = entry.value(u"hex"_s);
    if (!hexValue.isString())
        return std::nullopt;
    const std::optional<QString> hex = normalizeFileHex(hexValue.toString());
    if (!hex)
        return std::nullopt;

    ColorItem color = ColorItem::make(QString(), *hex, true);
    const QJsonValue nameValue = entry.value(u"name"_s);
    const QString name = nameValue.isString() ? nameValue.toString().trimmed() : QString();
    if (name.isEmpty()) {
        color.name = ColorUtils::colorName(*hex);
    } else {
        color.name = UserCharacters::first(name, maxColorNameLength);
        color.isAutoNamed = false;
    }
    const QJsonValue divider = entry.value(u"dividerBefore"_s);
    if (divider.isBool() && divider.toBool()) {
        color.dividerBefore = true;
        const QJsonValue label = entry.value(u"dividerLabel"_s);
        if (label.isString())
            color.dividerLabel = UserCharacters::first(label.toString(), maxDividerLabelLength);
    }
    return color;
}

} // namespace

QString tooLargeMessage() {
    return u"File is too large. Maximum size is 1 MB."_s;
}

QString notAPaletteMessage() {
    return u"That isn't a HueShelf palette file."_s;
}

std::optional<QString> normalizeFileHex(const QString& text) {
    QString digits = text.trimmed();
    if (digits.startsWith(u'#'))
        digits.remove(0, 1);
    if ((digits.size() != 3 && digits.size() != 6) || !isAllHex(digits))
        return std::nullopt;
    digits = digits.toUpper();
    if (digits.size() == 3) {
        QString widened;
        for (const QChar c : digits)
            widened += QString(2, c);
        digits = widened;
    }
    return u'#' + digits;
}

PaletteFileResult parsePaletteFile(const QByteArray& data) {
    if (data.size() > maxFileSize)
        return failure(tooLargeMessage());
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return failure(notAPaletteMessage());
    const QJsonObject object = document.object();
    const QJsonValue name = object.value(u"name"_s);
    const QJsonValue colors = object.value(u"colors"_s);
    if (!name.isString() || !colors.isArray())
        return failure(notAPaletteMessage());
    const QJsonArray entries = colors.toArray();
    for (const QJsonValue& entry : entries) {
        if (!entry.isObject())
            return failure(notAPaletteMessage()); // one foreign entry fails the whole file
    }
    if (UserCharacters::count(name.toString()) > maxNameLength)
        return failure(u"Palette name is too long. Maximum 100 characters."_s);
    if (entries.size() > maxColorCount)
        return failure(u"Palette has too many colors. Maximum 200."_s);

    PaletteFileResult result;
    for (const QJsonValue& entry : entries) {
        if (std::optional<ColorItem> color = colorOf(entry.toObject()))
            result.colors.append(std::move(*color));
    }
    if (result.colors.isEmpty())
        return failure(u"That file has no colors HueShelf can read."_s);
    // The name is taken as written: not trimmed, and an empty one passes.
    result.name = name.toString();
    return result;
}

} // namespace hueshelf::PaletteFile
