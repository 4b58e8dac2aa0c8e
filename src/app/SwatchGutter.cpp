#include "app/SwatchGutter.h"

#include "app/BarLayout.h"
#include "app/BarTooltip.h"

#include <QPainter>

namespace hueshelf::app {

SwatchGutter::SwatchGutter(const QUuid& colorId, bool showsDivider, const QString& label,
                           QWidget* parent)
    : QWidget(parent), m_colorId(colorId), m_showsDivider(showsDivider) {
    setFixedSize(hitSize());
    setAttribute(Qt::WA_Hover);
    if (showsDivider)
        BarTooltip::attach(this, label.isEmpty() ? BarLayout::gutterFallbackTooltip : label);
}

QSize SwatchGutter::hitSize() const {
    return m_showsDivider ? QSize(dividerHitWidth, dividerHitHeight)
                          : QSize(plainWidth, plainHeight);
}

void SwatchGutter::paintEvent(QPaintEvent*) {
    if (!m_showsDivider)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal thickness = m_hovering ? 2.0 : 1.5;
    const qreal length = m_hovering ? 26.0 : 24.0;
    QColor ink = palette().color(QPalette::Text);
    ink.setAlphaF(m_hovering ? 0.6f : 0.3f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawRoundedRect(
        QRectF((width() - thickness) / 2, (height() - length) / 2, thickness, length),
        thickness / 2, thickness / 2);
}

void SwatchGutter::enterEvent(QEnterEvent* event) {
    QWidget::enterEvent(event);
    // Without a divider the gutter is plain spacing and lights nothing.
    if (!m_showsDivider)
        return;
    m_hovering = true;
    update();
    Q_EMIT hovered(m_colorId, true);
}

void SwatchGutter::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    if (!m_showsDivider)
        return;
    m_hovering = false;
    update();
    Q_EMIT hovered(m_colorId, false);
}

} // namespace hueshelf::app
