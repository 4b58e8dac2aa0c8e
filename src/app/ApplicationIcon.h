#pragma once

#include <QIcon>

namespace hueshelf::app {

// The program's own drawing: the tray icon, the launcher's icon and the icon of its windows.
// It keeps its own colour, which reads on light and dark panels alike.
QIcon applicationIcon();

} // namespace hueshelf::app
