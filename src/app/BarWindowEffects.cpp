#include "app/BarWindowEffects.h"

#include "app/HiddenToastWindow.h"
#include "app/ShrinkAnimation.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QPointer>
#include <QScreen>
#include <QWidget>

#include <memory>

namespace hueshelf::app {

namespace {

// What the effects share between the grab and the animation that uses it.
struct SharedState {
    QPixmap snapshot;
    QPointer<HiddenToastWindow> toast;
};

} // namespace

BarVisibilityController::Effects barWindowEffects(QWidget& bar, Scheduler& scheduler) {
    auto state = std::make_shared<SharedState>();
    QPointer<QWidget> window(&bar);
    BarVisibilityController::Effects effects;
    // Each effect takes the pointer out of its guard once: an optimiser that can't see through
    // the guard would otherwise suspect a null behind every use.
    effects.isBarVisible = [window] {
        const QWidget* w = window.data();
        return w && w->isVisible();
    };
    effects.orderFront = [window] {
        if (QWidget* w = window.data()) {
            w->show();
            w->raise();
        }
    };
    effects.orderOut = [window] {
        if (QWidget* w = window.data())
            w->hide();
    };
    effects.screenGeometries = [] {
        QList<QRect> geometries;
        const QList<QScreen*> screens = QGuiApplication::screens();
        for (const QScreen* screen : screens)
            geometries.append(screen->geometry());
        return geometries;
    };
    effects.takeSnapshot = [window, state] {
        QWidget* w = window.data();
        state->snapshot = w ? w->grab() : QPixmap();
        return !state->snapshot.isNull();
    };
    effects.animateGrow = [window, state](QRect icon, std::function<void()> finished) {
        QWidget* w = window.data();
        if (!w)
            return;
        w->setWindowOpacity(0.0);
        auto* helper = new ShrinkAnimation(state->snapshot);
        state->snapshot = QPixmap();
        const QRect frame = w->frameGeometry();
        helper->run(ShrinkAnimation::frameAtIcon(frame.size(), icon), frame, 0.0, 1.0,
                    [window, finished = std::move(finished)] {
                        if (QWidget* shown = window.data())
                            shown->setWindowOpacity(1.0);
                        if (finished)
                            finished();
                    });
    };
    effects.animateShrink = [window, state](QRect icon, std::function<void()> finished) {
        const QWidget* w = window.data();
        if (!w)
            return;
        auto* helper = new ShrinkAnimation(state->snapshot);
        state->snapshot = QPixmap();
        const QRect frame = w->frameGeometry();
        helper->run(frame, ShrinkAnimation::frameAtIcon(frame.size(), icon), 1.0, 0.0,
                    std::move(finished));
    };
    effects.showHiddenToast = [state, &scheduler] {
        // One at a time: a second hide replaces the first toast.
        if (HiddenToastWindow* old = state->toast.data())
            old->close();
        state->toast = new HiddenToastWindow(scheduler);
        state->toast->present();
    };
    return effects;
}

BarPosition::Screens desktopScreens() {
    BarPosition::Screens screens;
    if (const QScreen* main = QGuiApplication::primaryScreen())
        screens.mainFrame = main->availableGeometry();
    const QList<QScreen*> all = QGuiApplication::screens();
    for (const QScreen* screen : all)
        screens.frames.append(screen->availableGeometry());
    return screens;
}

} // namespace hueshelf::app
