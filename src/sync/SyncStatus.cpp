#include "sync/SyncStatus.h"

namespace hueshelf {

using namespace Qt::StringLiterals;

QString SyncStatus::text() const {
    switch (kind) {
    case Kind::error:
        return u"Error: "_s + message;
    case Kind::disabled:
        return u"Sync disabled"_s;
    case Kind::syncing:
        return u"Syncing..."_s;
    case Kind::synced:
        return u"Synced"_s;
    case Kind::offline:
        return u"Offline"_s;
    }
    return {};
}

} // namespace hueshelf
