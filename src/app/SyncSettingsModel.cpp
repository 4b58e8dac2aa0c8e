#include "app/SyncSettingsModel.h"

#include "app/RelativeTime.h"
#include "sync/SyncManager.h"
#include "util/Clock.h"

#include <QFileInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace {

const QString kRestoreButton = u"Restore"_s;
const QString kNoRecentlyDeleted = u"No recently deleted palettes"_s;
const QString kDisableButton = u"Disable Sync"_s;

} // namespace

SyncSettingsModel::SyncSettingsModel(SyncManager& sync, CloudServiceDetector detector, Clock& clock,
                                     QObject* parent)
    : QObject(parent), m_sync(sync), m_detector(std::move(detector)), m_clock(clock) {
    for (auto signal :
         {&SyncManager::isEnabledChanged, &SyncManager::selectedServiceChanged,
          &SyncManager::availableServicesChanged, &SyncManager::lastSyncTimeChanged,
          &SyncManager::syncStatusChanged, &SyncManager::recentlyDeletedTemplatesChanged})
        connect(&m_sync, signal, this, &SyncSettingsModel::changed);
}

// --- What the window draws ---------------------------------------------------------------------

SyncSettingsFace SyncSettingsModel::face() const {
    if (m_sync.isEnabled())
        return onFace();
    using namespace SyncSettingsTexts;
    return SyncOffFace{offHeadline,        offSubheadline,          offDescription,
                       setUpNewSyncButton, connectToExistingButton, autoDetectButton};
}

SyncOnFace SyncSettingsModel::onFace() const {
    using namespace SyncSettingsTexts;
    const double now = m_clock.nowMs();
    const SyncConfiguration& configuration = m_sync.configuration();

    SyncOnFace face;
    face.headline = configuration.cloudService.value_or(onHeadlineWithoutService);
    face.status = m_sync.syncStatus();
    face.statusText = face.status.text();
    face.lastSyncedLabel = lastSyncedLabel;
    if (const std::optional<double> last = m_sync.lastSyncTime())
        face.lastSynced = RelativeTime::ago(*last, now);
    face.folderLabel = folderLabel;
    face.folderPath = configuration.syncFolderPath.value_or(QString());
    face.recentlyDeletedTitle = recentlyDeletedTitle;
    for (const SyncableTemplate& record : m_sync.recentlyDeletedTemplates()) {
        const double deletedAt = record.deletedAt.value_or(record.lastModified);
        face.recentlyDeleted.append(RecentlyDeletedRow{
            record.id, record.name, u"Deleted "_s + RelativeTime::span(deletedAt, now) + u" ago"_s,
            kRestoreButton});
    }
    if (face.recentlyDeleted.isEmpty())
        face.recentlyDeletedPlaceholder = kNoRecentlyDeleted;
    face.disableButton = kDisableButton;
    return face;
}

SetUpSheet SyncSettingsModel::setUpSheet() const {
    using namespace SyncSettingsTexts;
    SetUpSheet sheet{setUpSheetTitle, setUpSheetPrompt, {}, chooseOtherFolderButton, cancelButton};
    const QList<DetectedCloudService>& found = m_sync.availableServices();
    for (const CloudService service : allCloudServices) {
        CloudServiceRow row{service,      cloudServiceName(service), cloudServiceSymbol(service),
                            std::nullopt, serviceNotFound,           std::nullopt};
        for (const DetectedCloudService& detected : found) {
            if (detected.service == service) {
                row.detectedPath = detected.path;
                row.detail =
                    CloudServiceDetector::homeAbbreviated(detected.path, m_detector.roots().home);
                row.readyMark = serviceReady;
                break;
            }
        }
        sheet.rows.append(row);
    }
    return sheet;
}

ConnectSheet SyncSettingsModel::connectSheet() const {
    using namespace SyncSettingsTexts;
    return ConnectSheet{connectSheetTitle, connectSheetPrompt, connectSheetSymbol,
                        connectSheetNote,  chooseFolderButton, cancelButton};
}

SettingsAlert SyncSettingsModel::autoDetectAlert() const {
    using namespace SyncSettingsTexts;
    const QString serviceName =
        m_autoDetectedFolder ? cloudServiceName(m_autoDetectedFolder->service.service) : QString();
    return SettingsAlert{syncFolderFoundTitle, syncFolderFoundMessage(serviceName), connectButton,
                         cancelButton};
}

SettingsAlert SyncSettingsModel::disableAlert() const {
    using namespace SyncSettingsTexts;
    return SettingsAlert{disableAlertTitle, disableAlertMessage, disableAlertConfirm, cancelButton};
}

// --- Set up ------------------------------------------------------------------------------------

void SyncSettingsModel::showSetUpSheet() {
    detectServices();
    // A sheet starts clean: a failure shown earlier belongs to another attempt.
    m_errorMessage.reset();
    m_showingSetupSheet = true;
    Q_EMIT changed();
}

FolderPanelRequest
SyncSettingsModel::chooseSetUpFolder(const std::optional<CloudService>& service) const {
    using namespace SyncSettingsTexts;
    FolderPanelRequest request;
    request.purpose = FolderPanelPurpose::setUp;
    request.service = service;
    request.title = setUpPanelPrompt;
    request.prompt = setUpPanelPrompt;
    request.canCreateDirectories = true;
    if (!service) {
        request.message = setUpOtherFolderPanelMessage;
        return request;
    }
    request.message = setUpPanelMessage(cloudServiceName(*service));
    for (const DetectedCloudService& detected : m_sync.availableServices()) {
        if (detected.service == *service) {
            request.startDirectory = detected.path;
            break;
        }
    }
    return request;
}

void SyncSettingsModel::dismissSetUpSheet() {
    m_showingSetupSheet = false;
    Q_EMIT changed();
}

// --- Connect -----------------------------------------------------------------------------------

void SyncSettingsModel::showConnectSheet() {
    // The service that the picked path names is selected only if it was found on this machine.
    detectServices();
    m_errorMessage.reset();
    m_showingConnectSheet = true;
    Q_EMIT changed();
}

FolderPanelRequest SyncSettingsModel::chooseConnectFolder() const {
    using namespace SyncSettingsTexts;
    FolderPanelRequest request;
    request.purpose = FolderPanelPurpose::connect;
    request.title = connectButton;
    request.prompt = connectButton;
    request.message = connectPanelMessage;
    return request;
}

void SyncSettingsModel::dismissConnectSheet() {
    m_showingConnectSheet = false;
    Q_EMIT changed();
}

// --- Auto-detect -------------------------------------------------------------------------------

void SyncSettingsModel::autoDetect() {
    detectServices();
    m_autoDetectedFolder = CloudServiceDetector::findExistingSyncFolder(m_sync.availableServices());
    if (m_autoDetectedFolder) {
        m_errorMessage.reset();
        m_showingAutoDetectAlert = true;
    } else {
        m_errorMessage = SyncSettingsTexts::noSyncFolderFound;
    }
    Q_EMIT changed();
}

std::optional<FolderPanelRequest> SyncSettingsModel::connectToDetectedFolder() {
    m_showingAutoDetectAlert = false;
    Q_EMIT changed();
    if (!m_autoDetectedFolder)
        return std::nullopt;
    // The found folder isn't joined directly: the right to it comes from the user's own pick,
    // so the panel only starts where the sync folder was found.
    using namespace SyncSettingsTexts;
    const DetectedCloudService& service = m_autoDetectedFolder->service;
    FolderPanelRequest request;
    request.purpose = FolderPanelPurpose::connectToFound;
    request.service = service.service;
    request.title = connectButton;
    request.prompt = connectButton;
    request.message = syncFolderFoundPanelMessage(cloudServiceName(service.service));
    request.startDirectory = QFileInfo(m_autoDetectedFolder->syncFolderPath).absolutePath();
    return request;
}

void SyncSettingsModel::dismissAutoDetectAlert() {
    m_showingAutoDetectAlert = false;
    Q_EMIT changed();
}

// --- Disable and restore -----------------------------------------------------------------------

void SyncSettingsModel::askToDisable() {
    m_showingDisableAlert = true;
    Q_EMIT changed();
}

void SyncSettingsModel::confirmDisable() {
    m_showingDisableAlert = false;
    m_sync.disableSync();
    Q_EMIT changed();
}

void SyncSettingsModel::dismissDisableAlert() {
    m_showingDisableAlert = false;
    Q_EMIT changed();
}

void SyncSettingsModel::restore(const QUuid& id) {
    if (const std::optional<SyncError> error = m_sync.restoreTemplate(id))
        setErrorMessage(error->description());
}

// --- Panel answers -----------------------------------------------------------------------------

void SyncSettingsModel::folderChosen(const FolderPanelRequest& request, const QString& folder) {
    const std::optional<QString> serviceName =
        request.service ? std::optional<QString>(cloudServiceName(*request.service))
                        : CloudServiceDetector::serviceName(folder);
    switch (request.purpose) {
    case FolderPanelPurpose::setUp:
        finish(m_sync.setupSync(folder, serviceName), &m_showingSetupSheet);
        return;
    case FolderPanelPurpose::connect:
        finish(m_sync.connectToExisting(folder, serviceName), &m_showingConnectSheet);
        return;
    case FolderPanelPurpose::connectToFound:
        finish(m_sync.connectToExisting(folder, serviceName), nullptr);
        return;
    }
}

void SyncSettingsModel::finish(const std::optional<SyncError>& error, bool* sheetShowing) {
    if (error) {
        m_errorMessage = error->description();
    } else {
        m_errorMessage.reset();
        if (sheetShowing)
            *sheetShowing = false;
    }
    Q_EMIT changed();
}

void SyncSettingsModel::setErrorMessage(const std::optional<QString>& message) {
    m_errorMessage = message;
    Q_EMIT changed();
}

void SyncSettingsModel::detectServices() {
    m_sync.setAvailableServices(m_detector.detectServices());
}

} // namespace hueshelf::app
