#include "CliRun.h"
#include "TempHome.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// Two devices, each a real `hueshelf` process with a home of its own, meeting in one folder
// that stands for the cloud client's.
class SyncCommands : public ::testing::Test {
protected:
    static QProcessEnvironment environmentOf(const TempHome& home) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(u"HOME"_s, home.path());
        env.insert(u"XDG_CONFIG_HOME"_s, home.path() + u"/.config"_s);
        return env;
    }

    BinaryRun on(const TempHome& home, const QStringList& arguments) {
        BinaryRun run = runBinary(arguments, environmentOf(home));
        EXPECT_TRUE(run.finished) << arguments.join(u' ').toStdString();
        return run;
    }

    QStringList paletteNames(const TempHome& home) {
        QStringList names;
        for (const QJsonValue& palette : on(home, {u"palettes"_s, u"--json"_s}).json().array())
            names << palette.toObject().value(u"name"_s).toString();
        names.sort();
        return names;
    }

    QString syncFolder() const { return cloud.path() + u"/HueShelf Sync"_s; }

    TempHome laptop;
    TempHome desktop;
    QTemporaryDir cloud;
};

TEST_F(SyncCommands, TwoDevicesConvergeThroughTheFolder) {
    ASSERT_EQ(on(laptop, {u"sync"_s, u"setup"_s, cloud.path()}).status, 0);
    ASSERT_EQ(on(laptop, {u"sync"_s, u"now"_s}).status, 0);
    ASSERT_EQ(on(desktop, {u"sync"_s, u"connect"_s, cloud.path()}).status, 0);

    ASSERT_EQ(
        on(desktop, {u"scheme"_s, u"#00AA77"_s, u"--create"_s, u"--name"_s, u"Teal"_s}).status, 0);
    ASSERT_EQ(on(laptop, {u"import"_s, u"1;Ink;Night:112233,Paper:F9FAFB"_s}).status, 0);
    for (const TempHome* device : {&desktop, &laptop, &desktop}) {
        const BinaryRun run = on(*device, {u"sync"_s, u"now"_s});
        EXPECT_EQ(run.status, 0) << run.err.toStdString();
    }

    // Both first-launch sets meet as doubles: each device keeps its own, as the folder rules
    // say, and the new palettes travel both ways.
    const QStringList expected{u"Example"_s, u"Ink"_s, u"Starter"_s, u"Teal"_s};
    EXPECT_EQ(paletteNames(laptop), expected);
    EXPECT_EQ(paletteNames(desktop), expected);
    EXPECT_TRUE(QFileInfo(syncFolder() + u"/manifest.json"_s).isFile());
    EXPECT_EQ(QDir(syncFolder() + u"/templates"_s).entryList(QDir::Files).size(), 6);

    // Another pass finds nothing new and keeps the count.
    EXPECT_EQ(on(laptop, {u"sync"_s, u"now"_s}).status, 0);
    EXPECT_EQ(paletteNames(laptop), expected);
    EXPECT_EQ(QDir(syncFolder() + u"/templates"_s).entryList(QDir::Files).size(), 6);

    const QJsonObject status = on(desktop, {u"sync"_s, u"status"_s, u"--json"_s}).json().object();
    EXPECT_TRUE(status.value(u"isEnabled"_s).toBool());
    EXPECT_EQ(status.value(u"status"_s).toString(), u"Synced"_s);
    EXPECT_EQ(status.value(u"folder"_s).toString(), syncFolder());
    EXPECT_TRUE(status.value(u"pendingChanges"_s).toArray().isEmpty());
}

TEST_F(SyncCommands, RefusalsSayWhyOnOneLine) {
    QTemporaryDir broken;
    ASSERT_TRUE(QDir(broken.path()).mkpath(u"HueShelf Sync/templates"_s));
    QFile manifest(broken.path() + u"/HueShelf Sync/manifest.json"_s);
    ASSERT_TRUE(manifest.open(QIODevice::WriteOnly));
    manifest.write("{\"version\": \"1.0\", ");
    manifest.close();

    const struct {
        QStringList arguments;
        QByteArray line;
    } cases[] = {
        {{u"sync"_s, u"now"_s}, "Sync is not configured\n"},
        {{u"sync"_s, u"connect"_s, cloud.path()}, "Sync folder not found\n"},
        {{u"sync"_s, u"connect"_s, broken.path()}, "Invalid sync folder - no manifest found\n"},
        {{u"sync"_s, u"setup"_s, cloud.path() + u"/missing"_s},
         "Failed to write: Failed to access the selected folder\n"},
    };
    for (const auto& c : cases) {
        const BinaryRun run = on(laptop, c.arguments);
        EXPECT_EQ(run.status, 1) << c.arguments.join(u' ').toStdString();
        EXPECT_EQ(run.err, c.line);
    }
    // A refused set-up or connect leaves sync off.
    EXPECT_FALSE(on(laptop, {u"sync"_s, u"status"_s, u"--json"_s})
                     .json()
                     .object()
                     .value(u"isEnabled"_s)
                     .toBool());

    for (const QStringList& arguments :
         {QStringList{u"sync"_s}, QStringList{u"sync"_s, u"setup"_s},
          QStringList{u"sync"_s, u"now"_s, cloud.path()}, QStringList{u"sync"_s, u"later"_s}}) {
        EXPECT_EQ(on(laptop, arguments).status, 2) << arguments.join(u' ').toStdString();
    }
}

TEST_F(SyncCommands, DisableKeepsTheFolderAndTheDevice) {
    ASSERT_EQ(on(laptop, {u"sync"_s, u"setup"_s, cloud.path()}).status, 0);
    const QString device = on(laptop, {u"sync"_s, u"status"_s, u"--json"_s})
                               .json()
                               .object()
                               .value(u"deviceId"_s)
                               .toString();
    ASSERT_EQ(on(laptop, {u"sync"_s, u"disable"_s}).status, 0);
    const QJsonObject after = on(laptop, {u"sync"_s, u"status"_s, u"--json"_s}).json().object();
    EXPECT_FALSE(after.value(u"isEnabled"_s).toBool());
    EXPECT_EQ(after.value(u"status"_s).toString(), u"Sync disabled"_s);
    EXPECT_EQ(after.value(u"deviceId"_s).toString(), device);
    EXPECT_TRUE(QFileInfo(syncFolder() + u"/manifest.json"_s).isFile());

    // Set up again: the same device entry, not a second one.
    ASSERT_EQ(on(laptop, {u"sync"_s, u"setup"_s, cloud.path()}).status, 0);
    QFile manifest(syncFolder() + u"/manifest.json"_s);
    ASSERT_TRUE(manifest.open(QIODevice::ReadOnly));
    const QJsonObject devices =
        QJsonDocument::fromJson(manifest.readAll()).object().value(u"devices"_s).toObject();
    EXPECT_EQ(devices.keys(), QStringList{device});
}

} // namespace
} // namespace hueshelf::testing
