#include "app/SwatchAppearance.h"

#include "app/SpringMotion.h"

#include <algorithm>
#include <cmath>

namespace hueshelf::app {

SwatchAppearance SwatchAppearance::of(const SwatchState& state, bool reduceMotion) {
    SwatchAppearance look;
    look.animates = !reduceMotion;
    if (!reduceMotion) {
        if (state.isHovered && !state.isBeingDragged)
            look.scale = 1.02;
        if (state.isDropTarget)
            look.scale = 1.1;
    }
    look.dropRing = state.isDropTarget;
    if (state.isEmphasized) {
        // The group's emphasis isn't motion that follows the pointer: it stays with less
        // motion too, only without its animation.
        look.scale = std::max(look.scale, 1.1);
        look.shadow = true;
    }
    look.lockBadge = state.isLocked;
    look.checkMark = state.showingCopiedFeedback;
    return look;
}

SwatchAppearance::Fade SwatchAppearance::fadeAt(double dim) {
    return {std::lerp(1.0, 0.35, dim), std::lerp(1.0, 0.85, dim)};
}

SwatchTransition SwatchAppearance::scaleTransition(bool emphasisChanged) {
    if (!emphasisChanged)
        return {150, QEasingCurve(QEasingCurve::OutCubic)};
    QEasingCurve spring;
    spring.setCustomType(&SpringMotion::groupEmphasisEasing);
    const double seconds = SpringMotion::settleTime(SpringMotion::groupEmphasis);
    return {static_cast<int>(std::lround(seconds * 1000.0)), spring};
}

SwatchTransition SwatchAppearance::dimTransition() {
    return {140, QEasingCurve(QEasingCurve::OutCubic)};
}

} // namespace hueshelf::app
