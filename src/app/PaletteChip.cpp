#include "app/PaletteChip.h"

#include "app/BarLayout.h"
#include "app/BarTooltip.h"
#include "app/SymbolIcons.h"

#include <QPainter>

namespace hueshelf::app {

namespace {

constexpr int chevronSide = 10;
constexpr int padding = 8;

} // namespace

PaletteChip::PaletteChip(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    QFont chipFont = font();
    chipFont.setPointSizeF(11);
    setFont(chipFont);
}

void PaletteChip::setPaletteName(const QString& name) {
    m_shown = fontMetrics().elidedText(name, Qt::ElideRight, BarLayout::chipNameMaxWidth);
    BarTooltip::attach(this, BarLayout::chipTooltip(name, BarLayout::systemTextWidth()));
    setAccessibleName(BarLayout::chipAccessibleLabel(name));
    updateGeometry();
    update();
}

QSize PaletteChip::sizeHint() const {
    const int text = fontMetrics().horizontalAdvance(m_shown);
    return {padding + text + 4 + chevronSide + padding, 24};
}

void PaletteChip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_hovered || isDown()) {
        QColor fill = palette().color(QPalette::Text);
        fill.setAlphaF(isDown() ? 0.14f : 0.07f);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    }
    painter.setPen(palette().color(QPalette::Text));
    const QRect textRect(padding, 0, width() - 2 * padding - chevronSide - 4, height());
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft, m_shown);
    const QRect chevron(width() - padding - chevronSide, (height() - chevronSide) / 2, chevronSide,
                        chevronSide);
    symbolIcon(QStringLiteral("chevron.down"), palette().color(QPalette::PlaceholderText))
        .paint(&painter, chevron);
}

void PaletteChip::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    m_hovered = true;
    update();
}

void PaletteChip::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    m_hovered = false;
    update();
}

} // namespace hueshelf::app
