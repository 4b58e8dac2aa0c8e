#pragma once

#include "app/MenuEntry.h"

#include <QList>

#include <functional>

namespace hueshelf {
class ColorStorage;
}

namespace hueshelf::app {

// The status menu, built afresh on every opening so that its check marks and its list of
// palettes are never stale.
class StatusMenuModel {
public:
    struct Actions {
        std::function<bool()> isBarVisible;
        // Absent where nothing could bring a hidden bar back (no tray icon): then the menu
        // offers no way to hide it.
        std::function<void()> toggleBar;
        std::function<void()> quit;
    };

    StatusMenuModel(ColorStorage& storage, Actions actions);

    QList<MenuEntry> build() const;

private:
    MenuEntry palettesSubmenu() const;

    ColorStorage& m_storage;
    Actions m_actions;
};

} // namespace hueshelf::app
