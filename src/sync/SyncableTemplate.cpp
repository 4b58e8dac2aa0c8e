#include "sync/SyncableTemplate.h"

#include "sync/SkippableColor.h"
#include "sync/SyncConversion.h"
#include "sync/SyncFieldReader.h"
#include "sync/SyncLimits.h"

#include <QJsonArray>

#include <algorithm>

namespace hueshelf {

using namespace Qt::StringLiterals;

QJsonObject SyncableTemplate::toJson() const {
    QJsonArray colorArray;
    for (const SyncableColorItem& color : colors)
        colorArray.append(color.toJson());
    QJsonObject object;
    object.insert("id"_L1, uuidText(id));
    object.insert("name"_L1, name);
    object.insert("colors"_L1, colorArray);
    object.insert("createdAt"_L1, createdAt);
    object.insert("createdBy"_L1, createdBy);
    object.insert("lastModified"_L1, lastModified);
    object.insert("modifiedBy"_L1, modifiedBy);
    object.insert("schemaVersion"_L1, schemaVersion);
    object.insert("revision"_L1, revision);
    object.insert("contentHash"_L1, contentHash);
    object.insert("isLocked"_L1, isLocked);
    object.insert("deleted"_L1, deleted);
    if (deletedAt)
        object.insert("deletedAt"_L1, *deletedAt);
    if (deletedBy)
        object.insert("deletedBy"_L1, *deletedBy);
    return object;
}

std::optional<SyncableTemplate> SyncableTemplate::fromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    SyncFieldReader read(object);
    SyncableTemplate record;
    record.id = read.requiredUuid("id"_L1);
    record.name =
        SyncLimits::cutToCharacters(read.requiredString("name"_L1), SyncLimits::maxNameLength);
    const QJsonArray colorArray = read.requiredArray("colors"_L1);
    record.colors.reserve(std::min<qsizetype>(colorArray.size(), SyncLimits::maxColorCount));
    for (const QJsonValue& entry : colorArray) {
        SkippableColor color = SkippableColor::fromJson(entry);
        if (color.item)
            record.colors.append(std::move(*color.item));
        if (record.colors.size() == SyncLimits::maxColorCount)
            break;
    }
    record.schemaVersion = read.optionalInteger("schemaVersion"_L1).value_or(1);
    record.createdAt = read.requiredDouble("createdAt"_L1);
    record.createdBy = read.requiredString("createdBy"_L1);
    record.lastModified = read.requiredDouble("lastModified"_L1);
    record.modifiedBy = read.requiredString("modifiedBy"_L1);
    record.revision = read.optionalInteger("revision"_L1).value_or(1);
    const std::optional<QString> storedHash = read.optionalString("contentHash"_L1);
    record.isLocked = read.optionalBool("isLocked"_L1).value_or(false);
    record.deleted = read.optionalBool("deleted"_L1).value_or(false);
    record.deletedAt = read.optionalDouble("deletedAt"_L1);
    record.deletedBy = read.optionalString("deletedBy"_L1);
    if (read.failed())
        return std::nullopt;
    record.contentHash = storedHash ? *storedHash : syncableContentHash(record.name, record.colors);
    return record;
}

} // namespace hueshelf
