#pragma once

#include <QIcon>

namespace hueshelf::app {

// The tray icon: a painter's palette with three paint dots, drawn rather than shipped so it is
// sharp at every size a panel asks for.
QIcon paletteGlyphIcon();

} // namespace hueshelf::app
