#pragma once

#include "sync/SyncStatus.h"

#include <QColor>
#include <QString>

#include <optional>

namespace hueshelf::app {

// What the sync button's tooltip card says: a title behind a dot in the status's colour, the
// longer text, and, once a sync is known, how long ago it was.
struct SyncStatusCard {
    // Every line fits within this width; the longer text wraps.
    static constexpr int width = 180;
    // The last-synced line is set smaller than the rest.
    static constexpr double lastSyncedPointSize = 10.0;

    QString title;
    QColor dotColor;
    QString detail;
    // "Last synced 5 minutes ago"; absent before the first sync.
    std::optional<QString> lastSynced;

    // `nowMs` is the bar's clock; a last sync in the future counts as just now.
    static SyncStatusCard make(SyncStatus::Kind kind, std::optional<double> lastSyncMs,
                               double nowMs);

    friend bool operator==(const SyncStatusCard&, const SyncStatusCard&) = default;
};

} // namespace hueshelf::app
