#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace hueshelf::app::BarTooltipPlacement {

// Below the pointer, between the label's top edge and the pointer.
inline constexpr int kBelowPointer = 16;
// Above the pointer, between the label's bottom edge and the pointer, where there is no room
// below.
inline constexpr int kAbovePointer = 18;
// Kept between the label and the edges of the screen's visible area.
inline constexpr int kScreenMargin = 4;

// The label's top-left corner: centred under the pointer, or over it near the bottom of the
// screen, held inside `visibleFrame` (the visible area of the screen holding the pointer). With
// no such screen the position stands as it is.
QPoint topLeft(const QPoint& pointer, const QSize& labelSize,
               const std::optional<QRect>& visibleFrame);

} // namespace hueshelf::app::BarTooltipPlacement
