#include "app/OverflowPopover.h"

#include "app/BarLayout.h"
#include "app/CompactColorSwatch.h"
#include "app/PopoverPlacement.h"
#include "app/WindowStyle.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace hueshelf::app {

OverflowPopover::OverflowPopover(SwatchFactory factory, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::WindowDoesNotAcceptFocus),
      m_factory(std::move(factory)) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::NoFocus);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(12, 10, 12, 12);
    column->setSpacing(8);
    column->setSizeConstraint(QLayout::SetFixedSize);
    // A press anywhere else in the program ends the list, as a popover's would.
    qApp->installEventFilter(this);
}

OverflowPopover::~OverflowPopover() {
    qApp->removeEventFilter(this);
}

void OverflowPopover::setContent(const QList<PaletteGroups::OverflowSection>& sections,
                                 const QList<BarSwatch>& swatches) {
    auto* column = static_cast<QVBoxLayout*>(layout());
    while (QLayoutItem* item = column->takeAt(0)) {
        if (QWidget* widget = item->widget()) {
            widget->hide();
            widget->deleteLater();
        }
        delete item;
    }
    m_swatches.clear();
    m_sections.clear();
    m_columns = BarLayout::overflowColumns(sections);

    for (const PaletteGroups::OverflowSection& section : sections) {
        auto* box = new QWidget(this);
        box->setAttribute(Qt::WA_Hover);
        box->installEventFilter(this);
        auto* boxColumn = new QVBoxLayout(box);
        boxColumn->setContentsMargins(0, 0, 0, 0);
        boxColumn->setSpacing(4);
        auto* title = new QLabel(section.title, box);
        WindowStyle::makeSecondary(*title, 0.85);
        boxColumn->addWidget(title);
        auto* grid = new QGridLayout();
        grid->setHorizontalSpacing(BarLayout::overflowSwatchGap);
        grid->setVerticalSpacing(BarLayout::overflowSwatchGap);
        int cell = 0;
        for (const QUuid& id : section.ids) {
            const auto swatch = std::find_if(swatches.cbegin(), swatches.cend(),
                                             [&](const BarSwatch& s) { return s.id == id; });
            if (swatch == swatches.cend())
                continue;
            CompactColorSwatch* widget = m_factory(*swatch, box);
            grid->addWidget(widget, cell / m_columns, cell % m_columns);
            m_swatches.append(widget);
            ++cell;
        }
        boxColumn->addLayout(grid);
        column->addWidget(box);
        m_sections.append({box, QSet<QUuid>(section.allIDs.cbegin(), section.allIDs.cend())});
    }
    setFixedWidth(BarLayout::overflowPopoverWidth(m_columns));
    adjustSize();
}

void OverflowPopover::showAt(const QRect& anchor) {
    adjustSize();
    move(PopoverPlacement::topLeft(anchor, size(),
                                   PopoverPlacement::visibleAreaAt(anchor.center())));
    show();
    raise();
}

void OverflowPopover::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(palette().color(QPalette::Window));
    painter.setPen(QPen(palette().color(QPalette::Mid), 1.0));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 10, 10);
}

void OverflowPopover::enterEvent(QEnterEvent* event) {
    QWidget::enterEvent(event);
    Q_EMIT pointerInsideChanged(true);
}

void OverflowPopover::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    Q_EMIT pointerInsideChanged(false);
}

bool OverflowPopover::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && isVisible()) {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget && widget->window() != this) {
            const QPoint global = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
            if (!frameGeometry().contains(global))
                Q_EMIT dismissed(global);
        }
    }
    for (const auto& [box, ids] : std::as_const(m_sections)) {
        if (watched != box)
            continue;
        if (event->type() == QEvent::Enter)
            Q_EMIT hoveredGroupChanged(ids);
        else if (event->type() == QEvent::Leave)
            Q_EMIT hoveredGroupChanged(std::nullopt);
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace hueshelf::app
