#include "app/CheckPopoverModel.h"

#include "AppTestSupport.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::palette;

// A store with one palette and the popover over it, open.
struct Harness {
    explicit Harness(const ColorTemplate& checked, double doubleClick = 0.2)
        : store({checked}), model(*store.store, store.clock, store.scheduler, doubleClick) {
        model.open();
    }
    QUuid idOf(const QString& name) const {
        for (const ColorItem& color : store.active().colors)
            if (color.name == name)
                return color.id;
        return {};
    }
    QStringList colors(bool names = false) const {
        QStringList values;
        for (const ColorItem& color : store.active().colors)
            values << (names ? color.name : color.hex);
        return values;
    }
    QString readId(const QString& name) const { return u"read-"_s + uuidText(idOf(name)); }
    QString lookId(const QString& a, const QString& b) const {
        return u"look-"_s + uuidText(idOf(a)) + u'-' + uuidText(idOf(b));
    }
    qsizetype issueCount() const { return qsizetype(model.issues().size()); }
    CheckRow firstRow() const { return model.verdictPage().rows.value(0); }
    void removeColor(const QString& name) {
        store.store->editTemplate(store.active().id, [id = idOf(name)](ColorTemplate& p) {
            p.colors.removeIf([id](const ColorItem& color) { return color.id == id; });
        });
    }

    testing::TestStore store;
    CheckPopoverModel model;
};

// White and a dark yellow at 1.8:1: one readability issue, fixed by #7A7A00 at 4.55:1.
ColorTemplate oliveOnWhite(bool oliveLocked = false, bool paletteLocked = false) {
    return palette(u"Check"_s,
                   {{u"White"_s, u"#FFFFFF"_s},
                    {u"Olive"_s, u"#C7C700"_s, oliveLocked},
                    {u"Tan"_s, u"#AA7134"_s}},
                   paletteLocked);
}

// One fix from click to undo: recorded and saved, "Undo" held back for the longer of the
// double-click interval and 0.35 s, a redraw 0.05 s later, and an undo that puts the issue back.
TEST(CheckPopoverFix, SavesRecordsAndHoldsUndoBackForTheGuard) {
    for (const auto& [doubleClick, guard] : {std::pair{0.2, 0.35}, {0.35, 0.35}, {0.5, 0.5}}) {
        SCOPED_TRACE(doubleClick);
        Harness h(oliveOnWhite(), doubleClick);
        const QString id = h.readId(u"Olive"_s);
        ASSERT_TRUE(h.model.fix(id));
        EXPECT_EQ(h.colors(), (QStringList{u"#FFFFFF"_s, u"#7A7A00"_s, u"#AA7134"_s}));
        EXPECT_EQ(h.store.saves(), 1u);
        const FixRecord record = h.model.fixes().value(id);
        EXPECT_EQ(record.colorID, h.idOf(u"Olive"_s));
        EXPECT_EQ(record.beforeHex + record.afterHex, u"#C7C700#7A7A00"_s);
        EXPECT_EQ(h.model.rowOrder(), QStringList{id}); // the settled row stays
        EXPECT_FALSE(h.model.fix(id));                  // a second click changes nothing

        h.store.scheduler.advance(guard - 0.001);
        EXPECT_FALSE(h.model.undoFix(id));
        EXPECT_FALSE(h.firstRow().isUndoEnabled);
        h.store.scheduler.advance(0.001);
        EXPECT_TRUE(h.model.isUndoEnabled(id));
        h.store.scheduler.advance(0.049);
        EXPECT_EQ(h.model.settleTick(), 0);
        h.store.scheduler.advance(0.001);
        EXPECT_EQ(h.model.settleTick(), 1);
        ASSERT_TRUE(h.model.undoFix(id));
        EXPECT_EQ(h.colors().at(1), u"#C7C700"_s);
        EXPECT_EQ(h.store.saves(), 2u);
        EXPECT_EQ(h.issueCount(), 1);
    }
}

TEST(CheckPopoverFix, RefusalsLeaveThePaletteAndTheFileAlone) {
    const std::tuple<const char*, ColorTemplate, bool> cases[] = {
        {"palette locked", oliveOnWhite(false, true), true},
        {"colour locked", oliveOnWhite(true, false), true},
        {"near-duplicate has no fix",
         palette(u"Grays"_s, {{u"Olive"_s, u"#808080"_s}, {u"Slate"_s, u"#80808E"_s}}), true},
        {"closed", oliveOnWhite(), false},
    };
    for (const auto& [name, checked, open] : cases) {
        SCOPED_TRACE(name);
        Harness h(checked);
        ASSERT_EQ(h.issueCount(), 1);
        const QString id = h.model.issues().front().id;
        const QStringList before = h.colors();
        if (!open)
            h.model.close();
        EXPECT_FALSE(h.model.fix(id));
        EXPECT_FALSE(h.model.fix(u"read-00000000-0000-0000-0000-000000000000"_s));
        EXPECT_EQ(h.colors(), before);
        EXPECT_EQ(h.store.saves(), 0u);
        EXPECT_EQ(h.store.scheduler.pendingCount(), 0);
    }
}

// The palette changes under the open popover: a hand edit doesn't stop the undo but a deleted
// colour does, new issues join at the end, and closing forgets it all.
TEST(CheckPopoverFix, EditsElsewhereWhileOpen) {
    Harness h(oliveOnWhite());
    const QString olive = h.readId(u"Olive"_s);
    ASSERT_TRUE(h.model.fix(olive));
    ASSERT_TRUE(h.store.store->updateColor(h.idOf(u"Tan"_s), u"Tan"_s, u"#C7C700"_s, false));
    EXPECT_EQ(h.model.rowOrder(), (QStringList{olive, h.readId(u"Tan"_s)}));
    ASSERT_TRUE(h.store.store->updateColor(h.idOf(u"Olive"_s), u"Olive"_s, u"#123456"_s, false));
    h.store.scheduler.advance(1.0);
    ASSERT_TRUE(h.model.undoFix(olive));
    EXPECT_EQ(h.colors().at(1), u"#C7C700"_s);
    ASSERT_TRUE(h.model.fix(olive));
    h.store.scheduler.advance(1.0);
    h.removeColor(u"Olive"_s);
    EXPECT_FALSE(h.model.undoFix(olive));

    h.model.showDetails();
    h.model.close();
    EXPECT_EQ(h.store.scheduler.pendingCount(), 0);
    h.model.open();
    EXPECT_FALSE(h.model.showingDetails());
    EXPECT_TRUE(h.model.fixes().isEmpty());
}

// Six issues: a fixed row keeps its place and the verdict shows three open rows at most.
TEST(CheckPopoverRows, AFixedRowKeepsItsPlaceAndTheVerdictHidesTheRest) {
    Harness h(palette(u"Six"_s, {{u"White"_s, u"#FFFFFF"_s},
                                 {u"Ink"_s, u"#2422C8"_s},
                                 {u"Stone"_s, u"#90896F"_s},
                                 {u"Teal"_s, u"#208683"_s},
                                 {u"Moss"_s, u"#648657"_s},
                                 {u"Lagoon"_s, u"#2E8981"_s}}));
    const QStringList order{h.readId(u"Teal"_s),
                            h.readId(u"Lagoon"_s),
                            h.lookId(u"Stone"_s, u"Moss"_s),
                            h.lookId(u"Teal"_s, u"Lagoon"_s),
                            h.lookId(u"Stone"_s, u"Teal"_s),
                            h.lookId(u"Stone"_s, u"Lagoon"_s)};
    const auto shown = [&h] {
        QStringList ids;
        for (const CheckRow& row : h.model.verdictPage().rows)
            ids << row.issueId;
        return ids;
    };
    ASSERT_EQ(h.model.rowOrder(), order);
    EXPECT_EQ(shown(), order.mid(0, 3));
    EXPECT_EQ(h.model.verdictPage().moreRowsText, u"and 3 more in Details"_s);
    ASSERT_TRUE(h.model.fix(order.at(1)));
    EXPECT_EQ(h.model.rowOrder(), order);
    EXPECT_EQ(shown(), order.mid(0, 4));
    EXPECT_EQ(h.model.verdictPage().title, u"5 things to fix"_s);
}

// The pages: first states, fix buttons by lock, look-alikes drawn and marked as their reader
// sees them, settled rows naming the colours as they are now, the grid's toggle.
TEST(CheckPopoverPages, StatesRowsAndSettledTexts) {
    EXPECT_EQ(Harness(palette(u"P"_s, {{u"Ink"_s, u"#111111"_s}})).model.verdictPage().message,
              u"Add a few colors first."_s);
    Harness locked(oliveOnWhite(false, true));
    EXPECT_EQ(locked.firstRow().note, std::nullopt);
    EXPECT_EQ(locked.model.detailsPage().rows.at(0).note, u"1.8:1 hard to read"_s);
    EXPECT_TRUE(locked.firstRow().hasFixButton && !locked.firstRow().isFixEnabled);

    Harness look(palette(
        u"P"_s,
        {{u"White"_s, u"#FFFFFF"_s}, {u"Rust"_s, u"#AA7134"_s}, {u"Brick"_s, u"#D25834"_s}}));
    EXPECT_EQ(look.firstRow().first.hex, u"#918335"_s); // Rust to red-green vision
    EXPECT_EQ(look.firstRow().first.label, u"Rust as they see it"_s);
    for (const VisionStrip& strip : look.model.detailsPage().strips) {
        EXPECT_EQ(strip.swatches.value(1).hex,
                  ColorVisionSimulation::simulated(u"#AA7134"_s, strip.type));
        EXPECT_EQ(QList<bool>({strip.swatches[0].isMarked, strip.swatches[1].isMarked,
                               strip.swatches[2].isMarked}),
                  QList<bool>({false, true, true}));
    }
    ASSERT_TRUE(look.model.fix(look.firstRow().issueId));
    EXPECT_EQ(look.firstRow().second.hex, u"#B1A469"_s); // the new colour, simulated
    EXPECT_EQ(look.firstRow().second.label, u"Brick as they see it now"_s);
    EXPECT_EQ(look.model.detailsPage().gridToggle, std::nullopt); // no dark colour: no grid
    Harness grid(palette(u"P"_s, {{u"Ink"_s, u"#000000"_s}, {u"Paper"_s, u"#FFFFFF"_s}}));
    EXPECT_EQ(grid.model.verdictPage().message,
              u"Looks good. Everything reads, nothing looks alike."_s);
    grid.model.setGridOpen(true);
    EXPECT_EQ(grid.model.detailsPage().gridToggle, u"Hide"_s);

    Harness read(oliveOnWhite());
    ASSERT_TRUE(read.model.fix(read.readId(u"Olive"_s)));
    ASSERT_TRUE(
        read.store.store->updateColor(read.idOf(u"White"_s), u"Paper"_s, u"#FFFFFF"_s, false));
    EXPECT_EQ(read.firstRow().headline, u"Olive reads on Paper now."_s);
    EXPECT_EQ(read.firstRow().detail, u"1.8 → 4.6:1 on Paper"_s);
    EXPECT_EQ(read.model.verdictPage().title, u"Nothing to fix"_s);
}

// Locked colours keep their names; undo restores names and automatic flags even after a
// renamed colour is gone; a locked or already named palette is refused.
TEST(CheckPopoverRoles, NameByRoleAndUndo) {
    Harness h(palette(u"Roles"_s, {{u"Red"_s, u"#CC3333"_s, false, true},
                                   {u"Accent"_s, u"#33CC33"_s},
                                   {u"Blue"_s, u"#3333CC"_s, true},
                                   {u"Snow"_s, u"#FFFFFF"_s},
                                   {u"Ink"_s, u"#111111"_s, false, true}}));
    ASSERT_TRUE(h.model.nameByRole());
    EXPECT_EQ(h.colors(true),
              (QStringList{u"Primary"_s, u"Accent"_s, u"Blue"_s, u"Background"_s, u"Text Dark"_s}));
    EXPECT_FALSE(h.store.active().colors.at(0).isAutoNamed);
    const WorthKnowingSection section = h.model.detailsPage().worthKnowing;
    EXPECT_EQ(section.renamed.value_or(RoleRenameNotice()).text,
              u"Renamed 3 colors: Red → Primary, Snow → Background, Ink → Text Dark"_s);
    EXPECT_FALSE(section.offersRoleNaming);
    h.removeColor(u"Background"_s);
    ASSERT_TRUE(h.model.undoRoleNames());
    EXPECT_EQ(h.colors(true), (QStringList{u"Red"_s, u"Accent"_s, u"Blue"_s, u"Ink"_s}));
    EXPECT_TRUE(h.store.active().colors.at(0).isAutoNamed &&
                h.store.active().colors.at(3).isAutoNamed);
    EXPECT_FALSE(h.model.undoRoleNames());

    Harness locked(
        palette(u"Locked"_s, {{u"Red"_s, u"#CC3333"_s}, {u"Snow"_s, u"#FFFFFF"_s}}, true));
    EXPECT_FALSE(locked.model.detailsPage().worthKnowing.offersRoleNaming);
    EXPECT_FALSE(locked.model.nameByRole());
}

} // namespace
} // namespace hueshelf::app
