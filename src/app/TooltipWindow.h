#pragma once

#include "app/BarTooltipController.h"

#include <QSize>

#include <memory>

class QWidget;

namespace hueshelf::app {

class TooltipLabel;

// The one window that shows every tooltip of the program. It is made at the first tooltip and
// kept; later tooltips only change its text and place. It never takes the mouse or the focus.
class TooltipWindow final : public TooltipPresenter {
public:
    static constexpr double kPointSize = 11.0;
    static constexpr int kPaddingX = 8;
    static constexpr int kPaddingY = 5;
    static constexpr int kCornerRadius = 5;
    // The size used when the label has none of its own.
    static constexpr QSize kFallbackSize{80, 20};

    TooltipWindow();
    ~TooltipWindow() override;
    TooltipWindow(const TooltipWindow&) = delete;
    TooltipWindow& operator=(const TooltipWindow&) = delete;

    void present(const QString& text, const QPoint& pointer) override;
    void dismiss() override;

    // The window, absent before the first tooltip.
    QWidget* window() const;
    QString text() const;
    bool isVisible() const;

private:
    std::unique_ptr<TooltipLabel> m_label;
};

} // namespace hueshelf::app
