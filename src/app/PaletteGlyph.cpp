#include "app/PaletteGlyph.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace hueshelf::app {

namespace {

QPixmap drawGlyph(int side) {
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / 32.0, side / 32.0);

    // The board, with the thumb hole cut out of it.
    QPainterPath board;
    board.addEllipse(QRectF(2, 4, 28, 24));
    QPainterPath thumbHole;
    thumbHole.addEllipse(QRectF(17, 17, 7, 6));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(u"#3B8077"));
    painter.drawPath(board.subtracted(thumbHole));

    const QColor paints[] = {QColor(u"#FFA69E"), QColor(u"#FAF3DD"), QColor(u"#B8F2E6")};
    const QPointF spots[] = {{9.5, 16.5}, {12.5, 9.5}, {20.0, 9.0}};
    for (int i = 0; i < 3; ++i) {
        painter.setBrush(paints[i]);
        painter.drawEllipse(spots[i], 3.2, 3.2);
    }
    return pixmap;
}

} // namespace

QIcon paletteGlyphIcon() {
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48, 64})
        icon.addPixmap(drawGlyph(side));
    return icon;
}

} // namespace hueshelf::app
