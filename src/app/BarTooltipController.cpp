#include "app/BarTooltipController.h"

#include <QCursor>

namespace hueshelf::app {

BarTooltipController::BarTooltipController(Scheduler& scheduler, const Clock& clock,
                                           TooltipPresenter& presenter, PointerPosition pointer)
    : m_scheduler(scheduler), m_clock(clock), m_presenter(presenter),
      m_pointer(pointer ? std::move(pointer) : PointerPosition([] { return QCursor::pos(); })) {}

BarTooltipController::~BarTooltipController() {
    cancelPending();
}

void BarTooltipController::show(const TooltipContent& content, std::optional<double> delay) {
    cancelPending();
    if (m_isMouseDown || m_suppressed)
        return;
    if (!delay) {
        if (m_isShowing) {
            present(content);
            return;
        }
        if (m_lastHiddenAt && m_clock.nowMs() - *m_lastHiddenAt < kHandoffWindow * 1000.0) {
            present(content);
            return;
        }
    }
    m_pendingWorkItem = m_scheduler.scheduleAfter(delay.value_or(kDelay), [this, content] {
        m_pendingWorkItem = {};
        // A press or the overflow list may have come in between.
        if (m_isMouseDown || m_suppressed)
            return;
        present(content);
    });
}

void BarTooltipController::hide() {
    cancelPending();
    // Only a real disappearance opens the hand-off window.
    if (!m_isShowing)
        return;
    m_lastHiddenAt = m_clock.nowMs();
    m_isShowing = false;
    m_presenter.dismiss();
}

void BarTooltipController::mouseDown() {
    m_isMouseDown = true;
    hide();
}

void BarTooltipController::mouseUp() {
    m_isMouseDown = false;
}

void BarTooltipController::present(const TooltipContent& content) {
    const QPoint pointer = m_pointer();
    if (const auto* card = std::get_if<SyncStatusCard>(&content))
        m_presenter.presentCard(*card, pointer);
    else
        m_presenter.present(std::get<QString>(content), pointer);
    m_isShowing = true;
}

void BarTooltipController::cancelPending() {
    m_pendingWorkItem.cancel();
    m_pendingWorkItem = {};
}

} // namespace hueshelf::app
