#include "app/BarPosition.h"

#include <QtMath>

#include <algorithm>

namespace hueshelf::app::BarPosition {

namespace {

// Right and bottom as edges, not as Qt's last pixel inside: a frame 1920 wide at 0 ends at 1920.
double rightEdge(const QRect& frame) {
    return double(frame.x()) + frame.width();
}
double bottomEdge(const QRect& frame) {
    return double(frame.y()) + frame.height();
}

// The lower limit wins over the upper one, as in a frame too small for both.
double clamp(double value, double lower, double upper) {
    return std::max(lower, std::min(value, upper));
}

bool holds(const QRect& frame, QPointF point) {
    return point.x() >= frame.x() && point.x() < rightEdge(frame) && point.y() >= frame.y() &&
           point.y() < bottomEdge(frame);
}

QPointF defaultOriginF(const std::optional<QRect>& mainFrame, QSize windowSize) {
    const QRect frame = mainFrame.value_or(fallbackFrame);
    return {frame.x() + frame.width() / 2.0 - windowSize.width() / 2.0,
            double(frame.y()) + defaultTopDistance - windowSize.height()};
}

QPoint rounded(double x, double y) {
    return {qRound(x), qRound(y)};
}

} // namespace

QPoint defaultOrigin(const std::optional<QRect>& mainFrame, QSize windowSize) {
    const QPointF origin = defaultOriginF(mainFrame, windowSize);
    return rounded(origin.x(), origin.y());
}

QRect frameHolding(const Screens& screens, QPointF origin) {
    for (const QRect& frame : screens.frames) {
        if (holds(frame, origin))
            return frame;
    }
    return screens.mainFrame.value_or(fallbackFrame);
}

QPoint launchOrigin(const Screens& screens, QSize windowSize, const StoredPosition& stored) {
    QPointF origin = defaultOriginF(screens.mainFrame, windowSize);
    if (stored.x)
        origin.setX(*stored.x);
    if (stored.y)
        origin.setY(*stored.y);
    return clampForLaunch(origin, frameHolding(screens, origin), windowSize);
}

QPoint clampForLaunch(QPointF origin, const QRect& frame, QSize windowSize) {
    const double x = clamp(origin.x(), frame.x(), rightEdge(frame) - marginOnScreen);
    const double y = clamp(origin.y(), frame.y() + marginOnScreen - windowSize.height(),
                           bottomEdge(frame) - marginOnScreen - windowSize.height());
    return rounded(x, y);
}

QPoint clampForDrag(QPoint origin, const QRect& frame, int windowHeight) {
    const double x = clamp(origin.x(), frame.x(), rightEdge(frame) - marginOnScreen);
    const double y =
        clamp(origin.y(), frame.y(), bottomEdge(frame) - marginOnScreen - windowHeight);
    return rounded(x, y);
}

QRect frameForDrag(const std::optional<QRect>& windowScreen,
                   const std::optional<QRect>& mainFrame) {
    if (windowScreen)
        return *windowScreen;
    return mainFrame.value_or(fallbackFrame);
}

QPoint draggedOrigin(QPoint startOrigin, QPoint startPointer, QPoint pointer, const QRect& frame,
                     int windowHeight) {
    return clampForDrag(startOrigin + (pointer - startPointer), frame, windowHeight);
}

} // namespace hueshelf::app::BarPosition
