#include "AppTestSupport.h"
#include "TempHome.h"
#include "app/AppDelegate.h"
#include "app/BarModel.h"
#include "app/CompactColorSwatch.h"
#include "app/FloatingWindow.h"
#include "app/StatusMenuModel.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/TemplateJson.h"
#include "platform/fake/FakePlatform.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QMenu>
#include <QMouseEvent>
#include <QSettings>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::palette;

void mouse(QWidget* widget, QEvent::Type type, QPoint at, Qt::MouseButtons buttons) {
    QMouseEvent event(type, QPointF(at), QPointF(widget->mapToGlobal(at)), Qt::LeftButton, buttons,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

QStringList titlesOf(const QList<MenuEntry>& entries) {
    QStringList titles;
    for (const MenuEntry& entry : entries)
        titles << (entry.kind == MenuEntry::Kind::separator ? u"---"_s : entry.title);
    return titles;
}

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
    testing::TestStore store({other, shown}, QUuid::createUuid());
    FakePlatform fake;
    QSettings settings(settingsPath(), QSettings::IniFormat);
    BarModel model(*store.store, fake, settings);
    EXPECT_EQ(model.paletteName(), u"Select"_s);
    EXPECT_EQ(model.copyColor(shown.colors[0].id), std::nullopt);
    store.store->selectTemplate(shown.id);
    EXPECT_EQ(model.swatches().value(2).displayColor, QColor::fromRgbF(0.5f, 0.5f, 0.5f));
    EXPECT_EQ(model.copyColor(other.colors[0].id), std::nullopt);
    EXPECT_TRUE(fake.clipboardHistory().isEmpty());
    const std::pair<QByteArray, QString> cases[] = {
        {"[General]\ndefaultCopyFormat=\"tailwind\"\n", u"bg-[#3B8077]"_s},
        {"[General]\ndefaultCopyFormat=hex\n", u"#3B8077"_s},
        {"[General]\ndefaultCopyFormat=rgb\n", u"rgb(59, 128, 119)"_s}, // same size as "hex"
    };
    int seconds = 0;
    for (const auto& [contents, expected] : cases) {
        QFile file(settingsPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(contents);
        // Flushed first: a flush at close() would stamp the file with the present again.
        file.flush();
        file.setFileTime(QDateTime::currentDateTime().addSecs(seconds += 2),
                         QFileDevice::FileModificationTime);
        file.close();
        EXPECT_EQ(model.copyColor(shown.colors[0].id), std::optional<QString>(expected));
        EXPECT_EQ(fake.clipboardText(), expected);
    }
}

// The menu is built from the list as it stands at each opening; entries carry ids, since names
// repeat. Hiding is offered only where a tray can bring the bar back.
TEST_F(Shell, StatusMenuSelectsByIdAndHidesOnlyWithATray) {
    const ColorTemplate b = palette(u"Same"_s, {{u"B"_s, u"#222222"_s}});
    const ColorTemplate c = palette(u"Same"_s, {{u"C"_s, u"#333333"_s}});
    testing::TestStore store({palette(u"Alpha"_s, {{u"A"_s, u"#111111"_s}}), b, c});
    bool visible = true;
    StatusMenuModel menu(*store.store, {[&visible] { return visible; }, [] {}, {}});
    EXPECT_EQ(titlesOf(menu.build()), (QStringList{u"Hide HueShelf"_s, u"---"_s, u"Palettes"_s,
                                                   u"---"_s, u"Quit HueShelf"_s}));
    visible = false;
    const QList<MenuEntry> entries = menu.build();
    EXPECT_EQ(entries.first().title, u"Show HueShelf"_s);
    const QList<MenuEntry> palettes = entries.at(2).children;
    EXPECT_EQ(titlesOf(palettes), (QStringList{u"Alpha"_s, u"Same"_s, u"Same"_s}));
    EXPECT_TRUE(palettes[0].isChecked && !palettes[1].isChecked && palettes[2].isCheckable);
    palettes[2].onTrigger();
    EXPECT_EQ(store.store->activeTemplateId(), c.id);
    store.store->deleteTemplate(b.id);
    palettes[1].onTrigger(); // deleted while the old menu stood open
    EXPECT_EQ(store.store->activeTemplateId(), c.id);
}

// The started bar floats without taking the focus, copies on a click, moves when its empty
// chrome is dragged, and, with no tray, carries the menu (with ampersands kept) itself.
TEST_F(Shell, TheBarFloatsCopiesMovesAndCarriesTheMenu) {
    auto app = delegate();
    FloatingWindow& window = app->window();
    app->start();
    EXPECT_TRUE(window.windowFlags().testFlags(Qt::Tool | Qt::WindowStaysOnTopHint |
                                               Qt::WindowDoesNotAcceptFocus));
    ASSERT_EQ(window.swatchWidgets().size(), 3);
    QWidget* first = window.swatchWidgets()[0];
    mouse(first, QEvent::MouseButtonPress, first->rect().center(), Qt::LeftButton);
    mouse(first, QEvent::MouseButtonRelease, first->rect().center(), Qt::NoButton);
    EXPECT_EQ(platform->clipboardText(), u"#FFA69E"_s);

    const QPoint start = window.pos();
    const QPoint grip(3, window.height() / 2);
    mouse(&window, QEvent::MouseButtonPress, grip, Qt::LeftButton);
    mouse(&window, QEvent::MouseMove, grip + QPoint(40, 25), Qt::LeftButton);
    mouse(&window, QEvent::MouseButtonRelease, grip + QPoint(40, 25), Qt::NoButton);
    mouse(&window, QEvent::MouseMove, grip + QPoint(90, 90), Qt::NoButton);
    EXPECT_EQ(window.pos(), start + QPoint(40, 25));

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
    QStringList texts;
    for (const QAction* action : menu->actions())
        texts << (action->isSeparator() ? u"---"_s : action->text());
    EXPECT_EQ(texts, (QStringList{u"Palettes"_s, u"---"_s, u"Quit HueShelf"_s}));
    const QList<QAction*> choices = menu->actions().first()->menu()->actions();
    EXPECT_TRUE(choices.first()->text().startsWith(u"Salt && Pepper"_s));
    choices.last()->trigger();
    menu->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window.shownPaletteName(), u"Example"_s);
    EXPECT_LT(window.width(), width);
}

} // namespace
} // namespace hueshelf::app
