#pragma once

#include "app/SyncStatusCard.h"
#include "util/Clock.h"
#include "util/Scheduler.h"

#include <QPoint>
#include <QString>

#include <functional>
#include <optional>
#include <variant>

namespace hueshelf::app {

// What a tooltip shows: a line of text, or the sync button's card.
using TooltipContent = std::variant<QString, SyncStatusCard>;

// What shows and removes the one tooltip label on screen.
class TooltipPresenter {
public:
    virtual ~TooltipPresenter() = default;
    virtual void present(const QString& text, const QPoint& pointer) = 0;
    virtual void presentCard(const SyncStatusCard& card, const QPoint& pointer) = 0;
    virtual void dismiss() = 0;
};

// The rules of the program's one tooltip. The first control hovered waits a moment; moving on
// to the next while the label is up, or just after it went, changes the text at once. A held
// mouse button keeps every tooltip away, so none appears during a drag.
class BarTooltipController final {
public:
    using PointerPosition = std::function<QPoint()>;

    // Seconds before a tooltip appears.
    static constexpr double kDelay = 0.45;
    // Seconds after a tooltip went in which the next one appears at once.
    static constexpr double kHandoffWindow = 0.3;

    // Without a pointer source the cursor's global position is used.
    BarTooltipController(Scheduler& scheduler, const Clock& clock, TooltipPresenter& presenter,
                         PointerPosition pointer = {});
    ~BarTooltipController();
    BarTooltipController(const BarTooltipController&) = delete;
    BarTooltipController& operator=(const BarTooltipController&) = delete;

    // An explicit delay waits that long whatever is showing. A card follows the same rules as a
    // text.
    void show(const TooltipContent& content, std::optional<double> delay = std::nullopt);
    void hide();

    // A left or right button went down: the tooltip goes and none starts until the release.
    void mouseDown();
    void mouseUp();

    // While suppressed nothing shows; the overflow list sets this while it is open.
    void setSuppressed(bool suppressed) { m_suppressed = suppressed; }
    bool suppressed() const { return m_suppressed; }
    bool isMouseDown() const { return m_isMouseDown; }
    bool isShowing() const { return m_isShowing; }
    bool hasPending() const { return m_pendingWorkItem.isActive(); }
    // Milliseconds since 1970 when a visible tooltip last went away.
    std::optional<double> lastHiddenAt() const { return m_lastHiddenAt; }

private:
    void present(const TooltipContent& content);
    void cancelPending();

    Scheduler& m_scheduler;
    const Clock& m_clock;
    TooltipPresenter& m_presenter;
    PointerPosition m_pointer;
    TaskHandle m_pendingWorkItem;
    bool m_isShowing = false;
    std::optional<double> m_lastHiddenAt;
    bool m_suppressed = false;
    bool m_isMouseDown = false;
};

} // namespace hueshelf::app
