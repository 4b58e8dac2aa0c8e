#pragma once

#include "model/ColorTemplate.h"
#include "model/ShadowTemplateState.h"

#include <QList>
#include <QMap>
#include <QUuid>

namespace hueshelf {

// What the store starts from: the outcome of the load at start-up (or, before a loader
// exists, the first-launch palettes).
struct LoadedTemplates {
    QList<ColorTemplate> templates;
    QUuid activeTemplateId;
    // "colorLastModified" of the file that was read; 0 when there was none.
    double baselineStamp = 0.0;
    // Hash of the palette bytes that were read (0 for the first-launch palettes).
    qint64 dataHash = 0;
    QMap<QUuid, ShadowTemplateState> shadowState;
};

} // namespace hueshelf
