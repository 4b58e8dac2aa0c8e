#pragma once

class QWidget;

namespace hueshelf::app {

class ShortcutPermissionModel;

// Remembers that the prompt was shown, then asks; "Open Settings" opens the desktop's
// keyboard-shortcut settings where they are known. Modal; returns once answered.
void showShortcutPermissionAlert(ShortcutPermissionModel& model, QWidget* parent = nullptr);

} // namespace hueshelf::app
