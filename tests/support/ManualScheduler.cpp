#include "ManualScheduler.h"

#include <algorithm>

namespace hueshelf::testing {

TaskHandle ManualScheduler::scheduleAfter(double seconds, Task task) {
    return add(seconds, std::move(task), false);
}

TaskHandle ManualScheduler::scheduleRepeating(double intervalSeconds, Task task) {
    return add(intervalSeconds, std::move(task), true);
}

TaskHandle ManualScheduler::add(double seconds, Task task, bool repeating) {
    auto state = std::make_shared<detail::ScheduledTaskState>();
    const double delayMs = std::max(0.0, seconds) * 1000.0;
    m_entries.push_back({m_clock.nowMs() + delayMs, repeating ? std::max(delayMs, 1.0) : 0.0,
                         m_nextSequence++, std::move(task), state});
    return TaskHandle(state);
}

void ManualScheduler::advance(double seconds) {
    const double endMs = m_clock.nowMs() + seconds * 1000.0;
    for (;;) {
        std::erase_if(m_entries, [](const Entry& e) { return e.state->cancelled; });
        auto next = std::min_element(
            m_entries.begin(), m_entries.end(), [](const Entry& a, const Entry& b) {
                return a.dueMs < b.dueMs || (a.dueMs == b.dueMs && a.sequence < b.sequence);
            });
        if (next == m_entries.end() || next->dueMs > endMs)
            break;
        m_clock.setNowMs(std::max(m_clock.nowMs(), next->dueMs));
        // Copy out before running: the task may schedule more work and grow the vector.
        Task task = next->task;
        auto state = next->state;
        if (next->intervalMs > 0.0) {
            next->dueMs += next->intervalMs;
            next->sequence = m_nextSequence++;
        } else {
            state->finished = true;
            m_entries.erase(next);
        }
        task();
    }
    m_clock.setNowMs(std::max(m_clock.nowMs(), endMs));
}

int ManualScheduler::pendingCount() const {
    return static_cast<int>(std::count_if(m_entries.begin(), m_entries.end(),
                                          [](const Entry& e) { return !e.state->cancelled; }));
}

} // namespace hueshelf::testing
