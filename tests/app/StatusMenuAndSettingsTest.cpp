#include "AppTestSupport.h"
#include "TempHome.h"
#include "app/AppDefaults.h"
#include "app/AppSettingsKeys.h"
#include "app/AppearanceController.h"
#include "app/ShortcutPermissionAlert.h"
#include "app/ShortcutPermissionModel.h"
#include "app/StatusMenuModel.h"
#include "platform/fake/FakePlatform.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QSettings>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::Announcement;
using testing::palette;

// The menu as text, one line per entry: "---" for a separator, "Title >" for a submenu with its
// children indented below, "[x] " or "[ ] " before a checkable title, the shortcut after it.
void outline(const QList<MenuEntry>& entries, const QString& indent, QStringList& lines) {
    for (const MenuEntry& entry : entries) {
        QString line = indent;
        if (entry.kind == MenuEntry::Kind::separator) {
            lines << line + u"---"_s;
            continue;
        }
        if (entry.isCheckable)
            line += entry.isChecked ? u"[x] "_s : u"[ ] "_s;
        line += entry.title + (entry.kind == MenuEntry::Kind::submenu ? u" >"_s : QString());
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
        ASSERT_TRUE(entry && entry->onTrigger) << path.join(u" > "_s).toStdString();
        entry->onTrigger();
    }
    QStringList checkedIn(const QStringList& path) {
        const QList<MenuEntry> entries = menu.build();
        QStringList checked;
        if (const MenuEntry* submenu = find(entries, path))
            for (const MenuEntry& entry : submenu->children)
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

// The whole menu, texts exact, in both bar states; the permission item is asked about on every
// opening of the same menu, so a shortcut registered later takes it away without a restart.
TEST_F(StatusMenu, ListsEveryItemInOrder) {
    const QString head = uR"(---
Palettes >
  [x] Alpha
  [ ] Beta & Co
Connect AI Coding Tools…
---
Settings >
  [ ] Launch at Login
  [ ] Only Show When I Open It
)"_s;
    const QString tail = uR"(  ---
  Appearance >
    [x] System
    [ ] Light
    [ ] Dark
  ---
  Copy Colors As >
    [x] HEX
    [ ] HEX (no #)
    [ ] RGB
    [ ] HSL
    [ ] CSS Variable
    [ ] Tailwind
  ---
  Cloud Sync…
  ---
  Move the Bar Back to the Middle
---
About HueShelf
What's New
Check for Updates…
Quit HueShelf (Ctrl+Q))"_s;
    const QString permission = u"  Allow the Keyboard Shortcut (⌃⇧B)…\n"_s;
    for (const bool visible : {true, false}) {
        barVisible = visible;
        platform.unregisterGlobalShortcut();
        if (!visible) {
            ASSERT_TRUE(platform.registerGlobalShortcut([] {}));
        }
        const QString first = visible ? u"Hide"_s : u"Show"_s;
        EXPECT_EQ(outline(menu.build()).join(u'\n'), first + u" HueShelf (Ctrl+Shift+B)\n"_s +
                                                         head + (visible ? permission : QString()) +
                                                         tail);
    }
}

// Left clicks toggle; Control makes any left click open the menu; other buttons do nothing.
TEST(StatusMenuClicks, LeftClicksToggleAndControlAsksForTheMenu) {
    using enum StatusMenuModel::ClickAction;
    const std::tuple<QSystemTrayIcon::ActivationReason, Qt::KeyboardModifiers,
                     StatusMenuModel::ClickAction>
        cases[] = {{QSystemTrayIcon::Trigger, Qt::ShiftModifier, toggleBar},
                   {QSystemTrayIcon::DoubleClick, Qt::NoModifier, toggleBar},
                   {QSystemTrayIcon::DoubleClick, Qt::ControlModifier | Qt::AltModifier, openMenu},
                   {QSystemTrayIcon::Context, Qt::NoModifier, none},
                   {QSystemTrayIcon::MiddleClick, Qt::ControlModifier, none}};
    for (const auto& [reason, modifiers, expected] : cases)
        EXPECT_EQ(StatusMenuModel::clickAction(reason, modifiers), expected) << int(reason);
}

// Items that aren't settings hand their work to the owner; "Check for Updates…" opens the
// download page of the web host that links are written for.
TEST_F(StatusMenu, ItemsReachTheirActions) {
    std::function<void(const QList<MenuEntry>&)> triggerAll = [&](const QList<MenuEntry>& list) {
        for (const MenuEntry& entry : list) {
            triggerAll(entry.children);
            if (entry.onTrigger && !entry.isCheckable)
                entry.onTrigger();
        }
    };
    triggerAll(menu.build());
    EXPECT_EQ(called,
              (QStringList{u"toggleBar"_s, u"openAIToolsWindow"_s, u"openShortcutPermission"_s,
                           u"openSyncSettings"_s, u"resetBarPosition"_s, u"openAboutWindow"_s,
                           u"openWhatsNewWindow"_s, u"quit"_s}));
    EXPECT_EQ(platform.openedUrls(), QList<QUrl>{QUrl(u"https://hueshelf.app/download"_s)});
}

// The stored text decides the check; text no item has (another writer's, an old spelling)
// checks none. A choice stores the identifier, not the label, and the look follows at once.
TEST_F(StatusMenu, ChecksFollowTheStoredIdentifiers) {
    const QStringList copyAs = {u"Settings"_s, u"Copy Colors As"_s};
    const QStringList look = {u"Settings"_s, u"Appearance"_s};
    const struct {
        QString key;
        QVariant stored;
        QStringList path;
        QStringList checked;
    } cases[] = {
        {AppSettingsKeys::defaultCopyFormat, u"hex-no-hash"_s, copyAs, {u"HEX (no #)"_s}},
        {AppSettingsKeys::defaultCopyFormat, u"HEX"_s, copyAs, {}},
        {AppSettingsKeys::appearanceMode, u"dark"_s, look, {u"Dark"_s}},
        {AppSettingsKeys::appearanceMode, u"Dark"_s, look, {}},
    };
    for (const auto& c : cases) {
        settings.setValue(c.key, c.stored);
        EXPECT_EQ(checkedIn(c.path), c.checked) << c.stored.toString().toStdString();
    }
    choose({u"Settings"_s, u"Copy Colors As"_s, u"HSL"_s});
    EXPECT_EQ(settings.value(AppSettingsKeys::defaultCopyFormat), u"hsl"_s);
    int changes = 0;
    QObject::connect(&appearance, &AppearanceController::changed, [&changes] { ++changes; });
    choose({u"Settings"_s, u"Appearance"_s, u"Light"_s});
    EXPECT_EQ(settings.value(AppSettingsKeys::appearanceMode), u"light"_s);
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::light);
    EXPECT_EQ(changes, 1);
}

// Launch at Login flips only when the desktop took the change, and says nothing either way;
// "Only Show When I Open It" announces both ways.
TEST_F(StatusMenu, SettingsFlipAndAnnounce) {
    const struct {
        bool fails;
        bool stored;
    } steps[] = {{true, false}, {false, true}, {true, true}, {false, false}};
    for (const auto& step : steps) {
        platform.setLaunchAtLoginFails(step.fails);
        choose({u"Settings"_s, u"Launch at Login"_s});
        EXPECT_EQ(platform.isLaunchAtLoginRegistered(), step.stored);
        EXPECT_EQ(checkedIn({u"Settings"_s}).contains(u"Launch at Login"_s), step.stored);
    }
    EXPECT_TRUE(store.announcements.empty());

    choose({u"Settings"_s, u"Only Show When I Open It"_s});
    EXPECT_EQ(checkedIn({u"Settings"_s}), QStringList{u"Only Show When I Open It"_s});
    choose({u"Settings"_s, u"Only Show When I Open It"_s});
    EXPECT_FALSE(settings.value(AppSettingsKeys::startHidden).toBool());
    EXPECT_EQ(store.announcements,
              (std::vector<Announcement>{
                  {u"HueShelf will stay hidden until you open it"_s, u"eye.slash"_s},
                  {u"HueShelf will show when it starts again"_s, u"eye"_s}}));
}

// Entries carry ids, since names repeat; the next opening shows the new check, and an entry of
// a menu left open after its palette went away does nothing.
TEST_F(StatusMenu, PalettesSelectById) {
    const ColorTemplate twin = palette(u"Alpha"_s, {{u"C"_s, u"#333333"_s}});
    store.store->addTemplate(twin);
    const QList<MenuEntry> open = menu.build();
    const QList<MenuEntry> items = find(open, {u"Palettes"_s})->children;
    ASSERT_EQ(items.size(), 3);
    items[2].onTrigger();
    EXPECT_EQ(store.store->activeTemplateId(), twin.id);
    EXPECT_TRUE(find(menu.build(), {u"Palettes"_s})->children[2].isChecked);
    store.store->deleteTemplate(beta.id);
    items[1].onTrigger();
    EXPECT_EQ(store.store->activeTemplateId(), twin.id);
}

// Views hear of a change of the outcome only: a desktop change hidden by the user's choice, or
// a choice stored again, says nothing. A controller that is gone no longer hears the desktop.
TEST_F(StatusMenu, AppearanceNotifiesWhenTheOutcomeChanges) {
    int changes = 0;
    {
        AppearanceController controller(settings, platform);
        QObject::connect(&controller, &AppearanceController::changed, [&changes] { ++changes; });
        platform.changeDesktopPreferences({ColorScheme::dark, false});
        EXPECT_EQ(changes, 1);
        controller.setAppearanceMode(u"dark"_s);
        EXPECT_EQ(changes, 1);
        platform.changeDesktopPreferences({ColorScheme::noPreference, false});
        EXPECT_EQ(changes, 1);
        platform.changeDesktopPreferences({ColorScheme::noPreference, true});
        EXPECT_TRUE(controller.reduceMotion());
        EXPECT_EQ(changes, 2);
        settings.setValue(AppSettingsKeys::reduceMotion, u"off"_s);
        controller.refresh();
        controller.refresh();
        EXPECT_FALSE(controller.reduceMotion());
        EXPECT_EQ(changes, 3);
    }
    platform.changeDesktopPreferences({ColorScheme::light, false});
    EXPECT_EQ(changes, 3);
}

// Written where absent, never over what the user or another writer left.
TEST_F(StatusMenu, DefaultsFillOnlyWhatIsAbsent) {
    settings.setValue(AppSettingsKeys::expandTextPreviewByDefault, false);
    AppDefaults::registerDefaults(settings);
    EXPECT_EQ(settings.value(AppSettingsKeys::defaultCopyFormat), u"hex"_s);
    EXPECT_FALSE(settings.value(AppSettingsKeys::expandTextPreviewByDefault).toBool());
    EXPECT_FALSE(settings.contains(AppSettingsKeys::startHidden));
}

QProcessEnvironment environment(const QList<std::pair<QString, QString>>& values) {
    QProcessEnvironment env;
    for (const auto& [name, value] : values)
        env.insert(name, value);
    return env;
}

// Any part of the desktop list names the keyboard settings; a name that merely starts alike
// names none.
TEST(ShortcutPermission, KeyboardSettingsFromTheDesktopList) {
    using Commands = QList<ShortcutPermissionModel::Command>;
    const std::pair<QString, Commands> cases[] = {
        {u"ubuntu:GNOME"_s, {{u"gnome-control-center"_s, {u"keyboard"_s}}}}, {u"KDEish"_s, {}}};
    for (const auto& [desktop, commands] : cases)
        EXPECT_EQ(ShortcutPermissionModel::keyboardSettingsCommands(
                      environment({{u"XDG_CURRENT_DESKTOP"_s, desktop}})),
                  commands)
            << desktop.toStdString();
}

// The alert says what is true on this session (the session's own variables say it, not the
// bar's QT_QPA_PLATFORM) and remembers itself; only its first button opens anything, trying the
// desktop's programs in order until one starts.
TEST_F(StatusMenu, PermissionAlertAsksAndOpensOnlyOnTheFirstButton) {
    QStringList started;
    int refusals = 1;
    ShortcutPermissionModel kde(
        settings,
        environment({{u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s}, {u"XDG_SESSION_TYPE"_s, u"x11"_s}}),
        [&](const QString& program, const QStringList& arguments) {
            if (refusals-- > 0)
                return false;
            started << program + u' ' + arguments.join(u' ');
            return true;
        });
    EXPECT_TRUE(kde.text().startsWith(u"⌃⇧B shows and hides HueShelf from any app, which "_s));
    EXPECT_TRUE(kde.text().endsWith(u"then restart HueShelf."_s));
    for (const QString& button : {u"Not Now"_s, u"Open Settings"_s}) {
        QStringList seen;
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            seen << box->text();
            for (QAbstractButton* candidate : box->buttons()) {
                seen << candidate->text();
                if (candidate->text() == button)
                    candidate->click();
            }
        });
        showShortcutPermissionAlert(kde);
        EXPECT_EQ(seen, (QStringList{u"Turn on the keyboard shortcut?"_s, u"Open Settings"_s,
                                     u"Not Now"_s}));
        EXPECT_TRUE(settings.value(AppSettingsKeys::accessibilityPromptShown).toBool());
        EXPECT_EQ(started, button == u"Not Now"_s ? QStringList()
                                                  : QStringList{u"systemsettings5 kcm_keys"_s});
    }
    const ShortcutPermissionModel wayland(
        settings,
        environment({{u"WAYLAND_DISPLAY"_s, u"wayland-0"_s}, {u"QT_QPA_PLATFORM"_s, u"xcb"_s}}),
        nullptr);
    EXPECT_TRUE(wayland.text().contains(u"Wayland session"_s));
    EXPECT_FALSE(wayland.openSettings());
}

} // namespace
} // namespace hueshelf::app
