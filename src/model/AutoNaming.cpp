#include "model/AutoNaming.h"

#include "color/ColorUtils.h"

namespace hueshelf::AutoNaming {

QString nameAfterCodeChange(const QString& currentName, bool isAutoNamed, const QString& newHex) {
    return isAutoNamed ? ColorUtils::colorName(newHex) : currentName;
}

bool isAutoNamedAfterTyping(bool isAutoNamed, const QString& typedName, const QString& currentHex) {
    return isAutoNamed && typedName == ColorUtils::colorName(currentHex);
}

void applyCodeChange(ColorItem& color, const QString& newHex) {
    color.name = nameAfterCodeChange(color.name, color.isAutoNamed, newHex);
    color.hex = newHex;
}

void applyTypedName(ColorItem& color, const QString& typedName) {
    color.isAutoNamed = isAutoNamedAfterTyping(color.isAutoNamed, typedName, color.hex);
    color.name = typedName;
}

} // namespace hueshelf::AutoNaming
