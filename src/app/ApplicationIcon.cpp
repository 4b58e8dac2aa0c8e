#include "app/ApplicationIcon.h"

#include "app/SymbolIcons.h"

namespace hueshelf::app {

QIcon applicationIcon() {
    // Through the symbol table, which also makes sure the resources are registered.
    return QIcon(symbolIconPath(QStringLiteral("MenuBarIcon")));
}

} // namespace hueshelf::app
