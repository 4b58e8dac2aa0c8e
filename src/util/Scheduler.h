#pragma once

#include <functional>
#include <memory>

namespace hueshelf {

namespace detail {
struct ScheduledTaskState {
    bool cancelled = false;
    bool finished = false;
    std::function<void()> onCancel;
};
} // namespace detail

// A cancellable handle to delayed or repeating work. Cancelling twice, or after the work ran,
// is harmless; a default-constructed handle is inactive.
class TaskHandle {
public:
    TaskHandle() = default;
    explicit TaskHandle(std::shared_ptr<detail::ScheduledTaskState> state)
        : m_state(std::move(state)) {}

    void cancel();
    bool isActive() const { return m_state && !m_state->cancelled && !m_state->finished; }

private:
    std::shared_ptr<detail::ScheduledTaskState> m_state;
};

// All delays of the program go through here, so that tests drive time by hand instead of
// sleeping. Work runs on the thread that owns the scheduler (the main thread).
class Scheduler {
public:
    using Task = std::function<void()>;

    virtual ~Scheduler() = default;
    virtual TaskHandle scheduleAfter(double seconds, Task task) = 0;
    virtual TaskHandle scheduleRepeating(double intervalSeconds, Task task) = 0;
};

} // namespace hueshelf
