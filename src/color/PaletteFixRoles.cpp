#include "color/PaletteCheck.h"

#include <QHash>

namespace hueshelf::PaletteCheck {

QList<ColorItem> namedByRole(const QList<ColorItem>& colors) {
    QHash<QUuid, QString> roles;
    for (const ColorUtils::RoleSuggestion& suggestion : ColorUtils::roleSuggestions(colors)) {
        if (!suggestion.suggestions.isEmpty() && !roles.contains(suggestion.colorId)) {
            roles.insert(suggestion.colorId, suggestion.suggestions.first());
        }
    }
    QList<ColorItem> named = colors;
    for (ColorItem& color : named) {
        const auto role = roles.constFind(color.id);
        // A locked colour keeps its name but still holds its role, so the others don't get it.
        if (color.isLocked || role == roles.constEnd()) {
            continue;
        }
        color.name = *role;
        color.isAutoNamed = false;
    }
    return named;
}

} // namespace hueshelf::PaletteCheck
