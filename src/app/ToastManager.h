#pragma once

#include "app/Toast.h"
#include "util/Scheduler.h"

#include <QObject>
#include <QRect>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace hueshelf::app {

// The one toast of the bar. There is no queue: a new toast replaces the shown one at once, and
// each goes by itself after its duration. It holds no window; a view follows `currentChanged`.
class ToastManager final : public QObject {
    Q_OBJECT
public:
    // How long each kind of message stays, in seconds.
    static constexpr double kCopiedDuration = 1.2;
    static constexpr double kPaletteSavedDuration = 1.2;
    static constexpr double kAnnounceDuration = 1.5;
    // "Link copied ...", refusals with a lock, "One file at a time", "Could not extract colors".
    static constexpr double kNoticeDuration = 2.0;
    // Errors shown with "exclamationmark.triangle".
    static constexpr double kErrorDuration = 2.5;
    // An announcement waits this long, so that a closing popover is out of the way first.
    static constexpr double kAnnounceDelay = 0.25;
    // The square a toast without a source points at, in the middle of the bar.
    static constexpr int kBarSourceSide = 28;

    // The bar's window: its global frame (sized to the bar) and whether it is on screen.
    struct BarState {
        QRect frame;
        bool isVisible = false;
    };
    using BarStateProvider = std::function<BarState()>;

    ToastManager(Scheduler& scheduler, BarStateProvider bar, QObject* parent = nullptr);
    ~ToastManager() override;

    const std::optional<Toast>& current() const { return m_current; }

    // Without a source rectangle (global coordinates) the toast points at the middle of the bar,
    // and with no visible bar none appears; the shown toast goes either way.
    void show(const QString& message, const QString& icon, std::optional<QRect> sourceRect,
              double duration);
    // Pinned to a control whose global frame is `anchor`: the swatches, share and save buttons.
    void showAnchored(const QRect& anchor, const QString& message, const QString& icon,
                      double duration);
    void dismiss();
    // For code without a view at hand: shows after a short delay, for the announce duration.
    // An empty message shows nothing.
    void announce(const QString& message, const QString& icon);

Q_SIGNALS:
    void currentChanged();

private:
    void present(Toast toast);
    // Clears the toast and its timer without telling the view; answers whether one was shown.
    bool clear();
    std::optional<QRect> barSourceRect() const;

    Scheduler& m_scheduler;
    BarStateProvider m_bar;
    std::optional<Toast> m_current;
    TaskHandle m_dismissTimer;
    // Announcements on their way; each runs on its own, as the later one replaces the earlier.
    std::vector<TaskHandle> m_pendingAnnouncements;
};

} // namespace hueshelf::app
