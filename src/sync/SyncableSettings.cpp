#include "sync/SyncableSettings.h"

#include "sync/SyncFieldReader.h"

namespace hueshelf {

using namespace Qt::StringLiterals;

QJsonObject SyncableSettings::toJson() const {
    QJsonObject object;
    object.insert("appearanceMode"_L1, appearanceMode);
    if (activeTemplateId)
        object.insert("activeTemplateId"_L1, *activeTemplateId);
    object.insert("lastModified"_L1, lastModified);
    object.insert("modifiedBy"_L1, modifiedBy);
    return object;
}

std::optional<SyncableSettings> SyncableSettings::fromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    SyncFieldReader read(object);
    SyncableSettings settings;
    settings.appearanceMode = read.requiredString("appearanceMode"_L1);
    settings.activeTemplateId = read.optionalString("activeTemplateId"_L1);
    settings.lastModified = read.requiredDouble("lastModified"_L1);
    settings.modifiedBy = read.requiredString("modifiedBy"_L1);
    if (read.failed())
        return std::nullopt;
    return settings;
}

} // namespace hueshelf
