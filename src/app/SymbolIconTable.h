#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace hueshelf::app {

struct SymbolIconEntry {
    std::string_view symbol;
    std::string_view path; // a resource path
};

// Symbol name -> drawing, sorted by name (byte order) so lookups can bisect. The drawings are
// Lucide's (resources/icons/LICENSE); Lucide has outlines only, so each ".fill" name shares the
// outline of its plain picture, told apart where it matters by the colour it is drawn in.
// "MenuBarIcon" is HueShelf's own palette glyph.
inline constexpr std::array symbolIconTable{
    SymbolIconEntry{"MenuBarIcon", ":/icons/hueshelf.svg"},
    SymbolIconEntry{"arrow.down.circle.fill", ":/icons/circle-arrow-down.svg"}, // outline
    SymbolIconEntry{"arrow.right", ":/icons/arrow-right.svg"},
    SymbolIconEntry{"arrow.triangle.2.circlepath", ":/icons/refresh-cw.svg"},
    SymbolIconEntry{"checkmark", ":/icons/check.svg"},
    SymbolIconEntry{"checkmark.circle.fill", ":/icons/circle-check.svg"}, // outline
    SymbolIconEntry{"chevron.down", ":/icons/chevron-down.svg"},
    SymbolIconEntry{"chevron.left", ":/icons/chevron-left.svg"},
    SymbolIconEntry{"chevron.right", ":/icons/chevron-right.svg"},
    SymbolIconEntry{"cloud", ":/icons/cloud.svg"},
    SymbolIconEntry{"doc", ":/icons/file.svg"},
    SymbolIconEntry{"doc.on.doc", ":/icons/copy.svg"},
    SymbolIconEntry{"doc.on.doc.fill", ":/icons/copy.svg"}, // outline
    SymbolIconEntry{"exclamationmark.circle", ":/icons/circle-alert.svg"},
    SymbolIconEntry{"exclamationmark.circle.fill", ":/icons/circle-alert.svg"}, // outline
    SymbolIconEntry{"exclamationmark.triangle", ":/icons/triangle-alert.svg"},
    SymbolIconEntry{"exclamationmark.triangle.fill", ":/icons/triangle-alert.svg"}, // outline
    SymbolIconEntry{"externaldrive", ":/icons/hard-drive.svg"},
    SymbolIconEntry{"eye", ":/icons/eye.svg"},
    SymbolIconEntry{"eye.fill", ":/icons/eye.svg"}, // outline
    SymbolIconEntry{"eye.slash", ":/icons/eye-off.svg"},
    SymbolIconEntry{"eyedropper", ":/icons/pipette.svg"},
    SymbolIconEntry{"folder", ":/icons/folder.svg"},
    SymbolIconEntry{"folder.badge.gearshape", ":/icons/folder-cog.svg"},
    SymbolIconEntry{"hand.tap", ":/icons/pointer.svg"},
    SymbolIconEntry{"icloud", ":/icons/cloud.svg"},
    SymbolIconEntry{"info.circle", ":/icons/info.svg"},
    SymbolIconEntry{"link", ":/icons/link.svg"},
    SymbolIconEntry{"lock.fill", ":/icons/lock.svg"}, // outline
    SymbolIconEntry{"lock.open", ":/icons/lock-open.svg"},
    SymbolIconEntry{"magnifyingglass", ":/icons/search.svg"},
    SymbolIconEntry{"menubar.rectangle", ":/icons/panel-top.svg"},
    SymbolIconEntry{"minus", ":/icons/minus.svg"},
    SymbolIconEntry{"moon", ":/icons/moon.svg"},
    SymbolIconEntry{"paintpalette", ":/icons/palette.svg"},
    SymbolIconEntry{"paintpalette.fill", ":/icons/palette.svg"}, // outline
    SymbolIconEntry{"pencil", ":/icons/pencil.svg"},
    SymbolIconEntry{"plus", ":/icons/plus.svg"},
    SymbolIconEntry{"plus.circle.fill", ":/icons/circle-plus.svg"}, // outline
    SymbolIconEntry{"rectangle.3.group", ":/icons/layout-panel-left.svg"},
    SymbolIconEntry{"shippingbox", ":/icons/package.svg"},
    SymbolIconEntry{"square.and.arrow.down", ":/icons/download.svg"},
    SymbolIconEntry{"trash", ":/icons/trash.svg"},
    SymbolIconEntry{"trash.fill", ":/icons/trash.svg"}, // outline
    SymbolIconEntry{"wand.and.stars", ":/icons/wand-sparkles.svg"},
    SymbolIconEntry{"xmark.circle.fill", ":/icons/circle-x.svg"}, // outline
};

// Strictly increasing: sorted for the lookup, and no name twice.
static_assert(std::ranges::adjacent_find(symbolIconTable, std::ranges::greater_equal{},
                                         &SymbolIconEntry::symbol) == symbolIconTable.end(),
              "symbolIconTable must be sorted by name without duplicates");

} // namespace hueshelf::app
