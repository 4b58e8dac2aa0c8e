#include "AppTestSupport.h"
#include "BarTestSupport.h"
#include "TempHome.h"
#include "app/AppDelegate.h"
#include "app/BarModel.h"
#include "app/CompactButton.h"
#include "app/CompactColorSwatch.h"
#include "app/FloatingHueShelfView.h"
#include "app/FloatingWindow.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/TemplateJson.h"
#include "platform/fake/FakePlatform.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QDir>
#include <QMenu>
#include <QMouseEvent>
#include <QSettings>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::click;
using testing::palette;

class Shell : public ::testing::Test {
protected:
    void SetUp() override { testing::ensureApplication(); }
    QString prefsPath() const { return home.paths().configDir + u"/io.hueshelf.Hueshelf.json"_s; }
    QString settingsPath() const { return home.paths().configDir + u"/hueshelf.conf"_s; }
    std::unique_ptr<AppDelegate> delegate() {
        auto fake = std::make_unique<FakePlatform>();
        platform = fake.get();
        return std::make_unique<AppDelegate>(home.paths(), std::move(fake), QProcessEnvironment());
    }

    testing::TempHome home;
    FakePlatform* platform = nullptr;
};

// Another process's file is read at start and written back at quit before the quit goes on,
// its own keys kept.
TEST_F(Shell, StartsFromThePreferencesFileAndWritesItAtQuit) {
    const ColorTemplate first = palette(u"First"_s, {{u"Ink"_s, u"#101010"_s}});
    const ColorTemplate second = palette(u"Second"_s, {{u"Paper"_s, u"#FAFAFA"_s}});
    QJsonObject file{{PreferencesKeys::templates, TemplateJson::templatesToJson({first, second})},
                     {PreferencesKeys::activeTemplateId, uuidText(second.id)},
                     {PreferencesKeys::lastModified, 1000.0},
                     {u"helperKey"_s, u"theirs"_s}};
    ASSERT_TRUE(PreferencesFile::write(prefsPath(), file));
    auto app = delegate();
    app->storage().setActiveTemplateId(first.id); // not saved by itself
    app->settings().setValue(u"defaultCopyFormat"_s, u"rgb"_s);
    app->applicationWillTerminate();
    file = PreferencesFile::read(prefsPath()).value_or(QJsonObject());
    EXPECT_EQ(file.value(PreferencesKeys::activeTemplateId).toString(), uuidText(first.id));
    EXPECT_GT(file.value(PreferencesKeys::lastModified).toDouble(), 1000.0);
    EXPECT_EQ(file.value(u"helperKey"_s).toString(), u"theirs"_s);
    EXPECT_EQ(QSettings(settingsPath(), QSettings::IniFormat).value(u"defaultCopyFormat"_s),
              u"rgb"_s);
}

// What can't be read is drawn gray; a copy reads the format from the settings file as another
// writer left it that moment, and copies only the active palette's colours.
TEST_F(Shell, BarModelDrawsAndCopiesTheActivePalette) {
    const ColorTemplate shown = palette(u"Shown"_s, {{u"Sea Glass"_s, u"#3B8077"_s, true},
                                                     {u"Alpha first"_s, u"80FF0000"_s},
                                                     {u"Broken"_s, u"not a colour"_s}});
    const ColorTemplate other = palette(u"Other"_s, {{u"B"_s, u"#FFFFFF"_s}});
    testing::BarHarness bar({other, shown}, QUuid::createUuid());
    SwatchActions& actions = bar.model->swatchActions();
    EXPECT_EQ(bar.model->paletteName(), u"Select"_s);
    EXPECT_EQ(actions.copyColor(shown.colors[0].id, std::nullopt), std::nullopt);
    bar.store.store->selectTemplate(shown.id);
    EXPECT_EQ(bar.model->swatches().value(2).displayColor, QColor::fromRgbF(0.5f, 0.5f, 0.5f));
    EXPECT_EQ(actions.copyColor(other.colors[0].id, std::nullopt), std::nullopt);
    EXPECT_TRUE(bar.platform.clipboardHistory().isEmpty());
    const std::pair<QByteArray, QString> cases[] = {
        {"[General]\ndefaultCopyFormat=nonsense\n", u"#3B8077"_s}, // an unknown format: HEX
        {"[General]\ndefaultCopyFormat=\"tailwind\"\n", u"bg-[#3B8077]"_s},
        {"[General]\ndefaultCopyFormat=hex\n", u"#3B8077"_s},
        {"[General]\ndefaultCopyFormat=rgb\n", u"rgb(59, 128, 119)"_s}, // same size as "hex"
    };
    int seconds = 0;
    for (const auto& [contents, expected] : cases) {
        QFile file(bar.settings.fileName());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(contents);
        // Flushed first: a flush at close() would stamp the file with the present again.
        file.flush();
        file.setFileTime(QDateTime::currentDateTime().addSecs(seconds += 2),
                         QFileDevice::FileModificationTime);
        file.close();
        EXPECT_EQ(actions.copyColor(shown.colors[0].id, std::nullopt),
                  std::optional<QString>(expected));
        EXPECT_EQ(bar.platform.clipboardText(), expected);
    }
}

// The started bar floats without taking the focus, copies on a click, and, with no tray,
// carries the menu (with ampersands kept) itself.
TEST_F(Shell, TheBarFloatsCopiesAndCarriesTheMenu) {
    auto app = delegate();
    FloatingWindow& window = app->window();
    app->start();
    EXPECT_TRUE(window.windowFlags().testFlags(Qt::Tool | Qt::WindowStaysOnTopHint |
                                               Qt::WindowDoesNotAcceptFocus));
    ASSERT_EQ(window.swatchWidgets().size(), 3);
    QWidget* first = window.swatchWidgets()[0];
    click(first);
    EXPECT_EQ(platform->clipboardText(), u"#FFA69E"_s);

    app->storage().renameActiveTemplate(u"Salt & Pepper, an extraordinarily long palette name"_s);
    EXPECT_TRUE(window.shownPaletteName().endsWith(u'…')); // the bar keeps its shape
    const int width = window.width();
    if (app->hasTrayIcon())
        GTEST_SKIP() << "this desktop has a tray; the bar does not carry the menu";
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(4, 4),
                            window.mapToGlobal(QPoint(4, 4)));
    QCoreApplication::sendEvent(&window, &event);
    QMenu* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->actions().value(1)->text(), u"Connect AI Coding Tools…"_s);
    const QList<QAction*> choices = menu->actions().first()->menu()->actions();
    EXPECT_TRUE(choices.first()->text().startsWith(u"Salt && Pepper"_s));
    choices.last()->trigger();
    menu->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window.shownPaletteName(), u"Example"_s);
    EXPECT_LT(window.width(), width);
}

// The bar's own buttons reach the rest of the program: sync set up or turned off shows or hides
// the sync button at once, with the width following; a save that fails is told in the alert;
// minimize takes the bar away.
TEST_F(Shell, TheBarsButtonsReachTheProgram) {
    auto app = delegate();
    QList<LinkAlert> alerts;
    app->hooks().showAlert = [&alerts](const LinkAlert& alert) { alerts.append(alert); };
    app->start();
    FloatingWindow& window = app->window();
    FloatingHueShelfView& view = window.view();
    ASSERT_TRUE(window.isVisible());
    const int width = window.width();
    EXPECT_FALSE(view.syncButton()->isVisibleTo(&window));

    const QString cloud = home.path() + u"/Cloud"_s;
    ASSERT_TRUE(QDir().mkpath(cloud));
    ASSERT_FALSE(app->syncManager().setupSync(cloud, u"Dropbox"_s).has_value());
    EXPECT_TRUE(view.syncButton()->isVisibleTo(&window));
    EXPECT_GT(window.width(), width);
    app->syncManager().disableSync();
    EXPECT_FALSE(view.syncButton()->isVisibleTo(&window));
    EXPECT_EQ(window.width(), width);

    QString suggested;
    view.setSavePathPrompt([&](const QString& name) -> QString {
        suggested = name;
        return home.path() + u"/no such folder/"_s + name;
    });
    click(view.tool(u"square.and.arrow.down"_s));
    EXPECT_EQ(suggested, u"Starter.hueshelf"_s);
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].title, u"Couldn't save the palette"_s);

    click(view.tool(u"minus"_s));
    EXPECT_FALSE(window.isVisible());
    app->applicationWillTerminate();
}

} // namespace
} // namespace hueshelf::app
