#pragma once

#include "util/Scheduler.h"

#include <QtGlobal>

#include <functional>

namespace hueshelf {
class ColorStorage;
class ExternalChangeMonitor;
} // namespace hueshelf

namespace hueshelf::app {

// The bar's first showing waits a moment for the browser helper, which tends to write the
// preferences file just as the program starts: a palette the extension was saving then is on
// the bar when it first appears. The wait ends at the first tick that finds the file changed,
// or after `maxTicks` ticks. Its end also ends the store's start-up poll.
class ChromeSyncWait {
public:
    static constexpr double tickIntervalSeconds = 0.05;
    static constexpr int maxTicks = 40;

    ChromeSyncWait(ColorStorage& storage, ExternalChangeMonitor& monitor, Scheduler& scheduler);
    ~ChromeSyncWait();
    ChromeSyncWait(const ChromeSyncWait&) = delete;
    ChromeSyncWait& operator=(const ChromeSyncWait&) = delete;

    // Notes the store's data hash as it stands and starts ticking; `onFinished` (show the first
    // bar) runs once, when the wait ends by itself. Starting again while it runs does nothing.
    void start(std::function<void()> onFinished);
    // The end of the run: the timer goes, and the bar is not shown.
    void stop();

    bool isRunning() const { return m_chromeSyncTimer.isActive(); }
    int ticks() const { return m_counter; }

private:
    void tick();

    ColorStorage& m_storage;
    ExternalChangeMonitor& m_monitor;
    Scheduler& m_scheduler;
    TaskHandle m_chromeSyncTimer;
    qint64 m_notedDataHash = 0;
    int m_counter = 0;
    std::function<void()> m_onFinished;
};

} // namespace hueshelf::app
