#include "util/Scheduler.h"

namespace hueshelf {

void TaskHandle::cancel() {
    if (!m_state || m_state->cancelled || m_state->finished)
        return;
    m_state->cancelled = true;
    if (auto onCancel = std::move(m_state->onCancel))
        onCancel();
}

} // namespace hueshelf
