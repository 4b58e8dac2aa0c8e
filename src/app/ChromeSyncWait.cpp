#include "app/ChromeSyncWait.h"

#include "model/ColorStorage.h"
#include "model/ExternalChangeMonitor.h"

#include <utility>

namespace hueshelf::app {

ChromeSyncWait::ChromeSyncWait(ColorStorage& storage, ExternalChangeMonitor& monitor,
                               Scheduler& scheduler)
    : m_storage(storage), m_monitor(monitor), m_scheduler(scheduler) {}

ChromeSyncWait::~ChromeSyncWait() {
    stop();
}

void ChromeSyncWait::start(std::function<void()> onFinished) {
    if (isRunning())
        return;
    m_notedDataHash = m_storage.lastKnownDataHash();
    m_counter = 0;
    m_onFinished = std::move(onFinished);
    m_chromeSyncTimer = m_scheduler.scheduleRepeating(tickIntervalSeconds, [this] { tick(); });
}

void ChromeSyncWait::stop() {
    m_chromeSyncTimer.cancel();
    m_chromeSyncTimer = TaskHandle();
}

void ChromeSyncWait::tick() {
    ++m_counter;
    // Taken as the file holds it, not merged: at this moment nothing here can be newer.
    m_monitor.reloadFromDisk();
    if (m_storage.lastKnownDataHash() == m_notedDataHash && m_counter < maxTicks)
        return;
    stop();
    m_monitor.endStartupPoll();
    // Moved out first: the callback may start another wait or destroy this one's owner.
    if (const std::function<void()> onFinished = std::exchange(m_onFinished, {}))
        onFinished();
}

} // namespace hueshelf::app
