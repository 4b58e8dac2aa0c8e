#include "app/OverflowHoverMachine.h"

#include "GroupNotation.h"
#include "ManualClock.h"
#include "ManualScheduler.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::colorsFrom;
using testing::idFor;
using Emphasis = OverflowHoverMachine::ButtonEmphasis;

// Nine colours: "Top" lies wholly on the bar, "Tail" reaches past the sixth.
class HoverMachine : public ::testing::Test {
protected:
    QList<ColorItem> colors = colorsFrom(u"a b Top|c d e Tail|f g h i"_s);
    testing::ManualClock clock;
    testing::ManualScheduler scheduler{clock};
    QList<bool> suppressions;
    OverflowHoverMachine machine{scheduler, [this] { return colors; },
                                 [this](bool suppressed) { suppressions.append(suppressed); }};

    QSet<QUuid> ids(const QString& names) const {
        QSet<QUuid> set;
        for (const QString& name : names.split(u' '))
            set.insert(idFor(name));
        return set;
    }
};

TEST_F(HoverMachine, AGroupReachingPastTheBarPeeksAfterAMoment) {
    // Leaving before the peek cancels it; the next hover waits the whole moment again.
    machine.hoverGutter(idFor(u"f"_s), true);
    scheduler.advance(0.3);
    machine.hoverGutter(idFor(u"f"_s), false);
    scheduler.advance(0.05);
    machine.hoverGutter(idFor(u"f"_s), true);
    EXPECT_EQ(machine.hoveredGroupIDs(), ids(u"f g h i"_s));
    EXPECT_TRUE(machine.isDimmed(idFor(u"a"_s)));
    EXPECT_TRUE(machine.isEmphasized(idFor(u"g"_s)));
    EXPECT_EQ(machine.overflowButtonEmphasis(), Emphasis::emphasized);
    scheduler.advance(0.31);
    EXPECT_FALSE(machine.showingOverflow());
    scheduler.advance(0.02);
    EXPECT_TRUE(machine.showingOverflow());
    EXPECT_FALSE(machine.overflowPinned());
    EXPECT_EQ(suppressions, QList<bool>{true});

    // On the way into the list the group stays lit, and inside it nothing closes.
    machine.pointerInOverflowChanged(true);
    machine.hoverGutter(idFor(u"f"_s), false);
    scheduler.advance(2.0);
    EXPECT_TRUE(machine.showingOverflow());
    EXPECT_EQ(machine.hoveredGroupIDs(), ids(u"f g h i"_s));

    // Leaving the list closes it 0.35 s later, and the close clears everything at once.
    machine.pointerInOverflowChanged(false);
    scheduler.advance(0.34);
    EXPECT_TRUE(machine.showingOverflow());
    scheduler.advance(0.02);
    EXPECT_FALSE(machine.showingOverflow());
    EXPECT_EQ(machine.hoveredGroupIDs(), std::nullopt);
    EXPECT_FALSE(machine.pointerInOverflow());
    EXPECT_EQ(suppressions, (QList<bool>{true, false}));
}

TEST_F(HoverMachine, AGroupOnTheBarNeverOpensTheList) {
    machine.hoverGutter(idFor(u"c"_s), true);
    EXPECT_EQ(machine.hoveredGroupIDs(), ids(u"c d e"_s));
    EXPECT_EQ(machine.overflowButtonEmphasis(), Emphasis::dimmed);
    scheduler.advance(5.0);
    EXPECT_FALSE(machine.showingOverflow());

    // Leaving clears the group only after the bridge delay; a new hover inside it keeps it.
    machine.hoverGutter(idFor(u"c"_s), false);
    scheduler.advance(0.1);
    machine.hoverGutter(idFor(u"c"_s), true);
    scheduler.advance(0.1);
    EXPECT_EQ(machine.hoveredGroupIDs(), ids(u"c d e"_s));
    machine.hoverGutter(idFor(u"c"_s), false);
    scheduler.advance(0.11);
    EXPECT_TRUE(machine.hoveredGroupIDs().has_value());
    scheduler.advance(0.02);
    EXPECT_EQ(machine.hoveredGroupIDs(), std::nullopt);
    EXPECT_EQ(machine.overflowButtonEmphasis(), Emphasis::none);
    EXPECT_FALSE(machine.isDimmed(idFor(u"a"_s)));

    // An unknown colour clears the group too.
    machine.setHoveredGroup(ids(u"a"_s));
    machine.hoverGutter(QUuid::createUuid(), true);
    scheduler.advance(0.12);
    EXPECT_EQ(machine.hoveredGroupIDs(), std::nullopt);
}

TEST_F(HoverMachine, TheButtonPinsAndTogglesAndDismissalUnpins) {
    machine.overflowButtonClicked();
    EXPECT_TRUE(machine.showingOverflow() && machine.overflowPinned());
    // A pinned list stays when the pointer passes through and leaves, and a gutter doesn't peek.
    machine.pointerInOverflowChanged(true);
    machine.pointerInOverflowChanged(false);
    machine.hoverGutter(idFor(u"f"_s), true);
    machine.hoverGutter(idFor(u"f"_s), false);
    scheduler.advance(2.0);
    EXPECT_TRUE(machine.showingOverflow());

    machine.overflowButtonClicked();
    EXPECT_FALSE(machine.showingOverflow());
    EXPECT_FALSE(machine.overflowPinned()); // closed by the button, unpinned like any close

    machine.overflowButtonClicked();
    machine.pressedOutsideList(true); // the button's own press: its click toggles instead
    EXPECT_TRUE(machine.showingOverflow());
    machine.setHoveredGroup(ids(u"f g"_s));
    machine.pressedOutsideList(false); // dismissed by a click outside
    EXPECT_FALSE(machine.overflowPinned());
    EXPECT_EQ(machine.hoveredGroupIDs(), std::nullopt);
    // The peek works again once unpinned.
    machine.hoverGutter(idFor(u"f"_s), true);
    scheduler.advance(0.32);
    EXPECT_TRUE(machine.showingOverflow());
}

TEST_F(HoverMachine, ANewColourBeyondTheBarPinsTheListOpen) {
    machine.colorAwaitingEdit(idFor(u"e"_s)); // index 4: on the bar
    EXPECT_FALSE(machine.showingOverflow());
    machine.colorAwaitingEdit(idFor(u"g"_s)); // index 6
    EXPECT_TRUE(machine.showingOverflow() && machine.overflowPinned());
    machine.pointerInOverflowChanged(false);
    scheduler.advance(1.0);
    EXPECT_TRUE(machine.showingOverflow());

    // Down to six colours, the list has nothing left to show and closes, tooltips back.
    colors = colorsFrom(u"a b c d e f"_s);
    machine.paletteChanged();
    EXPECT_FALSE(machine.showingOverflow());
    EXPECT_EQ(suppressions.last(), false);
    // With nothing behind the bar a group never peeks, even one that reaches its end.
    colors = colorsFrom(u"a b c d e Tail|f"_s);
    machine.hoverGutter(idFor(u"f"_s), true);
    scheduler.advance(1.0);
    EXPECT_FALSE(machine.showingOverflow());
}

} // namespace
} // namespace hueshelf::app
