#include "app/StatusMenuModel.h"

#include "model/ColorStorage.h"

namespace hueshelf::app {

StatusMenuModel::StatusMenuModel(ColorStorage& storage, Actions actions)
    : m_storage(storage), m_actions(std::move(actions)) {}

QList<MenuEntry> StatusMenuModel::build() const {
    QList<MenuEntry> entries;
    if (m_actions.toggleBar) {
        const bool visible = m_actions.isBarVisible && m_actions.isBarVisible();
        entries.append(
            MenuEntry{MenuEntry::Kind::action,
                      visible ? QStringLiteral("Hide HueShelf") : QStringLiteral("Show HueShelf"),
                      false,
                      false,
                      m_actions.toggleBar,
                      {}});
        entries.append(MenuEntry::separator());
    }
    entries.append(palettesSubmenu());
    entries.append(MenuEntry::separator());
    entries.append(MenuEntry{MenuEntry::Kind::action,
                             QStringLiteral("Quit HueShelf"),
                             false,
                             false,
                             m_actions.quit,
                             {}});
    return entries;
}

MenuEntry StatusMenuModel::palettesSubmenu() const {
    MenuEntry submenu{MenuEntry::Kind::submenu, QStringLiteral("Palettes"), false, false, {}, {}};
    const QUuid activeId = m_storage.activeTemplateId();
    ColorStorage* storage = &m_storage;
    for (const ColorTemplate& palette : m_storage.templates()) {
        // The id, not the name, travels with the entry: names repeat, and the list may change
        // between building the menu and choosing from it.
        const QUuid id = palette.id;
        submenu.children.append(MenuEntry{MenuEntry::Kind::action,
                                          palette.name,
                                          true,
                                          id == activeId,
                                          [storage, id] { storage->selectTemplate(id); },
                                          {}});
    }
    return submenu;
}

} // namespace hueshelf::app
