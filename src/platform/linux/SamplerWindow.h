#pragma once

#include "platform/Platform.h"

#include <QImage>
#include <QPointF>
#include <QRasterWindow>
#include <QRect>

#include <optional>

class QPainter;
class QScreen;

namespace hueshelf {

// One screen of the sampling overlay: a borderless window over the whole screen that shows a
// still picture of it, taken before the window appeared, with a magnifier beside the pointer.
// It only reports what the user does; the overlay decides.
class SamplerWindow final : public QRasterWindow {
    Q_OBJECT

public:
    SamplerWindow(QScreen* screen, QImage grab);

    // The colour of the still picture under a point in global logical coordinates.
    std::optional<SampledColor> colorAt(QPointF global) const;
    bool containsGlobal(QPointF global) const;
    // Where the pointer is, in global logical coordinates; the magnifier follows it on the
    // window that contains it.
    void setPointer(QPointF global);
    // Keyboard and pointer are taken once the window is on the screen; the server refuses a
    // grab for a window it does not show yet.
    void takeInput();
    void releaseInput();

Q_SIGNALS:
    void pointerMoved(QPointF global);
    void clicked(QPointF global);
    void cancelled();

protected:
    void paintEvent(QPaintEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect loupeRect() const;
    void paintLoupe(QPainter& painter) const;
    void tryGrab();

    QImage m_grab;
    qreal m_ratio = 1;
    std::optional<QPointF> m_pointer; // local logical coordinates, while over this window
    bool m_wantsInput = false;
    bool m_hasInput = false;
    bool m_pressed = false;
};

} // namespace hueshelf
