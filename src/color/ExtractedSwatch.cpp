#include "color/ExtractedSwatch.h"

#include "color/ColorUtils.h"
#include "model/TemplateNaming.h"

namespace hueshelf {

QList<ExtractedSwatch> swatchesFor(const QStringList& hexes) {
    QList<ExtractedSwatch> swatches;
    swatches.reserve(hexes.size());
    for (const QString& hex : hexes) {
        swatches.append(ExtractedSwatch{QUuid::createUuid(), hex, ColorUtils::colorName(hex)});
    }
    return swatches;
}

QList<ColorItem> confirmedColors(const QList<ExtractedSwatch>& swatches) {
    QList<ColorItem> colors;
    colors.reserve(swatches.size());
    for (const ExtractedSwatch& swatch : swatches) {
        const QString automatic = ColorUtils::colorName(swatch.hex);
        QString name = TemplateNaming::trimmedOfBlanks(swatch.name);
        if (name.isEmpty()) {
            name = automatic;
        }
        colors.append(ColorItem::make(name, swatch.hex, name == automatic));
    }
    return colors;
}

} // namespace hueshelf
