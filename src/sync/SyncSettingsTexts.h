#pragma once

#include <QString>

namespace hueshelf {

// The words of the cloud sync settings window and its sheets, alerts and folder panels.
namespace SyncSettingsTexts {

inline const QString windowTitle = QStringLiteral("Cloud Sync Settings");

// Sync off.
inline const QString offHeadline = QStringLiteral("Cloud Sync is Off");
inline const QString offSubheadline = QStringLiteral("Sync palettes across your devices");
inline const QString offDescription =
    QStringLiteral("Sync your palettes and preferences across all your devices using your "
                   "preferred cloud storage service.");
inline const QString setUpNewSyncButton = QStringLiteral("Set Up New Sync");
inline const QString connectToExistingButton = QStringLiteral("Connect to Existing");
inline const QString autoDetectButton = QStringLiteral("Auto-Detect Sync Folder");

// Sync on. The headline is the service's name, or this when there is none.
inline const QString onHeadlineWithoutService = QStringLiteral("Cloud Sync");
inline const QString lastSyncedLabel = QStringLiteral("Last synced:");
inline const QString folderLabel = QStringLiteral("Folder:");
inline const QString recentlyDeletedTitle = QStringLiteral("Recently Deleted");
inline const QString disableAlertTitle = QStringLiteral("Disable Sync?");
inline const QString disableAlertMessage =
    QStringLiteral("Your data will remain in the cloud folder but this device will stop syncing. "
                   "You can re-enable sync at any time.");
inline const QString disableAlertConfirm = QStringLiteral("Disable");

inline const QString cancelButton = QStringLiteral("Cancel");
inline const QString connectButton = QStringLiteral("Connect");

// Folder panels sit at this window level, above the floating bar.
inline constexpr int folderPanelLevel = 8;

// Setting up a new sync folder.
inline const QString setUpSheetTitle = QStringLiteral("Set Up Cloud Sync");
inline const QString setUpSheetPrompt =
    QStringLiteral("Select a cloud service to sync your palettes:");
inline const QString serviceReady = QStringLiteral("Ready");
inline const QString serviceNotFound = QStringLiteral("Select folder to set up");
inline const QString chooseOtherFolderButton = QStringLiteral("Choose Other Folder...");
inline const QString setUpPanelPrompt = QStringLiteral("Select");
inline QString setUpPanelMessage(const QString& serviceName) {
    return QStringLiteral("Select your ") + serviceName +
           QStringLiteral(" folder.\nA \"HueShelf Sync\" folder will be created inside.");
}
inline const QString setUpOtherFolderPanelMessage = QStringLiteral(
    "Choose a folder to sync HueShelf data.\nA \"HueShelf Sync\" folder will be created inside.");

// Connecting to a sync folder that another device made.
inline const QString connectSheetTitle = QStringLiteral("Connect to Existing Sync");
inline const QString connectSheetPrompt = QStringLiteral(
    "Select a folder that contains an existing \"HueShelf Sync\" folder from another device:");
inline const QString connectSheetSymbol = QStringLiteral("folder.badge.gearshape");
inline const QString connectSheetNote =
    QStringLiteral("The folder must contain a valid HueShelf Sync folder with a manifest file.");
inline const QString chooseFolderButton = QStringLiteral("Choose Folder...");
inline const QString connectPanelMessage =
    QStringLiteral("Select the cloud folder that contains your \"HueShelf Sync\" folder.");

// Finding a sync folder by itself.
inline const QString noSyncFolderFound =
    QStringLiteral("No existing sync folder found. Use 'Set Up New Sync' to create one.");
inline const QString syncFolderFoundTitle = QStringLiteral("Sync Folder Found");
// Without a service name the sentence leaves the place out.
inline QString syncFolderFoundMessage(const QString& serviceName) {
    if (serviceName.isEmpty())
        return QStringLiteral(
            "Found an existing HueShelf sync folder. Would you like to connect to it?");
    return QStringLiteral("Found an existing HueShelf sync folder in ") + serviceName +
           QStringLiteral(". Would you like to connect to it?");
}
inline QString syncFolderFoundPanelMessage(const QString& serviceName) {
    return QStringLiteral("Select the folder containing your HueShelf Sync folder (") +
           serviceName + u')';
}

} // namespace SyncSettingsTexts
} // namespace hueshelf
