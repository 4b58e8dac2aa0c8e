#pragma once

#include "app/BarTooltipController.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace hueshelf::app {

// Gives widgets the bar's tooltip. One instance watches the whole application: hovering a widget
// that carries a tooltip text or card asks the controller to show it, leaving it or its going away
// asks it to hide, and a left or right press anywhere hides it until the release. Within Qt the
// release goes to the widget that got the press, so one outside the window is seen as well.
class BarTooltip final : public QObject {
    Q_OBJECT
public:
    explicit BarTooltip(BarTooltipController& controller, QObject* parent = nullptr);
    ~BarTooltip() override;

    // The text doubles as the widget's accessible name. An empty text takes the tooltip away.
    static void attach(QWidget* widget, const QString& text);
    // A card in place of a text, made when the hover starts so that its times are those of the
    // moment. The widget keeps its own accessible name.
    using CardSource = std::function<SyncStatusCard()>;
    static void attachCard(QWidget* widget, CardSource card);
    // The text, or empty where there is none or a card.
    static QString textOf(const QWidget* widget);
    // What hovering the widget asks for now; absent without a tooltip.
    static std::optional<TooltipContent> contentOf(const QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void hoverStarted(QWidget* widget, const TooltipContent& content);
    void hoverEnded();

    BarTooltipController& m_controller;
    // Compared only, never followed: it may be mid-destruction when its signal arrives.
    const QObject* m_hovered = nullptr;
    QMetaObject::Connection m_hoveredGone;
};

} // namespace hueshelf::app
