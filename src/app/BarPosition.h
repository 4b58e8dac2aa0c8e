#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

// Where the bar sits. Every point and rectangle here is in Qt's global screen coordinates: the
// origin is the top-left corner of the primary screen, y grows downward, and a window's origin is
// its top-left corner. Screen frames are the screens' available geometries (the desktop's panels
// left out).
namespace hueshelf::app::BarPosition {

// The bar first appears this far below the top of the main screen's frame, and comes back there
// when its place is reset.
inline constexpr int defaultTopDistance = 150;
// However the bar is placed, this much of it stays on screen, so it can always be grabbed again.
inline constexpr int marginOnScreen = 60;
// Without any screen the arithmetic still needs one.
inline constexpr QRect fallbackFrame{0, 0, 1920, 1080};

// The remembered origin; each coordinate can be missing on its own.
struct StoredPosition {
    std::optional<double> x;
    std::optional<double> y;

    friend bool operator==(const StoredPosition&, const StoredPosition&) = default;
};

// The screens as the arithmetic sees them: the main one's frame (absent when there is none) and
// the frames of all screens in the desktop's order.
struct Screens {
    std::optional<QRect> mainFrame;
    QList<QRect> frames;
};

// Centred on the main screen's frame, with the window's bottom edge `defaultTopDistance` below
// the frame's top (the rule was made for an origin at the bottom-left corner).
QPoint defaultOrigin(const std::optional<QRect>& mainFrame, QSize windowSize);

// The place of a bar of `windowSize` at launch: the default origin with the stored coordinates
// put over it one by one, kept on the first screen that holds it (else the main screen) by the
// launch clamp below.
QPoint launchOrigin(const Screens& screens, QSize windowSize, const StoredPosition& stored);

// The first frame that holds `origin`, else the main frame, else the fallback.
QRect frameHolding(const Screens& screens, QPointF origin);

// Launch clamp. Sideways the bar may hang off the right edge, with a grip of `marginOnScreen`
// left on screen. Vertically the rule was first made for a window whose origin is its
// bottom-left corner in a y-up space, where it keeps that corner between 60 above the frame's
// bottom and 60 below its top. Here the same rule holds the window's bottom edge (top + height)
// between 60 below the frame's top and 60 above the frame's bottom, so the top-left y stays in
// [top + 60 - height, bottom - 60 - height]. Where a frame is too small for both, the upper and
// left limits win.
QPoint clampForLaunch(QPointF origin, const QRect& frame, QSize windowSize);

// Drag clamp. Sideways as at launch; vertically the whole window stays below the frame's top and
// its bottom edge at least `marginOnScreen` above the frame's bottom, so y stays in
// [top, bottom - 60 - height].
QPoint clampForDrag(QPoint origin, const QRect& frame, int windowHeight);

// The frame a drag is held to: the window's own screen, else the main screen, else the fallback.
QRect frameForDrag(const std::optional<QRect>& windowScreen, const std::optional<QRect>& mainFrame);

// Where a drag puts the window: where it started plus the pointer's travel, clamped.
QPoint draggedOrigin(QPoint startOrigin, QPoint startPointer, QPoint pointer, const QRect& frame,
                     int windowHeight);

// "Move the Bar Back to the Middle": the default origin, whatever was stored.
inline QPoint resetOrigin(const std::optional<QRect>& mainFrame, QSize windowSize) {
    return defaultOrigin(mainFrame, windowSize);
}

} // namespace hueshelf::app::BarPosition
