#include "StoreFixture.h"
#include "model/StoreTexts.h"
#include "model/TemplateJson.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using Pair = std::pair<QString, QString>;

// --- Adding colours ------------------------------------------------------------------------

using AddColor = StoreFixture;

TEST_F(AddColor, InALockedPaletteDoesNothing) {
    start({makePalette(u"Locked"_s, {makeColor(u"A"_s, u"#000000"_s)}, true)});
    EXPECT_FALSE(store->addColor().has_value());
    EXPECT_FALSE(store->addColor(u"#123456"_s).has_value());
    EXPECT_EQ(active().colors.size(), 1);
    EXPECT_EQ(saves(), 0u);
    EXPECT_FALSE(store->colorAwaitingEdit().has_value());
    EXPECT_EQ(templatesChangedCount, 0);
}

TEST_F(AddColor, WithoutAnActivePaletteDoesNothing) {
    start({abcd()}, QUuid::createUuid());
    EXPECT_FALSE(store->addColor().has_value());
    EXPECT_EQ(saves(), 0u);
}

struct InsertCase {
    const char* what;
    std::vector<bool> dividers; // dividerBefore of each existing colour
    qsizetype expectedIndex;
};

class AddColorInsertion : public StoreFixture, public ::testing::WithParamInterface<InsertCase> {};

TEST_P(AddColorInsertion, GoesInFrontOfTheFirstGroup) {
    QList<ColorItem> colors;
    for (bool divider : GetParam().dividers)
        colors.append(
            makeColor(u"X"_s + QString::number(colors.size()), u"#101010"_s, false, divider));
    start({makePalette(u"P"_s, colors)});
    const auto index = store->addColor();
    ASSERT_TRUE(index.has_value()) << GetParam().what;
    EXPECT_EQ(*index, GetParam().expectedIndex) << GetParam().what;
    const ColorItem& added = active().colors.at(*index);
    EXPECT_EQ(added.hex, u"#F5F5F5"_s);
    EXPECT_TRUE(added.isAutoNamed);
    EXPECT_FALSE(added.isLocked || added.dividerBefore);
    EXPECT_TRUE(added.dividerLabel.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, AddColorInsertion,
    ::testing::Values(InsertCase{"no groups", {false, false, false}, 3},
                      InsertCase{"first colour starts a group", {true, false}, 0},
                      InsertCase{"group from the third", {false, false, true, true}, 2},
                      InsertCase{"empty palette", {}, 0}));

TEST_F(AddColor, ThenWaitsForItsEditorAfterTheSave) {
    start({abcd()});
    std::size_t savesWhenAwaiting = 0;
    QObject::connect(store.get(), &ColorStorage::colorAwaitingEditChanged,
                     [&] { savesWhenAwaiting = saves(); });
    const auto index = store->addColor(u"  abc "_s);
    ASSERT_TRUE(index.has_value());
    ASSERT_EQ(saves(), 1u);
    const ColorItem added = active().colors.at(*index);
    EXPECT_EQ(added.hex, u"#AABBCC"_s);
    EXPECT_EQ(store->colorAwaitingEdit(), std::optional<QUuid>(added.id));
    // The editor is asked for only once the save has begun, with the colour in it.
    EXPECT_EQ(savesWhenAwaiting, 1u);
    EXPECT_EQ(writer.requests.at(0).templates.at(0).colors.at(*index).id, added.id);
}

TEST_F(AddColor, ReturnsIndexesPastTheBarSoItCanOpenItsOverflow) {
    ColorTemplate six = abcd();
    six.colors.append({makeColor(u"E"_s, u"#555555"_s), makeColor(u"F"_s, u"#666666"_s)});
    start({six});
    EXPECT_EQ(store->addColor(u"#FF0000"_s), std::optional<qsizetype>(6));
}

struct NameCase {
    const char* what;
    QStringList existing;
    const char16_t* hex;
    const char16_t* expected;
};

class AddColorNaming : public StoreFixture, public ::testing::WithParamInterface<NameCase> {};

TEST_P(AddColorNaming, FindsTheNextFreeNumberAmongThePalettesNames) {
    QList<ColorItem> colors;
    for (const QString& name : GetParam().existing)
        colors.append(makeColor(name, u"#000000"_s));
    start({makePalette(u"P"_s, colors)});
    const auto index = store->addColor(QString::fromUtf16(GetParam().hex));
    ASSERT_TRUE(index.has_value());
    EXPECT_EQ(active().colors.at(*index).name, QString::fromUtf16(GetParam().expected))
        << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, AddColorNaming,
    ::testing::Values(
        NameCase{"free name", {u"Ink"_s}, u"#D4D4D4", u"Light Gray"},
        NameCase{"taken in another case and with blanks",
                 {u"  light GRAY "_s},
                 u"#D4D4D4",
                 u"Light Gray 2"},
        NameCase{
            "numbers taken too", {u"Light Gray"_s, u"light gray 2"_s}, u"#d4d4d4", u"Light Gray 3"},
        NameCase{"the add button's grey", {u"off white"_s}, u"#F5F5F5", u"Off White 2"}));

TEST_F(AddColor, AcceptsAPaletteOfFiveHundredColours) {
    QList<ColorItem> colors;
    for (int i = 0; i < 500; ++i)
        colors.append(makeColor(u"Color "_s + QString::number(i), u"#808080"_s));
    start({makePalette(u"Big"_s, colors)});
    EXPECT_EQ(store->addColor(), std::optional<qsizetype>(500));
    EXPECT_EQ(active().colors.size(), 501);
    EXPECT_EQ(active().revision, 2);
    ManualClock readClock;
    const auto decoded = TemplateJson::decodeTemplates(writer.requests.at(0).json, readClock);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->at(0).colors.size(), 501);
}

// --- Blank palettes ------------------------------------------------------------------------

struct BlankCase {
    const char* what;
    QStringList existing;
    const char16_t* expected;
};

class AddBlankTemplate : public StoreFixture, public ::testing::WithParamInterface<BlankCase> {};

TEST_P(AddBlankTemplate, NamesItAfterTheCountAndMakesItUnique) {
    QList<ColorTemplate> templates;
    for (const QString& name : GetParam().existing)
        templates.append(makePalette(name, {makeColor(u"A"_s, u"#000000"_s)}));
    start(templates);
    const QUuid id = store->addBlankTemplate();
    EXPECT_EQ(store->templates().constLast().name, QString::fromUtf16(GetParam().expected))
        << GetParam().what;
    EXPECT_EQ(store->activeTemplateId(), id);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, AddBlankTemplate,
    ::testing::Values(BlankCase{"two palettes", {u"Starter"_s, u"Example"_s}, u"Palette 3"},
                      BlankCase{"name taken", {u"Palette 3"_s, u"Example"_s}, u"Palette 3 2"},
                      BlankCase{
                          "both taken", {u"Palette 4"_s, u"Palette 4 2"_s, u"x"_s}, u"Palette 4 3"},
                      BlankCase{"other case is free", {u"palette 3"_s, u"Example"_s}, u"Palette 3"},
                      BlankCase{"no palettes", {}, u"Palette 1"}));

TEST_F(StoreFixture, BlankTemplateHasThreeGreysSavesAnnouncesAndAsksForARenameLater) {
    start({abcd(), abcd(u"Other"_s)});
    int renames = 0;
    QObject::connect(store.get(), &ColorStorage::renameRequested, [&] { ++renames; });

    store->addBlankTemplate();
    const ColorTemplate blank = active();
    EXPECT_EQ(namesOf(blank.colors),
              (QStringList{u"Off White"_s, u"Off White 2"_s, u"Light Gray"_s}));
    QStringList hexes;
    for (const ColorItem& color : blank.colors) {
        hexes.append(color.hex);
        EXPECT_TRUE(color.isAutoNamed);
        EXPECT_FALSE(color.isLocked || color.dividerBefore);
    }
    EXPECT_EQ(hexes, (QStringList{u"#F5F5F5"_s, u"#E5E5E5"_s, u"#D4D4D4"_s}));
    EXPECT_EQ(blank.revision, 1);
    EXPECT_EQ(blank.createdAt, kStart);
    EXPECT_EQ(blank.contentHash, computeContentHash(blank.name, blank.colors));
    EXPECT_EQ(saves(), 1u);
    EXPECT_EQ(announcements,
              (std::vector<Pair>{{u"Created \"Palette 3\""_s, u"plus.circle.fill"_s}}));

    scheduler.advance(0.29);
    EXPECT_EQ(renames, 0);
    scheduler.advance(0.01);
    EXPECT_EQ(renames, 1);
    scheduler.advance(5.0);
    EXPECT_EQ(renames, 1);
}

TEST_F(StoreFixture, PendingRenameRequestDiesWithTheStore) {
    start({abcd()});
    store->addBlankTemplate();
    store.reset();
    scheduler.advance(1.0); // must not reach a destroyed store
    EXPECT_EQ(scheduler.pendingCount(), 0);
}

// --- Selecting and renaming ----------------------------------------------------------------

TEST_F(StoreFixture, SelectingALockedPaletteWorksAndSaves) {
    const ColorTemplate locked = makePalette(u"Locked"_s, {makeColor(u"A"_s, u"#000000"_s)}, true);
    start({abcd(), locked});
    int activeChanges = 0;
    QObject::connect(store.get(), &ColorStorage::activeTemplateIdChanged, [&] { ++activeChanges; });
    store->selectTemplate(locked.id);
    EXPECT_EQ(store->activeTemplateId(), locked.id);
    EXPECT_EQ(activeChanges, 1);
    ASSERT_EQ(saves(), 1u);
    EXPECT_EQ(writer.requests.at(0).activeTemplateId, uuidText(locked.id));

    store->selectTemplate(QUuid::createUuid());
    EXPECT_EQ(store->activeTemplateId(), locked.id);
    EXPECT_EQ(saves(), 1u);
}

struct RenameCase {
    const char* what;
    bool locked;
    const char16_t* typed;
    bool closes;
    const char16_t* nameAfter;
    std::size_t saves;
};

class RenameActiveTemplate : public StoreFixture,
                             public ::testing::WithParamInterface<RenameCase> {};

TEST_P(RenameActiveTemplate, FollowsTheRule) {
    const RenameCase& c = GetParam();
    start({makePalette(u"Old"_s, {makeColor(u"A"_s, u"#000000"_s)}, c.locked),
           makePalette(u"Taken"_s, {})});
    EXPECT_EQ(store->renameActiveTemplate(QString::fromUtf16(c.typed)), c.closes) << c.what;
    EXPECT_EQ(active().name, QString::fromUtf16(c.nameAfter)) << c.what;
    EXPECT_EQ(saves(), c.saves) << c.what;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RenameActiveTemplate,
    ::testing::Values(RenameCase{"trimmed", false, u"  New name\t", true, u"New name", 1},
                      RenameCase{"blanks only stay open", false, u" \t ", false, u"Old", 0},
                      RenameCase{"empty stays open", false, u"", false, u"Old", 0},
                      RenameCase{"locked closes without renaming", true, u"New", true, u"Old", 0},
                      RenameCase{"locked and blank stays open", true, u"  ", false, u"Old", 0},
                      RenameCase{"a name in use is allowed", false, u"Taken", true, u"Taken", 1}));

// --- Locks ---------------------------------------------------------------------------------

TEST_F(StoreFixture, ColourLockIsRefusedOnlyInALockedPalette) {
    ColorTemplate palette = abcd();
    palette.colors[1].isLocked = true;
    start({palette});
    // Writable while the colour itself is locked.
    EXPECT_TRUE(store->setColorLocked(palette.colors[1].id, false));
    EXPECT_FALSE(active().colors[1].isLocked);
    EXPECT_TRUE(store->setColorLocked(palette.colors[0].id, true));
    EXPECT_EQ(saves(), 2u);
    EXPECT_FALSE(store->setColorLocked(QUuid::createUuid(), true));

    store->toggleActiveTemplateLock();
    EXPECT_TRUE(active().isLocked);
    EXPECT_FALSE(store->setColorLocked(palette.colors[2].id, true));
    EXPECT_FALSE(active().colors[2].isLocked);
    EXPECT_EQ(saves(), 3u);
}

TEST_F(StoreFixture, UpdateColorWritesInPlaceWithoutSavingAndRespectsThePaletteLock) {
    const ColorTemplate palette = abcd();
    start({palette});
    EXPECT_TRUE(store->updateColor(palette.colors[0].id, u"Ink"_s, u"#0A0A0A"_s, false));
    EXPECT_EQ(active().colors[0].name, u"Ink"_s);
    EXPECT_EQ(active().colors[0].hex, u"#0A0A0A"_s);
    EXPECT_EQ(saves(), 0u);
    EXPECT_EQ(templatesChangedCount, 1);

    store->toggleActiveTemplateLock();
    EXPECT_FALSE(store->updateColor(palette.colors[0].id, u"Other"_s, u"#FFFFFF"_s, true));
    EXPECT_EQ(active().colors[0].name, u"Ink"_s);
}

// --- Moving --------------------------------------------------------------------------------

struct MoveCase {
    const char* what;
    qsizetype from;
    qsizetype to;
    const char16_t* order;
};

class MoveColor : public StoreFixture, public ::testing::WithParamInterface<MoveCase> {};

TEST_P(MoveColor, ExchangesTwoColours) {
    const MoveCase& c = GetParam();
    start({abcd()});
    const QString before = u"ABCD"_s;
    const bool moved = store->moveColor(c.from, c.to);
    const QString order = namesOf(active().colors).join(QString());
    EXPECT_EQ(order, QString::fromUtf16(c.order)) << c.what;
    EXPECT_EQ(moved, order != before) << c.what;
    EXPECT_EQ(saves(), moved ? 1u : 0u) << c.what;
}

INSTANTIATE_TEST_SUITE_P(Cases, MoveColor,
                         ::testing::Values(MoveCase{"first onto fourth", 0, 3, u"DBCA"},
                                           MoveCase{"fourth onto first", 3, 0, u"DBCA"},
                                           MoveCase{"neighbours", 1, 2, u"ACBD"},
                                           MoveCase{"same index", 2, 2, u"ABCD"},
                                           MoveCase{"index equal to count", 0, 4, u"ABCD"},
                                           MoveCase{"source equal to count", 4, 1, u"ABCD"},
                                           MoveCase{"negative", -1, 1, u"ABCD"}));

TEST_F(StoreFixture, MovingIsRefusedInALockedPaletteAndForLockedColours) {
    ColorTemplate palette = abcd();
    palette.colors[3].isLocked = true;
    start({palette});
    EXPECT_FALSE(store->moveColor(0, 3));
    EXPECT_FALSE(store->moveColor(3, 0));
    EXPECT_TRUE(store->moveColor(0, 2));
    store->toggleActiveTemplateLock();
    const std::size_t savesBefore = saves();
    EXPECT_FALSE(store->moveColor(0, 1));
    EXPECT_EQ(namesOf(active().colors).join(QString()), u"CBAD"_s);
    EXPECT_EQ(saves(), savesBefore);
}

TEST_F(StoreFixture, GroupsTravelWithTheirColours) {
    ColorTemplate palette = abcd();
    palette.colors[2].dividerBefore = true;
    palette.colors[2].dividerLabel = u"Group"_s;
    start({palette});
    ASSERT_TRUE(store->moveColor(2, 0));
    EXPECT_TRUE(active().colors[0].dividerBefore);
    EXPECT_EQ(active().colors[0].dividerLabel, u"Group"_s);
    EXPECT_FALSE(active().colors[2].dividerBefore);
}

// --- Deleting colours ----------------------------------------------------------------------

struct ColorRefusalCase {
    const char* what;
    bool paletteLocked;
    bool colorLocked;
    int colorCount;
    std::optional<QString> refusal;
};

class DeleteColorRefusal : public StoreFixture,
                           public ::testing::WithParamInterface<ColorRefusalCase> {};

TEST_P(DeleteColorRefusal, AsksInOrder) {
    const ColorRefusalCase& c = GetParam();
    QList<ColorItem> colors;
    for (int i = 0; i < c.colorCount; ++i)
        colors.append(
            makeColor(u"C"_s + QString::number(i), u"#000000"_s, i == 0 && c.colorLocked));
    start({makePalette(u"P"_s, colors, c.paletteLocked)});
    EXPECT_EQ(store->deleteColorRefusal(colors[0].id), c.refusal) << c.what;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DeleteColorRefusal,
    ::testing::Values(
        ColorRefusalCase{"allowed", false, false, 2, std::nullopt},
        ColorRefusalCase{"palette locked first", true, true, 1, StoreTexts::editColorsRefusal},
        ColorRefusalCase{"palette locked", true, false, 3, u"Unlock this palette to edit colors"_s},
        ColorRefusalCase{"colour locked before count", false, true, 1,
                         u"Unlock this color to delete it"_s},
        ColorRefusalCase{"last colour", false, false, 1, u"A palette needs at least one color"_s}));

TEST_F(StoreFixture, DeletingAColourRemovesEveryCopyAndAnnounces) {
    ColorTemplate palette = abcd();
    palette.colors[3].id = palette.colors[1].id; // a duplicate id, as a bad merge might leave
    start({palette});
    EXPECT_TRUE(store->deleteColor(palette.colors[1].id));
    EXPECT_EQ(namesOf(active().colors), (QStringList{u"A"_s, u"C"_s}));
    EXPECT_EQ(saves(), 1u);
    EXPECT_EQ(announcements, (std::vector<Pair>{{u"Removed B"_s, u"trash.fill"_s}}));
}

TEST_F(StoreFixture, ConfirmedDeleteTestsTheCountAgain) {
    const ColorTemplate palette = makePalette(u"P"_s, {makeColor(u"Only"_s, u"#000000"_s)});
    start({palette});
    EXPECT_FALSE(store->deleteColor(palette.colors[0].id));
    EXPECT_EQ(active().colors.size(), 1);
    EXPECT_FALSE(store->deleteColor(QUuid::createUuid()));
    EXPECT_EQ(saves(), 0u);
    EXPECT_TRUE(announcements.empty());
}

// --- Deleting palettes ---------------------------------------------------------------------

struct TemplateRefusalCase {
    const char* what;
    bool targetLocked;
    bool otherLocked;
    bool withOther;
    std::optional<QString> refusal;
};

class DeleteTemplateRefusal : public StoreFixture,
                              public ::testing::WithParamInterface<TemplateRefusalCase> {};

TEST_P(DeleteTemplateRefusal, AsksInOrder) {
    const TemplateRefusalCase& c = GetParam();
    const ColorTemplate target =
        makePalette(u"T"_s, {makeColor(u"A"_s, u"#000000"_s)}, c.targetLocked);
    QList<ColorTemplate> templates{target};
    if (c.withOther)
        templates.append(makePalette(u"O"_s, {makeColor(u"A"_s, u"#000000"_s)}, c.otherLocked));
    start(templates);
    EXPECT_EQ(store->deleteTemplateRefusal(target.id), c.refusal) << c.what;
    EXPECT_EQ(store->confirmDeleteTemplate(target.id), !c.refusal.has_value()) << c.what;
    EXPECT_EQ(store->templates().size(), templates.size() - (c.refusal ? 0 : 1)) << c.what;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DeleteTemplateRefusal,
    ::testing::Values(TemplateRefusalCase{"two, other locked", false, true, true, std::nullopt},
                      TemplateRefusalCase{"locked", true, false, true,
                                          u"Unlock this palette to delete it"_s},
                      TemplateRefusalCase{"one left, unlocked", false, false, false,
                                          u"There's only one palette left"_s},
                      TemplateRefusalCase{"one left and locked", true, false, false,
                                          StoreTexts::deleteLockedTemplateRefusal}));

TEST_F(StoreFixture, DeletingTheActivePaletteActivatesTheFirstNotANeighbour) {
    const ColorTemplate first = abcd(u"First"_s);
    const ColorTemplate second = abcd(u"Second"_s);
    const ColorTemplate third = abcd(u"Third"_s);
    start({first, second, third}, third.id);
    store->setShadowState(third.id, {u"h"_s, 1, 1.0});
    store->setShadowState(first.id, {u"k"_s, 2, 2.0});
    QUuid deletedSignal;
    QObject::connect(store.get(), &ColorStorage::templateDeleted,
                     [&](const QUuid& id) { deletedSignal = id; });

    ASSERT_TRUE(store->confirmDeleteTemplate(third.id));
    EXPECT_EQ(store->activeTemplateId(), first.id);
    EXPECT_EQ(namesOf(store->templates()), (QStringList{u"First"_s, u"Second"_s}));
    EXPECT_FALSE(store->templateLastModified().contains(third.id));
    EXPECT_TRUE(store->templateLastModified().contains(first.id));
    EXPECT_FALSE(store->shadowState().contains(third.id));
    EXPECT_EQ(deletedSignal, third.id);
    ASSERT_EQ(writer.shadowWrites.size(), 1u);
    EXPECT_EQ(TemplateJson::decodeShadowStates(writer.shadowWrites[0]), store->shadowState());
    ASSERT_EQ(saves(), 1u);
    EXPECT_EQ(writer.requests[0].activeTemplateId, uuidText(first.id));
    EXPECT_EQ(announcements, (std::vector<Pair>{{u"Palette deleted"_s, u"trash.fill"_s}}));

    store->selectTemplate(second.id);
    ASSERT_TRUE(store->confirmDeleteTemplate(second.id));
    EXPECT_EQ(store->activeTemplateId(), first.id);
}

TEST_F(StoreFixture, DeletingAnotherPaletteKeepsTheActiveOne) {
    const ColorTemplate first = abcd(u"First"_s);
    const ColorTemplate second = abcd(u"Second"_s);
    start({first, second}, second.id);
    ASSERT_TRUE(store->confirmDeleteTemplate(first.id));
    EXPECT_EQ(store->activeTemplateId(), second.id);
}

TEST_F(StoreFixture, DeleteTemplateRemovesEveryCopyAndDoesNotSave) {
    const ColorTemplate twin = abcd(u"Twin"_s);
    const ColorTemplate other = abcd(u"Other"_s);
    start({twin, other, twin}, other.id);
    store->deleteTemplate(twin.id);
    EXPECT_EQ(namesOf(store->templates()), (QStringList{u"Other"_s}));
    EXPECT_EQ(saves(), 0u);
    EXPECT_TRUE(announcements.empty());
}

TEST_F(StoreFixture, ConfirmationTestsAgainForChangesMadeMeanwhile) {
    const ColorTemplate first = abcd(u"First"_s);
    const ColorTemplate second = abcd(u"Second"_s);
    start({first, second});
    ASSERT_FALSE(store->deleteTemplateRefusal(first.id).has_value());
    // Sync locks it while the user reads the question.
    store->editTemplate(first.id, [](ColorTemplate& palette) { palette.isLocked = true; });
    EXPECT_FALSE(store->confirmDeleteTemplate(first.id));
    EXPECT_EQ(store->templates().size(), 2);
    EXPECT_EQ(saves(), 0u);
    EXPECT_TRUE(announcements.empty());
    EXPECT_FALSE(store->confirmDeleteTemplate(QUuid::createUuid()));
}

} // namespace
} // namespace hueshelf::testing
