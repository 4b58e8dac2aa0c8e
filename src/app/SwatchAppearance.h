#pragma once

#include <QEasingCurve>

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

// How one quantity of the drawing moves to its new value.
struct SwatchTransition {
    int durationMs;
    QEasingCurve curve;
};

// How a swatch is drawn in a state. Scales are factors of its size; with less motion wanted
// hovering and dropping don't scale at all, and nothing animates.
struct SwatchAppearance {
    double scale = 1.0;
    bool dropRing = false;
    bool shadow = false;
    bool lockBadge = false;
    bool checkMark = false;
    bool animates = true;

    static SwatchAppearance of(const SwatchState& state, bool reduceMotion);

    // Dimming by a group fades, so it is drawn by how far it has come: 0 not dimmed, 1 fully
    // (opacity 0.35, saturation 0.85).
    struct Fade {
        double opacity;
        double saturation;
    };
    static Fade fadeAt(double dim);

    // The scale's way to a new look: on the group emphasis's spring when the emphasis came or
    // went, otherwise (hover, a drag over it) eased out over 0.15 s.
    static SwatchTransition scaleTransition(bool emphasisChanged);
    // Dimming by a group and its end, eased out over 0.14 s.
    static SwatchTransition dimTransition();
};

} // namespace hueshelf::app
