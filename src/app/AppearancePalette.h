#pragma once

#include "platform/Platform.h"

class QPalette;

namespace hueshelf::app {

// The application-wide palette for a look. Light and dark are fixed palettes in the colours of
// Qt's Fusion style; no preference gives the palette the desktop and the style would have
// chosen themselves.
QPalette paletteFor(ColorScheme scheme);

// Puts that palette on the running application; every widget follows.
void applyAppearance(ColorScheme scheme);

} // namespace hueshelf::app
