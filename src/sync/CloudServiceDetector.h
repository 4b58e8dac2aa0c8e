#pragma once

#include "sync/CloudService.h"

#include <QList>
#include <QProcessEnvironment>
#include <QString>

#include <optional>

namespace hueshelf {

// The directories from which detection starts, so that tests can put a whole fake machine in a
// temporary directory.
struct CloudServiceRoots {
    // The user's real home, even when HOME says otherwise (a sandboxed run has its own).
    QString home;
    // The user's runtime directory, /run/user/UID: GNOME Online Accounts mount drives below.
    QString runtimeDir;
    QString xdgConfigHome; // ~/.config unless XDG_CONFIG_HOME says otherwise
    QString xdgStateHome;  // ~/.local/state unless XDG_STATE_HOME says otherwise

    // Home from the password database, falling back on Qt's idea of it; the XDG directories
    // from `env` where it gives them as absolute paths.
    static CloudServiceRoots forCurrentUser(const QProcessEnvironment& env);
};

// An existing sync folder and the service it was found in.
struct FoundSyncFolder {
    DetectedCloudService service;
    QString syncFolderPath;

    bool operator==(const FoundSyncFolder&) const = default;
};

// Finds the folders of the storage services on this machine. Only the file system is touched:
// no client is asked, and nothing is written.
class CloudServiceDetector {
public:
    explicit CloudServiceDetector(CloudServiceRoots roots) : m_roots(std::move(roots)) {}

    const CloudServiceRoots& roots() const { return m_roots; }

    // The services of this platform, at most one folder each, in the order of
    // `allCloudServices`.
    QList<DetectedCloudService> detectServices() const;

    // The places the services use on macOS, all under the home directory.
    QList<DetectedCloudService> detectMacServices() const;
    // The places the services' Linux clients use, read from their own settings where they keep
    // the folder, else their default folder.
    QList<DetectedCloudService> detectLinuxServices() const;

    // The first of `services` that holds a "HueShelf Sync" directory.
    static std::optional<FoundSyncFolder>
    findExistingSyncFolder(const QList<DetectedCloudService>& services);

    // The service a hand-picked folder most likely belongs to, judged by words in its path
    // alone. A Syncthing folder is often just ~/Sync, which no word gives away: such a path
    // gets no name.
    static std::optional<QString> serviceName(const QString& path);

    // `path` with a leading `home` shown as "~".
    static QString homeAbbreviated(const QString& path, const QString& home);

private:
    CloudServiceRoots m_roots;
};

} // namespace hueshelf
