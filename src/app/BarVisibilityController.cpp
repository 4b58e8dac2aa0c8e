#include "app/BarVisibilityController.h"

namespace hueshelf::app {

bool BarVisibilityController::canAnimateAt(const QRect& icon) const {
    // Checked before the screens: Qt counts a rectangle of no height or no width as meeting a
    // screen it lies on, and there is nothing there to grow from or shrink into.
    if (icon.width() <= 0 || icon.height() <= 0)
        return false;
    const QList<QRect> screens = m_effects.screenGeometries();
    for (const QRect& screen : screens) {
        if (screen.intersects(icon))
            return true;
    }
    return false;
}

void BarVisibilityController::afterShow() {
    if (m_effects.afterShow)
        m_effects.afterShow();
}

void BarVisibilityController::highlightIcon(bool on) {
    if (m_effects.setIconHighlighted)
        m_effects.setIconHighlighted(on);
}

void BarVisibilityController::orderFrontAndDecide() {
    m_effects.orderFront();
    afterShow();
}

void BarVisibilityController::showBar(bool plain) {
    if (!m_cameFromTheMenuBar || plain) {
        orderFrontAndDecide();
        return;
    }
    // Without motion or without an icon the flag stays for a later show; from here on this show
    // uses it up, whether or not it can animate.
    const std::optional<QRect> icon = m_effects.trayIconGeometry();
    if (m_effects.reduceMotion() || !icon) {
        orderFrontAndDecide();
        return;
    }
    m_cameFromTheMenuBar = false;
    if (!canAnimateAt(*icon)) {
        orderFrontAndDecide();
        return;
    }
    m_effects.orderFront();
    if (!m_effects.takeSnapshot()) {
        afterShow();
        return;
    }
    m_effects.animateGrow(*icon, [this] { afterShow(); });
}

void BarVisibilityController::hideToMenuBar() {
    // The desktop can't say whether something covers the icon; a tray that places its icon on a
    // screen is taken to show it.
    const std::optional<QRect> icon = m_effects.trayIconGeometry();
    const bool canShrink =
        icon && !m_effects.reduceMotion() && canAnimateAt(*icon) && m_effects.takeSnapshot();
    m_effects.orderOut();
    if (!canShrink) {
        m_effects.showHiddenToast();
        return;
    }
    m_cameFromTheMenuBar = true;
    m_effects.animateShrink(*icon, [this] {
        m_unhighlight.cancel();
        highlightIcon(true);
        m_unhighlight =
            m_scheduler.scheduleAfter(iconHighlightSeconds, [this] { highlightIcon(false); });
    });
}

void BarVisibilityController::toggle() {
    if (m_effects.isBarVisible())
        m_effects.orderOut();
    else
        showBar(true);
}

void BarVisibilityController::toggleFromMenuBar() {
    if (m_effects.isBarVisible())
        m_effects.orderOut();
    else
        showBar(false);
}

} // namespace hueshelf::app
