#pragma once

#include "model/ColorTemplate.h"
#include "sync/SyncableTemplate.h"

#include <optional>

namespace hueshelf {

// The verdict on one palette found both here and in the folder.
struct SyncResult {
    enum class Kind { acceptLocal, acceptRemote, conflict, noChange };

    Kind kind = Kind::noChange;
    std::optional<ColorTemplate> local;     // for acceptLocal and conflict
    std::optional<SyncableTemplate> remote; // for acceptRemote and conflict

    static SyncResult acceptLocal(const ColorTemplate& palette) {
        return {Kind::acceptLocal, palette, std::nullopt};
    }
    static SyncResult acceptRemote(const SyncableTemplate& record) {
        return {Kind::acceptRemote, std::nullopt, record};
    }
    static SyncResult conflict(const ColorTemplate& palette, const SyncableTemplate& record) {
        return {Kind::conflict, palette, record};
    }
    static SyncResult noChange() { return {}; }

    // Palettes compare narrowly, as ColorTemplate does.
    friend bool operator==(const SyncResult&, const SyncResult&) = default;
};

} // namespace hueshelf
