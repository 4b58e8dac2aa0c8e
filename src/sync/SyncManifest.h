#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QMap>
#include <QString>

#include <optional>

namespace hueshelf {

// The sync folder's manifest.json: which devices ever joined the folder, and when it was last
// set up. A folder without a readable manifest is no sync folder.
struct SyncManifest {
    struct DeviceInfo {
        QString name;                      // the device's name as its user knows it
        QString platform;                  // see currentPlatform
        double lastSeen = 0.0;             // ms since 1970, time of registration
        std::optional<QString> appVersion; // left out of the file when there is none

        // The platform that this build writes for itself: each platform's own name, "linux"
        // here, "macos" and "windows" where the program is built for those. Other devices only
        // show the text, so a device never needs to understand another's.
        static QString currentPlatform();

        QJsonObject toJson() const;
        static std::optional<DeviceInfo> fromJson(const QJsonValue& value);

        friend bool operator==(const DeviceInfo&, const DeviceInfo&) = default;
    };

    // What a new folder is written with. A manifest read without them takes "1.0" and 1, and is
    // written back with what it was read as.
    static inline const QString newFolderVersion = QStringLiteral("1.0");
    static constexpr qint64 newFolderSchemaVersion = 2;

    QString version = newFolderVersion;
    qint64 schemaVersion = newFolderSchemaVersion;
    double lastSyncedAt = 0.0;         // ms since 1970, the last set-up on any device
    QMap<QString, DeviceInfo> devices; // by device id

    QJsonObject toJson() const;
    // None when lastSyncedAt or devices is missing, any value has the wrong type, or any
    // device's entry fails.
    static std::optional<SyncManifest> fromJson(const QJsonValue& value);

    friend bool operator==(const SyncManifest&, const SyncManifest&) = default;
};

} // namespace hueshelf
