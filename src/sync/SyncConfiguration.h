#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <optional>

namespace hueshelf {

// The state of sync on this device. It never goes into the sync folder: it is kept in the
// user's settings (see SyncDefaults).
struct SyncConfiguration {
    bool isEnabled = false;
    std::optional<QString> cloudService;   // a CloudService display name
    std::optional<QString> syncFolderPath; // full path of the "HueShelf Sync" folder
    QString deviceId;                      // canonical upper-case UUID
    QString deviceName;
    // Access to the folder kept across runs where the platform needs it; base64 in the JSON.
    // Unused on Linux, where the path is used as it stands.
    std::optional<QByteArray> securityBookmark;

    QJsonObject toJson() const;
    // All or nothing: a failure of any key (isEnabled, deviceId or deviceName missing, any value
    // of the wrong type, a bookmark that isn't base64) gives none, and a new configuration is
    // made instead.
    static std::optional<SyncConfiguration> fromJson(const QJsonValue& value);

    friend bool operator==(const SyncConfiguration&, const SyncConfiguration&) = default;
};

} // namespace hueshelf
