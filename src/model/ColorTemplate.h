#pragma once

#include "model/ColorItem.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf {

// A palette. The code says template, the user reads palette. A plain value record like its
// colours; the list in the store is the one truth and copies travel freely.
struct ColorTemplate {
    QUuid id;
    QString name;
    QList<ColorItem> colors;
    double createdAt = 0.0; // ms since 1970
    double updatedAt = 0.0; // ms since 1970, last content change
    // Set only when the palette came through the sync folder; local edits keep it as it was.
    std::optional<QString> updatedByDeviceId;
    qint64 revision = 1;
    QString contentHash;
    bool isLocked = false;

    // Every palette the program makes itself starts here: fresh id, both stamps at the time of
    // making, revision 1, its own content hash, unlocked.
    static ColorTemplate makeNew(const QString& name, const QList<ColorItem>& colors, double nowMs);

    // As narrow as ColorItem's: stamps, locks and hashes don't take part.
    friend bool operator==(const ColorTemplate& a, const ColorTemplate& b) {
        return a.id == b.id && a.name == b.name && a.colors == b.colors;
    }
};

} // namespace hueshelf
