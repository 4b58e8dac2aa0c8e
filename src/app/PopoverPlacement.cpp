#include "app/PopoverPlacement.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace hueshelf::app::PopoverPlacement {

QPoint topLeft(const QRect& anchor, const QSize& size, const std::optional<QRect>& area) {
    int x = anchor.center().x() - size.width() / 2;
    const int below = anchor.bottom() + 1 + gap;
    if (!area)
        return {x, below};
    const bool fitsBelow = below + size.height() <= area->bottom() + 1;
    const int y = fitsBelow ? below : anchor.top() - gap - size.height();
    x = std::clamp(x, area->left(), std::max(area->left(), area->right() + 1 - size.width()));
    return {x, y};
}

std::optional<QRect> visibleAreaAt(const QPoint& point) {
    if (const QScreen* screen = QGuiApplication::screenAt(point))
        return screen->availableGeometry();
    return std::nullopt;
}

} // namespace hueshelf::app::PopoverPlacement
