#pragma once

#include "util/Scheduler.h"

#include <QString>
#include <QWidget>

#include <functional>

namespace hueshelf::app {

// Says where the bar went when it could not be seen going: a small window of its own at the top
// middle of the primary screen, since the bar that usually carries toasts is gone. It never
// takes the focus nor a click; it fades in, stays, fades out and closes itself.
class HiddenToastWindow final : public QWidget {
    Q_OBJECT
public:
    static inline const QString message =
        QStringLiteral("HueShelf is hidden. Press \u2303\u21E7B to bring it back.");
    static constexpr int stayMs = 2600;
    static constexpr int fadeMs = 200;

    // Its time on screen is counted by the scheduler; the fades are animations.
    explicit HiddenToastWindow(Scheduler& scheduler);
    ~HiddenToastWindow() override;

    // Shows the toast and starts its life: the fade in, `stayMs`, then the fade out.
    void present();
    bool isLeaving() const { return m_leaving; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void fadeTo(double opacity, std::function<void()> then);

    Scheduler& m_scheduler;
    TaskHandle m_stay;
    bool m_leaving = false;
};

} // namespace hueshelf::app
