#pragma once

#include "ManualClock.h"
#include "util/Scheduler.h"

#include <cstdint>
#include <vector>

namespace hueshelf::testing {

// Runs scheduled work only when a test advances time, moving the manual clock to each task's
// due time first, so that work sees the clock it would see for real. Ties run in the order of
// scheduling.
class ManualScheduler final : public Scheduler {
public:
    explicit ManualScheduler(ManualClock& clock) : m_clock(clock) {}

    TaskHandle scheduleAfter(double seconds, Task task) override;
    TaskHandle scheduleRepeating(double intervalSeconds, Task task) override;

    // Advances the clock by `seconds`, running every task that falls due on the way.
    void advance(double seconds);
    // Runs tasks due now without moving the clock.
    void runDue() { advance(0.0); }
    int pendingCount() const;

private:
    struct Entry {
        double dueMs;
        double intervalMs; // 0 for one-shot
        std::uint64_t sequence;
        Task task;
        std::shared_ptr<detail::ScheduledTaskState> state;
    };
    TaskHandle add(double seconds, Task task, bool repeating);

    ManualClock& m_clock;
    std::vector<Entry> m_entries;
    std::uint64_t m_nextSequence = 0;
};

} // namespace hueshelf::testing
