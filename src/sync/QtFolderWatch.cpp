#include "sync/QtFolderWatch.h"

#include <QFileInfo>
#include <QFileSystemWatcher>

namespace hueshelf {

QtFolderWatch::QtFolderWatch() = default;

QtFolderWatch::~QtFolderWatch() {
    stop();
}

bool QtFolderWatch::start(const QString& path, Handler onChange) {
    stop();
    // QFileSystemWatcher would accept a plain file and then report the wrong kind of change.
    if (path.isEmpty() || !QFileInfo(path).isDir())
        return false;
    auto watcher = std::make_unique<QFileSystemWatcher>();
    if (!watcher->addPath(path))
        return false;
    QObject::connect(watcher.get(), &QFileSystemWatcher::directoryChanged, watcher.get(),
                     [handler = std::move(onChange)](const QString&) { handler(); });
    m_watcher = std::move(watcher);
    return true;
}

void QtFolderWatch::stop() {
    m_watcher.reset();
}

} // namespace hueshelf
