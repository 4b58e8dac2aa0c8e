#include "app/BarTooltipPlacement.h"

#include <algorithm>

namespace hueshelf::app::BarTooltipPlacement {

QPoint topLeft(const QPoint& pointer, const QSize& labelSize,
               const std::optional<QRect>& visibleFrame) {
    const int width = labelSize.width();
    const int height = labelSize.height();
    int x = pointer.x() - width / 2;
    int y = pointer.y() + kBelowPointer;
    if (!visibleFrame)
        return {x, y};
    const int left = visibleFrame->x();
    const int right = visibleFrame->x() + visibleFrame->width();
    const int bottom = visibleFrame->y() + visibleFrame->height();
    // Left first, then right: a label wider than the screen ends up held against the right.
    x = std::max(x, left + kScreenMargin);
    x = std::min(x, right - width - kScreenMargin);
    if (y + height > bottom - kScreenMargin)
        y = pointer.y() - kAbovePointer - height;
    return {x, y};
}

} // namespace hueshelf::app::BarTooltipPlacement
