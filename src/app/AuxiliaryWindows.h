#pragma once

#include "aitools/AITool.h"
#include "aitools/AIToolConnector.h"
#include "app/FolderPanel.h"
#include "app/PaletteLinkOpenModel.h"
#include "app/SingletonWindowController.h"
#include "sync/CloudServiceDetector.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class QSettings;

namespace hueshelf {
class Clock;
class ColorStorage;
class Platform;
class Scheduler;
class SyncManager;
} // namespace hueshelf

namespace hueshelf::app {

class AIToolsPanelModel;
class PaletteLinkImportWindow;
class SyncSettingsModel;
class WhatsNewReleases;

// What the auxiliary windows and their models are made from. The last four have working
// defaults for the real desktop and are replaced by tests.
struct AuxiliaryWindowsContext {
    ColorStorage& storage;
    SyncManager& sync;
    QSettings& settings;
    Platform& platform;
    Clock& clock;
    Scheduler& scheduler;
    AIToolConnector connector;
    // Builds the AI tools anew each time the panel appears.
    std::function<QList<AITool>()> toolTable;
    CloudServiceDetector detector;
    QString runningVersion = QStringLiteral(HUESHELF_VERSION);
    // None: the notes shipped in the program's resources.
    const WhatsNewReleases* releases = nullptr;
    // None: the toolkit's directory dialog.
    FolderPicker pickFolder;
    // None: a modal message box.
    std::function<void(const LinkAlert&)> showLinkAlert;
};

// The windows that hang off the status menu and the link handler, each made once on first use
// and kept after closing: About, What's New, the AI tools panel, the cloud sync settings and
// the preview of a shared palette.
class AuxiliaryWindows final : public QObject {
    Q_OBJECT
public:
    explicit AuxiliaryWindows(AuxiliaryWindowsContext context, QObject* parent = nullptr);
    ~AuxiliaryWindows() override;

    void showAbout();
    void showWhatsNew();
    // The panel looks for the tools and heals their entries each time it is asked for.
    void showAIToolsPanel();
    void showSyncSettings();
    // A URL handed to the program. Not one of ours: ignored. Unreadable: the alert. Readable:
    // the preview, unless one is up already, which then only comes forward.
    PaletteLinkOpenModel::OpenResult openPaletteLink(const QString& url);

    SingletonWindowController& aboutWindow() { return m_about; }
    SingletonWindowController& whatsNewWindow() { return m_whatsNew; }
    SingletonWindowController& aiToolsWindow() { return m_aiTools; }
    SingletonWindowController& syncSettingsWindow() { return m_syncSettings; }
    SingletonWindowController& paletteLinkWindow() { return m_paletteLink; }

    AIToolsPanelModel& aiToolsModel() { return *m_aiToolsModel; }
    SyncSettingsModel& syncSettingsModel() { return *m_syncModel; }
    PaletteLinkOpenModel& paletteLinkModel() { return *m_linkModel; }

Q_SIGNALS:
    // A palette came in from a link: the bar should be on screen to show it.
    void barShowRequested();

private:
    void showLinkAlert(const LinkAlert& alert);

    AuxiliaryWindowsContext m_context;
    std::unique_ptr<AIToolsPanelModel> m_aiToolsModel;
    std::unique_ptr<SyncSettingsModel> m_syncModel;
    std::unique_ptr<PaletteLinkOpenModel> m_linkModel;
    SingletonWindowController m_about;
    SingletonWindowController m_whatsNew;
    SingletonWindowController m_aiTools;
    SingletonWindowController m_syncSettings;
    SingletonWindowController m_paletteLink;
};

} // namespace hueshelf::app
