#pragma once

#include "model/ColorItem.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

namespace hueshelf {

// One colour offered by the extraction popover, its name open to editing until the palette is
// made.
struct ExtractedSwatch {
    QUuid id;
    QString hex;
    QString name;

    friend bool operator==(const ExtractedSwatch&, const ExtractedSwatch&) = default;
};

// Each code with a fresh id and its automatic name.
QList<ExtractedSwatch> swatchesFor(const QStringList& hexes);

// The palette's colours, in order: names trimmed of blanks, an emptied name back to the
// automatic one, automatic exactly when the name is the colour's automatic name; fresh ids,
// unlocked, no dividers.
QList<ColorItem> confirmedColors(const QList<ExtractedSwatch>& swatches);

} // namespace hueshelf
