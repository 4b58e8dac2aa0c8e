#include "app/PopoverPlacement.h"

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

} // namespace hueshelf::app::PopoverPlacement
