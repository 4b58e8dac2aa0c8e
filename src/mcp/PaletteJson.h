#pragma once

#include "mcp/PaletteSnapshot.h"
#include "model/ColorItem.h"
#include "model/ColorTemplate.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QList>

namespace hueshelf::mcp {

// Palettes as the tools hand them to a model: names and codes first, in bar order, with only
// the facts a model can act on. Each form comes with the schema that describes it.
namespace PaletteJson {

// [{"name", "hex", "role"?, "group"?}]: the role that the palette check would give the colour
// (Background, Text, Primary, ...) and the label of the group it sits in, where there are.
QJsonArray colors(const QList<ColorItem>& colors);
QJsonObject colorsSchema();

// {"id", "name", "isActive", "isChosen", "isLocked", "colorCount", "colors"}
QJsonObject palette(const ColorTemplate& palette, const PaletteSnapshot& snapshot);
QJsonObject paletteSchema(const QString& description = QString());

// The same without the colours: one line of a list.
QJsonObject summary(const ColorTemplate& palette, const PaletteSnapshot& snapshot);
QJsonObject summarySchema();

} // namespace PaletteJson
} // namespace hueshelf::mcp
