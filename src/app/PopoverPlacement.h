#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace hueshelf::app::PopoverPlacement {

// Between a popover and the control it belongs to.
inline constexpr int gap = 8;

// The popover's top-left corner: centred under `anchor` (a global frame) where the screen's
// visible area has room below, otherwise over it, and held inside the area from left to right.
// With no area known it goes under the anchor as it stands.
QPoint topLeft(const QRect& anchor, const QSize& size, const std::optional<QRect>& area);

// The visible area (without panels and docks) of the screen under `point`; none off every
// screen, where the placements above keep what they computed.
std::optional<QRect> visibleAreaAt(const QPoint& point);

} // namespace hueshelf::app::PopoverPlacement
