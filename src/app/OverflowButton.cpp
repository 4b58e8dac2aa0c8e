#include "app/OverflowButton.h"

#include "app/BarLayout.h"
#include "app/WindowStyle.h"

#include <QPainter>

namespace hueshelf::app {

OverflowButton::OverflowButton(QWidget* parent) : QAbstractButton(parent) {
    setFixedSize(side, side);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    setAccessibleDescription(BarLayout::overflowAccessibleHint);
}

void OverflowButton::setHiddenCount(int count) {
    setText(QStringLiteral("+%1").arg(count));
    setAccessibleName(BarLayout::overflowAccessibleLabel(count));
    update();
}

void OverflowButton::setEmphasis(OverflowHoverMachine::ButtonEmphasis emphasis) {
    m_emphasis = emphasis;
    update();
}

void OverflowButton::paintEvent(QPaintEvent*) {
    using Emphasis = OverflowHoverMachine::ButtonEmphasis;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_emphasis == Emphasis::dimmed)
        painter.setOpacity(0.35);
    const QRectF box = QRectF(rect()).adjusted(1, 1, -1, -1);
    QColor fill = palette().color(QPalette::Text);
    fill.setAlphaF(isDown() ? 0.16f : 0.08f);
    painter.setBrush(fill);
    const bool emphasized = m_emphasis == Emphasis::emphasized;
    painter.setPen(emphasized ? QPen(WindowStyle::accent(), 2.0) : Qt::NoPen);
    painter.drawRoundedRect(box, 7, 7);
    QFont font = painter.font();
    font.setPointSizeF(10);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace hueshelf::app
