#pragma once

#include "sync/FolderWatch.h"

#include <memory>

class QFileSystemWatcher;

namespace hueshelf {

// The folder watch of a real run, on inotify through QFileSystemWatcher. The watch follows the
// directory's inode: a folder that is replaced as a whole leaves it looking at the old one, and
// only the polls notice anything after that.
class QtFolderWatch final : public FolderWatch {
public:
    QtFolderWatch();
    ~QtFolderWatch() override;

    bool start(const QString& path, Handler onChange) override;
    void stop() override;
    bool isWatching() const override { return m_watcher != nullptr; }

private:
    std::unique_ptr<QFileSystemWatcher> m_watcher;
};

} // namespace hueshelf
