#pragma once

#include "sync/SyncableColorItem.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf {

// One palette as a file in the sync folder's templates folder, or the record that it was
// deleted. Time stamps are milliseconds since 1970 and survive a write and a read bit for bit:
// the sync engine compares them exactly.
struct SyncableTemplate {
    // What this version writes. Files of version 3 or above belong to newer devices and are
    // left alone.
    static constexpr qint64 currentSchemaVersion = 2;

    QUuid id;
    QString name;
    QList<SyncableColorItem> colors;
    double createdAt = 0.0;
    QString createdBy; // device id of the first writer
    double lastModified = 0.0;
    QString modifiedBy; // device id of the last writer
    qint64 schemaVersion = currentSchemaVersion;
    qint64 revision = 1;
    QString contentHash;
    bool isLocked = false;
    bool deleted = false;
    std::optional<double> deletedAt;
    std::optional<QString> deletedBy;

    // Every key, also the false ones; deletedAt and deletedBy only when present, never null.
    QJsonObject toJson() const;
    // Tolerant reading: broken colours are dropped alone and only the first 200 of the rest
    // kept, the name is cut to 100 characters, optional keys take their defaults, and a missing
    // contentHash is computed from the name and colours as read. A stored contentHash is kept as
    // found, even where it no longer matches. Anything else wrong fails the record.
    static std::optional<SyncableTemplate> fromJson(const QJsonValue& value);

    friend bool operator==(const SyncableTemplate&, const SyncableTemplate&) = default;
};

} // namespace hueshelf
