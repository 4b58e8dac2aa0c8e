#include "app/BarTooltip.h"

#include "app/BarTooltipController.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QVariant>
#include <QWidget>

namespace hueshelf::app {

namespace {

constexpr char kTextProperty[] = "hueshelfBarTooltip";
constexpr char kCardProperty[] = "hueshelfBarTooltipCard";

bool isTrackedButton(const QEvent* event) {
    const auto button = static_cast<const QMouseEvent*>(event)->button();
    return button == Qt::LeftButton || button == Qt::RightButton;
}

} // namespace

BarTooltip::BarTooltip(BarTooltipController& controller, QObject* parent)
    : QObject(parent), m_controller(controller) {
    if (QCoreApplication* application = QCoreApplication::instance())
        application->installEventFilter(this);
}

BarTooltip::~BarTooltip() {
    disconnect(m_hoveredGone);
    if (QCoreApplication* application = QCoreApplication::instance())
        application->removeEventFilter(this);
}

void BarTooltip::attach(QWidget* widget, const QString& text) {
    if (!widget)
        return;
    widget->setProperty(kCardProperty, QVariant());
    widget->setProperty(kTextProperty, text.isEmpty() ? QVariant() : QVariant(text));
    widget->setAccessibleName(text);
}

void BarTooltip::attachCard(QWidget* widget, CardSource card) {
    if (!widget)
        return;
    widget->setProperty(kTextProperty, QVariant());
    widget->setProperty(kCardProperty, card ? QVariant::fromValue(std::move(card)) : QVariant());
}

QString BarTooltip::textOf(const QWidget* widget) {
    return widget ? widget->property(kTextProperty).toString() : QString();
}

std::optional<TooltipContent> BarTooltip::contentOf(const QWidget* widget) {
    if (!widget)
        return std::nullopt;
    const QVariant card = widget->property(kCardProperty);
    if (card.isValid())
        return card.value<CardSource>()();
    const QString text = textOf(widget);
    if (text.isEmpty())
        return std::nullopt;
    return text;
}

bool BarTooltip::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (isTrackedButton(event))
            m_controller.mouseDown();
        break;
    case QEvent::MouseButtonRelease:
        if (isTrackedButton(event))
            m_controller.mouseUp();
        break;
    case QEvent::Enter:
        if (watched->isWidgetType()) {
            auto* widget = static_cast<QWidget*>(watched);
            if (const std::optional<TooltipContent> content = contentOf(widget))
                hoverStarted(widget, *content);
        }
        break;
    case QEvent::Leave:
    case QEvent::Hide:
        if (watched == m_hovered)
            hoverEnded();
        break;
    default:
        break;
    }
    return false;
}

void BarTooltip::hoverStarted(QWidget* widget, const TooltipContent& content) {
    disconnect(m_hoveredGone);
    m_hovered = widget;
    m_hoveredGone = connect(widget, &QObject::destroyed, this, [this](QObject* gone) {
        if (gone == m_hovered)
            hoverEnded();
    });
    m_controller.show(content);
}

void BarTooltip::hoverEnded() {
    disconnect(m_hoveredGone);
    m_hovered = nullptr;
    m_controller.hide();
}

} // namespace hueshelf::app
