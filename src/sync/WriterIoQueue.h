#pragma once

#include "sync/IoQueue.h"

namespace hueshelf {

class PreferencesWriter;

// The store's writer thread as the queue for sync folder reads, so a read waits for the file
// work before it and its result reaches the main thread in order with the writes' completions
// (and is delivered by the writer's drain at the end of a run or a command).
class WriterIoQueue final : public IoQueue {
public:
    explicit WriterIoQueue(PreferencesWriter& writer) : m_writer(writer) {}

    void run(Work work) override;

private:
    PreferencesWriter& m_writer;
};

} // namespace hueshelf
