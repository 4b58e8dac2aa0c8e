#include "sync/WriterIoQueue.h"

#include "model/PreferencesWriter.h"

#include <utility>

namespace hueshelf {

void WriterIoQueue::run(Work work) {
    m_writer.postThenDeliver(std::move(work));
}

} // namespace hueshelf
