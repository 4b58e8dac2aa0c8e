#pragma once

#include "model/ColorItem.h"
#include "model/ColorTemplate.h"

#include <QJsonObject>
#include <QString>

namespace hueshelf::helper {

// The records as the extension receives them: ids as the upper-case text they have everywhere
// else, and only what an extension can show or act on.
namespace HelperJson {

// {"id", "name", "hex", "isLocked"}
QJsonObject color(const ColorItem& color);
// {"id", "name", "isLocked", "colors"}, the colours in bar order.
QJsonObject palette(const ColorTemplate& palette);

// {"type": "error", "message"}
QJsonObject error(const QString& message);

// The reply with the request's "id" beside it, unchanged, when the request had one.
QJsonObject answering(const QJsonObject& request, QJsonObject reply);

} // namespace HelperJson
} // namespace hueshelf::helper
