#include "helper/HelperJson.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace hueshelf::helper::HelperJson {

QJsonObject color(const ColorItem& color) {
    return QJsonObject{{u"id"_s, uuidText(color.id)},
                       {u"name"_s, color.name},
                       {u"hex"_s, color.hex},
                       {u"isLocked"_s, color.isLocked}};
}

QJsonObject palette(const ColorTemplate& palette) {
    QJsonArray colors;
    for (const ColorItem& item : palette.colors)
        colors.append(color(item));
    return QJsonObject{{u"id"_s, uuidText(palette.id)},
                       {u"name"_s, palette.name},
                       {u"isLocked"_s, palette.isLocked},
                       {u"colors"_s, colors}};
}

QJsonObject error(const QString& message) {
    return QJsonObject{{u"type"_s, u"error"_s}, {u"message"_s, message}};
}

QJsonObject answering(const QJsonObject& request, QJsonObject reply) {
    if (const auto id = request.constFind(u"id"_s); id != request.constEnd())
        reply.insert(u"id"_s, *id);
    return reply;
}

} // namespace hueshelf::helper::HelperJson
