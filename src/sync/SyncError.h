#pragma once

#include <QString>

namespace hueshelf {

// The failures of the sync folder's owner that reach its callers.
struct SyncError {
    enum class Kind {
        writeError,
        notConfigured,
        folderNotFound,
        invalidSyncFolder,
        templateNotFound
    };

    Kind kind = Kind::notConfigured;
    QString detail; // what failed to write; meaningful only for a write error

    static SyncError writeError(const QString& text) { return {Kind::writeError, text}; }
    static SyncError notConfigured() { return {Kind::notConfigured, {}}; }
    static SyncError folderNotFound() { return {Kind::folderNotFound, {}}; }
    static SyncError invalidSyncFolder() { return {Kind::invalidSyncFolder, {}}; }
    static SyncError templateNotFound() { return {Kind::templateNotFound, {}}; }

    // "Failed to write: " + text, "Sync is not configured", "Sync folder not found",
    // "Invalid sync folder - no manifest found", "Palette not found".
    QString description() const;

    friend bool operator==(const SyncError&, const SyncError&) = default;
};

} // namespace hueshelf
