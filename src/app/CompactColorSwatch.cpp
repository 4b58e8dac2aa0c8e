#include "app/CompactColorSwatch.h"

#include "app/BarTooltip.h"

#include <QPainter>

namespace hueshelf::app {

namespace {
constexpr qreal kCornerRadius = 7.0;
}

CompactColorSwatch::CompactColorSwatch(const BarSwatch& swatch, QWidget* parent)
    : QAbstractButton(parent), m_swatch(swatch) {
    setFixedSize(kSide, kSide);
    // The bar never takes the keyboard from the application in use.
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    BarTooltip::attach(this, m_swatch.name);
    // After the tooltip, which names the widget by its text alone.
    setAccessibleName(m_swatch.name + u", " + m_swatch.hex);
    setAttribute(Qt::WA_Hover);
}

void CompactColorSwatch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF square = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);

    painter.setBrush(m_swatch.displayColor);
    // A faint outline keeps a pale colour visible on a pale bar.
    QColor outline = palette().color(QPalette::Mid);
    outline.setAlphaF(0.5f);
    painter.setPen(QPen(outline, 1.0));
    painter.drawRoundedRect(square, kCornerRadius, kCornerRadius);

    if (underMouse() || isDown()) {
        QColor ink = m_swatch.labelIsDark ? QColor(0, 0, 0) : QColor(255, 255, 255);
        ink.setAlphaF(isDown() ? 0.7f : 0.45f);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(ink, 1.5));
        painter.drawRoundedRect(square.adjusted(2.5, 2.5, -2.5, -2.5), kCornerRadius - 2.5,
                                kCornerRadius - 2.5);
    }
}

} // namespace hueshelf::app
