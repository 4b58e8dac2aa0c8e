#pragma once

#include "sync/IoQueue.h"

#include <utility>

namespace hueshelf {

// Reads the folder on the calling thread and hands the result over at once. For a command on
// the command line, which has no event loop to come back to and waits for its pass anyway.
class InlineIoQueue final : public IoQueue {
public:
    void run(Work work) override {
        const MainThreadStep step = std::move(work)();
        step();
    }
};

} // namespace hueshelf
