#include "platform/linux/SamplerWindow.h"

#include "platform/linux/GrabSampling.h"

#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <cmath>
#include <utility>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {
// The magnifier shows this many pixels each way, the middle one being the one a click takes.
constexpr int loupePixels = 11;
constexpr int loupeCell = 10;
constexpr int loupeSide = loupePixels * loupeCell;
constexpr int labelHeight = 22;
// Far enough from the pointer that the magnifier never hides the pixel it magnifies.
constexpr int loupeOffset = 24;

QString hexOf(const SampledColor& color) {
    const auto byte = [](double component) { return int(std::lround(component * 255)); };
    return QString::asprintf("#%02X%02X%02X", byte(color.red), byte(color.green), byte(color.blue));
}
} // namespace

SamplerWindow::SamplerWindow(QScreen* screen, QImage grab) : m_grab(std::move(grab)) {
    // Bypassing the window manager keeps panels and docks below the overlay and spares it
    // any decoration or placement of the manager's own.
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
             Qt::BypassWindowManagerHint);
    setScreen(screen);
    const QRect area = screen->geometry();
    setGeometry(area);
    setCursor(Qt::CrossCursor);
    // The grab is in device pixels; its own width against the screen's says how many there
    // are to a logical pixel, whatever ratio the grab was tagged with.
    if (!m_grab.isNull() && area.width() > 0)
        m_ratio = qreal(m_grab.width()) / area.width();
    m_grab.setDevicePixelRatio(m_ratio);
    const QPointF pointer = QCursor::pos(screen);
    if (containsGlobal(pointer))
        m_pointer = pointer - area.topLeft();
}

std::optional<SampledColor> SamplerWindow::colorAt(QPointF global) const {
    return GrabSampling::colorAt(m_grab, global - geometry().topLeft(), m_ratio);
}

bool SamplerWindow::containsGlobal(QPointF global) const {
    return QRectF(geometry()).contains(global);
}

void SamplerWindow::setPointer(QPointF global) {
    const QRect before = loupeRect();
    if (containsGlobal(global))
        m_pointer = global - geometry().topLeft();
    else
        m_pointer.reset();
    // Only the magnifier's old and new places are painted again, not the whole screen.
    update(QRegion(before) + QRegion(loupeRect()));
}

void SamplerWindow::takeInput() {
    m_wantsInput = true;
    tryGrab();
}

void SamplerWindow::releaseInput() {
    m_wantsInput = false;
    if (!m_hasInput)
        return;
    setKeyboardGrabEnabled(false);
    setMouseGrabEnabled(false);
    m_hasInput = false;
}

void SamplerWindow::tryGrab() {
    if (!m_wantsInput || m_hasInput || !isExposed())
        return;
    requestActivate();
    // A refused keyboard grab still leaves a picker that works by mouse.
    const bool keyboard = setKeyboardGrabEnabled(true);
    const bool mouse = setMouseGrabEnabled(true);
    m_hasInput = keyboard || mouse;
}

void SamplerWindow::exposeEvent(QExposeEvent* event) {
    QRasterWindow::exposeEvent(event);
    tryGrab();
}

QRect SamplerWindow::loupeRect() const {
    if (!m_pointer)
        return {};
    const QPoint at = m_pointer->toPoint();
    const QSize size(loupeSide + 2, loupeSide + labelHeight + 2);
    QPoint topLeft = at + QPoint(loupeOffset, loupeOffset);
    // Near the right or bottom edge it goes to the other side of the pointer.
    if (topLeft.x() + size.width() > width())
        topLeft.rx() = at.x() - loupeOffset - size.width();
    if (topLeft.y() + size.height() > height())
        topLeft.ry() = at.y() - loupeOffset - size.height();
    return QRect(topLeft, size);
}

void SamplerWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(QPointF(0, 0), m_grab);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (m_pointer && !m_grab.isNull())
        paintLoupe(painter);
}

void SamplerWindow::paintLoupe(QPainter& painter) const {
    const QRect frame = loupeRect();
    const QRect cells(frame.topLeft() + QPoint(1, 1), QSize(loupeSide, loupeSide));
    const QPoint centre = GrabSampling::devicePixel(*m_pointer, m_ratio, m_grab.size());
    // Pixels beyond the picture's edge come out black, so the middle cell stays the picked one.
    QImage pixels = m_grab.copy(centre.x() - loupePixels / 2, centre.y() - loupePixels / 2,
                                loupePixels, loupePixels);
    pixels.setDevicePixelRatio(1);

    painter.fillRect(frame, Qt::black);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(cells, pixels);

    painter.setPen(QPen(QColor(128, 128, 128, 90), 0));
    for (int line = 1; line < loupePixels; ++line) {
        const int offset = line * loupeCell;
        painter.drawLine(cells.left() + offset, cells.top(), cells.left() + offset, cells.bottom());
        painter.drawLine(cells.left(), cells.top() + offset, cells.right(), cells.top() + offset);
    }
    // The middle cell in black and white, so it shows on any colour.
    const QRect middle(cells.topLeft() + QPoint(loupePixels / 2, loupePixels / 2) * loupeCell,
                       QSize(loupeCell, loupeCell));
    painter.setPen(QPen(Qt::black, 1));
    painter.drawRect(middle.adjusted(-1, -1, 0, 0));
    painter.setPen(QPen(Qt::white, 1));
    painter.drawRect(middle.adjusted(0, 0, -1, -1));

    const QRect label(frame.left(), cells.bottom() + 1, frame.width(), labelHeight + 1);
    painter.fillRect(label, QColor(20, 20, 20));
    if (const auto color = GrabSampling::colorAt(m_grab, *m_pointer, m_ratio)) {
        painter.setPen(Qt::white);
        painter.drawText(label, Qt::AlignCenter, hexOf(*color));
    }
    painter.setPen(QPen(QColor(255, 255, 255, 160), 1));
    painter.drawRect(frame.adjusted(0, 0, -1, -1));
}

void SamplerWindow::mouseMoveEvent(QMouseEvent* event) {
    Q_EMIT pointerMoved(event->globalPosition());
}

void SamplerWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        m_pressed = true;
    else if (event->button() == Qt::RightButton)
        Q_EMIT cancelled();
}

// The pick waits for the release, so the release too stays with the overlay and no other
// program sees half a click.
void SamplerWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !std::exchange(m_pressed, false))
        return;
    Q_EMIT clicked(event->globalPosition());
}

void SamplerWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        Q_EMIT cancelled();
}

} // namespace hueshelf
