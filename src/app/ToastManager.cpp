#include "app/ToastManager.h"

#include <algorithm>
#include <cmath>

namespace hueshelf::app {

ToastManager::ToastManager(Scheduler& scheduler, BarStateProvider bar, QObject* parent)
    : QObject(parent), m_scheduler(scheduler), m_bar(std::move(bar)) {}

ToastManager::~ToastManager() {
    m_dismissTimer.cancel();
    for (TaskHandle& pending : m_pendingAnnouncements)
        pending.cancel();
}

void ToastManager::show(const QString& message, const QString& icon,
                        std::optional<QRect> sourceRect, double duration) {
    if (!sourceRect)
        sourceRect = barSourceRect();
    if (!sourceRect) {
        if (clear())
            Q_EMIT currentChanged();
        return;
    }
    present({QUuid::createUuid(), message, icon, duration, *sourceRect, std::nullopt});
}

void ToastManager::showAnchored(const QRect& anchor, const QString& message, const QString& icon,
                                double duration) {
    present({QUuid::createUuid(), message, icon, duration, anchor, anchor});
}

void ToastManager::present(Toast toast) {
    clear();
    const QUuid id = toast.id;
    const double duration = toast.duration;
    m_current = std::move(toast);
    // The id check keeps a late timer from taking down a toast that is not its own, should a
    // scheduler ever run work that was cancelled.
    m_dismissTimer = m_scheduler.scheduleAfter(duration, [this, id] {
        if (m_current && m_current->id == id)
            dismiss();
    });
    Q_EMIT currentChanged();
}

void ToastManager::dismiss() {
    if (clear())
        Q_EMIT currentChanged();
}

bool ToastManager::clear() {
    m_dismissTimer.cancel();
    m_dismissTimer = {};
    if (!m_current)
        return false;
    m_current.reset();
    return true;
}

void ToastManager::announce(const QString& message, const QString& icon) {
    if (message.isEmpty())
        return;
    std::erase_if(m_pendingAnnouncements, [](const TaskHandle& h) { return !h.isActive(); });
    m_pendingAnnouncements.push_back(
        m_scheduler.scheduleAfter(kAnnounceDelay, [this, message, icon] {
            show(message, icon, std::nullopt, kAnnounceDuration);
        }));
}

std::optional<QRect> ToastManager::barSourceRect() const {
    if (!m_bar)
        return std::nullopt;
    const BarState bar = m_bar();
    if (!bar.isVisible || !bar.frame.isValid())
        return std::nullopt;
    // The window is as wide as the bar, so half its width finds the bar's centre.
    const double centreX = bar.frame.x() + bar.frame.width() * 0.5;
    const double centreY = bar.frame.y() + bar.frame.height() * 0.5;
    const int half = kBarSourceSide / 2;
    return QRect(static_cast<int>(std::lround(centreX)) - half,
                 static_cast<int>(std::lround(centreY)) - half, kBarSourceSide, kBarSourceSide);
}

} // namespace hueshelf::app
