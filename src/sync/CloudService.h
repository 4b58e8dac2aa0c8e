#pragma once

#include <QString>

#include <array>
#include <optional>

namespace hueshelf {

// The storage services a sync folder can live in. The display name is also the text that the
// sync configuration stores, so it must never change.
enum class CloudService { iCloud, dropbox, googleDrive, oneDrive, nextcloud, syncthing };

// In the order in which they are detected and shown.
inline constexpr std::array<CloudService, 6> allCloudServices{
    CloudService::iCloud,   CloudService::dropbox,   CloudService::googleDrive,
    CloudService::oneDrive, CloudService::nextcloud, CloudService::syncthing};

QString cloudServiceName(CloudService service);
QString cloudServiceSymbol(CloudService service);
// The service whose display name this is, exactly; anything else is no service.
std::optional<CloudService> cloudServiceFromName(const QString& name);

// A folder on this machine that stands for a service.
struct DetectedCloudService {
    CloudService service = CloudService::iCloud;
    QString path;

    bool operator==(const DetectedCloudService&) const = default;
};

} // namespace hueshelf
