#include "sync/SyncableColorItem.h"

#include "exchange/PaletteFile.h"
#include "sync/SyncFieldReader.h"
#include "sync/SyncLimits.h"

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {

// "#RRGGBB" with upper-case digits.
bool isCanonicalHex(const QString& text) {
    if (text.size() != 7 || text.front() != u'#')
        return false;
    for (qsizetype i = 1; i < 7; ++i) {
        const char16_t unit = text.at(i).unicode();
        if (!((unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F')))
            return false;
    }
    return true;
}

} // namespace

SyncableColorItem SyncableColorItem::fromColorItem(const ColorItem& color) {
    return {color.id,       color.name,          color.hex,         color.isAutoNamed,
            color.isLocked, color.dividerBefore, color.dividerLabel};
}

ColorItem SyncableColorItem::toColorItem() const {
    return {id, name, hex, isAutoNamed, isLocked, dividerBefore, dividerLabel};
}

QJsonObject SyncableColorItem::toJson() const {
    QJsonObject object;
    object.insert("id"_L1, uuidText(id));
    object.insert("name"_L1, name);
    object.insert("hex"_L1, hex);
    object.insert("isAutoNamed"_L1, isAutoNamed);
    object.insert("isLocked"_L1, isLocked);
    object.insert("dividerBefore"_L1, dividerBefore);
    object.insert("dividerLabel"_L1, dividerLabel);
    return object;
}

std::optional<SyncableColorItem> SyncableColorItem::fromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    SyncFieldReader read(object);
    SyncableColorItem color;
    color.id = read.requiredUuid("id"_L1);
    color.name =
        SyncLimits::cutToCharacters(read.requiredString("name"_L1), SyncLimits::maxNameLength);
    const QString hexText = read.requiredString("hex"_L1);
    color.isAutoNamed = read.optionalBool("isAutoNamed"_L1).value_or(false);
    color.isLocked = read.optionalBool("isLocked"_L1).value_or(false);
    color.dividerBefore = read.optionalBool("dividerBefore"_L1).value_or(false);
    color.dividerLabel =
        SyncLimits::cutToCharacters(read.optionalString("dividerLabel"_L1).value_or(QString()),
                                    SyncLimits::maxDividerLabelLength);
    if (read.failed())
        return std::nullopt;
    // Every device writes the canonical form, which the rule gives back unchanged; only other
    // forms are worth the rule's copies.
    if (isCanonicalHex(hexText)) {
        color.hex = hexText;
        return color;
    }
    // An unreadable code makes the colour unreadable, nothing more: the entry is dropped alone.
    const std::optional<QString> hex = PaletteFile::normalizeFileHex(hexText);
    if (!hex)
        return std::nullopt;
    color.hex = *hex;
    return color;
}

} // namespace hueshelf
