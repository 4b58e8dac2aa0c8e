#pragma once

#include "app/MenuEntry.h"

#include <QList>

class QMenu;

namespace hueshelf::app {

// Replaces everything in `menu` with the given entries. Submenus made by an earlier filling go
// with it, so a menu refilled on every opening doesn't pile them up.
void fillMenu(QMenu& menu, const QList<MenuEntry>& entries);

} // namespace hueshelf::app
