#pragma once

#include "model/ColorItem.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf {

// One colour as it lies in a palette file of the sync folder: the fields of ColorItem, read
// more tolerantly than the store reads its own.
struct SyncableColorItem {
    QUuid id;
    QString name;
    QString hex;
    bool isAutoNamed = false;
    bool isLocked = false;
    bool dividerBefore = false;
    QString dividerLabel;

    static SyncableColorItem fromColorItem(const ColorItem& color);
    ColorItem toColorItem() const;

    // Every key, the id in upper case.
    QJsonObject toJson() const;
    // None when id, name or hex is missing, a value has the wrong type, or the code is
    // unreadable. The name is cut to 100 characters, the label to 40, and the code taken
    // through the palette file's rule to "#RRGGBB".
    static std::optional<SyncableColorItem> fromJson(const QJsonValue& value);

    friend bool operator==(const SyncableColorItem&, const SyncableColorItem&) = default;
};

} // namespace hueshelf
