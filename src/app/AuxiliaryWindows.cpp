#include "app/AuxiliaryWindows.h"

#include "aitools/AIToolTexts.h"
#include "app/AIToolsPanelModel.h"
#include "app/AIToolsWindow.h"
#include "app/AboutWindow.h"
#include "app/PaletteLinkImportWindow.h"
#include "app/SyncSettingsModel.h"
#include "app/SyncSettingsWindow.h"
#include "app/WhatsNewReleases.h"
#include "app/WhatsNewWindow.h"
#include "platform/Platform.h"
#include "sync/SyncSettingsTexts.h"

#include <QMessageBox>

namespace hueshelf::app {

AuxiliaryWindows::AuxiliaryWindows(AuxiliaryWindowsContext context, QObject* parent)
    : QObject(parent), m_context(std::move(context)),
      m_aiToolsModel(std::make_unique<AIToolsPanelModel>(m_context.storage, m_context.connector,
                                                         m_context.toolTable, m_context.settings,
                                                         m_context.platform, m_context.clock)),
      m_syncModel(
          std::make_unique<SyncSettingsModel>(m_context.sync, m_context.detector, m_context.clock)),
      m_linkModel(std::make_unique<PaletteLinkOpenModel>(m_context.storage, m_context.clock,
                                                         m_context.scheduler)),
      m_about(AboutTexts::title, QSize(AboutTexts::width, AboutTexts::height),
              [this] {
                  return std::make_unique<AboutWindow>(
                      m_context.runningVersion,
                      [this](const QUrl& url) { m_context.platform.openUrl(url); });
              }),
      m_whatsNew(WhatsNewTexts::title, QSize(WhatsNewTexts::width, WhatsNewTexts::height),
                 [this] {
                     const WhatsNewReleases& releases =
                         m_context.releases ? *m_context.releases : WhatsNewReleases::bundled();
                     return std::make_unique<WhatsNewWindow>(releases, m_context.runningVersion);
                 }),
      m_aiTools(AIToolTexts::windowTitle(), std::nullopt,
                [this] { return std::make_unique<AIToolsWindow>(*m_aiToolsModel); }),
      m_syncSettings(SyncSettingsTexts::windowTitle,
                     QSize(SyncSettingsWindow::contentWidth, SyncSettingsWindow::contentHeight),
                     [this] {
                         FolderPicker picker =
                             m_context.pickFolder ? m_context.pickFolder : runFolderPanel;
                         return std::make_unique<SyncSettingsWindow>(*m_syncModel, picker);
                     }),
      m_paletteLink(PaletteLinkOpenTexts::previewTitle,
                    QSize(PaletteLinkOpenTexts::previewWidth, PaletteLinkOpenTexts::previewHeight),
                    [this] { return std::make_unique<PaletteLinkImportWindow>(*m_linkModel); }) {
    connect(m_linkModel.get(), &PaletteLinkOpenModel::previewOpened, this, [this] {
        const bool existed = m_paletteLink.window() != nullptr;
        QWidget& window = m_paletteLink.show();
        // A window kept from an earlier link still shows that link's palette.
        if (existed)
            static_cast<PaletteLinkImportWindow&>(window).refresh();
    });
    connect(m_linkModel.get(), &PaletteLinkOpenModel::previewRaised, this,
            [this] { m_paletteLink.show(); });
    connect(m_linkModel.get(), &PaletteLinkOpenModel::previewClosed, this,
            [this] { m_paletteLink.hide(); });
    connect(m_linkModel.get(), &PaletteLinkOpenModel::barShowRequested, this,
            &AuxiliaryWindows::barShowRequested);
    connect(m_linkModel.get(), &PaletteLinkOpenModel::alertRequested, this,
            &AuxiliaryWindows::showLinkAlert);
}

AuxiliaryWindows::~AuxiliaryWindows() = default;

void AuxiliaryWindows::showAbout() {
    m_about.show();
}

void AuxiliaryWindows::showWhatsNew() {
    m_whatsNew.show();
}

void AuxiliaryWindows::showAIToolsPanel() {
    m_aiToolsModel->appear();
    m_aiTools.show();
}

void AuxiliaryWindows::showSyncSettings() {
    m_syncSettings.show();
}

PaletteLinkOpenModel::OpenResult AuxiliaryWindows::openPaletteLink(const QString& url) {
    return m_linkModel->open(url);
}

void AuxiliaryWindows::showLinkAlert(const LinkAlert& alert) {
    if (m_context.showLinkAlert) {
        m_context.showLinkAlert(alert);
        return;
    }
    QMessageBox box(QMessageBox::Warning, alert.title, alert.text, QMessageBox::NoButton);
    box.addButton(alert.button, QMessageBox::AcceptRole);
    box.setWindowFlag(Qt::WindowStaysOnTopHint, true);
    box.exec();
}

} // namespace hueshelf::app
