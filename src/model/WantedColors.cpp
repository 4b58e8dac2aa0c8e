#include "model/WantedColors.h"

#include "color/ColorUtils.h"

#include <QStringList>

namespace hueshelf {

QList<ColorItem> colorItemsFor(const QList<WantedColor>& wanted) {
    QStringList names;
    for (const WantedColor& color : wanted) {
        if (!color.name.isEmpty())
            names.append(color.name);
    }
    QList<ColorItem> colors;
    for (const WantedColor& color : wanted) {
        if (!color.name.isEmpty()) {
            colors.append(ColorItem::make(color.name, color.hex, false));
            continue;
        }
        const QString name = ColorUtils::uniqueName(ColorUtils::colorName(color.hex), names);
        names.append(name);
        colors.append(ColorItem::make(name, color.hex, true));
    }
    return colors;
}

} // namespace hueshelf
