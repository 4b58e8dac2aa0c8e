#pragma once

#include "sync/SyncableColorItem.h"

#include <QJsonValue>

#include <optional>

namespace hueshelf {

// One entry of a palette file's colour list on its way in. Reading it never fails: an entry
// that is broken in any way (not an object, a key missing or of the wrong type, a code that
// isn't one) gives an empty wrapper, so the palette survives without that colour.
struct SkippableColor {
    std::optional<SyncableColorItem> item;

    static SkippableColor fromJson(const QJsonValue& value) {
        return SkippableColor{SyncableColorItem::fromJson(value)};
    }
};

} // namespace hueshelf
