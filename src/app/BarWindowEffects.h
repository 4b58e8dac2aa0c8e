#pragma once

#include "app/BarPosition.h"
#include "app/BarVisibilityController.h"

class QWidget;

namespace hueshelf::app {

// The window half of the bar's comings and goings: shows and hides the bar, grabs its picture,
// flies the picture between bar and icon and shows the hidden toast. What belongs to the tray
// icon, the desktop's motion wish and the decision after a show is left empty for the owner of
// those to fill in: `trayIconGeometry`, `reduceMotion`, `afterShow`, `setIconHighlighted`.
BarVisibilityController::Effects barWindowEffects(QWidget& bar, Scheduler& scheduler);

// The desktop's screens as the position rules take them: available geometries, the primary
// screen as the main one.
BarPosition::Screens desktopScreens();

} // namespace hueshelf::app
