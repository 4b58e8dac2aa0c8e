#include "sync/SyncFolder.h"
#include "sync/SyncManager.h"

#include <QDir>
#include <QFileInfo>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {

// Read as "Failed to write: Failed to access the selected folder".
const QString kAccessRefused = u"Failed to access the selected folder"_s;

} // namespace

std::optional<SyncError> SyncManager::setupSync(const QString& folder,
                                                const std::optional<QString>& serviceName) {
    return join(folder, serviceName, JoinMode::setUp);
}

std::optional<SyncError> SyncManager::connectToExisting(const QString& folder,
                                                        const std::optional<QString>& serviceName) {
    return join(folder, serviceName, JoinMode::connect);
}

std::optional<SyncError>
SyncManager::join(const QString& folder, const std::optional<QString>& serviceName, JoinMode mode) {
    // Whatever happens below, the earlier folder's access is over.
    stopSecurityAccess();

    // Linux has no scoped access to grant: the folder is reachable if it is a directory that
    // can be read. A folder that isn't there is refused rather than made, so a mistyped path
    // on the command line doesn't quietly become a new cloud folder.
    const QFileInfo picked(folder);
    if (folder.isEmpty() || !picked.isDir() || !picked.isReadable())
        return SyncError::writeError(kAccessRefused);

    const QString syncFolder =
        QDir::cleanPath(QDir(picked.absoluteFilePath()).filePath(SyncFolder::folderName));
    if (mode == JoinMode::setUp) {
        if (!QDir().mkpath(syncFolder))
            return SyncError::writeError(u"Couldn't create "_s + syncFolder);
        const QString templates = SyncFolder::templatesFolderPath(syncFolder);
        if (!QDir().mkpath(templates))
            return SyncError::writeError(u"Couldn't create "_s + templates);
    } else if (!QFileInfo(syncFolder).isDir()) {
        return SyncError::folderNotFound();
    }

    std::optional<SyncManifest> manifest = SyncFolder::readManifest(syncFolder);
    if (!manifest) {
        if (mode == JoinMode::connect)
            return SyncError::invalidSyncFolder();
        manifest = SyncManifest{};
    }
    const double now = m_clock.nowMs();
    SyncManifest::DeviceInfo device;
    device.name = m_configuration.deviceName;
    device.platform = SyncManifest::DeviceInfo::currentPlatform();
    device.lastSeen = now;
    if (!m_appVersion.isEmpty())
        device.appVersion = m_appVersion;
    // Keyed by the device id, so joining again replaces this device's entry.
    manifest->devices.insert(deviceId(), device);
    if (mode == JoinMode::setUp)
        manifest->lastSyncedAt = now;
    if (const std::optional<QString> failure = SyncFolder::writeManifest(*manifest, syncFolder))
        return SyncError::writeError(*failure);

    m_configuration.isEnabled = true;
    m_configuration.cloudService = serviceName;
    m_configuration.syncFolderPath = syncFolder;
    // No bookmarks on Linux: the path itself is what reaches the folder after a restart.
    m_configuration.securityBookmark.reset();
    saveConfiguration();

    setEnabled(true);
    setSyncStatus(SyncStatus::synced());
    if (mode == JoinMode::setUp)
        setLastSyncTime(now);
    m_securityScopedPath = picked.absoluteFilePath();
    m_isAccessingSecurityScopedResource = true;

    if (serviceName) {
        for (const DetectedCloudService& service : std::as_const(m_availableServices)) {
            if (cloudServiceName(service.service) == *serviceName) {
                setSelectedService(service);
                break;
            }
        }
    }
    startMonitoring();
    return std::nullopt;
}

void SyncManager::disableSync() {
    stopMonitoring();
    stopSecurityAccess();
    // The device keeps its identity, so setting up again replaces its manifest entry.
    m_configuration.isEnabled = false;
    m_configuration.cloudService.reset();
    m_configuration.syncFolderPath.reset();
    m_configuration.securityBookmark.reset();
    saveConfiguration();
    setEnabled(false);
    setSelectedService(std::nullopt);
    setSyncStatus(SyncStatus::disabled());
}

bool SyncManager::restoreSecurityAccess() {
    // Linux keeps no bookmarks: the configuration never holds one, the answer is false and
    // the stored path is used as it stands. A bookmark that a build for another platform left
    // in the settings can't be resolved here, which counts as a failed resolution.
    if (!m_configuration.securityBookmark)
        return false;
    stopSecurityAccess();
    return false;
}

void SyncManager::stopSecurityAccess() {
    m_isAccessingSecurityScopedResource = false;
    m_securityScopedPath.reset();
}

} // namespace hueshelf
