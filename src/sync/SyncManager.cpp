#include "sync/SyncManager.h"

#include "model/ColorItem.h"
#include "sync/SyncDefaults.h"
#include "sync/SyncFolder.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {

// The device's name when the machine gives none; the other devices show it as it is.
const QString kUnknownDeviceName = u"Unknown Mac"_s;

SyncConfiguration newConfiguration(const QString& hostName) {
    SyncConfiguration configuration;
    configuration.isEnabled = false;
    configuration.deviceId = uuidText(QUuid::createUuid());
    configuration.deviceName = hostName.isEmpty() ? kUnknownDeviceName : hostName;
    return configuration;
}

// The service a stored configuration stands for: its folder is the one that holds the sync
// folder.
std::optional<DetectedCloudService> serviceOf(const SyncConfiguration& configuration) {
    if (!configuration.cloudService || !configuration.syncFolderPath)
        return std::nullopt;
    const std::optional<CloudService> service = cloudServiceFromName(*configuration.cloudService);
    if (!service)
        return std::nullopt;
    return DetectedCloudService{*service,
                                QFileInfo(QDir::cleanPath(*configuration.syncFolderPath)).path()};
}

} // namespace

SyncManager::SyncManager(Clock& clock, Scheduler& scheduler, QSettings& settings, QString hostName,
                         QString appVersion, std::unique_ptr<FolderWatch> folderWatch,
                         QObject* parent)
    : QObject(parent), m_clock(clock), m_scheduler(scheduler), m_settings(settings),
      m_appVersion(std::move(appVersion)), m_folderWatch(std::move(folderWatch)) {
    // A new configuration is not stored until sync is first set up, so until then each run
    // has a device id of its own; nothing outside this run has seen it.
    m_configuration =
        SyncDefaults::loadConfiguration(m_settings).value_or(newConfiguration(hostName));
    m_isEnabled = m_configuration.isEnabled;

    if (m_isEnabled) {
        const std::optional<DetectedCloudService> service = serviceOf(m_configuration);
        const bool restored = restoreSecurityAccess();
        const std::optional<QString>& path = m_configuration.syncFolderPath;
        // A folder that is away at launch is not an error: it may be an unmounted disk or a
        // client that hasn't started yet.
        if (!restored && (!path || !QFileInfo::exists(*path))) {
            m_syncStatus = SyncStatus::offline();
        } else {
            m_selectedService = service;
            m_syncStatus = SyncStatus::synced();
        }
    }

    m_pendingTemplateChanges = SyncDefaults::loadPendingTemplateChanges(m_settings);
    m_hasPendingLocalChanges = !m_pendingTemplateChanges.isEmpty();

    if (m_isEnabled)
        startMonitoring();
}

SyncManager::~SyncManager() {
    m_pollTimer.cancel();
    m_debounceWorkItem.cancel();
    m_folderWatch->stop();
}

// --- Observable state ------------------------------------------------------------------------

void SyncManager::setEnabled(bool enabled) {
    if (m_isEnabled == enabled)
        return;
    m_isEnabled = enabled;
    Q_EMIT isEnabledChanged();
}

void SyncManager::setSelectedService(const std::optional<DetectedCloudService>& service) {
    if (m_selectedService == service)
        return;
    m_selectedService = service;
    Q_EMIT selectedServiceChanged();
}

void SyncManager::setAvailableServices(const QList<DetectedCloudService>& services) {
    if (m_availableServices == services)
        return;
    m_availableServices = services;
    Q_EMIT availableServicesChanged();
}

void SyncManager::setLastSyncTime(double ms) {
    m_lastSyncTime = ms;
    Q_EMIT lastSyncTimeChanged();
}

void SyncManager::setSyncStatus(const SyncStatus& status) {
    if (m_syncStatus == status)
        return;
    m_syncStatus = status;
    Q_EMIT syncStatusChanged();
}

std::optional<QString> SyncManager::templatesFolderPath() const {
    if (!m_configuration.syncFolderPath)
        return std::nullopt;
    return SyncFolder::templatesFolderPath(*m_configuration.syncFolderPath);
}

// --- The folder ------------------------------------------------------------------------------

std::optional<SyncError> SyncManager::writeTemplate(const SyncableTemplate& record) {
    const std::optional<QString> folder = templatesFolderPath();
    if (!folder)
        return SyncError::notConfigured();
    if (const std::optional<QString> failure = SyncFolder::writeTemplate(record, *folder))
        return SyncError::writeError(*failure);
    m_lastLocalWriteTime = m_clock.nowMs();
    return std::nullopt;
}

std::optional<SyncError>
SyncManager::rewriteTemplate(const QUuid& id,
                             const std::function<void(SyncableTemplate&)>& change) {
    const std::optional<QString> folder = templatesFolderPath();
    if (!folder)
        return SyncError::notConfigured();
    std::optional<SyncableTemplate> record =
        SyncFolder::readTemplateFile(SyncFolder::templateFilePath(*folder, id));
    if (!record)
        return SyncError::templateNotFound();
    change(*record);
    return writeTemplate(*record);
}

std::optional<SyncError> SyncManager::markTemplateDeleted(const QUuid& id) {
    SyncableTemplate deleted;
    const std::optional<SyncError> error = rewriteTemplate(id, [&](SyncableTemplate& record) {
        record.deleted = true;
        record.deletedAt = m_clock.nowMs();
        record.deletedBy = deviceId();
        record.revision += 1;
        deleted = record;
    });
    if (error)
        return error;
    m_recentlyDeletedTemplates.append(deleted);
    Q_EMIT recentlyDeletedTemplatesChanged();
    return std::nullopt;
}

std::optional<SyncError> SyncManager::restoreTemplate(const QUuid& id) {
    const std::optional<SyncError> error = rewriteTemplate(id, [&](SyncableTemplate& record) {
        record.deleted = false;
        record.deletedAt.reset();
        record.deletedBy.reset();
        record.lastModified = m_clock.nowMs();
        record.modifiedBy = deviceId();
        record.revision += 1;
    });
    if (error)
        return error;
    if (m_recentlyDeletedTemplates.removeIf(
            [&](const SyncableTemplate& record) { return record.id == id; }) > 0)
        Q_EMIT recentlyDeletedTemplatesChanged();
    return std::nullopt;
}

std::optional<SyncError> SyncManager::writeSettings(const SyncableSettings& settings) {
    if (!m_configuration.syncFolderPath)
        return SyncError::notConfigured();
    if (const std::optional<QString> failure =
            SyncFolder::writeSettings(settings, *m_configuration.syncFolderPath))
        return SyncError::writeError(*failure);
    return std::nullopt;
}

QList<SyncableTemplate> SyncManager::readTemplatesFolder() const {
    const std::optional<QString> folder = templatesFolderPath();
    return folder ? SyncFolder::readTemplatesFolder(*folder) : QList<SyncableTemplate>();
}

// --- Pending ids and status ------------------------------------------------------------------

void SyncManager::addPendingChange(const QUuid& id) {
    m_pendingTemplateChanges.insert(id);
    storePendingChanges();
}

void SyncManager::removePendingChange(const QUuid& id) {
    m_pendingTemplateChanges.remove(id);
    storePendingChanges();
}

void SyncManager::storePendingChanges() {
    // Stored at once: nothing retries on a timer, and the next run's first save must still
    // know which palettes never arrived.
    SyncDefaults::storePendingTemplateChanges(m_settings, m_pendingTemplateChanges);
    const bool pending = !m_pendingTemplateChanges.isEmpty();
    if (m_hasPendingLocalChanges == pending)
        return;
    m_hasPendingLocalChanges = pending;
    Q_EMIT hasPendingLocalChangesChanged();
}

QString SyncManager::pendingPushMessage(int failures) {
    if (failures == 1)
        return u"1 palette hasn't synced yet — HueShelf will keep retrying"_s;
    return QString::number(failures) +
           u" palettes haven't synced yet — HueShelf will keep retrying"_s;
}

void SyncManager::updateStatusAfterPush(int failures) {
    setSyncStatus(failures == 0 ? SyncStatus::synced()
                                : SyncStatus::error(pendingPushMessage(failures)));
}

void SyncManager::saveConfiguration() {
    SyncDefaults::storeConfiguration(m_settings, m_configuration);
}

} // namespace hueshelf
