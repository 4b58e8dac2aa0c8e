#include "model/ColorItem.h"

namespace hueshelf {

ColorItem ColorItem::make(const QString& name, const QString& hex, bool isAutoNamed) {
    return ColorItem{QUuid::createUuid(), name, hex, isAutoNamed, false, false, QString()};
}

QString uuidText(const QUuid& id) {
    return id.toString(QUuid::WithoutBraces).toUpper();
}

} // namespace hueshelf
