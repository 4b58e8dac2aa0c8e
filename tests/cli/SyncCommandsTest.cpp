#include "CliRun.h"
#include "TempHome.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// Two devices, each a real `hueshelf` process with a home of its own, meet in one folder that
// stands for the cloud client's. Both first-launch sets meet as doubles: each device keeps its
// own, and the new palettes travel both ways.
TEST(SyncCommands, TwoDevicesConvergeThroughTheFolder) {
    TempHome laptop;
    TempHome desktop;
    QTemporaryDir cloud;
    const auto on = [](const TempHome& home, const QStringList& arguments) {
        const BinaryRun run = runBinary(arguments, homeEnvironment(home.path()));
        EXPECT_EQ(run.status, 0) << arguments.join(u' ').toStdString() << run.err.toStdString();
        return run;
    };
    const auto names = [&](const TempHome& home) {
        QStringList found;
        for (const QJsonValue& palette : on(home, {u"palettes"_s, u"--json"_s}).json().array())
            found << palette.toObject().value(u"name"_s).toString();
        found.sort();
        return found;
    };
    on(laptop, {u"sync"_s, u"setup"_s, cloud.path()});
    on(laptop, {u"sync"_s, u"now"_s});
    on(desktop, {u"sync"_s, u"connect"_s, cloud.path()});
    on(desktop, {u"scheme"_s, u"#00AA77"_s, u"--create"_s, u"--name"_s, u"Teal"_s});
    on(laptop, {u"import"_s, u"1;Ink;Night:112233,Paper:F9FAFB"_s});
    for (const TempHome* device : {&desktop, &laptop, &desktop, &laptop})
        on(*device, {u"sync"_s, u"now"_s});

    const QStringList expected{u"Example"_s, u"Ink"_s, u"Starter"_s, u"Teal"_s};
    EXPECT_EQ(names(laptop), expected);
    EXPECT_EQ(names(desktop), expected);
    EXPECT_EQ(QDir(cloud.path() + u"/HueShelf Sync/templates"_s).entryList(QDir::Files).size(), 6);
    const QJsonObject status = on(desktop, {u"sync"_s, u"status"_s, u"--json"_s}).json().object();
    EXPECT_EQ(status.value(u"status"_s).toString(), u"Synced"_s);
    EXPECT_TRUE(status.value(u"pendingChanges"_s).toArray().isEmpty());
}

} // namespace
} // namespace hueshelf::testing
