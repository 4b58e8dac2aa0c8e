#pragma once

namespace hueshelf::app {

// Starts the bar: the application object, the store, the window and the tray icon.
int runBar(int& argc, char** argv);

} // namespace hueshelf::app
