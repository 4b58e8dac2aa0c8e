#pragma once

#include "sync/CloudService.h"
#include "sync/CloudServiceDetector.h"
#include "sync/SyncError.h"
#include "sync/SyncSettingsTexts.h"
#include "sync/SyncStatus.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>

#include <optional>
#include <variant>

namespace hueshelf {
class Clock;
class SyncManager;
} // namespace hueshelf

namespace hueshelf::app {

// Sync off: what it offers and the three ways in.
struct SyncOffFace {
    QString headline;
    QString subheadline;
    QString description;
    QString setUpButton;
    QString connectButton;
    QString autoDetectButton;

    friend bool operator==(const SyncOffFace&, const SyncOffFace&) = default;
};

// A palette this device deleted in this run, which can still come back.
struct RecentlyDeletedRow {
    QUuid id;
    QString name;
    QString deletedText; // "Deleted 5 minutes ago"
    QString restoreButton;

    friend bool operator==(const RecentlyDeletedRow&, const RecentlyDeletedRow&) = default;
};

// Sync on: where, how it stands, what can be restored, and the way out.
struct SyncOnFace {
    QString headline; // the service's name, or "Cloud Sync"
    SyncStatus status;
    QString statusText;
    QString lastSyncedLabel;
    // None until the folder was first reached: a connect doesn't count, a set-up does.
    std::optional<QString> lastSynced;
    QString folderLabel;
    QString folderPath;
    QString recentlyDeletedTitle;
    QList<RecentlyDeletedRow> recentlyDeleted;
    // Only when there is nothing to restore.
    std::optional<QString> recentlyDeletedPlaceholder;
    QString disableButton;
};

using SyncSettingsFace = std::variant<SyncOffFace, SyncOnFace>;

// One service in the set-up sheet.
struct CloudServiceRow {
    CloudService service = CloudService::iCloud;
    QString name;
    QString symbol;
    std::optional<QString> detectedPath;
    // The found folder with the home directory shown as "~", or the invitation to pick one.
    QString detail;
    std::optional<QString> readyMark; // only for a found folder

    friend bool operator==(const CloudServiceRow&, const CloudServiceRow&) = default;
};

struct SetUpSheet {
    QString title;
    QString prompt;
    QList<CloudServiceRow> rows; // every service, in their fixed order
    QString chooseOtherButton;
    QString cancelButton;
};

struct ConnectSheet {
    QString title;
    QString prompt;
    QString symbol;
    QString note;
    QString chooseFolderButton;
    QString cancelButton;
};

struct SettingsAlert {
    QString title;
    QString message;
    QString confirmButton;
    QString cancelButton;

    friend bool operator==(const SettingsAlert&, const SettingsAlert&) = default;
};

// What a folder panel is for; the answer goes back with the request.
enum class FolderPanelPurpose { setUp, connect, connectToFound };

// A folder panel for the view to open (a directory dialog); its answer goes to `folderChosen`.
struct FolderPanelRequest {
    FolderPanelPurpose purpose = FolderPanelPurpose::setUp;
    // The service whose name the configuration records; none means the picked path decides.
    std::optional<CloudService> service;
    QString title;
    QString prompt; // the confirming button
    QString message;
    std::optional<QString> startDirectory;
    bool canChooseFiles = false;
    bool canChooseDirectories = true;
    bool allowsMultipleSelection = false;
    bool canCreateDirectories = false;
    // Above the floating bar, so the panel is never hidden behind it.
    int level = SyncSettingsTexts::folderPanelLevel;

    friend bool operator==(const FolderPanelRequest&, const FolderPanelRequest&) = default;
};

// The cloud sync settings window without its widgets: which face it shows, its sheets, alerts
// and folder panels, and what each answer does to the sync manager. Failures never leave the
// window; they become `errorMessage` in the error's own words.
class SyncSettingsModel final : public QObject {
    Q_OBJECT
public:
    // The detector decides where services are looked for, so a test can bring its own home.
    SyncSettingsModel(SyncManager& sync, CloudServiceDetector detector, Clock& clock,
                      QObject* parent = nullptr);

    // --- View state ----------------------------------------------------------------------------

    bool showingSetupSheet() const { return m_showingSetupSheet; }
    bool showingConnectSheet() const { return m_showingConnectSheet; }
    bool showingDisableAlert() const { return m_showingDisableAlert; }
    bool showingAutoDetectAlert() const { return m_showingAutoDetectAlert; }
    const std::optional<FoundSyncFolder>& autoDetectedFolder() const {
        return m_autoDetectedFolder;
    }
    const std::optional<QString>& errorMessage() const { return m_errorMessage; }

    // --- What the window draws -----------------------------------------------------------------

    // Relative times are measured against the clock at the call.
    SyncSettingsFace face() const;
    SetUpSheet setUpSheet() const;
    ConnectSheet connectSheet() const;
    SettingsAlert autoDetectAlert() const;
    SettingsAlert disableAlert() const;

    // --- Set up --------------------------------------------------------------------------------

    // Looks for the services anew, so the rows and the later choice of service are current.
    void showSetUpSheet();
    // A row's panel, or with no service the one of "Choose Other Folder...".
    FolderPanelRequest chooseSetUpFolder(const std::optional<CloudService>& service) const;
    void dismissSetUpSheet();

    // --- Connect -------------------------------------------------------------------------------

    void showConnectSheet();
    FolderPanelRequest chooseConnectFolder() const;
    void dismissConnectSheet();

    // --- Auto-detect ---------------------------------------------------------------------------

    // Finds the first service that holds a sync folder and asks whether to connect to it.
    void autoDetect();
    // The alert's "Connect": the panel that lets the user grant the folder. None without a
    // found folder.
    std::optional<FolderPanelRequest> connectToDetectedFolder();
    void dismissAutoDetectAlert();

    // --- Disable and restore ---------------------------------------------------------------------

    void askToDisable();
    void confirmDisable();
    void dismissDisableAlert();
    void restore(const QUuid& id);

    // --- Panel answers -------------------------------------------------------------------------

    // The user confirmed `folder` in the panel opened for `request`.
    void folderChosen(const FolderPanelRequest& request, const QString& folder);

Q_SIGNALS:
    // Anything the window draws may have changed.
    void changed();

private:
    void detectServices();
    SyncOnFace onFace() const;
    // Clears the error and closes the sheet, if any, on success; shows the error otherwise.
    void finish(const std::optional<SyncError>& error, bool* sheetShowing);
    void setErrorMessage(const std::optional<QString>& message);

    SyncManager& m_sync;
    CloudServiceDetector m_detector;
    Clock& m_clock;

    bool m_showingSetupSheet = false;
    bool m_showingConnectSheet = false;
    bool m_showingDisableAlert = false;
    bool m_showingAutoDetectAlert = false;
    std::optional<FoundSyncFolder> m_autoDetectedFolder;
    std::optional<QString> m_errorMessage;
};

} // namespace hueshelf::app
