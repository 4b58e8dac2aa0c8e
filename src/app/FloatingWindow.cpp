#include "app/FloatingWindow.h"

#include "app/BarModel.h"
#include "app/BarPositionStore.h"
#include "app/BarTooltip.h"
#include "app/CompactColorSwatch.h"
#include "app/MenuFiller.h"
#include "app/WindowDragView.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMoveEvent>
#include <QPainter>
#include <QPainterPath>

namespace hueshelf::app {

namespace {

constexpr qreal kChromeRadius = 10.0;
constexpr int kSwatchGap = 6;
// Longer palette names are cut so the bar keeps its shape; the tooltip has the whole name.
constexpr int kNameMaxWidth = 160;

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

    auto* row = new QHBoxLayout(this);
    row->setSizeConstraint(QLayout::SetFixedSize);
    row->setContentsMargins(4, 8, 10, 8);
    row->setSpacing(10);

    m_dragView = new WindowDragView(this);
    row->addWidget(m_dragView);

    m_nameLabel = new QLabel(this);
    QFont font = m_nameLabel->font();
    font.setWeight(QFont::Medium);
    m_nameLabel->setFont(font);
    m_nameLabel->setForegroundRole(QPalette::PlaceholderText);
    row->addWidget(m_nameLabel);

    m_swatchRow = new QHBoxLayout();
    m_swatchRow->setSpacing(kSwatchGap);
    row->addLayout(m_swatchRow);

    connect(&m_model, &BarModel::changed, this, &FloatingWindow::rebuild);
    rebuild();
}

QString FloatingWindow::shownPaletteName() const {
    return m_nameLabel->text();
}

void FloatingWindow::rebuild() {
    const QString name = m_model.paletteName();
    const QString shown =
        m_nameLabel->fontMetrics().elidedText(name, Qt::ElideRight, kNameMaxWidth);
    m_nameLabel->setText(shown);
    BarTooltip::attach(m_nameLabel, shown == name ? QString() : name);

    // A click may be on its way through an old swatch, so old ones go once it has passed.
    for (CompactColorSwatch* old : std::as_const(m_swatches)) {
        m_swatchRow->removeWidget(old);
        old->hide();
        old->deleteLater();
    }
    m_swatches.clear();

    const QList<BarSwatch> swatches = m_model.swatches();
    for (const BarSwatch& swatch : swatches) {
        auto* widget = new CompactColorSwatch(swatch, this);
        connect(widget, &CompactColorSwatch::clicked, this,
                [this, id = swatch.id] { m_model.copyColor(id); });
        m_swatchRow->addWidget(widget);
        // Shown now rather than on the next turn of the loop, so the size below counts it.
        widget->show();
        m_swatches.append(widget);
    }
    layout()->activate();
}

void FloatingWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(palette().color(QPalette::Window));
    painter.setPen(QPen(palette().color(QPalette::Mid), 1.0));
    painter.drawPath(chromePath(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5)));
}

void FloatingWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // A mask rather than a translucent window: it gives round corners on X servers without a
    // compositor too, where translucent corners would show black.
    setMask(QRegion(chromePath(QRectF(rect())).toFillPolygon().toPolygon()));
}

void FloatingWindow::setPositionStore(BarPositionStore* store) {
    m_positionStore = store;
    m_dragView->setPositionStore(store);
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

} // namespace hueshelf::app
