#pragma once

#include "util/Scheduler.h"

#include <QObject>

namespace hueshelf {

// The real scheduler: one QTimer per task, owned by this object and so by its thread.
class QtScheduler final : public QObject, public Scheduler {
    Q_OBJECT
public:
    explicit QtScheduler(QObject* parent = nullptr);

    TaskHandle scheduleAfter(double seconds, Task task) override;
    TaskHandle scheduleRepeating(double intervalSeconds, Task task) override;

private:
    TaskHandle start(double seconds, Task task, bool repeating);
};

} // namespace hueshelf
