#include "sync/SyncManager.h"

#include <QFileInfo>
#include <QPointer>

namespace hueshelf {

// The folder watch and the poll. The platform's watch reports on the main thread, so the
// debounce runs there too, on the scheduler; it touches nothing but its own work item until it
// fires.

void SyncManager::startMonitoring() {
    if (!m_isEnabled || !m_configuration.syncFolderPath)
        return;
    stopMonitoring();
    const std::optional<QString> templates = templatesFolderPath();
    const bool watching = m_folderWatch->start(*templates, [guard = QPointer<SyncManager>(this)] {
        if (guard)
            guard->scheduleFolderChangeHandling();
    });
    // Without a watch there is no poll either; the store's own timer, saves and activations
    // still reach the folder.
    if (!watching)
        return;
    // Started here rather than in a later step: a stop that follows at once must find it.
    m_pollTimer =
        m_scheduler.scheduleRepeating(pollIntervalSeconds, [guard = QPointer<SyncManager>(this)] {
            if (guard)
                guard->pollTick();
        });
}

void SyncManager::stopMonitoring() {
    m_folderWatch->stop();
    m_pollTimer.cancel();
    m_pollTimer = TaskHandle();
}

void SyncManager::pollTick() {
    // Cloud clients don't always tell the file system what they changed, so the poll pulls
    // whether or not anything was seen, except while a missing folder is left alone.
    if (m_pollBackoff.allowsCheckAt(m_clock.nowMs()))
        scheduleFolderChangeHandling();
}

void SyncManager::scheduleFolderChangeHandling() {
    m_debounceWorkItem.cancel();
    m_debounceWorkItem =
        m_scheduler.scheduleAfter(debounceSeconds, [guard = QPointer<SyncManager>(this)] {
            if (guard)
                guard->handleFolderChange();
        });
}

void SyncManager::handleFolderChange() {
    // Sync may have been turned off while the event waited.
    if (!m_isEnabled)
        return;
    const double now = m_clock.nowMs();
    // Our own push rewrites every file, and the watch reports it back; pulling all of them
    // again for that would double the work of every save.
    if (m_lastLocalWriteTime && now - *m_lastLocalWriteTime < echoWindowSeconds * 1000.0)
        return;
    setSyncStatus(SyncStatus::syncing());
    setLastSyncTime(now);
    if (m_onSyncFolderChanged)
        m_onSyncFolderChanged();
}

bool SyncManager::checkFolderAvailability() {
    if (!m_configuration.syncFolderPath)
        return false;
    const bool exists = QFileInfo::exists(*m_configuration.syncFolderPath);
    if (exists)
        m_pollBackoff.recordSuccess();
    else
        m_pollBackoff.recordFailure(m_clock.nowMs());

    // Deferred, so the caller still sees the status it had. Each step looks again when it
    // runs: a later check may have seen the opposite meanwhile.
    if (m_isEnabled && !exists && m_syncStatus.kind != SyncStatus::Kind::offline) {
        m_scheduler.scheduleAfter(0.0, [guard = QPointer<SyncManager>(this)] {
            SyncManager* self = guard.data();
            if (self && self->m_isEnabled && self->m_pollBackoff.consecutiveFailures > 0)
                self->setSyncStatus(SyncStatus::offline());
        });
    }
    if (m_isEnabled && exists && m_syncStatus.kind == SyncStatus::Kind::offline) {
        // Only offline gives way: an error from a push stays until a push succeeds.
        m_scheduler.scheduleAfter(0.0, [guard = QPointer<SyncManager>(this)] {
            SyncManager* self = guard.data();
            if (self && self->m_syncStatus.kind == SyncStatus::Kind::offline &&
                self->m_pollBackoff.consecutiveFailures == 0)
                self->setSyncStatus(SyncStatus::synced());
        });
    }
    return exists;
}

} // namespace hueshelf
