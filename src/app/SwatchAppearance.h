#pragma once

namespace hueshelf::app {

// What a swatch is doing at the moment, as the bar knows it.
struct SwatchState {
    bool isHovered = false;
    // Another swatch is being dragged and this one is the one under it.
    bool isDropTarget = false;
    // This very swatch is the one being dragged.
    bool isBeingDragged = false;
    bool isDimmed = false;
    bool isEmphasized = false;
    bool isLocked = false;
    bool showingCopiedFeedback = false;
};

// How a swatch is drawn in a state. Scales are factors of its size; with less motion wanted
// hovering and dropping don't scale at all, and nothing animates.
struct SwatchAppearance {
    double scale = 1.0;
    double opacity = 1.0;
    double saturation = 1.0;
    bool dropRing = false;
    bool shadow = false;
    bool lockBadge = false;
    bool checkMark = false;
    bool animates = true;

    static SwatchAppearance of(const SwatchState& state, bool reduceMotion);
};

} // namespace hueshelf::app
