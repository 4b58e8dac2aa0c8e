#pragma once

#include "app/BarTooltipController.h"

#include <QSize>

#include <memory>
#include <optional>

class QWidget;

namespace hueshelf::app {

class TooltipLabel;

// The one window that shows every tooltip of the program. It is made at the first tooltip and
// kept; later tooltips only change its content and place. It never takes the mouse or the focus.
class TooltipWindow final : public TooltipPresenter {
public:
    static constexpr double kPointSize = 11.0;
    static constexpr int kPaddingX = 8;
    static constexpr int kPaddingY = 5;
    static constexpr int kCornerRadius = 5;
    // The size used when the label has none of its own.
    static constexpr QSize kFallbackSize{80, 20};
    // The card's margin all round, and the room between its lines.
    static constexpr int kCardPadding = 8;
    static constexpr int kCardLineGap = 3;
    static constexpr int kDotDiameter = 8;
    static constexpr int kDotGap = 5;

    TooltipWindow();
    ~TooltipWindow() override;
    TooltipWindow(const TooltipWindow&) = delete;
    TooltipWindow& operator=(const TooltipWindow&) = delete;

    void present(const QString& text, const QPoint& pointer) override;
    void presentCard(const SyncStatusCard& card, const QPoint& pointer) override;
    void dismiss() override;

    // The window, absent before the first tooltip.
    QWidget* window() const;
    // The text shown, or empty while a card is.
    QString text() const;
    // The card shown, absent while a text is.
    std::optional<SyncStatusCard> card() const;
    bool isVisible() const;

private:
    void presentContent(const TooltipContent& content, const QPoint& pointer);

    std::unique_ptr<TooltipLabel> m_label;
};

} // namespace hueshelf::app
