#pragma once

#include "app/SyncSettingsModel.h"

#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace hueshelf::app {

// Asks the user for a folder as `request` describes; none when the user cancels.
using FolderPicker =
    std::function<std::optional<QString>(QWidget* parent, const FolderPanelRequest& request)>;

// The directory dialog of the desktop toolkit, kept above the bar, with the request's message
// under the file list.
std::optional<QString> runFolderPanel(QWidget* parent, const FolderPanelRequest& request);

} // namespace hueshelf::app
