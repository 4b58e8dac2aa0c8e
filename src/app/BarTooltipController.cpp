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

void BarTooltipController::show(const QString& text, std::optional<double> delay) {
    cancelPending();
    if (m_isMouseDown || m_suppressed)
        return;
    if (!delay) {
        if (m_isShowing) {
            present(text);
            return;
        }
        if (m_lastHiddenAt && m_clock.nowMs() - *m_lastHiddenAt < kHandoffWindow * 1000.0) {
            present(text);
            return;
        }
    }
    m_pendingWorkItem = m_scheduler.scheduleAfter(delay.value_or(kDelay), [this, text] {
        m_pendingWorkItem = {};
        // A press or the overflow list may have come in between.
        if (m_isMouseDown || m_suppressed)
            return;
        present(text);
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

void BarTooltipController::present(const QString& text) {
    m_presenter.present(text, m_pointer());
    m_isShowing = true;
}

void BarTooltipController::cancelPending() {
    m_pendingWorkItem.cancel();
    m_pendingWorkItem = {};
}

} // namespace hueshelf::app
