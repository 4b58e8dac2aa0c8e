#pragma once

#include "model/ColorItem.h"
#include "util/Scheduler.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QUuid>

#include <functional>
#include <optional>

namespace hueshelf::app {

// When the overflow list opens and closes, and which group the pointer is on. A hovered group
// whose colours reach past the bar peeks the list open after a moment; the list closes a moment
// after the pointer has left it, unless it was opened on purpose. Every delay is a cancellable
// task, and each looks at the state again when it runs.
class OverflowHoverMachine final : public QObject {
    Q_OBJECT
public:
    static constexpr double peekDelay = 0.32;
    static constexpr double groupClearDelay = 0.12;
    static constexpr double closeDelay = 0.35;

    // The active palette's colours, as they stand when asked.
    using Colors = std::function<QList<ColorItem>()>;
    // The bar's tooltips stay away while the list is open, and a shown one goes.
    using SuppressTooltips = std::function<void(bool suppressed)>;

    enum class ButtonEmphasis { none, emphasized, dimmed };

    OverflowHoverMachine(Scheduler& scheduler, Colors colors, SuppressTooltips suppress,
                         QObject* parent = nullptr);
    ~OverflowHoverMachine() override;

    bool showingOverflow() const { return m_showingOverflow; }
    bool overflowPinned() const { return m_overflowPinned; }
    bool pointerInOverflow() const { return m_pointerInOverflow; }
    const std::optional<QSet<QUuid>>& hoveredGroupIDs() const { return m_hoveredGroupIDs; }

    // The pointer entered or left the gutter in front of `colorId`.
    void hoverGutter(const QUuid& colorId, bool hovering);
    // A group's colours at once; absent clears them a moment later, so that the pointer can
    // cross from a gutter to the list without a flicker.
    void setHoveredGroup(const std::optional<QSet<QUuid>>& ids);
    void pointerInOverflowChanged(bool inside);
    // The button flips the list and pins it.
    void overflowButtonClicked();
    // The list's own dismissal (a click outside, Escape), or any other change of it.
    void setShowingOverflow(bool showing);
    // A press outside the open list dismisses it, except one on the overflow button: that press
    // is the button's own toggle, which would otherwise close the list and open it again.
    void pressedOutsideList(bool onOverflowButton);
    // A colour waits for its editor; one beyond the bar opens the list and keeps it open so the
    // editor has a swatch to point at.
    void colorAwaitingEdit(const QUuid& colorId);
    // Opens the list and keeps it open.
    void pinOpen();
    // The palette changed: a list left with nothing to list closes, or the tooltips it hushes
    // would stay hushed.
    void paletteChanged();

    bool isDimmed(const QUuid& colorId) const;
    bool isEmphasized(const QUuid& colorId) const;
    ButtonEmphasis overflowButtonEmphasis() const;

Q_SIGNALS:
    void changed();

private:
    void clearGroup();
    void scheduleOverflowClose();
    qsizetype indexOf(const QUuid& colorId) const;

    Scheduler& m_scheduler;
    Colors m_colors;
    SuppressTooltips m_suppress;
    bool m_showingOverflow = false;
    bool m_overflowPinned = false;
    bool m_pointerInOverflow = false;
    std::optional<QSet<QUuid>> m_hoveredGroupIDs;
    TaskHandle m_peekWork;
    TaskHandle m_groupClearWork;
};

} // namespace hueshelf::app
