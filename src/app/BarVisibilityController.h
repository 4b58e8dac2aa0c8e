#pragma once

#include "util/Scheduler.h"

#include <QList>
#include <QRect>

#include <functional>
#include <optional>

namespace hueshelf::app {

// How the bar leaves for the tray icon and comes back. The rules live here; everything that
// touches a window goes through `Effects`, which the widget layer fills in.
class BarVisibilityController final {
public:
    struct Effects {
        std::function<bool()> isBarVisible;
        // Plain show and hide, without animation.
        std::function<void()> orderFront;
        std::function<void()> orderOut;
        std::function<bool()> reduceMotion;
        // The tray icon's rectangle in global screen coordinates: absent without a tray icon,
        // empty when the tray does not tell where it put the icon.
        std::function<std::optional<QRect>()> trayIconGeometry;
        // The geometries of all screens.
        std::function<QList<QRect>()> screenGeometries;
        // Grabs the bar's content for the next animation; false when no image can be had.
        std::function<bool()> takeSnapshot;
        // The snapshot grows from the icon to the bar's frame while the bar waits invisible; at
        // the end the bar is shown fully and `finished` runs.
        std::function<void(QRect icon, std::function<void()> finished)> animateGrow;
        // The snapshot shrinks from the bar's last frame onto the icon and fades; the bar is
        // already gone. `finished` runs once the helper has gone too.
        std::function<void(QRect icon, std::function<void()> finished)> animateShrink;
        std::function<void()> showHiddenToast;
        // The welcome and What's New decision that follows every show; may be left empty.
        std::function<void()> afterShow;
        // May be left empty where the tray can't highlight its icon.
        std::function<void(bool on)> setIconHighlighted;
    };

    // How long the icon stays highlighted after the bar shrank into it.
    static constexpr double iconHighlightSeconds = 0.18;

    BarVisibilityController(Effects effects, Scheduler& scheduler)
        : m_effects(std::move(effects)), m_scheduler(scheduler) {}

    // The plain show is the shortcut's; the tray icon, the menu item and a confirmed link ask
    // for the animated one, which only takes effect when the bar last shrank into the icon.
    void showBar(bool plain);
    // From the bar's own hide button.
    void hideToMenuBar();
    // The shortcut: a visible bar goes without animation, a hidden one comes back plainly.
    void toggle();
    // A click on the tray icon: as the shortcut, but a bar that shrank into the icon grows out
    // of it again.
    void toggleFromMenuBar();

    bool cameFromTheMenuBar() const { return m_cameFromTheMenuBar; }

private:
    // One rule for both directions: the icon has an area and lies on a screen.
    bool canAnimateAt(const QRect& icon) const;
    void orderFrontAndDecide();
    void afterShow();
    void highlightIcon(bool on);

    Effects m_effects;
    Scheduler& m_scheduler;
    bool m_cameFromTheMenuBar = false;
    TaskHandle m_unhighlight;
};

} // namespace hueshelf::app
