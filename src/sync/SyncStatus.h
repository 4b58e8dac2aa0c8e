#pragma once

#include <QString>

namespace hueshelf {

// The state of sync as the settings window's status line and the bar's sync button show it.
struct SyncStatus {
    enum class Kind { error, disabled, syncing, synced, offline };

    Kind kind = Kind::disabled;
    QString message; // meaningful only for an error

    static SyncStatus error(const QString& message) { return {Kind::error, message}; }
    static SyncStatus disabled() { return {Kind::disabled, {}}; }
    static SyncStatus syncing() { return {Kind::syncing, {}}; }
    static SyncStatus synced() { return {Kind::synced, {}}; }
    static SyncStatus offline() { return {Kind::offline, {}}; }

    // "Error: " + message, "Sync disabled", "Syncing...", "Synced", "Offline".
    QString text() const;

    friend bool operator==(const SyncStatus&, const SyncStatus&) = default;
};

} // namespace hueshelf
