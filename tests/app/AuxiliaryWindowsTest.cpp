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

const QString kServer = u"/opt/hueshelf/bin/hueshelf-mcp"_s;

QStringList labelsOf(const QWidget* window) {
    QStringList texts;
    for (const QLabel* label : window->findChildren<QLabel*>())
        texts.append(label->text());
    return texts;
}

template <typename T>
T* find(const QWidget* parent, const QString& text) {
    for (T* candidate : parent->findChildren<T*>())
        if (candidate->text() == text)
            return candidate;
    return nullptr;
}

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
                [h] {
                    return AIToolRegistry::allTools(h, h + u"/root/Applications"_s,
                                                    AIToolRegistry::ToolPlatform::Linux,
                                                    h + u"/root"_s);
                },
            .detector = CloudServiceDetector(
                CloudServiceRoots{h, QString(), h + u"/.config"_s, h + u"/.local/state"_s}),
            .runningVersion = u"1.2.0"_s,
            .releases = &releases,
            .pickFolder = [this](QWidget*, const FolderPanelRequest&) { return pickedFolder; },
            .showLinkAlert = [this](const LinkAlert& alert) { alerts.append(alert); },
        });
    }

    testing::TestStore store{
        QList<ColorTemplate>{testing::palette(u"Mine"_s, {{u"I"_s, u"#111111"_s}})}};
    testing::TempHome home;
    QSettings settings{home.path() + u"/hueshelf.conf"_s, QSettings::IniFormat};
    FakePlatform platform;
    std::unique_ptr<SyncManager> sync;
    WhatsNewReleases releases{{
        {u"9.0.0"_s, u"Someday"_s, {{u"link"_s, u"Future"_s, u"Not yet."_s}}},
        {u"1.2.0"_s, u"Now"_s, {{u"icloud"_s, u"Sync"_s, u"Across devices."_s}}},
    }};
    std::optional<QString> pickedFolder;
    QList<LinkAlert> alerts;
    std::unique_ptr<AuxiliaryWindows> windows;
};

// Every window: made once, titled, sized, above the bar; a second request brings back the same
// window, and closing only hides it.
TEST_F(AuxiliaryWindowsTest, EachWindowExistsOnceAndOutlivesClosing) {
    AuxiliaryWindows& w = *windows;
    const struct {
        std::function<void()> show;
        SingletonWindowController& controller;
        QString title;
        QSize size; // empty: the panel's own height
    } cases[] = {
        {[&] { w.showAbout(); }, w.aboutWindow(), u"About HueShelf"_s, {280, 260}},
        {[&] { w.showWhatsNew(); }, w.whatsNewWindow(), u"What's New"_s, {340, 440}},
        {[&] { w.showAIToolsPanel(); }, w.aiToolsWindow(), u"Connect Your AI Tools"_s, {}},
        {[&] { w.showSyncSettings(); },
         w.syncSettingsWindow(),
         u"Cloud Sync Settings"_s,
         {450, 400}},
        {[&] { w.openPaletteLink(u"hueshelf://import#1;Shared;A:FF0000"_s); },
         w.paletteLinkWindow(),
         u"Open in HueShelf"_s,
         {380, 300}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title.toStdString());
        EXPECT_EQ(c.controller.window(), nullptr);
        c.show();
        QWidget* const first = c.controller.window();
        ASSERT_NE(first, nullptr);
        EXPECT_TRUE(first->isVisible());
        EXPECT_EQ(first->windowTitle(), c.title);
        EXPECT_TRUE(first->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        EXPECT_EQ(first->width(), c.size.isEmpty() ? AIToolsWindow::panelWidth : c.size.width());
        if (!c.size.isEmpty()) {
            EXPECT_EQ(first->height(), c.size.height());
        }
        first->close();
        EXPECT_FALSE(first->isVisible());
        c.show();
        EXPECT_EQ(c.controller.window(), first);
        EXPECT_TRUE(first->isVisible());
    }
    // What's New holds nothing from a release newer than the running one.
    EXPECT_FALSE(labelsOf(w.whatsNewWindow().window()).contains(u"Future"_s));
    EXPECT_TRUE(labelsOf(w.whatsNewWindow().window()).contains(u"Version 1.2.0"_s));
    // The About links and the AI tools snippet go out through the desktop's own ways.
    auto* about = qobject_cast<AboutWindow*>(w.aboutWindow().window());
    about->supportButton().click();
    EXPECT_EQ(platform.openedUrls(), QList<QUrl>{QUrl(u"https://hueshelf.app/support"_s)});
    auto* panel = qobject_cast<AIToolsWindow*>(w.aiToolsWindow().window());
    EXPECT_EQ(panel->palettePicker().currentText(), u"Mine"_s);
    panel->copySnippetButton().click();
    EXPECT_TRUE(platform.clipboardText().contains(kServer));
    EXPECT_EQ(panel->statusLabel().text(), AIToolTexts::snippetCopied());
}

// "Add to HueShelf" adds the previewed palette, closes the window and asks for the bar; a
// preview closed by its title bar lets its link go, so the next one is shown.
TEST_F(AuxiliaryWindowsTest, LinkPreviewAddsAndLetsGo) {
    using Result = PaletteLinkOpenModel::OpenResult;
    int barRequests = 0;
    QObject::connect(windows.get(), &AuxiliaryWindows::barShowRequested, [&] { ++barRequests; });
    ASSERT_EQ(windows->openPaletteLink(u"hueshelf://import#1;Shared;A:FF0000,B:00FF00"_s),
              Result::previewed);
    auto* window = qobject_cast<PaletteLinkImportWindow*>(windows->paletteLinkWindow().window());
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(labelsOf(window).contains(u"2 colors"_s));
    window->addButton().click();
    EXPECT_EQ(store.active().name, u"Shared"_s);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(barRequests, 1);
    ASSERT_EQ(windows->openPaletteLink(u"hueshelf://import#1;Four;C:0000FF"_s), Result::previewed);
    window->close();
    EXPECT_EQ(windows->openPaletteLink(u"hueshelf://import#1;Five;C:0000FF"_s), Result::previewed);
    EXPECT_EQ(windows->paletteLinkWindow().window(), window);
}

// Off, through the set-up sheet and a picked folder, to on; then through the alert back to off.
TEST_F(AuxiliaryWindowsTest, SyncSettingsSetsUpAndDisables) {
    windows->showSyncSettings();
    auto& window = *qobject_cast<SyncSettingsWindow*>(windows->syncSettingsWindow().window());
    const auto click = [&](const QString& text) {
        QPushButton* button = find<QPushButton>(&window.page(), text);
        ASSERT_NE(button, nullptr) << text.toStdString();
        button->click();
    };
    EXPECT_EQ(window.page().objectName(), u"syncOff"_s);
    click(u"Set Up New Sync"_s);
    EXPECT_EQ(window.page().objectName(), u"setUpSheet"_s);
    pickedFolder = home.path() + u"/Cloud"_s;
    QDir().mkpath(*pickedFolder);
    click(u"Choose Other Folder..."_s);
    EXPECT_TRUE(sync->isEnabled());
    EXPECT_TRUE(QDir(*pickedFolder + u"/HueShelf Sync"_s).exists());
    EXPECT_EQ(window.page().objectName(), u"syncOn"_s);

    click(u"Disable Sync"_s);
    const QList<QMessageBox*> boxes = window.findChildren<QMessageBox*>();
    ASSERT_EQ(boxes.size(), 1);
    QAbstractButton* disable = find<QAbstractButton>(boxes.constFirst(), u"Disable"_s);
    ASSERT_NE(disable, nullptr);
    disable->click();
    EXPECT_FALSE(sync->isEnabled());
    EXPECT_EQ(window.page().objectName(), u"syncOff"_s);
}

} // namespace
} // namespace hueshelf::app
