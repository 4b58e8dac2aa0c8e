#include "app/AddSwatchButton.h"

#include "app/BarLayout.h"
#include "app/BarTooltip.h"
#include "app/SymbolIcons.h"

#include <QPainter>

namespace hueshelf::app {

AddSwatchButton::AddSwatchButton(QWidget* parent) : QAbstractButton(parent) {
    setFixedSize(side, side);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    setPaletteLocked(false);
}

void AddSwatchButton::setPaletteLocked(bool locked) {
    m_locked = locked;
    BarTooltip::attach(this, BarLayout::addButtonLabel(locked));
    update();
}

void AddSwatchButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_locked)
        painter.setOpacity(0.4);
    QColor ink = palette().color(QPalette::PlaceholderText);
    QPen pen(ink, 1.0, Qt::DashLine);
    painter.setPen(pen);
    painter.setBrush(isDown() ? QColor::fromRgbF(0.5f, 0.5f, 0.5f, 0.12f)
                              : QColor(Qt::transparent));
    painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), 7, 7);
    symbolIcon(QStringLiteral("plus"), ink).paint(&painter, rect().adjusted(8, 8, -8, -8));
}

} // namespace hueshelf::app
