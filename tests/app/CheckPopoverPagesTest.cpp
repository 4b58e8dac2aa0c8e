#include "CheckPopoverTestSupport.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::CheckColor;
using testing::checkPalette;
using testing::CheckPopoverHarness;
using testing::TestStore;

// --- Verdict page ----------------------------------------------------------------------------

TEST(CheckPopoverVerdict, SentencesBeforeAnyRow) {
    struct Case {
        const char* name;
        QList<CheckColor> colors;
        CheckVerdictPage::State state;
        QString message;
    };
    const Case cases[] = {
        {"one colour",
         {{u"Ink"_s, u"#111111"_s}},
         CheckVerdictPage::State::addColorsFirst,
         u"Add a few colors first."_s},
        {"black and white",
         {{u"Ink"_s, u"#000000"_s}, {u"Paper"_s, u"#FFFFFF"_s}},
         CheckVerdictPage::State::looksGood,
         u"Looks good. Everything reads, nothing looks alike."_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CheckPopoverHarness h(checkPalette(c.colors));
        h.model->open();
        const CheckVerdictPage page = h.model->verdictPage();
        EXPECT_EQ(page.state, c.state);
        EXPECT_EQ(page.message, c.message);
        EXPECT_TRUE(page.rows.isEmpty());
    }
}

TEST(CheckPopoverVerdict, NoActivePaletteAsksForColors) {
    TestStore store({checkPalette({{u"A"_s, u"#C7C700"_s}, {u"B"_s, u"#FFFFFF"_s}})},
                    QUuid::createUuid());
    CheckPopoverModel model(*store.store, store.clock, store.scheduler, 0.2);
    model.open();
    EXPECT_EQ(model.verdictPage().message, u"Add a few colors first."_s);
    EXPECT_FALSE(model.fix(model.rowOrder().value(0)));
    EXPECT_FALSE(model.nameByRole());
}

// One issue from its open row to the settled one, across both pages.
TEST(CheckPopoverVerdict, AReadabilityIssueOpenThenSettled) {
    CheckPopoverHarness h(checkPalette({{u"White"_s, u"#FFFFFF"_s}, {u"Olive"_s, u"#C7C700"_s}}));
    h.model->open();
    const CheckVerdictPage page = h.model->verdictPage();
    EXPECT_EQ(page.state, CheckVerdictPage::State::issues);
    EXPECT_EQ(page.title, u"1 thing to fix"_s);
    ASSERT_EQ(page.rows.size(), 1);
    EXPECT_EQ(page.rows[0].text, u"Olive is hard to read on White."_s);
    EXPECT_EQ(page.moreRowsText, std::nullopt);

    // Switching pages touches neither the order nor the palette.
    const QStringList order = h.model->rowOrder();
    h.model->showDetails();
    EXPECT_TRUE(h.model->showingDetails());
    EXPECT_TRUE(h.model->goingForward());
    EXPECT_EQ(h.model->detailsPage().countText, u"1 thing to fix"_s);
    h.model->showVerdict();
    EXPECT_FALSE(h.model->showingDetails());
    EXPECT_FALSE(h.model->goingForward());
    EXPECT_EQ(h.model->rowOrder(), order);
    EXPECT_TRUE(h.writer.requests.empty());

    // The settled row names the pair as it is now.
    ASSERT_TRUE(h.model->fix(h.readId(u"Olive"_s)));
    CheckRow row = h.model->verdictPage().rows.at(0);
    EXPECT_EQ(row.headline, u"Olive reads on White now."_s);
    EXPECT_EQ(row.detail, u"1.8 → 4.6:1 on White"_s);
    EXPECT_EQ(row.first.hex, u"#7A7A00"_s);
    EXPECT_EQ(row.first.label, u"Olive"_s);
    ASSERT_TRUE(h.storage().updateColor(h.idOf(u"White"_s), u"Paper"_s, u"#FFFFFF"_s, false));
    row = h.model->verdictPage().rows.at(0);
    EXPECT_EQ(row.headline, u"Olive reads on Paper now."_s);
    EXPECT_EQ(row.detail, u"1.8 → 4.6:1 on Paper"_s);
}

// --- Open rows -------------------------------------------------------------------------------

TEST(CheckPopoverRows, NoteAndFixButtonByKindAndLock) {
    const QList<CheckColor> olive{{u"White"_s, u"#FFFFFF"_s}, {u"Olive"_s, u"#C7C700"_s}};
    const QList<CheckColor> lockedOlive{{u"White"_s, u"#FFFFFF"_s},
                                        {u"Olive"_s, u"#C7C700"_s, true}};
    const QList<CheckColor> rust{{u"Rust"_s, u"#AA7134"_s}, {u"Brick"_s, u"#D25834"_s}};
    const QList<CheckColor> lockedRust{{u"Rust"_s, u"#AA7134"_s, true},
                                       {u"Brick"_s, u"#D25834"_s, true}};
    const QList<CheckColor> grays{{u"Gray"_s, u"#808080"_s}, {u"Slate"_s, u"#80808E"_s}};
    const QString lockedColor = u"Fix won't change a locked color, so adjust one by hand."_s;
    const QString shown = u"Shown as they see them. "_s;
    const QString lightens = shown + u"Fix lightens Brick a little."_s;
    const QString unlock = shown + u"Unlock the palette to fix."_s;
    const QString fix = u"Fix"_s;
    const QString lighten = u"Fix: lighten Brick"_s;
    const QString ratio = u"1.8:1 hard to read"_s;
    const struct {
        const char* name;
        QList<CheckColor> colors;
        bool paletteLocked;
        std::optional<QString> verdictNote;
        std::optional<QString> detailsNote;
        bool hasFix;
        bool fixEnabled;
        QString fixLabel;
    } cases[] = {
        {"readability", olive, false, std::nullopt, ratio, true, true, fix},
        {"readability, colour locked", lockedOlive, false, lockedColor, lockedColor, false, false,
         fix},
        {"readability, palette locked", olive, true, std::nullopt, ratio, true, false, fix},
        {"look-alike with a move", rust, false, lightens, lightens, true, true, lighten},
        {"look-alike, palette locked", rust, true, unlock, unlock, true, false, lighten},
        {"look-alike, both colours locked", lockedRust, false, shown + lockedColor,
         shown + lockedColor, false, false, fix},
        {"near-duplicate", grays, false, std::nullopt, u"Gray · Slate"_s, false, false, fix},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        CheckPopoverHarness h(checkPalette(c.colors, c.paletteLocked));
        h.model->open();
        const QList<CheckRow> verdictRows = h.model->verdictPage().rows;
        const QList<CheckRow> detailRows = h.model->detailsPage().rows;
        ASSERT_EQ(verdictRows.size(), 1);
        ASSERT_EQ(detailRows.size(), 1);
        const CheckRow& row = verdictRows[0];
        EXPECT_FALSE(row.isSettled);
        EXPECT_EQ(row.note, c.verdictNote);
        EXPECT_EQ(detailRows[0].note, c.detailsNote);
        EXPECT_EQ(row.hasFixButton, c.hasFix);
        EXPECT_EQ(row.isFixEnabled, c.fixEnabled);
        EXPECT_EQ(row.fixAccessibleLabel, c.fixLabel);
    }
}

TEST(CheckPopoverRows, LookAlikeSwatchesShowTheirReadersView) {
    CheckPopoverHarness h(checkPalette({{u"Rust"_s, u"#AA7134"_s}, {u"Brick"_s, u"#D25834"_s}}));
    h.model->open();
    const CheckRow open = h.model->verdictPage().rows.at(0);
    EXPECT_EQ(open.text, u"Rust and Brick look the same to red‑green vision."_s);
    EXPECT_EQ(open.first.hex, u"#918335"_s); // Rust to red-green vision
    EXPECT_EQ(open.first.label, u"Rust as they see it"_s);

    ASSERT_TRUE(h.model->fix(open.issueId));
    const CheckRow settled = h.model->verdictPage().rows.at(0);
    EXPECT_TRUE(settled.isSettled);
    EXPECT_EQ(settled.headline, u"Rust and Brick look different now."_s);
    EXPECT_EQ(settled.detail, u"Brick is 13% lighter, same hue."_s);
    EXPECT_EQ(settled.cost, std::nullopt);
    EXPECT_EQ(settled.second.hex, u"#B1A469"_s); // the new colour, simulated
    EXPECT_EQ(settled.second.label, u"Brick as they see it now"_s);
    EXPECT_EQ(h.model->verdictPage().title, u"Nothing to fix"_s);
}

// --- Details page ----------------------------------------------------------------------------

TEST(CheckPopoverDetails, EveryPairGridOfDarkOnLight) {
    CheckPopoverHarness h(checkPalette({{u"White"_s, u"#FFFFFF"_s},
                                        {u"Black"_s, u"#000000"_s},
                                        {u"Mist"_s, u"#EEEEEE"_s},
                                        {u"Olive"_s, u"#C7C700"_s}}));
    h.model->open();
    CheckDetailsPage page = h.model->detailsPage();
    const PaletteCheck::PairGrid& grid = page.grid;
    EXPECT_EQ(grid.summary, u"2 of 4 text-on-background pairs read well"_s);
    ASSERT_EQ(grid.cells.size(), 4);
    const QStringList expected{
        u"Black on White: 21.0:1 — readable as text"_s,
        u"Black on Mist: 18.1:1 — readable as text"_s,
        u"Olive on White: 1.8:1 — text needs 4.5:1"_s,
        u"Olive on Mist: 1.6:1 — text needs 4.5:1"_s,
    };
    for (qsizetype i = 0; i < grid.cells.size(); ++i)
        EXPECT_EQ(grid.cells[i].accessibleText, expected[i]);
    EXPECT_EQ(grid.cells[0].symbol, u"checkmark"_s);
    EXPECT_EQ(grid.cells[3].symbol, u"exclamationmark"_s);
    EXPECT_DOUBLE_EQ(grid.cells[3].symbolColor.red, 0.83);
    EXPECT_EQ(page.gridToggle, u"Show the grid"_s);
    h.model->setGridOpen(true);
    page = h.model->detailsPage();
    EXPECT_TRUE(page.gridOpen);
    EXPECT_EQ(page.gridToggle, u"Hide"_s);
}

TEST(CheckPopoverDetails, GridNeedsBothBands) {
    CheckPopoverHarness h(checkPalette({{u"Gray"_s, u"#808080"_s}, {u"Snow"_s, u"#FFFFFF"_s}}));
    h.model->open();
    const CheckDetailsPage page = h.model->detailsPage();
    EXPECT_TRUE(page.grid.cells.isEmpty());
    EXPECT_EQ(page.grid.summary, u"Readability needs a dark color and a light one."_s);
    EXPECT_EQ(page.gridToggle, std::nullopt);
}

TEST(CheckPopoverDetails, StripsPerVisionTypeMarkLookAlikes) {
    CheckPopoverHarness h(checkPalette(
        {{u"White"_s, u"#FFFFFF"_s}, {u"Rust"_s, u"#AA7134"_s}, {u"Brick"_s, u"#D25834"_s}}));
    h.model->open();
    const QList<VisionStrip> strips = h.model->detailsPage().strips;
    ASSERT_EQ(strips.size(), 4);
    const QList<QStringList> hexes{
        {u"#FFFFFF"_s, u"#AA7134"_s, u"#D25834"_s},
        {u"#FFFFFF"_s, u"#83752D"_s, u"#7A6D2F"_s},
        {u"#FFFFFF"_s, u"#918335"_s, u"#988830"_s},
        {u"#FFFFFF"_s, u"#B96464"_s, u"#E73C50"_s},
    };
    for (qsizetype i = 0; i < strips.size(); ++i) {
        SCOPED_TRACE(i);
        ASSERT_EQ(strips[i].swatches.size(), 3);
        for (qsizetype j = 0; j < 3; ++j) {
            EXPECT_EQ(strips[i].swatches[j].hex, hexes[i][j]);
            EXPECT_EQ(strips[i].swatches[j].isMarked, j > 0);
        }
    }
}

TEST(CheckPopoverDetails, WorthKnowingComposition) {
    const QString noDark =
        u"No dark color to read as text. Add one so words have something readable to sit on."_s;
    struct Case {
        const char* name;
        QList<CheckColor> colors;
        QStringList lines;
        bool offersRoleNaming;
        std::optional<QString> nothingToAdd;
    };
    const Case cases[] = {
        {"greys without a dark colour",
         {{u"Snow"_s, u"#FFFFFF"_s}, {u"Slate"_s, u"#808080"_s}},
         {u"Mostly neutral palette."_s, noDark,
          u"Slate works for headings on your light colors, not body text."_s},
         true,
         std::nullopt},
        // The all-light harmony note would repeat the missing-dark one.
        {"light pastels",
         {{u"Blush"_s, u"#FFB3B3"_s}, {u"Mint"_s, u"#B3FFB3"_s}},
         {u"Split-complementary palette."_s, noDark},
         true,
         std::nullopt},
        {"all dark",
         {{u"Maroon"_s, u"#330000"_s}, {u"Forest"_s, u"#003300"_s}},
         {u"Split-complementary palette."_s,
          u"All your colors are dark. Adding a lighter color would create more contrast and "
          u"make the palette more versatile."_s},
         true,
         std::nullopt},
        {"already named, nothing to say",
         {{u"Text Dark"_s, u"#000000"_s}, {u"Broken"_s, u"not a color"_s}},
         {},
         false,
         u"Nothing to add. There's a dark color to read as text and the colors sit well "
         u"together."_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CheckPopoverHarness h(checkPalette(c.colors));
        h.model->open();
        const WorthKnowingSection section = h.model->detailsPage().worthKnowing;
        EXPECT_EQ(section.lines, c.lines);
        EXPECT_EQ(section.offersRoleNaming, c.offersRoleNaming);
        EXPECT_EQ(section.nothingToAdd, c.nothingToAdd);
        EXPECT_FALSE(section.renamed);
    }
}

// --- Role naming -----------------------------------------------------------------------------

ColorTemplate rolePalette(bool locked = false) {
    return checkPalette({{u"Red"_s, u"#CC3333"_s, false, true},
                         {u"Accent"_s, u"#33CC33"_s},
                         {u"Blue"_s, u"#3333CC"_s, true},
                         {u"Snow"_s, u"#FFFFFF"_s},
                         {u"Ink"_s, u"#111111"_s, false, true}},
                        locked);
}

QStringList namesOf(const ColorTemplate& palette) {
    QStringList names;
    for (const ColorItem& color : palette.colors)
        names << color.name;
    return names;
}

TEST(CheckPopoverRoles, NamesUnlockedColorsAndUndoRestoresNamesAndFlags) {
    CheckPopoverHarness h(rolePalette());
    h.model->open();
    ASSERT_TRUE(h.model->detailsPage().worthKnowing.offersRoleNaming);

    ASSERT_TRUE(h.model->nameByRole());
    // Blue is locked and keeps its name, yet holds "Highlight" so nobody else gets it.
    EXPECT_EQ(namesOf(h.active()),
              (QStringList{u"Primary"_s, u"Accent"_s, u"Blue"_s, u"Background"_s, u"Text Dark"_s}));
    EXPECT_FALSE(h.active().colors.at(0).isAutoNamed);
    EXPECT_FALSE(h.active().colors.at(4).isAutoNamed);
    ASSERT_EQ(h.writer.requests.size(), 1u);

    ASSERT_TRUE(h.model->lastRoleRenames());
    const QList<RoleRename> expected{
        {h.idOf(u"Primary"_s), u"Red"_s, u"Primary"_s, true},
        {h.idOf(u"Background"_s), u"Snow"_s, u"Background"_s, false},
        {h.idOf(u"Text Dark"_s), u"Ink"_s, u"Text Dark"_s, true},
    };
    EXPECT_EQ(*h.model->lastRoleRenames(), expected);

    const WorthKnowingSection section = h.model->detailsPage().worthKnowing;
    ASSERT_TRUE(section.renamed);
    EXPECT_EQ(section.renamed->text,
              u"Renamed 3 colors: Red → Primary, Snow → Background, Ink → Text Dark"_s);
    EXPECT_FALSE(section.offersRoleNaming);
    EXPECT_FALSE(section.nothingToAdd);

    ASSERT_TRUE(h.model->undoRoleNames());
    EXPECT_EQ(namesOf(h.active()),
              (QStringList{u"Red"_s, u"Accent"_s, u"Blue"_s, u"Snow"_s, u"Ink"_s}));
    const QList<bool> autoNamed{true, false, false, false, true};
    for (qsizetype i = 0; i < autoNamed.size(); ++i)
        EXPECT_EQ(h.active().colors.at(i).isAutoNamed, autoNamed[i]) << i;
    EXPECT_FALSE(h.model->lastRoleRenames());
    EXPECT_EQ(h.writer.requests.size(), 2u);
    EXPECT_FALSE(h.model->undoRoleNames());
}

TEST(CheckPopoverRoles, OneRenameAndAColorGoneBeforeUndo) {
    CheckPopoverHarness h(checkPalette(
        {{u"Background"_s, u"#FFFFFF"_s}, {u"Ink"_s, u"#111111"_s}, {u"Coal"_s, u"#0A0A0A"_s}}));
    h.model->open();
    ASSERT_TRUE(h.model->nameByRole());
    EXPECT_EQ(h.model->detailsPage().worthKnowing.renamed->text,
              u"Renamed 2 colors: Ink → Text Dark, Coal → Heading"_s);
    const QUuid coal = h.idOf(u"Heading"_s);
    h.storage().editTemplate(h.active().id, [coal](ColorTemplate& palette) {
        palette.colors.removeIf([coal](const ColorItem& color) { return color.id == coal; });
    });
    ASSERT_TRUE(h.model->undoRoleNames());
    EXPECT_EQ(namesOf(h.active()), (QStringList{u"Background"_s, u"Ink"_s}));
}

TEST(CheckPopoverRoles, NotOfferedForASingleColor) {
    // "Red" would become "Primary", but one colour has no roles to tell apart.
    CheckPopoverHarness h(checkPalette({{u"Red"_s, u"#CC3333"_s}}));
    h.model->open();
    EXPECT_FALSE(h.model->detailsPage().worthKnowing.offersRoleNaming);
    EXPECT_EQ(h.model->detailsPage().worthKnowing.lines,
              QStringList{u"No dark color to read as text. Add one so words have something "
                          u"readable to sit on."_s});
}

TEST(CheckPopoverRoles, SummaryCountsOneColor) {
    EXPECT_EQ(roleRenameSummary({{QUuid(), u"Ink"_s, u"Text Dark"_s, false}}),
              u"Renamed 1 color: Ink → Text Dark"_s);
}

TEST(CheckPopoverRoles, RefusedWhereNothingWouldChangeOrThePaletteIsLocked) {
    struct Case {
        const char* name;
        ColorTemplate palette;
    };
    const Case cases[] = {
        {"locked palette", rolePalette(true)},
        {"already named",
         checkPalette({{u"Background"_s, u"#FFFFFF"_s}, {u"Text Dark"_s, u"#111111"_s}})},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CheckPopoverHarness h(c.palette);
        h.model->open();
        EXPECT_FALSE(h.model->detailsPage().worthKnowing.offersRoleNaming);
        const QStringList before = namesOf(h.active());
        EXPECT_FALSE(h.model->nameByRole());
        EXPECT_EQ(namesOf(h.active()), before);
        EXPECT_FALSE(h.model->lastRoleRenames());
        EXPECT_TRUE(h.writer.requests.empty());
    }
}

} // namespace
} // namespace hueshelf::app
