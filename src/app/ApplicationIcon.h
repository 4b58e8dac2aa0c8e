#pragma once

#include <QColor>
#include <QIcon>

namespace hueshelf::app {

// The program's own drawing: the tray icon, the launcher's icon and the icon of its windows.
// It keeps its own colour, which reads on light and dark panels alike.
QIcon applicationIcon();

// The tray icon as it stands for a moment after the bar shrank into it: the same drawing on a
// rounded plate of `plate`, the way a panel marks a pressed item.
QIcon highlightedApplicationIcon(const QColor& plate);

} // namespace hueshelf::app
