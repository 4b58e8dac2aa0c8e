#include "exchange/PaletteLink.h"

#include "exchange/LinkPercentEncoding.h"
#include "exchange/PaletteImport.h"
#include "util/UserCharacters.h"

#include <algorithm>

#ifndef HUESHELF_LINK_HOST
#define HUESHELF_LINK_HOST "hueshelf.app"
#endif

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteLink {

namespace {

const QString kVersion = u"1"_s;

bool isHexDigit(QChar c) {
    const char16_t u = c.unicode();
    return (u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F');
}

// A chat or mail program may have escaped the pipe that opens a divider. Only a field that
// begins with the escaped form is repaired; elsewhere "%7C" is a pipe inside a name or label.
QString withRepairedPipes(const QString& field) {
    if (!field.startsWith(u"%7c"_s, Qt::CaseInsensitive))
        return field;
    QString repaired = field;
    repaired.replace(u"%7c"_s, u"|"_s, Qt::CaseInsensitive);
    return repaired;
}

Result<Color> decodeColor(const QString& rawField) {
    const QString field = withRepairedPipes(rawField);
    Color color;
    QString remainder = field;
    if (field.startsWith(u'|')) {
        color.dividerBefore = true;
        const QString rest = field.mid(1);
        const qsizetype labelEnd = rest.indexOf(u'|');
        if (labelEnd < 0) {
            remainder = rest;
        } else {
            const std::optional<QString> label = LinkPercentEncoding::decode(rest.left(labelEnd));
            // An unlabelled divider has exactly one pipe: "||Name:FF0000" is refused.
            if (!label || label->isEmpty())
                return LinkError::malformed;
            color.dividerLabel = *label;
            remainder = rest.mid(labelEnd + 1);
        }
    }
    const QStringList parts = remainder.split(u':', Qt::KeepEmptyParts);
    if (parts.size() != 2)
        return LinkError::malformed;
    if (parts.at(0).contains(u'|'))
        return LinkError::malformed;
    const std::optional<QString> name = LinkPercentEncoding::decode(parts.at(0));
    if (!name)
        return LinkError::malformed;
    if (name->isEmpty())
        return LinkError::emptyName;
    const std::optional<QString> hex = normalizeCode(parts.at(1));
    if (!hex)
        return LinkError::badHex;
    color.name = *name;
    color.hex = *hex;
    return color;
}

QString encodedColor(const Color& color, const QString& normalizedHex) {
    QString field;
    if (color.dividerBefore) {
        field += u'|';
        if (!color.dividerLabel.isEmpty())
            field += LinkPercentEncoding::encode(color.dividerLabel) + u'|';
    }
    field += LinkPercentEncoding::encode(color.name) + u':' + normalizedHex.mid(1);
    return field;
}

} // namespace

QString caseName(LinkError error) {
    switch (error) {
    case LinkError::empty:
        return u"empty"_s;
    case LinkError::tooLong:
        return u"tooLong"_s;
    case LinkError::unknownVersion:
        return u"unknownVersion"_s;
    case LinkError::malformed:
        return u"malformed"_s;
    case LinkError::badHex:
        return u"badHex"_s;
    case LinkError::tooManyColors:
        return u"tooManyColors"_s;
    case LinkError::paletteNameTooLong:
        return u"paletteNameTooLong"_s;
    case LinkError::colorNameTooLong:
        return u"colorNameTooLong"_s;
    case LinkError::emptyName:
        return u"emptyName"_s;
    }
    return QString();
}

QString linkHost() {
    return QString::fromUtf8(HUESHELF_LINK_HOST);
}

QString linkPrefix() {
    return u"https://"_s + linkHost() + u"/p/#"_s + kVersion + u';';
}

std::optional<LinkError> validate(const QString& name, const QList<Color>& colors) {
    if (colors.size() < Limits::minColors)
        return LinkError::malformed;
    if (colors.size() > Limits::maxColors)
        return LinkError::tooManyColors;
    if (name.isEmpty())
        return LinkError::emptyName;
    if (UserCharacters::count(name) > Limits::maxPaletteNameLength)
        return LinkError::paletteNameTooLong;
    for (const Color& color : colors) {
        if (color.name.isEmpty())
            return LinkError::emptyName;
        if (UserCharacters::count(color.name) > Limits::maxColorNameLength)
            return LinkError::colorNameTooLong;
        if (UserCharacters::count(color.dividerLabel) > Limits::maxDividerLabelLength)
            return LinkError::colorNameTooLong;
    }
    return std::nullopt;
}

std::optional<QString> normalizeCode(const QString& code) {
    const QStringView digits = code.startsWith(u'#') ? QStringView(code).mid(1) : QStringView(code);
    if (digits.size() != 6 || !std::all_of(digits.begin(), digits.end(), isHexDigit))
        return std::nullopt;
    return u'#' + digits.toString().toUpper();
}

Result<QString> encode(const QString& name, const QList<Color>& colors) {
    if (const std::optional<LinkError> error = validate(name, colors))
        return *error;
    QStringList fields;
    fields.reserve(colors.size());
    for (const Color& color : colors) {
        const std::optional<QString> hex = normalizeCode(color.hex);
        if (!hex)
            return LinkError::badHex;
        fields.append(encodedColor(color, *hex));
    }
    QString link = linkPrefix() + LinkPercentEncoding::encode(name) + u';' + fields.join(u',');
    if (UserCharacters::count(link) > Limits::maxLinkLength)
        return LinkError::tooLong;
    return link;
}

Result<QString> encode(const ColorTemplate& palette) {
    QList<Color> colors;
    colors.reserve(palette.colors.size());
    for (const ColorItem& item : palette.colors) {
        colors.append(Color{item.name, item.hex, item.dividerBefore,
                            item.dividerBefore ? item.dividerLabel : QString()});
    }
    return encode(palette.name, colors);
}

Result<Palette> decode(const QString& text) {
    if (text.isEmpty())
        return LinkError::empty;
    if (UserCharacters::count(text) > Limits::maxLinkLength)
        return LinkError::tooLong;
    // Without a "#" the whole text is the payload, so a bare payload decodes too.
    const qsizetype hash = text.indexOf(u'#');
    const QString payload = hash < 0 ? text : text.mid(hash + 1);

    // The field count comes before the version: a newer format with another number of fields
    // reads as malformed, not as an unknown version.
    const QStringList fields = payload.split(u';', Qt::KeepEmptyParts);
    if (fields.size() != 3)
        return LinkError::malformed;
    if (fields.at(0) != kVersion)
        return LinkError::unknownVersion;
    const std::optional<QString> name = LinkPercentEncoding::decode(fields.at(1));
    if (!name)
        return LinkError::malformed;
    if (name->isEmpty())
        return LinkError::emptyName;
    if (fields.at(2).isEmpty())
        return LinkError::malformed;

    Palette palette{*name, {}};
    const QStringList colorFields = fields.at(2).split(u',', Qt::KeepEmptyParts);
    palette.colors.reserve(colorFields.size());
    for (const QString& field : colorFields) {
        Result<Color> color = decodeColor(field);
        if (!color)
            return color.error();
        palette.colors.append(*color);
    }
    if (const std::optional<LinkError> error = validate(palette.name, palette.colors))
        return *error;
    return palette;
}

ColorTemplate makeTemplate(const Palette& palette, const QStringList& existingNames, double nowMs) {
    QList<ColorItem> items;
    items.reserve(palette.colors.size());
    for (const Color& color : palette.colors) {
        ColorItem item = ColorItem::make(color.name, color.hex, false);
        item.dividerBefore = color.dividerBefore;
        item.dividerLabel = color.dividerLabel;
        items.append(std::move(item));
    }
    // A link and a file free a taken name the same way: " (1)", " (2)", ...
    return ColorTemplate::makeNew(PaletteImport::uniqueImportedName(palette.name, existingNames),
                                  items, nowMs);
}

} // namespace hueshelf::PaletteLink
