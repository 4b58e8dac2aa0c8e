#pragma once

#include <functional>

namespace hueshelf {

// Where the sync folder is read off the main thread: the store's ioQueue in a real run, behind
// the writes of the preferences file that were handed over before. The read answers the step
// that takes its result back on the main thread.
class IoQueue {
public:
    using MainThreadStep = std::function<void()>;
    using Work = std::function<MainThreadStep()>;

    virtual ~IoQueue() = default;
    virtual void run(Work work) = 0;
};

} // namespace hueshelf
