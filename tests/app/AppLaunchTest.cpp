// The launch up to the first shown bar, and the end of a run: what happens at start, how long
// the bar stays invisible, how it appears, and where links and files handed over go.

#include "AppTestSupport.h"
#include "TempHome.h"
#include "app/AppDelegate.h"
#include "app/FloatingWindow.h"
#include "app/KeyboardModality.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/TemplateJson.h"
#include "platform/fake/FakePlatform.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPropertyAnimation>
#include <QTemporaryDir>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;
using testing::palette;

bool writeFile(const QString& path, const QByteArray& bytes, bool executable = false) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return false;
    file.close();
    return !executable ||
           file.setPermissions(file.permissions() | QFileDevice::ExeOwner | QFileDevice::ExeUser);
}

QJsonObject readJson(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

class Launch : public ::testing::Test {
protected:
    void SetUp() override {
        testing::ensureApplication();
        // Not under /tmp: a program run from a temporary folder never heals the tools' entries.
        binaryDir = std::make_unique<QTemporaryDir>(QCoreApplication::applicationDirPath() +
                                                    u"/launch-XXXXXX"_s);
        ASSERT_TRUE(binaryDir->isValid());
        ASSERT_FALSE(binaryDir->path().contains(u"/tmp/"_s));
        ASSERT_TRUE(writeFile(binaryDir->filePath(u"hueshelf-helper"_s), "#!/bin/sh\n", true));
        ASSERT_TRUE(writeFile(binaryDir->filePath(u"hueshelf-mcp"_s), "#!/bin/sh\n", true));
        const ColorTemplate first = palette(u"First"_s, {{u"Ink"_s, u"#101010"_s}});
        const QJsonObject file{{PreferencesKeys::templates, TemplateJson::templatesToJson({first})},
                               {PreferencesKeys::activeTemplateId, uuidText(first.id)},
                               {PreferencesKeys::lastModified, 1000.0}};
        ASSERT_TRUE(PreferencesFile::write(prefsPath(), file));
    }
    QString prefsPath() const { return home.paths().configDir + u"/io.hueshelf.Hueshelf.json"_s; }
    QString cursorSettings() const { return home.path() + u"/.cursor/mcp.json"_s; }

    std::unique_ptr<AppDelegate> delegate() {
        AppDelegate::Services services;
        services.scheduler = &scheduler;
        services.clock = &clock;
        services.binaryDir = binaryDir->path();
        auto made = std::make_unique<AppDelegate>(home.paths(), std::make_unique<FakePlatform>(),
                                                  QProcessEnvironment(), services);
        made->hooks().afterFirstShow = [this] { ++afterFirstShowCount; };
        made->hooks().openPaletteLink = [this](const QString& link) { links.append(link); };
        made->hooks().showAlert = [this](const LinkAlert& alert) { alerts.append(alert); };
        return made;
    }

    testing::TempHome home;
    std::unique_ptr<QTemporaryDir> binaryDir;
    testing::ManualClock clock;
    testing::ManualScheduler scheduler{clock};
    int afterFirstShowCount = 0;
    QStringList links;
    QList<LinkAlert> alerts;
};

TEST_F(Launch, RegistersHelpersThenFadesInTheBarAfterTheWait) {
    // An entry of a copy that has since moved.
    ASSERT_TRUE(writeFile(cursorSettings(),
                          R"({"mcpServers": {"hueshelf": {"command": "/old/place/hueshelf-mcp",)"
                          R"( "args": ["--client", "cursor"]}}, "theirs": 1})"));
    auto app = delegate();
    app->start();
    QThreadPool::globalInstance()->waitForDone();

    const QJsonObject cursor = readJson(cursorSettings());
    EXPECT_EQ(cursor.value(u"mcpServers"_s)
                  .toObject()
                  .value(u"hueshelf"_s)
                  .toObject()
                  .value(u"command"_s),
              binaryDir->filePath(u"hueshelf-mcp"_s))
        << "healed at launch";
    EXPECT_EQ(cursor.value(u"theirs"_s), 1);
    EXPECT_EQ(readJson(home.path() +
                       u"/.config/google-chrome/NativeMessagingHosts/io.hueshelf.hueshelf.json"_s)
                  .value(u"path"_s),
              binaryDir->filePath(u"hueshelf-helper"_s));
    EXPECT_TRUE(KeyboardModality::shared().isMonitoring());
    EXPECT_EQ(app->settings().value(u"defaultCopyFormat"_s), u"hex"_s);

    // Laid out but invisible until the wait ends, 2 seconds at most.
    FloatingWindow& window = app->window();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.windowOpacity(), 0.0);
    EXPECT_TRUE(app->isWaitingForBrowserHelper());
    scheduler.advance(1.95);
    EXPECT_EQ(window.windowOpacity(), 0.0);
    EXPECT_EQ(app->firstShowAnimation(), nullptr);
    scheduler.advance(0.05);
    EXPECT_FALSE(app->isWaitingForBrowserHelper());
    EXPECT_TRUE(app->externalChangeMonitor().initialSyncComplete());

    QPropertyAnimation* fade = app->firstShowAnimation();
    ASSERT_NE(fade, nullptr);
    EXPECT_EQ(fade->duration(), 150);
    EXPECT_EQ(fade->propertyName(), "windowOpacity");
    EXPECT_EQ(fade->endValue().toDouble(), 1.0);
    EXPECT_EQ(afterFirstShowCount, 0) << "only once the fade is done";
    fade->setCurrentTime(fade->duration());
    EXPECT_EQ(window.windowOpacity(), 1.0);
    EXPECT_EQ(afterFirstShowCount, 1);
    app->applicationWillTerminate();
}

TEST_F(Launch, StartingHiddenKeepsTheBarAwayAtFullOpacity) {
    auto app = delegate();
    app->settings().setValue(u"startHidden"_s, true);
    app->start();
    scheduler.advance(2.0);
    EXPECT_TRUE(app->isFirstBarShown());
    EXPECT_FALSE(app->window().isVisible());
    EXPECT_EQ(app->window().windowOpacity(), 1.0);
    EXPECT_EQ(app->firstShowAnimation(), nullptr);
    scheduler.advance(1.0);
    EXPECT_EQ(afterFirstShowCount, 0);
    app->toggleBarVisibility();
    EXPECT_TRUE(app->window().isVisible());
}

TEST_F(Launch, WithoutHelpersNothingIsRegisteredOrHealed) {
    QFile::remove(binaryDir->filePath(u"hueshelf-helper"_s));
    QFile::remove(binaryDir->filePath(u"hueshelf-mcp"_s));
    const QByteArray cursor =
        R"({"mcpServers": {"hueshelf": {"command": "/old/place/hueshelf-mcp"}}})";
    ASSERT_TRUE(writeFile(cursorSettings(), cursor));
    auto app = delegate();
    app->start();
    QThreadPool::globalInstance()->waitForDone();
    QFile file(cursorSettings());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), cursor);
    EXPECT_FALSE(QFileInfo::exists(home.path() + u"/.config/google-chrome"_s));
    EXPECT_FALSE(QFileInfo::exists(home.path() + u"/.config/chromium"_s));
}

// Handed over during the wait, they meet the store as the helper left it, after the first show.
TEST_F(Launch, LinksAndFilesWaitForTheFirstBarThenOpen) {
    const QString good = home.path() + u"/Sea.hueshelf"_s;
    ASSERT_TRUE(writeFile(
        good, R"({"version": 1, "name": "Sea", "colors": [{"name": "Deep", "hex": "#003366"}]})"));
    auto app = delegate();
    app->start();
    app->openArguments(
        {good, u"hueshelf://import#1;X;Y:000000"_s, u"Other.hueshelf"_s, u"notes.txt"_s},
        home.path());
    scheduler.advance(1.0);
    EXPECT_TRUE(links.isEmpty());
    EXPECT_EQ(app->storage().templates().size(), 1);
    scheduler.advance(1.0);
    EXPECT_EQ(links, QStringList{u"hueshelf://import#1;X;Y:000000"_s});
    ASSERT_EQ(app->storage().templates().size(), 2) << "only the first of several files";
    EXPECT_EQ(app->storage().activeTemplate()->name, u"Sea"_s);

    // Once shown, what arrives opens at once; a file that can't be read gets the alert.
    app->openArguments({home.path() + u"/missing.hueshelf"_s}, home.path());
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].title, u"Couldn't open that file"_s);
    EXPECT_EQ(alerts[0].button, u"OK"_s);
    EXPECT_TRUE(alerts[0].text.startsWith(u"HueShelf couldn't read that file.\n\n"_s));
    EXPECT_EQ(app->storage().templates().size(), 2);
}

TEST_F(Launch, QuittingDuringTheWaitNeverShowsTheBar) {
    auto app = delegate();
    app->start();
    scheduler.advance(0.5);
    app->applicationWillTerminate();
    EXPECT_FALSE(app->isWaitingForBrowserHelper());
    scheduler.advance(3.0);
    EXPECT_FALSE(app->isFirstBarShown());
    EXPECT_EQ(app->window().windowOpacity(), 0.0);
}

} // namespace
} // namespace hueshelf::app
