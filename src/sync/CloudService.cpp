#include "sync/CloudService.h"

using namespace Qt::StringLiterals;

namespace hueshelf {

QString cloudServiceName(CloudService service) {
    switch (service) {
    case CloudService::iCloud:
        return u"iCloud Drive"_s;
    case CloudService::dropbox:
        return u"Dropbox"_s;
    case CloudService::googleDrive:
        return u"Google Drive"_s;
    case CloudService::oneDrive:
        return u"OneDrive"_s;
    case CloudService::nextcloud:
        return u"Nextcloud"_s;
    case CloudService::syncthing:
        return u"Syncthing"_s;
    }
    return QString();
}

QString cloudServiceSymbol(CloudService service) {
    switch (service) {
    case CloudService::iCloud:
        return u"icloud"_s;
    case CloudService::dropbox:
        return u"shippingbox"_s;
    case CloudService::googleDrive:
        return u"externaldrive"_s;
    case CloudService::oneDrive:
    case CloudService::nextcloud:
        return u"cloud"_s;
    case CloudService::syncthing:
        return u"arrow.triangle.2.circlepath"_s;
    }
    return QString();
}

std::optional<CloudService> cloudServiceFromName(const QString& name) {
    for (const CloudService service : allCloudServices) {
        if (cloudServiceName(service) == name)
            return service;
    }
    return std::nullopt;
}

} // namespace hueshelf
