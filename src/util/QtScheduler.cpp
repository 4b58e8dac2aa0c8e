#include "util/QtScheduler.h"

#include <QPointer>
#include <QTimer>

#include <cmath>

namespace hueshelf {

QtScheduler::QtScheduler(QObject* parent) : QObject(parent) {}

TaskHandle QtScheduler::scheduleAfter(double seconds, Task task) {
    return start(seconds, std::move(task), false);
}

TaskHandle QtScheduler::scheduleRepeating(double intervalSeconds, Task task) {
    return start(intervalSeconds, std::move(task), true);
}

TaskHandle QtScheduler::start(double seconds, Task task, bool repeating) {
    auto state = std::make_shared<detail::ScheduledTaskState>();
    auto* timer = new QTimer(this);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setSingleShot(!repeating);
    timer->setInterval(static_cast<int>(std::lround(std::max(0.0, seconds) * 1000.0)));

    QPointer<QTimer> guard(timer);
    state->onCancel = [guard] {
        if (guard) {
            guard->stop();
            guard->deleteLater();
        }
    };
    // The connection keeps the state alive, so work whose handle was dropped still runs.
    connect(timer, &QTimer::timeout, this, [s = state, timer, repeating, task = std::move(task)] {
        if (s->cancelled) {
            timer->stop();
            timer->deleteLater();
            return;
        }
        if (!repeating) {
            s->finished = true;
            s->onCancel = nullptr;
            timer->deleteLater();
        }
        task();
    });
    timer->start();
    return TaskHandle(state);
}

} // namespace hueshelf
