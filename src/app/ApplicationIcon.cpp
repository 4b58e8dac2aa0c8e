#include "app/ApplicationIcon.h"

#include "app/SymbolIcons.h"

#include <QPainter>
#include <QPixmap>

namespace hueshelf::app {

QIcon applicationIcon() {
    // Through the symbol table, which also makes sure the resources are registered.
    return QIcon(symbolIconPath(QStringLiteral("MenuBarIcon")));
}

QIcon highlightedApplicationIcon(const QColor& plate) {
    const QIcon plain = applicationIcon();
    QIcon highlighted;
    // The sizes trays ask for; the drawing keeps a margin on the plate so it doesn't touch the
    // plate's rounded edge.
    for (const int side : {16, 22, 24, 32, 48, 64}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(plate);
        const double radius = side * 0.22;
        painter.drawRoundedRect(QRectF(0, 0, side, side), radius, radius);
        const int margin = qMax(1, side / 8);
        plain.paint(&painter, QRect(margin, margin, side - 2 * margin, side - 2 * margin));
        painter.end();
        highlighted.addPixmap(pixmap);
    }
    return highlighted;
}

} // namespace hueshelf::app
