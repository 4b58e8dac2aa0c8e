#include "sync/SyncConfiguration.h"

#include "sync/SyncFieldReader.h"

namespace hueshelf {

using namespace Qt::StringLiterals;

QJsonObject SyncConfiguration::toJson() const {
    QJsonObject object;
    object.insert("isEnabled"_L1, isEnabled);
    if (cloudService)
        object.insert("cloudService"_L1, *cloudService);
    if (syncFolderPath)
        object.insert("syncFolderPath"_L1, *syncFolderPath);
    object.insert("deviceId"_L1, deviceId);
    object.insert("deviceName"_L1, deviceName);
    if (securityBookmark)
        object.insert("securityBookmark"_L1, QString::fromLatin1(securityBookmark->toBase64()));
    return object;
}

std::optional<SyncConfiguration> SyncConfiguration::fromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    SyncFieldReader read(object);
    SyncConfiguration configuration;
    configuration.isEnabled = read.requiredBool("isEnabled"_L1);
    configuration.cloudService = read.optionalString("cloudService"_L1);
    configuration.syncFolderPath = read.optionalString("syncFolderPath"_L1);
    configuration.deviceId = read.requiredString("deviceId"_L1);
    configuration.deviceName = read.requiredString("deviceName"_L1);
    if (const std::optional<QString> bookmark = read.optionalString("securityBookmark"_L1)) {
        // A character outside Latin-1 becomes "?", which the strict decoder refuses as well.
        const QByteArray::FromBase64Result decoded = QByteArray::fromBase64Encoding(
            bookmark->toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (!decoded)
            read.fail();
        configuration.securityBookmark = decoded.decoded;
    }
    if (read.failed())
        return std::nullopt;
    return configuration;
}

} // namespace hueshelf
