#include "app/FloatingWindow.h"

#include "app/BarModel.h"
#include "app/BarPositionStore.h"
#include "app/FloatingHueShelfView.h"
#include "app/MenuFiller.h"
#include "app/PaletteChip.h"
#include "app/WindowDragView.h"
#include "app/WindowStyle.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QMoveEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVariantAnimation>

namespace hueshelf::app {

namespace {

constexpr qreal kChromeRadius = 10.0;

QPainterPath chromePath(const QRectF& rect) {
    QPainterPath path;
    path.addRoundedRect(rect, kChromeRadius, kChromeRadius);
    return path;
}

} // namespace

FloatingWindow::FloatingWindow(BarModel& model, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::WindowDoesNotAcceptFocus),
      m_model(model) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setWindowTitle(QStringLiteral("HueShelf"));
    setAcceptDrops(true);

    m_view = new FloatingHueShelfView(model, this);
    connect(&m_model, &BarModel::changed, this, &FloatingWindow::updateWidth);
    updateWidth();
}

QSize FloatingWindow::sizeHint() const {
    return {m_model.barWidth(BarLayout::systemTextWidth()), barHeight};
}

void FloatingWindow::updateWidth() {
    // Arithmetic from the name, the count and the sync flag: no layout pass is waited for.
    setFixedSize(sizeHint());
}

WindowDragView* FloatingWindow::dragView() const {
    return m_view->dragView();
}

QList<CompactColorSwatch*> FloatingWindow::swatchWidgets() const {
    return m_view->swatchWidgets();
}

QString FloatingWindow::shownPaletteName() const {
    return m_view->paletteChip()->shownName();
}

void FloatingWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath chrome = chromePath(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.setBrush(palette().color(QPalette::Window));
    painter.setPen(QPen(palette().color(QPalette::Mid), 1.0));
    painter.drawPath(chrome);
    if (m_dropHoverOpacity > 0.0) {
        painter.setOpacity(m_dropHoverOpacity);
        QColor fill = WindowStyle::accent();
        fill.setAlphaF(0.06f);
        painter.setBrush(fill);
        painter.setPen(QPen(WindowStyle::accent(), 2.0));
        painter.drawPath(chromePath(QRectF(rect()).adjusted(1, 1, -1, -1)));
    }
}

void FloatingWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_view->setGeometry(m_view->x(), 2, width(), height() - 4);
    // A mask rather than a translucent window: it gives round corners on X servers without a
    // compositor too, where translucent corners would show black.
    setMask(QRegion(chromePath(QRectF(rect())).toFillPolygon().toPolygon()));
}

void FloatingWindow::setPositionStore(BarPositionStore* store) {
    m_positionStore = store;
    m_view->dragView()->setPositionStore(store);
}

void FloatingWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    // A move held back while the window was hidden arrives at show with both positions equal:
    // that is the launch's placing, not a move.
    if (!m_positionStore || event->pos() == event->oldPos())
        return;
    // Stored on a later turn of the loop, where the window's place has settled.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_positionStore)
                m_positionStore->save(pos());
        },
        Qt::QueuedConnection);
}

void FloatingWindow::contextMenuEvent(QContextMenuEvent* event) {
    if (!m_menuProvider) {
        event->ignore();
        return;
    }
    // Not exec(): the menu's actions may rebuild this bar, which must not happen inside the
    // event that opened it.
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu(*menu, m_menuProvider());
    menu->popup(event->globalPos());
    event->accept();
}

void FloatingWindow::setBarDropHover(bool hover) {
    if (m_isBarDropHover == hover)
        return;
    m_isBarDropHover = hover;
    if (m_dropHoverFade)
        m_dropHoverFade->stop();
    const double target = hover ? 1.0 : 0.0;
    if (m_model.reduceMotion()) {
        m_dropHoverOpacity = target;
        update();
        return;
    }
    auto* fade = new QVariantAnimation(this);
    fade->setStartValue(m_dropHoverOpacity);
    fade->setEndValue(target);
    fade->setDuration(200);
    connect(fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_dropHoverOpacity = value.toDouble();
        update();
    });
    m_dropHoverFade = fade;
    fade->start(QAbstractAnimation::DeleteWhenStopped);
}

void FloatingWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!event->mimeData()->hasUrls()) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    setBarDropHover(true);
}

void FloatingWindow::dragLeaveEvent(QDragLeaveEvent* event) {
    QWidget::dragLeaveEvent(event);
    setBarDropHover(false);
}

void FloatingWindow::dropEvent(QDropEvent* event) {
    setBarDropHover(false);
    if (m_model.drops().handleBarDrop(event->mimeData()->urls()))
        event->acceptProposedAction();
    else
        event->ignore();
}

} // namespace hueshelf::app
