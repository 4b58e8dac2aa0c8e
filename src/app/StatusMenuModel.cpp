#include "app/StatusMenuModel.h"

#include "app/AppDefaults.h"
#include "app/AppSettingsKeys.h"
#include "app/AppearanceController.h"
#include "color/ColorUtils.h"
#include "exchange/PaletteLink.h"
#include "model/ColorStorage.h"
#include "platform/Platform.h"

#include <QSettings>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

StatusMenuModel::StatusMenuModel(ColorStorage& storage, QSettings& settings, Platform& platform,
                                 AppearanceController& appearance, Actions actions)
    : m_storage(storage), m_settings(settings), m_platform(platform), m_appearance(appearance),
      m_actions(std::move(actions)) {}

QUrl StatusMenuModel::downloadPageUrl() {
    return QUrl(u"https://"_s + PaletteLink::linkHost() + u"/download"_s);
}

StatusMenuModel::ClickAction StatusMenuModel::clickAction(QSystemTrayIcon::ActivationReason reason,
                                                          Qt::KeyboardModifiers modifiers) {
    if (reason != QSystemTrayIcon::Trigger && reason != QSystemTrayIcon::DoubleClick)
        return ClickAction::none;
    return modifiers.testFlag(Qt::ControlModifier) ? ClickAction::openMenu : ClickAction::toggleBar;
}

QList<MenuEntry> StatusMenuModel::build() const {
    QList<MenuEntry> entries;
    if (m_actions.toggleBar) {
        const bool visible = m_actions.isBarVisible && m_actions.isBarVisible();
        entries.append(MenuEntry::action(visible ? u"Hide HueShelf"_s : u"Show HueShelf"_s,
                                         m_actions.toggleBar,
                                         QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_B)));
        entries.append(MenuEntry::separator());
    }
    entries.append(palettesSubmenu());
    entries.append(MenuEntry::action(u"Connect AI Coding Tools…"_s, m_actions.openAIToolsWindow));
    entries.append(MenuEntry::separator());
    entries.append(settingsSubmenu());
    entries.append(MenuEntry::separator());
    entries.append(MenuEntry::action(u"About HueShelf"_s, m_actions.openAboutWindow));
    entries.append(MenuEntry::action(u"What's New"_s, m_actions.openWhatsNewWindow));
    Platform* platform = &m_platform;
    entries.append(MenuEntry::action(u"Check for Updates…"_s,
                                     [platform] { platform->openUrl(downloadPageUrl()); }));
    entries.append(
        MenuEntry::action(u"Quit HueShelf"_s, m_actions.quit, QKeySequence(Qt::CTRL | Qt::Key_Q)));
    return entries;
}

MenuEntry StatusMenuModel::palettesSubmenu() const {
    QList<MenuEntry> items;
    const QUuid activeId = m_storage.activeTemplateId();
    ColorStorage* storage = &m_storage;
    for (const ColorTemplate& palette : m_storage.templates()) {
        // The id, not the name, travels with the entry: names repeat, and the list may change
        // between building the menu and choosing from it.
        const QUuid id = palette.id;
        items.append(MenuEntry::checkable(palette.name, id == activeId,
                                          [storage, id] { storage->selectTemplate(id); }));
    }
    return MenuEntry::submenu(u"Palettes"_s, std::move(items));
}

MenuEntry StatusMenuModel::settingsSubmenu() const {
    const StatusMenuModel* self = this;
    QList<MenuEntry> items;
    items.append(MenuEntry::checkable(u"Launch at Login"_s,
                                      m_settings.value(AppSettingsKeys::launchAtLogin).toBool(),
                                      [self] { self->toggleLaunchAtLogin(); }));
    items.append(MenuEntry::checkable(u"Only Show When I Open It"_s,
                                      m_settings.value(AppSettingsKeys::startHidden).toBool(),
                                      [self] { self->toggleStartHidden(); }));
    // Asked on every opening: a shortcut registered later takes the item away without a restart.
    if (!m_platform.hasGlobalShortcut())
        items.append(MenuEntry::action(u"Allow the Keyboard Shortcut (⌃⇧B)…"_s,
                                       m_actions.openShortcutPermission));
    items.append(MenuEntry::separator());
    items.append(appearanceSubmenu());
    items.append(MenuEntry::separator());
    items.append(copyFormatSubmenu());
    items.append(MenuEntry::separator());
    items.append(MenuEntry::action(u"Cloud Sync…"_s, m_actions.openSyncSettings));
    items.append(MenuEntry::separator());
    items.append(
        MenuEntry::action(u"Move the Bar Back to the Middle"_s, m_actions.resetBarPosition));
    return MenuEntry::submenu(u"Settings"_s, std::move(items));
}

MenuEntry StatusMenuModel::appearanceSubmenu() const {
    struct Mode {
        QString title;
        QString value;
    };
    const Mode modes[] = {
        {u"System"_s, u"system"_s}, {u"Light"_s, u"light"_s}, {u"Dark"_s, u"dark"_s}};
    // An unknown stored mode looks like "system" but is none of the three, so none is on.
    const QString current = m_appearance.appearanceMode();
    AppearanceController* appearance = &m_appearance;
    QList<MenuEntry> items;
    for (const Mode& mode : modes)
        items.append(MenuEntry::checkable(
            mode.title, mode.value == current,
            [appearance, value = mode.value] { appearance->setAppearanceMode(value); }));
    return MenuEntry::submenu(u"Appearance"_s, std::move(items));
}

MenuEntry StatusMenuModel::copyFormatSubmenu() const {
    const QString current =
        m_settings.value(AppSettingsKeys::defaultCopyFormat, AppDefaults::defaultCopyFormat)
            .toString();
    QSettings* settings = &m_settings;
    QList<MenuEntry> items;
    for (const ColorUtils::CopyFormat format : ColorUtils::allCopyFormats()) {
        const QString value = ColorUtils::copyFormatIdentifier(format);
        items.append(MenuEntry::checkable(
            ColorUtils::copyFormatLabel(format), value == current,
            [settings, value] { settings->setValue(AppSettingsKeys::defaultCopyFormat, value); }));
    }
    return MenuEntry::submenu(u"Copy Colors As"_s, std::move(items));
}

void StatusMenuModel::toggleLaunchAtLogin() const {
    const bool enabled = m_settings.value(AppSettingsKeys::launchAtLogin).toBool();
    // A failed change leaves both the desktop and the setting as they were, and says nothing.
    if (m_platform.setLaunchAtLogin(!enabled))
        m_settings.setValue(AppSettingsKeys::launchAtLogin, !enabled);
}

void StatusMenuModel::toggleStartHidden() const {
    const bool hidden = !m_settings.value(AppSettingsKeys::startHidden).toBool();
    m_settings.setValue(AppSettingsKeys::startHidden, hidden);
    if (hidden)
        m_storage.announce(u"HueShelf will stay hidden until you open it"_s, u"eye.slash"_s);
    else
        m_storage.announce(u"HueShelf will show when it starts again"_s, u"eye"_s);
}

} // namespace hueshelf::app
