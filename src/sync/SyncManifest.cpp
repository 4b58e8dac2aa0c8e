#include "sync/SyncManifest.h"

#include "sync/SyncFieldReader.h"

namespace hueshelf {

using namespace Qt::StringLiterals;

QString SyncManifest::DeviceInfo::currentPlatform() {
#if defined(Q_OS_MACOS)
    return u"macos"_s;
#elif defined(Q_OS_WIN)
    return u"windows"_s;
#else
    return u"linux"_s;
#endif
}

QJsonObject SyncManifest::DeviceInfo::toJson() const {
    QJsonObject object;
    object.insert("name"_L1, name);
    object.insert("platform"_L1, platform);
    object.insert("lastSeen"_L1, lastSeen);
    if (appVersion)
        object.insert("appVersion"_L1, *appVersion);
    return object;
}

std::optional<SyncManifest::DeviceInfo>
SyncManifest::DeviceInfo::fromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    SyncFieldReader read(object);
    DeviceInfo device;
    device.name = read.requiredString("name"_L1);
    device.platform = read.requiredString("platform"_L1);
    device.lastSeen = read.requiredDouble("lastSeen"_L1);
    device.appVersion = read.optionalString("appVersion"_L1);
    if (read.failed())
        return std::nullopt;
    return device;
}

QJsonObject SyncManifest::toJson() const {
    QJsonObject deviceObject;
    for (auto it = devices.cbegin(); it != devices.cend(); ++it)
        deviceObject.insert(it.key(), it.value().toJson());
    QJsonObject object;
    object.insert("version"_L1, version);
    object.insert("schemaVersion"_L1, schemaVersion);
    object.insert("lastSyncedAt"_L1, lastSyncedAt);
    object.insert("devices"_L1, deviceObject);
    return object;
}

std::optional<SyncManifest> SyncManifest::fromJson(const QJsonValue& value) {
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    SyncFieldReader read(object);
    SyncManifest manifest;
    manifest.version = read.optionalString("version"_L1).value_or(u"1.0"_s);
    manifest.schemaVersion = read.optionalInteger("schemaVersion"_L1).value_or(1);
    manifest.lastSyncedAt = read.requiredDouble("lastSyncedAt"_L1);
    const QJsonObject deviceObject = read.requiredObject("devices"_L1);
    for (auto it = deviceObject.constBegin(); it != deviceObject.constEnd(); ++it) {
        const std::optional<DeviceInfo> device = DeviceInfo::fromJson(it.value());
        if (!device)
            return std::nullopt;
        manifest.devices.insert(it.key(), *device);
    }
    if (read.failed())
        return std::nullopt;
    return manifest;
}

} // namespace hueshelf
