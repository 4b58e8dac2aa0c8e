#include "app/OverflowHoverMachine.h"

#include "app/BarLayout.h"
#include "model/PaletteGroups.h"

namespace hueshelf::app {

OverflowHoverMachine::OverflowHoverMachine(Scheduler& scheduler, Colors colors,
                                           SuppressTooltips suppress, QObject* parent)
    : QObject(parent), m_scheduler(scheduler), m_colors(std::move(colors)),
      m_suppress(std::move(suppress)) {}

OverflowHoverMachine::~OverflowHoverMachine() {
    m_peekWork.cancel();
    m_groupClearWork.cancel();
}

void OverflowHoverMachine::hoverGutter(const QUuid& colorId, bool hovering) {
    m_peekWork.cancel();
    if (!hovering) {
        // On the way into the list the group stays lit; the list's own hover takes over.
        if (!m_pointerInOverflow)
            clearGroup();
        scheduleOverflowClose();
        return;
    }
    const QList<ColorItem> colors = m_colors();
    const QList<PaletteGroups::Run> runs = PaletteGroups::runs(colors);
    const auto run = std::find_if(runs.cbegin(), runs.cend(), [&](const PaletteGroups::Run& r) {
        return r.ids.contains(colorId);
    });
    if (run == runs.cend()) {
        clearGroup();
        return;
    }
    m_groupClearWork.cancel();
    m_hoveredGroupIDs = QSet<QUuid>(run->ids.cbegin(), run->ids.cend());
    Q_EMIT changed();

    if (m_overflowPinned || colors.size() <= BarLayout::maxVisibleSwatches)
        return;
    const bool reachesOverflow =
        std::any_of(run->ids.cbegin(), run->ids.cend(),
                    [&](const QUuid& id) { return indexOf(id) >= BarLayout::maxVisibleSwatches; });
    if (!reachesOverflow)
        return;
    m_peekWork = m_scheduler.scheduleAfter(peekDelay, [this] { setShowingOverflow(true); });
}

void OverflowHoverMachine::clearGroup() {
    setHoveredGroup(std::nullopt);
}

void OverflowHoverMachine::setHoveredGroup(const std::optional<QSet<QUuid>>& ids) {
    m_groupClearWork.cancel();
    if (ids) {
        m_hoveredGroupIDs = ids;
        Q_EMIT changed();
        return;
    }
    m_groupClearWork = m_scheduler.scheduleAfter(groupClearDelay, [this] {
        m_hoveredGroupIDs.reset();
        Q_EMIT changed();
    });
}

void OverflowHoverMachine::scheduleOverflowClose() {
    if (m_overflowPinned)
        return;
    m_peekWork = m_scheduler.scheduleAfter(closeDelay, [this] {
        if (m_pointerInOverflow || m_overflowPinned)
            return;
        setShowingOverflow(false);
    });
}

void OverflowHoverMachine::pointerInOverflowChanged(bool inside) {
    m_pointerInOverflow = inside;
    if (inside)
        m_peekWork.cancel();
    else
        scheduleOverflowClose();
}

void OverflowHoverMachine::overflowButtonClicked() {
    // The pin comes first and the change of the list after it, so that closing by the button
    // ends unpinned, as every close does.
    m_overflowPinned = true;
    setShowingOverflow(!m_showingOverflow);
}

void OverflowHoverMachine::pressedOutsideList(bool onOverflowButton) {
    if (!onOverflowButton)
        setShowingOverflow(false);
}

void OverflowHoverMachine::setShowingOverflow(bool showing) {
    if (showing == m_showingOverflow)
        return;
    m_showingOverflow = showing;
    if (!showing) {
        m_overflowPinned = false;
        m_pointerInOverflow = false;
        m_groupClearWork.cancel();
        m_hoveredGroupIDs.reset();
    }
    if (m_suppress)
        m_suppress(showing);
    Q_EMIT changed();
}

void OverflowHoverMachine::colorAwaitingEdit(const QUuid& colorId) {
    if (indexOf(colorId) >= BarLayout::maxVisibleSwatches)
        pinOpen();
}

void OverflowHoverMachine::pinOpen() {
    m_overflowPinned = true;
    setShowingOverflow(true);
}

void OverflowHoverMachine::paletteChanged() {
    if (m_showingOverflow && m_colors().size() <= BarLayout::maxVisibleSwatches)
        setShowingOverflow(false);
}

qsizetype OverflowHoverMachine::indexOf(const QUuid& colorId) const {
    const QList<ColorItem> colors = m_colors();
    for (qsizetype i = 0; i < colors.size(); ++i) {
        if (colors.at(i).id == colorId)
            return i;
    }
    return -1;
}

bool OverflowHoverMachine::isDimmed(const QUuid& colorId) const {
    return m_hoveredGroupIDs && !m_hoveredGroupIDs->contains(colorId);
}

bool OverflowHoverMachine::isEmphasized(const QUuid& colorId) const {
    return m_hoveredGroupIDs && m_hoveredGroupIDs->contains(colorId);
}

OverflowHoverMachine::ButtonEmphasis OverflowHoverMachine::overflowButtonEmphasis() const {
    if (!m_hoveredGroupIDs)
        return ButtonEmphasis::none;
    const QList<ColorItem> colors = m_colors();
    for (qsizetype i = BarLayout::maxVisibleSwatches; i < colors.size(); ++i) {
        if (m_hoveredGroupIDs->contains(colors.at(i).id))
            return ButtonEmphasis::emphasized;
    }
    return ButtonEmphasis::dimmed;
}

} // namespace hueshelf::app
