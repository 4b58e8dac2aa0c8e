#include "sync/SyncError.h"

namespace hueshelf {

using namespace Qt::StringLiterals;

QString SyncError::description() const {
    switch (kind) {
    case Kind::writeError:
        return u"Failed to write: "_s + detail;
    case Kind::notConfigured:
        return u"Sync is not configured"_s;
    case Kind::folderNotFound:
        return u"Sync folder not found"_s;
    case Kind::invalidSyncFolder:
        return u"Invalid sync folder - no manifest found"_s;
    case Kind::templateNotFound:
        return u"Palette not found"_s;
    }
    return {};
}

} // namespace hueshelf
