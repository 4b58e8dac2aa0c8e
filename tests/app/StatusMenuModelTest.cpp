#include "app/StatusMenuModel.h"

#include "AppTestSupport.h"
#include "TempHome.h"
#include "app/AppSettingsKeys.h"
#include "app/AppearanceController.h"
#include "app/MenuFiller.h"
#include "platform/fake/FakePlatform.h"

#include <QAction>
#include <QMenu>
#include <QSettings>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::Announcement;
using testing::palette;

// The menu as text, one line per entry: "---" for a separator, "Title >" for a submenu with its
// children indented below, "[x] " or "[ ] " before a checkable title, the shortcut after it.
void outline(const QList<MenuEntry>& entries, const QString& indent, QStringList& lines) {
    for (const MenuEntry& entry : entries) {
        if (entry.kind == MenuEntry::Kind::separator) {
            lines << indent + u"---"_s;
            continue;
        }
        QString line = indent;
        if (entry.isCheckable)
            line += entry.isChecked ? u"[x] "_s : u"[ ] "_s;
        line += entry.title;
        if (entry.kind == MenuEntry::Kind::submenu)
            line += u" >"_s;
        if (!entry.shortcut.isEmpty())
            line += u" ("_s + entry.shortcut.toString(QKeySequence::PortableText) + u')';
        lines << line;
        outline(entry.children, indent + u"  "_s, lines);
    }
}

QStringList outline(const QList<MenuEntry>& entries) {
    QStringList lines;
    outline(entries, QString(), lines);
    return lines;
}

// The entry reached by following titles down through submenus.
const MenuEntry* find(const QList<MenuEntry>& entries, const QStringList& path) {
    for (const MenuEntry& entry : entries) {
        if (entry.kind != MenuEntry::Kind::separator && entry.title == path.first())
            return path.size() == 1 ? &entry : find(entry.children, path.mid(1));
    }
    return nullptr;
}

class StatusMenu : public ::testing::Test {
protected:
    void SetUp() override { testing::ensureApplication(); }

    StatusMenuModel::Actions actions() {
        StatusMenuModel::Actions made;
        const auto record = [this](const QString& name) {
            return [this, name] { called << name; };
        };
        made.isBarVisible = [this] { return barVisible; };
        made.toggleBar = record(u"toggleBar"_s);
        made.openAIToolsWindow = record(u"openAIToolsWindow"_s);
        made.openShortcutPermission = record(u"openShortcutPermission"_s);
        made.openSyncSettings = record(u"openSyncSettings"_s);
        made.resetBarPosition = record(u"resetBarPosition"_s);
        made.openAboutWindow = record(u"openAboutWindow"_s);
        made.openWhatsNewWindow = record(u"openWhatsNewWindow"_s);
        made.quit = record(u"quit"_s);
        return made;
    }

    // Chooses the entry at the path in a freshly built menu.
    void choose(const QStringList& path) {
        const QList<MenuEntry> entries = menu.build();
        const MenuEntry* entry = find(entries, path);
        ASSERT_NE(entry, nullptr) << path.join(u" > "_s).toStdString();
        ASSERT_TRUE(entry->onTrigger) << path.join(u" > "_s).toStdString();
        entry->onTrigger();
    }
    // The checked titles of a submenu at the path.
    QStringList checkedIn(const QStringList& path) {
        const QList<MenuEntry> entries = menu.build();
        const MenuEntry* submenu = find(entries, path);
        QStringList checked;
        for (const MenuEntry& entry : submenu ? submenu->children : QList<MenuEntry>())
            if (entry.isChecked)
                checked << entry.title;
        return checked;
    }

    const ColorTemplate alpha = palette(u"Alpha"_s, {{u"A"_s, u"#111111"_s}});
    const ColorTemplate beta = palette(u"Beta & Co"_s, {{u"B"_s, u"#222222"_s}});
    testing::TestStore store{{alpha, beta}};
    testing::TempHome home;
    QSettings settings{home.path() + u"/hueshelf.conf"_s, QSettings::IniFormat};
    FakePlatform platform;
    AppearanceController appearance{settings, platform};
    bool barVisible = true;
    QStringList called;
    StatusMenuModel menu{*store.store, settings, platform, appearance, actions()};
};

// The whole menu in order, in the four states that change its shape or titles.
TEST_F(StatusMenu, ListsEveryItemInOrder) {
    settings.setValue(AppSettingsKeys::defaultCopyFormat, u"hex"_s);
    const QStringList settingsTail = {
        u"  ---"_s,
        u"  Appearance >"_s,
        u"    [x] System"_s,
        u"    [ ] Light"_s,
        u"    [ ] Dark"_s,
        u"  ---"_s,
        u"  Copy Colors As >"_s,
        u"    [x] HEX"_s,
        u"    [ ] HEX (no #)"_s,
        u"    [ ] RGB"_s,
        u"    [ ] HSL"_s,
        u"    [ ] CSS Variable"_s,
        u"    [ ] Tailwind"_s,
        u"  ---"_s,
        u"  Cloud Sync…"_s,
        u"  ---"_s,
        u"  Move the Bar Back to the Middle"_s,
        u"---"_s,
        u"About HueShelf"_s,
        u"What's New"_s,
        u"Check for Updates…"_s,
        u"Quit HueShelf (Ctrl+Q)"_s,
    };
    struct Case {
        bool visible;
        bool hasShortcut;
        QString firstLine;
    };
    const Case cases[] = {
        {true, false, u"Hide HueShelf (Ctrl+Shift+B)"_s},
        {false, false, u"Show HueShelf (Ctrl+Shift+B)"_s},
        {true, true, u"Hide HueShelf (Ctrl+Shift+B)"_s},
        {false, true, u"Show HueShelf (Ctrl+Shift+B)"_s},
    };
    for (const Case& c : cases) {
        barVisible = c.visible;
        platform.unregisterGlobalShortcut();
        if (c.hasShortcut) {
            ASSERT_TRUE(platform.registerGlobalShortcut([] {}));
        }
        QStringList expected = {
            c.firstLine,
            u"---"_s,
            u"Palettes >"_s,
            u"  [x] Alpha"_s,
            u"  [ ] Beta & Co"_s,
            u"Connect AI Coding Tools…"_s,
            u"---"_s,
            u"Settings >"_s,
            u"  [ ] Launch at Login"_s,
            u"  [ ] Only Show When I Open It"_s,
        };
        if (!c.hasShortcut)
            expected << u"  Allow the Keyboard Shortcut (⌃⇧B)…"_s;
        expected << settingsTail;
        EXPECT_EQ(outline(menu.build()), expected) << c.visible << c.hasShortcut;
    }
}

// Every item that isn't a setting hands its work to the owner; "Check for Updates…" opens the
// download page of the web host that links are written for.
TEST_F(StatusMenu, ItemsReachTheirActions) {
    const std::pair<QStringList, QString> cases[] = {
        {{u"Hide HueShelf"_s}, u"toggleBar"_s},
        {{u"Connect AI Coding Tools…"_s}, u"openAIToolsWindow"_s},
        {{u"Settings"_s, u"Allow the Keyboard Shortcut (⌃⇧B)…"_s}, u"openShortcutPermission"_s},
        {{u"Settings"_s, u"Cloud Sync…"_s}, u"openSyncSettings"_s},
        {{u"Settings"_s, u"Move the Bar Back to the Middle"_s}, u"resetBarPosition"_s},
        {{u"About HueShelf"_s}, u"openAboutWindow"_s},
        {{u"What's New"_s}, u"openWhatsNewWindow"_s},
        {{u"Quit HueShelf"_s}, u"quit"_s},
    };
    for (const auto& [path, action] : cases) {
        called.clear();
        choose(path);
        EXPECT_EQ(called, QStringList{action});
    }
    EXPECT_TRUE(platform.openedUrls().isEmpty());
    choose({u"Check for Updates…"_s});
    EXPECT_EQ(platform.openedUrls(), QList<QUrl>{QUrl(u"https://hueshelf.app/download"_s)});
}

// Without a tray nothing could bring a hidden bar back, so the menu then offers no hiding.
TEST_F(StatusMenu, OffersHidingOnlyWithAWayBack) {
    StatusMenuModel::Actions noTray = actions();
    noTray.toggleBar = nullptr;
    const StatusMenuModel trayless(*store.store, settings, platform, appearance, noTray);
    const QStringList lines = outline(trayless.build());
    EXPECT_EQ(lines.first(), u"Palettes >"_s);
    EXPECT_TRUE(lines.filter(u"Hide HueShelf"_s).isEmpty());
    EXPECT_TRUE(lines.filter(u"Show HueShelf"_s).isEmpty());
}

// The stored text decides the check; text no item has (another writer's, an old spelling)
// checks none. A choice stores the identifier, not the label.
TEST_F(StatusMenu, CopyFormatCheckFollowsTheStoredIdentifier) {
    const std::pair<QVariant, QStringList> cases[] = {
        {u"hex"_s, {u"HEX"_s}},
        {u"hex-no-hash"_s, {u"HEX (no #)"_s}},
        {u"css-var"_s, {u"CSS Variable"_s}},
        {u"tailwind"_s, {u"Tailwind"_s}},
        {u"HEX"_s, {}},
        {u"cssvar"_s, {}},
        {u""_s, {}},
        {QVariant(), {u"HEX"_s}}, // absent: the default
    };
    for (const auto& [stored, checked] : cases) {
        if (stored.isValid())
            settings.setValue(AppSettingsKeys::defaultCopyFormat, stored);
        else
            settings.remove(AppSettingsKeys::defaultCopyFormat);
        EXPECT_EQ(checkedIn({u"Settings"_s, u"Copy Colors As"_s}), checked)
            << stored.toString().toStdString();
    }
    settings.setValue(AppSettingsKeys::defaultCopyFormat, u"bogus"_s);
    choose({u"Settings"_s, u"Copy Colors As"_s, u"HSL"_s});
    EXPECT_EQ(settings.value(AppSettingsKeys::defaultCopyFormat), u"hsl"_s);
    EXPECT_EQ(checkedIn({u"Settings"_s, u"Copy Colors As"_s}), QStringList{u"HSL"_s});
}

// An unknown mode checks no item; choosing one stores it and the look follows at once.
TEST_F(StatusMenu, AppearanceCheckAndChoice) {
    const std::pair<QVariant, QStringList> cases[] = {
        {QVariant(), {u"System"_s}},
        {u"system"_s, {u"System"_s}},
        {u"light"_s, {u"Light"_s}},
        {u"dark"_s, {u"Dark"_s}},
        {u"Dark"_s, {}},
        {u"sepia"_s, {}},
    };
    for (const auto& [stored, checked] : cases) {
        if (stored.isValid())
            settings.setValue(AppSettingsKeys::appearanceMode, stored);
        else
            settings.remove(AppSettingsKeys::appearanceMode);
        EXPECT_EQ(checkedIn({u"Settings"_s, u"Appearance"_s}), checked)
            << stored.toString().toStdString();
    }
    int changes = 0;
    QObject::connect(&appearance, &AppearanceController::changed, [&changes] { ++changes; });
    choose({u"Settings"_s, u"Appearance"_s, u"Dark"_s});
    EXPECT_EQ(settings.value(AppSettingsKeys::appearanceMode), u"dark"_s);
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::dark);
    EXPECT_EQ(changes, 1);
    choose({u"Settings"_s, u"Appearance"_s, u"System"_s});
    EXPECT_EQ(settings.value(AppSettingsKeys::appearanceMode), u"system"_s);
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::noPreference);
    EXPECT_EQ(changes, 2);
}

// The setting flips only when the desktop took the change; a refusal changes nothing, shows
// nothing, and the next attempt asks for the same change again.
TEST_F(StatusMenu, LaunchAtLoginFlipsOnlyOnSuccess) {
    const QStringList path = {u"Settings"_s, u"Launch at Login"_s};
    struct Step {
        bool fails;
        bool registered;
        bool stored;
    };
    const Step steps[] = {
        {true, false, false}, {false, true, true}, {true, true, true}, {false, false, false}};
    for (const Step& step : steps) {
        platform.setLaunchAtLoginFails(step.fails);
        choose(path);
        EXPECT_EQ(platform.isLaunchAtLoginRegistered(), step.registered);
        EXPECT_EQ(settings.value(AppSettingsKeys::launchAtLogin, false).toBool(), step.stored);
        EXPECT_EQ(checkedIn({u"Settings"_s}).contains(u"Launch at Login"_s), step.stored);
    }
    EXPECT_TRUE(store.announcements.empty());
}

TEST_F(StatusMenu, StartHiddenAnnouncesBothWays) {
    const QStringList path = {u"Settings"_s, u"Only Show When I Open It"_s};
    choose(path);
    EXPECT_TRUE(settings.value(AppSettingsKeys::startHidden).toBool());
    EXPECT_EQ(checkedIn({u"Settings"_s}), QStringList{u"Only Show When I Open It"_s});
    choose(path);
    EXPECT_FALSE(settings.value(AppSettingsKeys::startHidden).toBool());
    EXPECT_EQ(store.announcements,
              (std::vector<Announcement>{
                  {u"HueShelf will stay hidden until you open it"_s, u"eye.slash"_s},
                  {u"HueShelf will show when it starts again"_s, u"eye"_s}}));
}

// Entries carry ids, since names repeat; the next opening shows the new check, and an entry of
// a menu left open after its palette went away does nothing.
TEST_F(StatusMenu, PalettesSelectByIdAndShowTheNewCheck) {
    const ColorTemplate twin = palette(u"Alpha"_s, {{u"C"_s, u"#333333"_s}});
    store.store->addTemplate(twin);
    const QList<MenuEntry> open = menu.build();
    const QList<MenuEntry> items = find(open, {u"Palettes"_s})->children;
    ASSERT_EQ(items.size(), 3);
    items[2].onTrigger();
    EXPECT_EQ(store.store->activeTemplateId(), twin.id);
    EXPECT_EQ(checkedIn({u"Palettes"_s}), QStringList{u"Alpha"_s});
    EXPECT_TRUE(find(menu.build(), {u"Palettes"_s})->children[2].isChecked);
    store.store->deleteTemplate(beta.id);
    items[1].onTrigger();
    EXPECT_EQ(store.store->activeTemplateId(), twin.id);
}

// Asked on every opening: once a shortcut backend is registered the item is gone, no restart.
TEST_F(StatusMenu, PermissionItemGoesOnceAShortcutIsRegistered) {
    const QStringList path = {u"Settings"_s, u"Allow the Keyboard Shortcut (⌃⇧B)…"_s};
    platform.setGlobalShortcutAvailable(false);
    EXPECT_FALSE(platform.registerGlobalShortcut([] {}));
    EXPECT_NE(find(menu.build(), path), nullptr);
    platform.setGlobalShortcutAvailable(true);
    ASSERT_TRUE(platform.registerGlobalShortcut([] {}));
    EXPECT_EQ(find(menu.build(), path), nullptr);
    platform.unregisterGlobalShortcut();
    EXPECT_NE(find(menu.build(), path), nullptr);
}

// The widget menu shows the same hints and checks, and its items act as the model's do.
TEST_F(StatusMenu, FilledMenuCarriesShortcutsChecksAndActions) {
    QMenu widget;
    fillMenu(widget, menu.build());
    const QList<QAction*> actions = widget.actions();
    EXPECT_EQ(actions.first()->shortcut(), QKeySequence(u"Ctrl+Shift+B"_s));
    EXPECT_EQ(actions.last()->shortcut(), QKeySequence(u"Ctrl+Q"_s));
    const QList<QAction*> palettes = actions.at(2)->menu()->actions();
    ASSERT_EQ(palettes.size(), 2);
    EXPECT_EQ(palettes[1]->text(), u"Beta && Co"_s);
    EXPECT_TRUE(palettes[0]->isChecked());
    palettes[1]->trigger();
    EXPECT_EQ(store.store->activeTemplateId(), beta.id);
}

} // namespace
} // namespace hueshelf::app
