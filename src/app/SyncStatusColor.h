#pragma once

#include "sync/SyncStatus.h"

#include <QColor>

namespace hueshelf::app {

// The tint of a sync status wherever it is shown (the settings' status line, the bar's card):
// good when synced, caution while syncing or offline, bad on an error, grey when off.
inline QColor syncStatusColor(SyncStatus::Kind kind) {
    switch (kind) {
    case SyncStatus::Kind::synced:
        return QColor::fromRgbF(0.36f, 0.68f, 0.42f);
    case SyncStatus::Kind::syncing:
    case SyncStatus::Kind::offline:
        return QColor::fromRgbF(0.83f, 0.64f, 0.30f);
    case SyncStatus::Kind::error:
        return QColor::fromRgbF(0.81f, 0.42f, 0.39f);
    case SyncStatus::Kind::disabled:
        break;
    }
    return QColor(Qt::gray);
}

} // namespace hueshelf::app
