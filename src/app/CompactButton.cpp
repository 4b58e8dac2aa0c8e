#include "app/CompactButton.h"

#include "app/BarTooltip.h"
#include "app/SymbolIcons.h"

#include <QPainter>

namespace hueshelf::app {

CompactButton::CompactButton(const QString& symbol, const QString& label, QWidget* parent)
    : QAbstractButton(parent) {
    setFixedSize(side, side);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setSymbol(symbol);
    setLabel(label);
}

void CompactButton::setSymbol(const QString& symbol, const QColor& tint) {
    m_symbol = symbol;
    m_tint = tint;
    update();
}

void CompactButton::setLabel(const QString& label) {
    BarTooltip::attach(this, label);
}

void CompactButton::setBackdrop(const QColor& backdrop) {
    m_backdrop = backdrop;
    update();
}

void CompactButton::setDimmed(bool dimmed) {
    m_dimmed = dimmed;
    update();
}

void CompactButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QColor fill = m_backdrop;
    if (!fill.isValid() && (m_hovered || isDown())) {
        fill = palette().color(QPalette::Text);
        fill.setAlphaF(isDown() ? 0.16f : 0.08f);
    }
    if (fill.isValid()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(box, 6, 6);
    }
    if (m_dimmed)
        painter.setOpacity(0.4);
    const QColor ink = m_tint.isValid() ? m_tint : palette().color(QPalette::PlaceholderText);
    const int glyph = 14;
    const QRect target((width() - glyph) / 2, (height() - glyph) / 2, glyph, glyph);
    symbolIcon(m_symbol, ink).paint(&painter, target);
}

void CompactButton::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    m_hovered = true;
    update();
}

void CompactButton::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    m_hovered = false;
    update();
}

} // namespace hueshelf::app
