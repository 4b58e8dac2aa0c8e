#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <optional>

namespace hueshelf {

// The sync folder's settings.json. Each push writes it; no device reads it back in this
// version, so the appearance and the active palette don't travel whatever the file says.
struct SyncableSettings {
    QString appearanceMode; // the user default "appearanceMode", or "system" when unset
    std::optional<QString> activeTemplateId;
    double lastModified = 0.0; // ms since 1970, time of the push
    QString modifiedBy;        // device id of the writer

    // Every key; activeTemplateId only when present.
    QJsonObject toJson() const;
    static std::optional<SyncableSettings> fromJson(const QJsonValue& value);

    friend bool operator==(const SyncableSettings&, const SyncableSettings&) = default;
};

} // namespace hueshelf
