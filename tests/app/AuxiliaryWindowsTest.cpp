#include "app/AuxiliaryWindows.h"

#include "AppTestSupport.h"
#include "TempHome.h"
#include "aitools/AIToolRegistry.h"
#include "aitools/AIToolTexts.h"
#include "app/AIToolsPanelModel.h"
#include "app/AIToolsWindow.h"
#include "app/AboutWindow.h"
#include "app/PaletteLinkImportWindow.h"
#include "app/SyncSettingsModel.h"
#include "app/SyncSettingsWindow.h"
#include "app/WhatsNewReleases.h"
#include "exchange/PaletteLink.h"
#include "platform/fake/FakePlatform.h"
#include "sync/QtFolderWatch.h"
#include "sync/SyncManager.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::TestStore;

const QString kServer = u"/opt/hueshelf/bin/hueshelf-mcp"_s;

// The windows over a store, a sync manager and a home of their own; every way out to the
// desktop (addresses, folder dialogs, alerts) is recorded instead.
class AuxiliaryWindowsTest : public ::testing::Test {
protected:
    AuxiliaryWindowsTest() {
        testing::ensureApplication();
        const QString h = home.path();
        sync =
            std::make_unique<SyncManager>(store.clock, store.scheduler, settings, u"Test Machine"_s,
                                          u"0.1.0"_s, std::make_unique<QtFolderWatch>());
        const QString root = h + u"/root"_s;
        windows = std::make_unique<AuxiliaryWindows>(AuxiliaryWindowsContext{
            .storage = *store.store,
            .sync = *sync,
            .settings = settings,
            .platform = platform,
            .clock = store.clock,
            .scheduler = store.scheduler,
            .connector = AIToolConnector{kServer, h + u"/data/ai-tool-last-used.json"_s, h,
                                         AIToolConnector::defaultClaudeCandidates(h)},
            .toolTable =
                [h, root] {
                    return AIToolRegistry::allTools(h, root + u"/Applications"_s,
                                                    AIToolRegistry::ToolPlatform::Linux, root);
                },
            .detector = CloudServiceDetector(
                CloudServiceRoots{h, QString(), h + u"/.config"_s, h + u"/.local/state"_s}),
            .runningVersion = u"1.2.0"_s,
            .releases = &releases,
            .openUrl = [this](const QUrl& url) { openedUrls.append(url); },
            .pickFolder = [this](QWidget*,
                                 const FolderPanelRequest& request) -> std::optional<QString> {
                folderRequests.append(request);
                return pickedFolder;
            },
            .showLinkAlert = [this](const LinkAlert& alert) { alerts.append(alert); },
        });
    }

    template <typename T>
    T& content(SingletonWindowController& controller) {
        return *qobject_cast<T*>(controller.window());
    }

    TestStore store{QList<ColorTemplate>{testing::palette(u"Mine"_s, {{u"Ink"_s, u"#111111"_s}})}};
    testing::TempHome home;
    QSettings settings{home.path() + u"/hueshelf.conf"_s, QSettings::IniFormat};
    FakePlatform platform;
    std::unique_ptr<SyncManager> sync;
    WhatsNewReleases releases{{
        {u"9.0.0"_s, u"Someday"_s, {{u"link"_s, u"Future"_s, u"Not yet."_s}}},
        {u"1.2.0"_s, u"Now"_s, {{u"icloud"_s, u"Sync"_s, u"Across devices."_s}}},
        {u"1.0.0"_s, u"Then"_s, {}},
    }};
    QList<QUrl> openedUrls;
    QList<FolderPanelRequest> folderRequests;
    std::optional<QString> pickedFolder;
    QList<LinkAlert> alerts;
    std::unique_ptr<AuxiliaryWindows> windows;
};

// Every window: made once, titled, sized, above the bar; a second request brings back the same
// window, and closing only hides it.
TEST_F(AuxiliaryWindowsTest, EachWindowExistsOnceAndOutlivesClosing) {
    struct Case {
        std::function<void()> show;
        SingletonWindowController& controller;
        QString title;
        std::optional<QSize> size;
    };
    AuxiliaryWindows& w = *windows;
    const QString link = u"hueshelf://import#1;Shared;A:FF0000"_s;
    const Case cases[] = {
        {[&] { w.showAbout(); }, w.aboutWindow(), u"About HueShelf"_s, QSize(280, 260)},
        {[&] { w.showWhatsNew(); }, w.whatsNewWindow(), u"What's New"_s, QSize(340, 440)},
        {[&] { w.showAIToolsPanel(); }, w.aiToolsWindow(), u"Connect Your AI Tools"_s,
         std::nullopt},
        {[&] { w.showSyncSettings(); }, w.syncSettingsWindow(), u"Cloud Sync Settings"_s,
         QSize(450, 400)},
        {[&] { w.openPaletteLink(link); }, w.paletteLinkWindow(), u"Open in HueShelf"_s,
         QSize(380, 300)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.title.toStdString());
        EXPECT_EQ(c.controller.window(), nullptr);
        c.show();
        QWidget* const first = c.controller.window();
        ASSERT_NE(first, nullptr);
        EXPECT_TRUE(first->isVisible());
        EXPECT_EQ(first->windowTitle(), c.title);
        EXPECT_TRUE(first->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        EXPECT_TRUE(first->windowFlags().testFlag(Qt::WindowCloseButtonHint));
        EXPECT_FALSE(first->windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
        if (c.size)
            EXPECT_EQ(first->size(), *c.size);
        else
            EXPECT_EQ(first->width(), AIToolsWindow::panelWidth);

        c.show();
        EXPECT_EQ(c.controller.window(), first);
        first->close();
        EXPECT_FALSE(first->isVisible());
        EXPECT_EQ(c.controller.window(), first);
        c.show();
        EXPECT_EQ(c.controller.window(), first);
        EXPECT_TRUE(first->isVisible());
    }
}

TEST_F(AuxiliaryWindowsTest, WhatsNewShowsNoReleaseFromTheFuture) {
    windows->showWhatsNew();
    const QList<QWidget*> blocks =
        windows->whatsNewWindow().window()->findChildren<QWidget*>(u"release"_s);
    ASSERT_EQ(blocks.size(), 2);
    QStringList texts;
    for (const QLabel* label : windows->whatsNewWindow().window()->findChildren<QLabel*>())
        texts.append(label->text());
    EXPECT_TRUE(texts.contains(u"Version 1.2.0"_s));
    EXPECT_TRUE(texts.contains(u"Version 1.0.0"_s));
    EXPECT_FALSE(texts.contains(u"Version 9.0.0"_s));
    EXPECT_FALSE(texts.contains(u"Future"_s));
}

TEST_F(AuxiliaryWindowsTest, AboutLinksOpenTheWebHostsPages) {
    windows->showAbout();
    auto& about = content<AboutWindow>(windows->aboutWindow());
    about.websiteButton().click();
    about.supportButton().click();
    const QString host = PaletteLink::linkHost();
    EXPECT_EQ(openedUrls, (QList<QUrl>{QUrl(u"https://"_s + host + u"/"_s),
                                       QUrl(u"https://"_s + host + u"/support"_s)}));
}

// While a preview is up a second link is dropped; "Add to HueShelf" adds the first one's
// palette, closes the window and asks for the bar. The next link is drawn afresh.
TEST_F(AuxiliaryWindowsTest, LinkPreviewKeepsItsLinkAndAddsIt) {
    using Result = PaletteLinkOpenModel::OpenResult;
    int barRequests = 0;
    QObject::connect(windows.get(), &AuxiliaryWindows::barShowRequested, [&] { ++barRequests; });

    EXPECT_EQ(windows->openPaletteLink(u"https://example.com/p/#1;X;A:000000"_s), Result::ignored);
    EXPECT_EQ(windows->openPaletteLink(u"hueshelf://import#1;Broken;A:00"_s), Result::refused);
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts.constFirst().button, u"OK"_s);
    EXPECT_EQ(windows->paletteLinkWindow().window(), nullptr);

    ASSERT_EQ(windows->openPaletteLink(u"hueshelf://import#1;Shared;A:FF0000,B:00FF00"_s),
              Result::previewed);
    QWidget* const window = windows->paletteLinkWindow().window();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(windows->openPaletteLink(u"hueshelf://import#1;Second;C:0000FF"_s), Result::dropped);
    EXPECT_EQ(windows->paletteLinkWindow().window(), window);
    QStringList texts;
    for (const QLabel* label : window->findChildren<QLabel*>())
        texts.append(label->text());
    EXPECT_TRUE(texts.contains(u"Shared"_s));
    EXPECT_TRUE(texts.contains(u"2 colors"_s));
    EXPECT_FALSE(texts.contains(u"Second"_s));

    const qsizetype before = store.store->templates().size();
    qobject_cast<PaletteLinkImportWindow*>(window)->addButton().click();
    ASSERT_EQ(store.store->templates().size(), before + 1);
    EXPECT_EQ(store.active().name, u"Shared"_s);
    EXPECT_EQ(store.active().colors.size(), 2);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(barRequests, 1);

    ASSERT_EQ(windows->openPaletteLink(u"hueshelf://import#1;Third;C:0000FF"_s), Result::previewed);
    EXPECT_EQ(windows->paletteLinkWindow().window(), window);
    EXPECT_TRUE(window->isVisible());
    texts.clear();
    for (const QLabel* label : window->findChildren<QLabel*>())
        texts.append(label->text());
    EXPECT_TRUE(texts.contains(u"Third"_s));
    EXPECT_TRUE(texts.contains(u"1 color"_s));
}

// Closing the preview by its title bar lets the link go, so the next one is shown.
TEST_F(AuxiliaryWindowsTest, ClosingThePreviewForgetsTheLink) {
    using Result = PaletteLinkOpenModel::OpenResult;
    ASSERT_EQ(windows->openPaletteLink(u"hueshelf://import#1;One;A:FF0000"_s), Result::previewed);
    windows->paletteLinkWindow().window()->close();
    EXPECT_FALSE(windows->paletteLinkModel().isPreviewVisible());
    const qsizetype before = store.store->templates().size();
    EXPECT_EQ(windows->openPaletteLink(u"hueshelf://import#1;Two;A:FF0000"_s), Result::previewed);
    qobject_cast<PaletteLinkImportWindow*>(windows->paletteLinkWindow().window())
        ->cancelButton()
        .click();
    EXPECT_FALSE(windows->paletteLinkWindow().window()->isVisible());
    EXPECT_EQ(store.store->templates().size(), before);
}

TEST_F(AuxiliaryWindowsTest, AIToolsSnippetButtonCopiesAndSaysSo) {
    windows->showAIToolsPanel();
    auto& panel = content<AIToolsWindow>(windows->aiToolsWindow());
    EXPECT_FALSE(panel.statusLabel().isVisibleTo(&panel));
    // The picker names the store's palettes and has one chosen.
    ASSERT_EQ(panel.palettePicker().count(), 1);
    EXPECT_EQ(panel.palettePicker().currentText(), u"Mine"_s);

    panel.copySnippetButton().click();
    EXPECT_TRUE(platform.clipboardText().contains(kServer));
    EXPECT_TRUE(panel.statusLabel().isVisibleTo(&panel));
    EXPECT_EQ(panel.statusLabel().text(), AIToolTexts::snippetCopied());
}

// Off, through the set-up sheet and a picked folder, to on; then the disable alert back to off.
TEST_F(AuxiliaryWindowsTest, SyncSettingsSetsUpAndDisables) {
    windows->showSyncSettings();
    auto& window = content<SyncSettingsWindow>(windows->syncSettingsWindow());
    const auto button = [&](const QString& text) -> QPushButton* {
        for (QPushButton* candidate : window.page().findChildren<QPushButton*>()) {
            if (candidate->text() == text)
                return candidate;
        }
        return nullptr;
    };
    EXPECT_EQ(window.page().objectName(), u"syncOff"_s);
    ASSERT_NE(button(u"Set Up New Sync"_s), nullptr);
    button(u"Set Up New Sync"_s)->click();
    EXPECT_EQ(window.page().objectName(), u"setUpSheet"_s);
    // A row for every service, yet the window keeps its size.
    EXPECT_EQ(window.size(), QSize(450, 400));

    // A cancelled folder dialog changes nothing.
    button(u"Choose Other Folder..."_s)->click();
    ASSERT_EQ(folderRequests.size(), 1);
    EXPECT_FALSE(folderRequests.constFirst().service.has_value());
    EXPECT_EQ(window.page().objectName(), u"setUpSheet"_s);

    const QString cloud = home.path() + u"/Cloud"_s;
    QDir().mkpath(cloud);
    pickedFolder = cloud;
    button(u"Choose Other Folder..."_s)->click();
    EXPECT_TRUE(sync->isEnabled());
    EXPECT_TRUE(QDir(cloud + u"/HueShelf Sync"_s).exists());
    EXPECT_EQ(window.page().objectName(), u"syncOn"_s);
    EXPECT_FALSE(window.errorLabel().isVisibleTo(&window));

    button(u"Disable Sync"_s)->click();
    ASSERT_TRUE(windows->syncSettingsModel().showingDisableAlert());
    const QList<QMessageBox*> boxes = window.findChildren<QMessageBox*>();
    ASSERT_EQ(boxes.size(), 1);
    QPushButton* disable = nullptr;
    for (QAbstractButton* candidate : boxes.constFirst()->buttons()) {
        if (candidate->text() == u"Disable"_s)
            disable = qobject_cast<QPushButton*>(candidate);
    }
    ASSERT_NE(disable, nullptr);
    disable->click();
    EXPECT_FALSE(sync->isEnabled());
    EXPECT_EQ(window.page().objectName(), u"syncOff"_s);
}

} // namespace
} // namespace hueshelf::app
