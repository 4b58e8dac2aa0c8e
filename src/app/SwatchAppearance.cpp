#include "app/SwatchAppearance.h"

#include <algorithm>

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
    if (state.isDimmed) {
        look.opacity = 0.35;
        look.saturation = 0.85;
    }
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

} // namespace hueshelf::app
