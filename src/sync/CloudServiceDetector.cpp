#include "sync/CloudServiceDetector.h"

#include "sync/CloudConfigReaders.h"
#include "sync/SyncFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <pwd.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace hueshelf {

namespace {

bool isDirectory(const QString& path) {
    return !path.isEmpty() && QFileInfo(path).isDir();
}

// The names of the directories in `path`, sorted by name in code-unit order. The macOS rules
// speak of "listing order", which the file system doesn't promise; sorting makes "first" mean
// the same thing on every machine and every run.
QStringList directoriesIn(const QString& path) {
    QStringList names =
        QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<QString> firstWithPrefix(const QStringList& names, QStringView prefix) {
    for (const QString& name : names) {
        if (name.startsWith(prefix))
            return name;
    }
    return std::nullopt;
}

std::optional<QString> firstDirectory(const QStringList& candidates) {
    for (const QString& candidate : candidates) {
        if (isDirectory(candidate))
            return candidate;
    }
    return std::nullopt;
}

void addIfFound(QList<DetectedCloudService>& found, CloudService service,
                const std::optional<QString>& path) {
    if (path)
        found.append(DetectedCloudService{service, QDir::cleanPath(*path)});
}

QByteArray contentsOf(const QString& path) {
    return CloudConfigReaders::readSmallFile(path).value_or(QByteArray());
}

QString xdgDirectory(const QProcessEnvironment& env, const QString& variable,
                     const QString& fallback) {
    const QString value = env.value(variable);
    return !value.isEmpty() && QDir::isAbsolutePath(value) ? QDir::cleanPath(value) : fallback;
}

} // namespace

CloudServiceRoots CloudServiceRoots::forCurrentUser(const QProcessEnvironment& env) {
    QString home;
    QString runtimeDir;
#ifdef Q_OS_UNIX
    if (const passwd* entry = getpwuid(getuid()); entry && entry->pw_dir && *entry->pw_dir)
        home = QFile::decodeName(entry->pw_dir);
    runtimeDir = u"/run/user/"_s + QString::number(getuid());
#endif
    if (home.isEmpty())
        home = QDir::homePath();
    home = QDir::cleanPath(home);
    return CloudServiceRoots{
        home,
        xdgDirectory(env, u"XDG_RUNTIME_DIR"_s, runtimeDir),
        xdgDirectory(env, u"XDG_CONFIG_HOME"_s, home + u"/.config"),
        xdgDirectory(env, u"XDG_STATE_HOME"_s, home + u"/.local/state"),
    };
}

QList<DetectedCloudService> CloudServiceDetector::detectServices() const {
#ifdef Q_OS_MACOS
    return detectMacServices();
#else
    return detectLinuxServices();
#endif
}

QList<DetectedCloudService> CloudServiceDetector::detectMacServices() const {
    const QString& home = m_roots.home;
    QList<DetectedCloudService> found;

    const QString iCloud = home + u"/Library/Mobile Documents/com~apple~CloudDocs";
    addIfFound(found, CloudService::iCloud,
               isDirectory(iCloud) ? std::optional<QString>(iCloud) : std::nullopt);

    // Newer clients live under the system's storage folder, one entry per account; an unlisted
    // or missing folder simply has no entries.
    const QString cloudStorage = home + u"/Library/CloudStorage";
    const QStringList entries = directoriesIn(cloudStorage);
    auto entryPath = [&](QStringView prefix) -> std::optional<QString> {
        const std::optional<QString> name = firstWithPrefix(entries, prefix);
        return name ? std::optional<QString>(cloudStorage + u'/' + *name) : std::nullopt;
    };

    // An older Dropbox keeps its folder straight in the home directory.
    std::optional<QString> dropbox = entryPath(u"Dropbox");
    if (!dropbox)
        dropbox = firstDirectory({home + u"/Dropbox"});
    addIfFound(found, CloudService::dropbox, dropbox);

    std::optional<QString> googleDrive = entryPath(u"GoogleDrive");
    if (googleDrive && isDirectory(*googleDrive + u"/My Drive"))
        *googleDrive += u"/My Drive";
    addIfFound(found, CloudService::googleDrive, googleDrive);

    addIfFound(found, CloudService::oneDrive, entryPath(u"OneDrive"));
    return found;
}

QList<DetectedCloudService> CloudServiceDetector::detectLinuxServices() const {
    using namespace CloudConfigReaders;
    const QString& home = m_roots.home;
    QList<DetectedCloudService> found;

    addIfFound(found, CloudService::dropbox,
               firstDirectory(dropboxFolders(contentsOf(home + u"/.dropbox/info.json"), home)
                              << home + u"/Dropbox"));

    // There is no Google Drive client for Linux; GNOME Online Accounts mounts the drive through
    // gvfs instead, one mount per account, named "google-drive:host=...,user=...".
    if (!m_roots.runtimeDir.isEmpty()) {
        const QString gvfs = m_roots.runtimeDir + u"/gvfs";
        const std::optional<QString> mount = firstWithPrefix(directoriesIn(gvfs), u"google-drive:");
        addIfFound(found, CloudService::googleDrive,
                   mount ? std::optional<QString>(gvfs + u'/' + *mount) : std::nullopt);
    }

    QStringList oneDrive;
    if (const std::optional<QString> syncDir =
            oneDriveSyncDir(contentsOf(m_roots.xdgConfigHome + u"/onedrive/config"), home))
        oneDrive << *syncDir;
    addIfFound(found, CloudService::oneDrive, firstDirectory(oneDrive << home + u"/OneDrive"));

    addIfFound(
        found, CloudService::nextcloud,
        firstDirectory(
            nextcloudFolders(contentsOf(m_roots.xdgConfigHome + u"/Nextcloud/nextcloud.cfg"), home)
            << home + u"/Nextcloud"));

    // Syncthing moved its settings from the config to the state directory but keeps using the
    // old place where it exists, so that one is read first.
    addIfFound(
        found, CloudService::syncthing,
        firstDirectory(
            syncthingFolders(contentsOf(m_roots.xdgConfigHome + u"/syncthing/config.xml"), home)
            << syncthingFolders(contentsOf(m_roots.xdgStateHome + u"/syncthing/config.xml"), home)
            << home + u"/Sync"));
    return found;
}

std::optional<FoundSyncFolder>
CloudServiceDetector::findExistingSyncFolder(const QList<DetectedCloudService>& services) {
    for (const DetectedCloudService& service : services) {
        const QString syncFolder = service.path + u'/' + SyncFolder::folderName;
        if (isDirectory(syncFolder))
            return FoundSyncFolder{service, syncFolder};
    }
    return std::nullopt;
}

std::optional<QString> CloudServiceDetector::serviceName(const QString& path) {
    const QString lowered = path.toLower();
    struct Rule {
        QStringView word;
        CloudService service;
    };
    static constexpr Rule rules[]{
        {u"icloud", CloudService::iCloud},       {u"mobile documents", CloudService::iCloud},
        {u"dropbox", CloudService::dropbox},     {u"google", CloudService::googleDrive},
        {u"onedrive", CloudService::oneDrive},   {u"nextcloud", CloudService::nextcloud},
        {u"syncthing", CloudService::syncthing},
    };
    for (const Rule& rule : rules) {
        if (lowered.contains(rule.word))
            return cloudServiceName(rule.service);
    }
    return std::nullopt;
}

QString CloudServiceDetector::homeAbbreviated(const QString& path, const QString& home) {
    const QString cleanHome = QDir::cleanPath(home);
    if (home.isEmpty() || path.isEmpty())
        return path;
    if (path == cleanHome || path == cleanHome + u'/')
        return u"~"_s;
    const QString prefix = cleanHome.endsWith(u'/') ? cleanHome : cleanHome + u'/';
    if (path.startsWith(prefix))
        return u"~/"_s + path.mid(prefix.size());
    return path;
}

} // namespace hueshelf
