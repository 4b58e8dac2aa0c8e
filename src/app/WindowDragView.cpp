#include "app/WindowDragView.h"

#include "app/BarPosition.h"
#include "app/BarPositionStore.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <optional>

namespace hueshelf::app {

namespace {

constexpr int kDotRows = 3;
constexpr int kDotColumns = 2;
constexpr qreal kDotDiameter = 2.5;
constexpr qreal kDotGap = 3.5;

std::optional<QRect> availableGeometry(const QScreen* screen) {
    if (!screen)
        return std::nullopt;
    return screen->availableGeometry();
}

} // namespace

WindowDragView::WindowDragView(QWidget* parent) : QWidget(parent) {
    setFixedWidth(gripWidth);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

QSize WindowDragView::sizeHint() const {
    return {gripWidth, 24};
}

void WindowDragView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::PlaceholderText));
    const qreal width = kDotColumns * kDotDiameter + (kDotColumns - 1) * kDotGap;
    const qreal height = kDotRows * kDotDiameter + (kDotRows - 1) * kDotGap;
    const QPointF corner((this->width() - width) / 2.0, (this->height() - height) / 2.0);
    for (int row = 0; row < kDotRows; ++row) {
        for (int column = 0; column < kDotColumns; ++column) {
            const QPointF at =
                corner + QPointF(column * (kDotDiameter + kDotGap), row * (kDotDiameter + kDotGap));
            painter.drawEllipse(QRectF(at, QSizeF(kDotDiameter, kDotDiameter)));
        }
    }
}

void WindowDragView::enterEvent(QEnterEvent* event) {
    if (!m_isDragging)
        setCursor(Qt::OpenHandCursor);
    QWidget::enterEvent(event);
}

void WindowDragView::leaveEvent(QEvent* event) {
    if (!m_isDragging)
        setCursor(Qt::ArrowCursor);
    QWidget::leaveEvent(event);
}

void WindowDragView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_isDragging = true;
    setCursor(Qt::ClosedHandCursor);
    m_initialMouseLocation = event->globalPosition().toPoint();
    m_initialWindowOrigin = window()->pos();
    event->accept();
}

void WindowDragView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_isDragging) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    const QRect frame = BarPosition::frameForDrag(
        availableGeometry(window()->screen()), availableGeometry(QGuiApplication::primaryScreen()));
    window()->move(BarPosition::draggedOrigin(m_initialWindowOrigin, m_initialMouseLocation,
                                              event->globalPosition().toPoint(), frame,
                                              window()->height()));
    event->accept();
}

void WindowDragView::mouseReleaseEvent(QMouseEvent* event) {
    if (!m_isDragging || event->button() != Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_isDragging = false;
    setCursor(rect().contains(event->position().toPoint()) ? Qt::OpenHandCursor : Qt::ArrowCursor);
    // The store itself refuses to write in an isolated run.
    if (m_store)
        m_store->save(window()->pos());
    event->accept();
}

} // namespace hueshelf::app
