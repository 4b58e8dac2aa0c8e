#pragma once

#include "model/ColorTemplate.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace hueshelf::cli {

// A palette in one line, as the gallery lists it: what `palettes` prints for each palette and
// `use` for the one it made active.
namespace PaletteSummary {

// {"id", "name", "colorCount", "isActive", "isLocked", "revision", "updatedAt"}
QJsonObject toJson(const ColorTemplate& palette, bool isActive);

// The cells of one aligned row: a "*" for the active palette, the name, the colour count, the
// lock, the id.
QStringList textCells(const ColorTemplate& palette, bool isActive);

// "1 color", "5 colors".
QString colorCountText(qsizetype count);

} // namespace PaletteSummary
} // namespace hueshelf::cli
