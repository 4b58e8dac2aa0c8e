// One bar per user and configuration: a second launch hands its arguments over and ends.

#include "app/SingleInstance.h"

#include "AppTestSupport.h"
#include "TempHome.h"

#include <QDeadlineTimer>
#include <QLocalServer>
#include <QThread>
#include <QUuid>

#include <gtest/gtest.h>

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace hueshelf::app {
namespace {

using namespace Qt::StringLiterals;

QString uniqueName() {
    return u"hueshelf-test-"_s + QUuid::createUuid().toString(QUuid::Id128).left(12);
}

// The second launch blocks while it waits for the answer, so it runs on a thread of its own
// while this one serves.
bool sendFromAnotherThread(const QString& name, const QStringList& arguments) {
    bool acknowledged = false;
    std::unique_ptr<QThread> launch(QThread::create(
        [&] { acknowledged = SingleInstance::sendToRunning(name, arguments, 5000); }));
    launch->start();
    const QDeadlineTimer deadline(10000);
    while (!launch->isFinished() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    launch->wait();
    return acknowledged;
}

// A socket file as a crashed run leaves it: bound, then never listened on or removed.
bool leaveStaleSocket(const QString& path) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.toLocal8Bit().constData(), sizeof(address.sun_path) - 1);
    const bool bound =
        fd >= 0 && ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    ::close(fd);
    return bound;
}

TEST(SingleInstance, AStaleSocketIsTakenOverAndASecondLaunchHandsItsArgumentsOver) {
    testing::ensureApplication();
    const QString name = uniqueName();
    {
        QLocalServer probe;
        ASSERT_TRUE(probe.listen(name));
        const QString path = probe.fullServerName();
        probe.close();
        ASSERT_TRUE(leaveStaleSocket(path));
    }
    EXPECT_FALSE(SingleInstance::sendToRunning(name, {u"x"_s}, 500)) << "nobody listens";

    SingleInstance first(name);
    ASSERT_TRUE(first.listen());
    QList<QStringList> received;
    QObject::connect(&first, &SingleInstance::argumentsReceived,
                     [&](const QStringList& arguments) { received.append(arguments); });
    const QStringList arguments{u"hueshelf://import#1;Sé;Ø:00FF00"_s, u"/tmp/a b.hueshelf"_s};
    EXPECT_TRUE(sendFromAnotherThread(name, arguments));
    EXPECT_TRUE(sendFromAnotherThread(name, {}));
    EXPECT_EQ(received, (QList<QStringList>{arguments, {}}));

    SingleInstance second(name); // the name is taken: a second would-be server stands back
    EXPECT_FALSE(second.listen());
}

TEST(SingleInstance, TheNameFollowsUserAndConfiguration) {
    testing::TempHome one;
    testing::TempHome other;
    QProcessEnvironment ann;
    ann.insert(u"USER"_s, u"ann"_s);
    QProcessEnvironment bob;
    bob.insert(u"USER"_s, u"bob"_s);
    const QString name = SingleInstance::serverNameFor(one.paths(), ann);
    EXPECT_EQ(name, SingleInstance::serverNameFor(one.paths(), ann));
    EXPECT_NE(name, SingleInstance::serverNameFor(other.paths(), ann));
    EXPECT_NE(name, SingleInstance::serverNameFor(one.paths(), bob));
    EXPECT_LE(name.size(), 40) << "socket paths are short";
}

// Messages arrive in pieces, and a peer that isn't one of ours can send anything.
TEST(SingleInstance, MessagesAreTakenOnlyWhole) {
    const QStringList arguments{u"one"_s, QString(), u"drei ✓"_s};
    const QByteArray message = SingleInstance::encode(arguments);
    for (qsizetype cut = 0; cut < message.size(); ++cut) {
        bool malformed = true;
        EXPECT_FALSE(SingleInstance::decode(message.left(cut), &malformed)) << cut;
        EXPECT_FALSE(malformed) << cut;
    }
    const auto whole = SingleInstance::decode(message + "trailing");
    ASSERT_TRUE(whole.has_value());
    EXPECT_EQ(whole->arguments, arguments);
    EXPECT_EQ(whole->size, message.size());

    for (const QByteArray& absurd :
         {QByteArray("\xff\xff\xff\xff", 4), QByteArray("\x00\x00\x00\x01\x7f\xff\xff\xff", 8)}) {
        bool malformed = false;
        EXPECT_FALSE(SingleInstance::decode(absurd, &malformed));
        EXPECT_TRUE(malformed) << absurd.toHex().constData();
    }
}

} // namespace
} // namespace hueshelf::app
