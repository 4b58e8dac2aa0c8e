#pragma once

#include "sync/CloudService.h"
#include "sync/FolderWatch.h"
#include "sync/SyncConfiguration.h"
#include "sync/SyncError.h"
#include "sync/SyncPollBackoff.h"
#include "sync/SyncStatus.h"
#include "sync/SyncableSettings.h"
#include "sync/SyncableTemplate.h"
#include "util/Clock.h"
#include "util/Scheduler.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QSettings>
#include <QString>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

namespace hueshelf {

// The owner of the sync folder: its configuration, the status that the settings and the bar
// show, the writes of palette files and deletion records, the ids whose write failed, and the
// triggers that ask the store to pull (the folder watch and its poll). The decisions on
// palettes are the store's (see StoreSync); this object never looks inside the palette list.
//
// Operations that can fail answer the error, or none on success. Everything runs on the main
// thread; delays go through the scheduler, "now" through the clock.
class SyncManager final : public QObject {
    Q_OBJECT

public:
    static constexpr double pollIntervalSeconds = 30.0;
    static constexpr double debounceSeconds = 0.5;
    // A folder event this soon after one of our own writes is that write coming back.
    static constexpr double echoWindowSeconds = 2.0;
    // Declared for a later clean-up of deletion records; nothing reads it.
    static constexpr double deletedRetentionDays = 7.0;

    // Makes or reads the configuration and takes up where the last run left off (see
    // start-up in the .cpp). `hostName` names this device for a new configuration;
    // `appVersion` is written into the manifest's device entry.
    SyncManager(Clock& clock, Scheduler& scheduler, QSettings& settings, QString hostName,
                QString appVersion, std::unique_ptr<FolderWatch> folderWatch,
                QObject* parent = nullptr);
    ~SyncManager() override;

    // --- Observable state ------------------------------------------------------------------

    bool isEnabled() const { return m_isEnabled; }
    const std::optional<DetectedCloudService>& selectedService() const { return m_selectedService; }
    // What detection found on this machine; the settings window fills it before set-up.
    const QList<DetectedCloudService>& availableServices() const { return m_availableServices; }
    void setAvailableServices(const QList<DetectedCloudService>& services);
    // Milliseconds since 1970 of the last successful contact with the folder.
    std::optional<double> lastSyncTime() const { return m_lastSyncTime; }
    void setLastSyncTime(double ms);
    const SyncStatus& syncStatus() const { return m_syncStatus; }
    void setSyncStatus(const SyncStatus& status);
    // Deletion records written by this device in this run, oldest first.
    const QList<SyncableTemplate>& recentlyDeletedTemplates() const {
        return m_recentlyDeletedTemplates;
    }
    bool hasPendingLocalChanges() const { return m_hasPendingLocalChanges; }
    // Declared for a first-sync flow; it stays false.
    bool isFirstSync() const { return false; }

    // --- Other state -------------------------------------------------------------------------

    const SyncConfiguration& configuration() const { return m_configuration; }
    const QString& deviceId() const { return m_configuration.deviceId; }
    const std::optional<QString>& syncFolderPath() const { return m_configuration.syncFolderPath; }
    // The "templates" folder inside the sync folder, when one is configured.
    std::optional<QString> templatesFolderPath() const;
    const QSet<QUuid>& pendingTemplateChanges() const { return m_pendingTemplateChanges; }
    const SyncPollBackoff& pollBackoff() const { return m_pollBackoff; }
    // When this device last wrote a palette file; none until it first does.
    std::optional<double> lastLocalWriteTime() const { return m_lastLocalWriteTime; }
    bool isAccessingSecurityScopedResource() const { return m_isAccessingSecurityScopedResource; }
    const std::optional<QString>& securityScopedPath() const { return m_securityScopedPath; }
    bool isWatchingFolder() const { return m_folderWatch->isWatching(); }
    bool isPolling() const { return m_pollTimer.isActive(); }

    // The store asks for a pull through this (held weakly by whoever sets it).
    void setOnSyncFolderChanged(std::function<void()> handler) {
        m_onSyncFolderChanged = std::move(handler);
    }

    // --- Set-up ------------------------------------------------------------------------------

    // Makes "HueShelf Sync" (and its "templates") inside `folder` if needed, registers this
    // device in the manifest and turns sync on there.
    std::optional<SyncError> setupSync(const QString& folder,
                                       const std::optional<QString>& serviceName);
    // Joins the "HueShelf Sync" inside `folder` that another device made; creates nothing.
    std::optional<SyncError> connectToExisting(const QString& folder,
                                               const std::optional<QString>& serviceName);
    // Turns sync off here. The folder, its files and the pending ids stay.
    void disableSync();
    // Whether access to the folder could be restored from the stored bookmark.
    bool restoreSecurityAccess();
    void stopSecurityAccess();

    // --- The folder ----------------------------------------------------------------------------

    // Writes "ID.json" atomically and notes the time, so the watch's echo of it is ignored.
    std::optional<SyncError> writeTemplate(const SyncableTemplate& record);
    // Turns the palette's file into a deletion record and remembers it for this run.
    std::optional<SyncError> markTemplateDeleted(const QUuid& id);
    // Turns a deletion record back into a live palette file; the palette itself returns to
    // this device through the next pull.
    std::optional<SyncError> restoreTemplate(const QUuid& id);
    std::optional<SyncError> writeSettings(const SyncableSettings& settings);
    // Every readable record of the templates folder; none configured gives an empty list.
    QList<SyncableTemplate> readTemplatesFolder() const;

    // Whether the sync folder exists now; keeps the back-off and the offline status current.
    // Status changes are deferred, so the caller still sees the old status.
    bool checkFolderAvailability();

    void addPendingChange(const QUuid& id);
    void removePendingChange(const QUuid& id);
    // The status after a push that failed to write `failures` palettes.
    void updateStatusAfterPush(int failures);
    // Stores the configuration in the settings.
    void saveConfiguration();

    // "1 palette hasn't synced yet — HueShelf will keep retrying" and its plural.
    static QString pendingPushMessage(int failures);

    // --- Triggers ------------------------------------------------------------------------------

    // The watch on the templates folder and the 30-second poll, when sync is on.
    void startMonitoring();
    void stopMonitoring();
    // Restarts the debounce: a burst of events ends in one pull, 0.5 s after the last.
    void scheduleFolderChangeHandling();

Q_SIGNALS:
    void isEnabledChanged();
    void selectedServiceChanged();
    void availableServicesChanged();
    void lastSyncTimeChanged();
    void syncStatusChanged();
    void recentlyDeletedTemplatesChanged();
    void hasPendingLocalChangesChanged();

private:
    void setEnabled(bool enabled);
    void setSelectedService(const std::optional<DetectedCloudService>& service);
    void storePendingChanges();
    // Set-up and connect share everything but their checks of the folder.
    enum class JoinMode { setUp, connect };
    std::optional<SyncError> join(const QString& folder, const std::optional<QString>& serviceName,
                                  JoinMode mode);
    std::optional<SyncError> rewriteTemplate(const QUuid& id,
                                             const std::function<void(SyncableTemplate&)>& change);
    void handleFolderChange();
    void pollTick();

    Clock& m_clock;
    Scheduler& m_scheduler;
    QSettings& m_settings;
    const QString m_appVersion;
    std::unique_ptr<FolderWatch> m_folderWatch;

    bool m_isEnabled = false;
    std::optional<DetectedCloudService> m_selectedService;
    QList<DetectedCloudService> m_availableServices;
    std::optional<double> m_lastSyncTime;
    SyncStatus m_syncStatus = SyncStatus::disabled();
    QList<SyncableTemplate> m_recentlyDeletedTemplates;
    bool m_hasPendingLocalChanges = false;

    SyncConfiguration m_configuration;
    bool m_isAccessingSecurityScopedResource = false;
    std::optional<QString> m_securityScopedPath;
    SyncPollBackoff m_pollBackoff;
    QSet<QUuid> m_pendingTemplateChanges;
    std::optional<double> m_lastLocalWriteTime;
    std::function<void()> m_onSyncFolderChanged;

    TaskHandle m_pollTimer;
    TaskHandle m_debounceWorkItem;
};

} // namespace hueshelf
