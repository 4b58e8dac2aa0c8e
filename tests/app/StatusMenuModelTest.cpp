#include "app/StatusMenuModel.h"

#include "AppTestSupport.h"

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::palette;
using testing::TestStore;

QStringList titlesOf(const QList<MenuEntry>& entries) {
    QStringList titles;
    for (const MenuEntry& entry : entries)
        titles << (entry.kind == MenuEntry::Kind::separator ? u"---"_s : entry.title);
    return titles;
}

const MenuEntry& palettesOf(const QList<MenuEntry>& entries) {
    for (const MenuEntry& entry : entries)
        if (entry.kind == MenuEntry::Kind::submenu && entry.title == u"Palettes"_s)
            return entry;
    throw std::runtime_error("no Palettes submenu");
}

QList<bool> checksOf(const MenuEntry& submenu) {
    QList<bool> checks;
    for (const MenuEntry& entry : submenu.children)
        checks << entry.isChecked;
    return checks;
}

class StatusMenuModelTest : public ::testing::Test {
protected:
    StatusMenuModelTest()
        : a(palette(u"Alpha"_s, {{u"A"_s, u"#111111"_s}})),
          b(palette(u"Same"_s, {{u"B"_s, u"#222222"_s}})),
          c(palette(u"Same"_s, {{u"C"_s, u"#333333"_s}})), store({a, b, c}) {}

    StatusMenuModel::Actions actions(bool withToggle) {
        StatusMenuModel::Actions result;
        result.isBarVisible = [this] { return barVisible; };
        if (withToggle)
            result.toggleBar = [this] { ++toggles; };
        result.quit = [this] { ++quits; };
        return result;
    }

    ColorTemplate a, b, c;
    TestStore store;
    bool barVisible = true;
    int toggles = 0;
    int quits = 0;
};

TEST_F(StatusMenuModelTest, OffersShowOrHideOnlyWhereSomethingCanBringTheBarBack) {
    StatusMenuModel withTray(*store.store, actions(true));
    EXPECT_EQ(titlesOf(withTray.build()), (QStringList{u"Hide HueShelf"_s, u"---"_s, u"Palettes"_s,
                                                       u"---"_s, u"Quit HueShelf"_s}));
    barVisible = false;
    const QList<MenuEntry> hidden = withTray.build();
    EXPECT_EQ(hidden.first().title, u"Show HueShelf"_s);
    hidden.first().onTrigger();
    EXPECT_EQ(toggles, 1);

    StatusMenuModel withoutTray(*store.store, actions(false));
    EXPECT_EQ(titlesOf(withoutTray.build()),
              (QStringList{u"Palettes"_s, u"---"_s, u"Quit HueShelf"_s}));
    withoutTray.build().last().onTrigger();
    EXPECT_EQ(quits, 1);
}

TEST_F(StatusMenuModelTest, ListsPalettesInOrderWithOnlyTheActiveOneChecked) {
    StatusMenuModel menu(*store.store, actions(true));
    const MenuEntry palettes = palettesOf(menu.build());
    EXPECT_EQ(titlesOf(palettes.children), (QStringList{u"Alpha"_s, u"Same"_s, u"Same"_s}));
    EXPECT_EQ(checksOf(palettes), (QList<bool>{true, false, false}));
    for (const MenuEntry& entry : palettes.children)
        EXPECT_TRUE(entry.isCheckable);
}

TEST_F(StatusMenuModelTest, ChoosingAPaletteSelectsItByIdAndTheNextOpeningShowsIt) {
    StatusMenuModel menu(*store.store, actions(true));
    const MenuEntry before = palettesOf(menu.build());

    // Two palettes share a name; the second one must be the one chosen.
    before.children[2].onTrigger();
    EXPECT_EQ(store.store->activeTemplateId(), c.id);
    EXPECT_EQ(checksOf(palettesOf(menu.build())), (QList<bool>{false, false, true}));
    // What was built earlier is a snapshot and stays as it was.
    EXPECT_EQ(checksOf(before), (QList<bool>{true, false, false}));
}

TEST_F(StatusMenuModelTest, IsBuiltFromTheListAsItStandsWhenOpened) {
    StatusMenuModel menu(*store.store, actions(true));
    const MenuEntry stale = palettesOf(menu.build());

    store.store->deleteTemplate(b.id);
    store.store->addTemplate(palette(u"Added"_s, {{u"D"_s, u"#444444"_s}}));
    const MenuEntry fresh = palettesOf(menu.build());
    EXPECT_EQ(titlesOf(fresh.children), (QStringList{u"Alpha"_s, u"Same"_s, u"Added"_s}));
    EXPECT_EQ(checksOf(fresh), (QList<bool>{false, false, true}));

    // Choosing a palette that was deleted while the old menu stood open changes nothing.
    const QUuid activeBefore = store.store->activeTemplateId();
    stale.children[1].onTrigger();
    EXPECT_EQ(store.store->activeTemplateId(), activeBefore);
}

TEST(StatusMenuModelEmpty, AnEmptyStoreStillOffersQuit) {
    TestStore store({});
    StatusMenuModel menu(*store.store, {});
    const QList<MenuEntry> entries = menu.build();
    EXPECT_EQ(titlesOf(entries), (QStringList{u"Palettes"_s, u"---"_s, u"Quit HueShelf"_s}));
    EXPECT_TRUE(palettesOf(entries).children.isEmpty());
}

} // namespace
} // namespace hueshelf::app
