#include "sync/SyncConversion.h"

#include "model/ContentHash.h"

namespace hueshelf {

SyncableTemplate syncableFrom(const ColorTemplate& palette, const QString& deviceId) {
    SyncableTemplate record;
    record.id = palette.id;
    record.name = palette.name;
    record.colors.reserve(palette.colors.size());
    for (const ColorItem& color : palette.colors)
        record.colors.append(SyncableColorItem::fromColorItem(color));
    record.createdAt = palette.createdAt;
    record.createdBy = deviceId;
    record.lastModified = palette.updatedAt;
    record.modifiedBy = palette.updatedByDeviceId.value_or(deviceId);
    record.schemaVersion = SyncableTemplate::currentSchemaVersion;
    record.revision = palette.revision;
    record.contentHash = palette.contentHash;
    record.isLocked = palette.isLocked;
    record.deleted = false;
    record.deletedAt = std::nullopt;
    record.deletedBy = std::nullopt;
    return record;
}

ColorTemplate toColorTemplate(const SyncableTemplate& record) {
    ColorTemplate palette;
    palette.id = record.id;
    palette.name = record.name;
    palette.colors.reserve(record.colors.size());
    for (const SyncableColorItem& color : record.colors)
        palette.colors.append(color.toColorItem());
    palette.createdAt = record.createdAt;
    palette.updatedAt = record.lastModified;
    palette.updatedByDeviceId = record.modifiedBy;
    palette.revision = record.revision;
    palette.contentHash = record.contentHash;
    palette.isLocked = record.isLocked;
    return palette;
}

QString syncableContentHash(const QString& name, const QList<SyncableColorItem>& colors) {
    QList<ColorItem> items;
    items.reserve(colors.size());
    for (const SyncableColorItem& color : colors)
        items.append(color.toColorItem());
    return computeContentHash(name, items);
}

} // namespace hueshelf
