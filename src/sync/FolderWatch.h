#pragma once

#include <QString>

#include <functional>

namespace hueshelf {

// A watch on the entries of one folder: a file made, removed or renamed into place. Cloud
// clients and other devices replace palette files atomically, which is always such a change,
// so the entries are all that needs watching. Tests put a fake in its place and fire events
// by hand.
class FolderWatch {
public:
    using Handler = std::function<void()>;

    virtual ~FolderWatch() = default;

    // Ends any earlier watch, then watches `path`, calling `onChange` on the main thread for
    // each change. False when the folder can't be watched; nothing is watched then.
    virtual bool start(const QString& path, Handler onChange) = 0;
    virtual void stop() = 0;
    virtual bool isWatching() const = 0;
};

} // namespace hueshelf
