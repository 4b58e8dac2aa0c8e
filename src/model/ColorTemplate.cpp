#include "model/ColorTemplate.h"

#include "model/ContentHash.h"

namespace hueshelf {

ColorTemplate ColorTemplate::makeNew(const QString& name, const QList<ColorItem>& colors,
                                     double nowMs) {
    ColorTemplate palette;
    palette.id = QUuid::createUuid();
    palette.name = name;
    palette.colors = colors;
    palette.createdAt = nowMs;
    palette.updatedAt = nowMs;
    palette.updatedByDeviceId = std::nullopt;
    palette.revision = 1;
    palette.contentHash = computeContentHash(name, colors);
    palette.isLocked = false;
    return palette;
}

} // namespace hueshelf
