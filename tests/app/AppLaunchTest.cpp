// The launch up to the first shown bar, and the end of a run during it.

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

bool writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() &&
           file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
}

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Not under /tmp: a program run from a temporary folder never heals the tools' entries. The
// build folder serves unless it is under /tmp itself (a clean clone there); then /dev/shm.
QString binaryDirTemplate() {
    testing::ensureApplication();
    QString base = QCoreApplication::applicationDirPath();
    if (base.contains(u"/tmp/"_s))
        base = u"/dev/shm"_s;
    return base + u"/launch-XXXXXX"_s;
}

class Launch : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(binaryDir.isValid());
        ASSERT_FALSE(binaryDir.path().contains(u"/tmp/"_s));
        ASSERT_TRUE(writeFile(binaryDir.filePath(u"hueshelf-helper"_s), "#!/bin/sh\n"));
        ASSERT_TRUE(writeFile(binaryDir.filePath(u"hueshelf-mcp"_s), "#!/bin/sh\n"));
        const ColorTemplate first = testing::palette(u"First"_s, {{u"Ink"_s, u"#101010"_s}});
        ASSERT_TRUE(PreferencesFile::write(
            home.paths().configDir + u"/io.hueshelf.Hueshelf.json"_s,
            {{PreferencesKeys::templates, TemplateJson::templatesToJson({first})},
             {PreferencesKeys::activeTemplateId, uuidText(first.id)},
             {PreferencesKeys::lastModified, 1000.0}}));
        // An entry of a copy that has since moved.
        ASSERT_TRUE(writeFile(cursorSettings(), movedEntry));
    }
    QString cursorSettings() const { return home.path() + u"/.cursor/mcp.json"_s; }

    std::unique_ptr<AppDelegate> started(bool startHidden = false) {
        AppDelegate::Services services;
        services.scheduler = &scheduler;
        services.clock = &clock;
        services.binaryDir = binaryDir.path();
        auto app = std::make_unique<AppDelegate>(home.paths(), std::make_unique<FakePlatform>(),
                                                 QProcessEnvironment(), services);
        app->hooks().afterShow = [this] { ++afterShowCount; };
        app->hooks().openPaletteLink = [this](const QString& link) { links.append(link); };
        app->hooks().showAlert = [this](const LinkAlert& alert) { alerts.append(alert); };
        app->settings().setValue(u"startHidden"_s, startHidden);
        app->start();
        QThreadPool::globalInstance()->waitForDone();
        return app;
    }

    const QByteArray movedEntry =
        R"({"mcpServers": {"hueshelf": {"command": "/old/place/hueshelf-mcp"}}, "theirs": 1})";
    testing::TempHome home;
    QTemporaryDir binaryDir{binaryDirTemplate()};
    testing::ManualClock clock;
    testing::ManualScheduler scheduler{clock};
    int afterShowCount = 0;
    QStringList links;
    QList<LinkAlert> alerts;
};

// Handed over during the wait, links and files meet the store as the helper left it.
TEST_F(Launch, HealsRegistersAndKeepsTheBarInvisibleUntilTheWaitEnds) {
    const QString sea = home.path() + u"/Sea.hueshelf"_s;
    ASSERT_TRUE(writeFile(
        sea, R"({"version": 1, "name": "Sea", "colors": [{"name": "Deep", "hex": "#003366"}]})"));
    auto app = started();
    app->openArguments({sea, u"hueshelf://import#1;X;Y:000000"_s, u"Other.hueshelf"_s},
                       home.path());

    const QJsonObject cursor = QJsonDocument::fromJson(readAll(cursorSettings())).object();
    EXPECT_EQ(cursor[u"mcpServers"_s][u"hueshelf"_s][u"command"_s],
              binaryDir.filePath(u"hueshelf-mcp"_s))
        << "healed at launch";
    EXPECT_EQ(cursor[u"theirs"_s], 1);
    const QString manifest =
        home.path() + u"/.config/google-chrome/NativeMessagingHosts/io.hueshelf.hueshelf.json"_s;
    EXPECT_EQ(QJsonDocument::fromJson(readAll(manifest))[u"path"_s],
              binaryDir.filePath(u"hueshelf-helper"_s));
    EXPECT_TRUE(KeyboardModality::shared().isMonitoring());
    EXPECT_EQ(app->settings().value(u"defaultCopyFormat"_s), u"hex"_s);

    FloatingWindow& window = app->window();
    EXPECT_TRUE(window.isVisible());
    scheduler.advance(1.95);
    EXPECT_EQ(window.windowOpacity(), 0.0);
    EXPECT_TRUE(links.isEmpty());
    EXPECT_EQ(app->storage().templates().size(), 1);
    scheduler.advance(0.05);
    EXPECT_TRUE(app->externalChangeMonitor().initialSyncComplete());
    EXPECT_EQ(links, QStringList{u"hueshelf://import#1;X;Y:000000"_s});
    ASSERT_EQ(app->storage().templates().size(), 2) << "only the first of several files";
    EXPECT_EQ(app->storage().activeTemplate()->name, u"Sea"_s);

    QPropertyAnimation* fade = app->firstShowAnimation();
    ASSERT_NE(fade, nullptr);
    EXPECT_EQ(fade->duration(), 150);
    // The file opened at the first show brings the bar forward once itself.
    const int shownBeforeTheFadeEnds = afterShowCount;
    fade->setCurrentTime(fade->duration());
    EXPECT_EQ(window.windowOpacity(), 1.0);
    EXPECT_EQ(afterShowCount, shownBeforeTheFadeEnds + 1);

    // Once shown, what arrives opens at once.
    app->openArguments({home.path() + u"/missing.hueshelf"_s}, home.path());
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].title, u"Couldn't open that file"_s);
    app->applicationWillTerminate();
}

TEST_F(Launch, StartingHiddenKeepsTheBarAwayAtFullOpacity) {
    auto app = started(true);
    scheduler.advance(2.0);
    EXPECT_FALSE(app->window().isVisible());
    EXPECT_EQ(app->window().windowOpacity(), 1.0);
    EXPECT_EQ(app->firstShowAnimation(), nullptr);
    app->toggleBarVisibility();
    EXPECT_TRUE(app->window().isVisible());
}

TEST_F(Launch, WithoutHelpersNothingIsRegisteredOrHealed) {
    QFile::remove(binaryDir.filePath(u"hueshelf-helper"_s));
    QFile::remove(binaryDir.filePath(u"hueshelf-mcp"_s));
    auto app = started();
    EXPECT_EQ(readAll(cursorSettings()), movedEntry);
    EXPECT_FALSE(QFileInfo::exists(home.path() + u"/.config/google-chrome"_s));
}

TEST_F(Launch, QuittingDuringTheWaitNeverShowsTheBar) {
    auto app = started();
    scheduler.advance(0.5);
    app->applicationWillTerminate();
    scheduler.advance(3.0);
    EXPECT_FALSE(app->isFirstBarShown());
    EXPECT_EQ(app->window().windowOpacity(), 0.0);
}

} // namespace
} // namespace hueshelf::app
