#include "app/CompactColorSwatch.h"

#include "app/BarTooltip.h"
#include "app/SwatchAccessible.h"
#include "app/SwatchActions.h"
#include "app/SymbolIcons.h"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QVariantAnimation>

namespace hueshelf::app {

using namespace Qt::StringLiterals;

namespace {

constexpr qreal cornerRadius = 7.0;
// Room around the square for the scaled-up drawing and the drop ring.
constexpr qreal inset = 2.0;

QColor desaturated(const QColor& color, double saturation) {
    float h = 0, s = 0, l = 0, a = 0;
    color.getHslF(&h, &s, &l, &a);
    return QColor::fromHslF(h, static_cast<float>(s * saturation), l, a);
}

} // namespace

CompactColorSwatch::CompactColorSwatch(const BarSwatch& swatch, int width, QWidget* parent)
    : QWidget(parent), m_swatch(swatch), m_width(width) {
    setFixedSize(width, height);
    // The bar never takes the keyboard from the application in use.
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    setAcceptDrops(true);
    setAttribute(Qt::WA_Hover);
    BarTooltip::attach(this, m_swatch.name + u" \u2014 click to copy, right-click to edit"_s);
    // After the tooltip, which names the widget by its text alone.
    setAccessibleName(m_swatch.name + u", "_s + m_swatch.hex);
    setAccessibleDescription(u"Copies the color code. Right-click to edit."_s);
    m_state.isLocked = swatch.isLocked;
    SwatchAccessible::install();
}

void CompactColorSwatch::setGroupHighlight(bool dimmed, bool emphasized) {
    if (m_state.isDimmed == dimmed && m_state.isEmphasized == emphasized)
        return;
    m_state.isDimmed = dimmed;
    m_state.isEmphasized = emphasized;
    stateChanged();
}

void CompactColorSwatch::setCopiedFeedback(bool showing) {
    if (m_state.showingCopiedFeedback == showing)
        return;
    m_state.showingCopiedFeedback = showing;
    stateChanged();
}

void CompactColorSwatch::setReduceMotion(bool reduceMotion) {
    m_reduceMotion = reduceMotion;
    stateChanged();
}

void CompactColorSwatch::stateChanged() {
    const SwatchAppearance look = SwatchAppearance::of(m_state, m_reduceMotion);
    const bool emphasisChanged = m_state.isEmphasized != m_shownEmphasis;
    m_shownEmphasis = m_state.isEmphasized;
    animate(m_scaleAnimation, m_scale, look.scale, look.animates,
            SwatchAppearance::scaleTransition(emphasisChanged));
    animate(m_dimAnimation, m_dim, m_state.isDimmed ? 1.0 : 0.0, look.animates,
            SwatchAppearance::dimTransition());
    update();
}

void CompactColorSwatch::animate(QPointer<QVariantAnimation>& running, double& value, double target,
                                 bool animates, const SwatchTransition& how) {
    if (running)
        running->stop();
    if (!animates || qFuzzyCompare(value, target)) {
        value = target;
        return;
    }
    auto* animation = new QVariantAnimation(this);
    animation->setStartValue(value);
    animation->setEndValue(target);
    animation->setDuration(how.durationMs);
    animation->setEasingCurve(how.curve);
    // `value` is a member: the animation is a child and goes with the swatch.
    connect(animation, &QVariantAnimation::valueChanged, this, [this, &value](const QVariant& now) {
        value = now.toDouble();
        update();
    });
    running = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void CompactColorSwatch::paintEvent(QPaintEvent*) {
    const SwatchAppearance look = SwatchAppearance::of(m_state, m_reduceMotion);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto [opacity, saturation] = SwatchAppearance::fadeAt(m_dim);
    painter.setOpacity(opacity);

    const QRectF base = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    const QPointF centre = base.center();
    painter.translate(centre);
    painter.scale(m_scale, m_scale);
    painter.translate(-centre);

    if (look.shadow) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgbF(0, 0, 0, 0.2f));
        painter.drawRoundedRect(base.translated(0, 1.5), cornerRadius, cornerRadius);
    }
    const QColor fill =
        saturation < 1.0 ? desaturated(m_swatch.displayColor, saturation) : m_swatch.displayColor;
    painter.setBrush(fill);
    // A hairline keeps a pale colour visible on a pale bar.
    QColor outline = palette().color(QPalette::Mid);
    outline.setAlphaF(0.5f);
    painter.setPen(QPen(outline, 0.5));
    painter.drawRoundedRect(base, cornerRadius, cornerRadius);

    if (look.dropRing) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(QColor(u"#3b82f6"_s), 2.0));
        painter.drawRoundedRect(base, cornerRadius, cornerRadius);
    }
    if (look.lockBadge) {
        const QRectF badge(base.right() - 11, base.bottom() - 11, 10, 10);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgbF(0, 0, 0, 0.6f));
        painter.drawEllipse(badge);
        symbolIcon(u"lock.fill"_s, Qt::white)
            .paint(&painter, badge.adjusted(2, 2, -2, -2).toRect());
    }
    if (look.checkMark) {
        const QRectF mark(centre.x() - 8, centre.y() - 8, 16, 16);
        painter.setOpacity(opacity * 0.3);
        symbolIcon(u"checkmark"_s, Qt::black).paint(&painter, mark.translated(0, 1).toRect());
        painter.setOpacity(opacity);
        symbolIcon(u"checkmark"_s, Qt::white).paint(&painter, mark.toRect());
    }
}

void CompactColorSwatch::enterEvent(QEnterEvent* event) {
    QWidget::enterEvent(event);
    m_state.isHovered = true;
    stateChanged();
}

void CompactColorSwatch::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    m_state.isHovered = false;
    stateChanged();
}

void CompactColorSwatch::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) {
        Q_EMIT editRequested();
        event->accept();
        return;
    }
    if (event->button() == Qt::LeftButton) {
        m_pressed = true;
        m_pressPosition = event->position().toPoint();
        event->accept();
        return;
    }
    QWidget::mousePressEvent(event);
}

void CompactColorSwatch::mouseMoveEvent(QMouseEvent* event) {
    if (!m_pressed || !m_draggable)
        return;
    if ((event->position().toPoint() - m_pressPosition).manhattanLength() <
        QApplication::startDragDistance())
        return;
    m_pressed = false;
    startDrag();
}

void CompactColorSwatch::mouseReleaseEvent(QMouseEvent* event) {
    const bool wasPressed = std::exchange(m_pressed, false);
    if (event->button() == Qt::LeftButton && wasPressed &&
        rect().contains(event->position().toPoint()))
        Q_EMIT copyRequested();
}

void CompactColorSwatch::startDrag() {
    auto* mime = new QMimeData;
    mime->setText(SwatchActions::dragPayload(m_swatch.index));
    QPixmap preview(QSize(m_width, height) * devicePixelRatioF());
    preview.setDevicePixelRatio(devicePixelRatioF());
    preview.fill(Qt::transparent);
    {
        QPainter painter(&preview);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_swatch.displayColor);
        painter.drawRoundedRect(QRectF(0, 0, m_width, height), cornerRadius, cornerRadius);
    }
    auto* drag = new QDrag(this);
    drag->setMimeData(mime);
    drag->setPixmap(preview);
    drag->setHotSpot(QPoint(m_width / 2, height / 2));
    m_state.isBeingDragged = true;
    stateChanged();
    // The drop may rebuild the bar and this swatch with it.
    QPointer<CompactColorSwatch> self(this);
    drag->exec(Qt::MoveAction | Qt::CopyAction);
    if (CompactColorSwatch* swatch = self.data()) {
        swatch->m_state.isBeingDragged = false;
        swatch->stateChanged();
    }
}

void CompactColorSwatch::dragEnterEvent(QDragEnterEvent* event) {
    if (!event->mimeData()->hasText() || event->mimeData()->hasUrls()) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    m_state.isDropTarget = true;
    stateChanged();
}

void CompactColorSwatch::dragLeaveEvent(QDragLeaveEvent* event) {
    QWidget::dragLeaveEvent(event);
    m_state.isDropTarget = false;
    stateChanged();
}

void CompactColorSwatch::dropEvent(QDropEvent* event) {
    const QStringList items = {event->mimeData()->text()};
    const bool taken = m_dropHandler && m_dropHandler(items);
    if (taken)
        event->acceptProposedAction();
    else
        event->ignore();
    // Cleared on the next turn, as the taken drop may already have rebuilt this swatch.
    QPointer<CompactColorSwatch> self(this);
    QMetaObject::invokeMethod(
        this,
        [self] {
            if (CompactColorSwatch* swatch = self.data()) {
                swatch->m_state.isDropTarget = false;
                swatch->stateChanged();
            }
        },
        Qt::QueuedConnection);
}

} // namespace hueshelf::app
