// One bar per user and configuration: a second launch hands its arguments over and ends.

#include "app/SingleInstance.h"

#include "AppTestSupport.h"
#include "TempHome.h"

#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>
#include <QUuid>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
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
    if (fd < 0)
        return false;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray native = path.toLocal8Bit();
    std::strncpy(address.sun_path, native.constData(), sizeof(address.sun_path) - 1);
    const bool bound =
        ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    ::close(fd);
    return bound;
}

class Instances : public ::testing::Test {
protected:
    void SetUp() override { testing::ensureApplication(); }
};

TEST_F(Instances, TheSecondLaunchsArgumentsArriveAtTheFirst) {
    const QString name = uniqueName();
    SingleInstance first(name);
    ASSERT_TRUE(first.listen());
    QList<QStringList> received;
    QObject::connect(&first, &SingleInstance::argumentsReceived,
                     [&](const QStringList& arguments) { received.append(arguments); });

    const QStringList arguments{u"hueshelf://import#1;Sé;Ø:00FF00"_s, u"/tmp/a b.hueshelf"_s};
    EXPECT_TRUE(sendFromAnotherThread(name, arguments));
    EXPECT_TRUE(sendFromAnotherThread(name, {}));
    ASSERT_EQ(received.size(), 2);
    EXPECT_EQ(received[0], arguments);
    EXPECT_EQ(received[1], QStringList());

    // The name is taken: a second would-be server stands back.
    SingleInstance second(name);
    EXPECT_FALSE(second.listen());
    EXPECT_TRUE(first.isListening());
}

TEST_F(Instances, NobodyListeningMeansNoHandOver) {
    EXPECT_FALSE(SingleInstance::sendToRunning(uniqueName(), {u"x"_s}, 500));
}

TEST_F(Instances, AStaleSocketOfACrashedRunIsTakenOver) {
    const QString name = uniqueName();
    QString path;
    {
        QLocalServer probe;
        ASSERT_TRUE(probe.listen(name));
        path = probe.fullServerName();
    }
    ASSERT_TRUE(leaveStaleSocket(path));
    EXPECT_FALSE(SingleInstance::sendToRunning(name, {u"x"_s}, 500));

    SingleInstance revived(name);
    ASSERT_TRUE(revived.listen());
    QStringList received;
    QObject::connect(&revived, &SingleInstance::argumentsReceived,
                     [&](const QStringList& arguments) { received = arguments; });
    EXPECT_TRUE(sendFromAnotherThread(name, {u"/p.hueshelf"_s}));
    EXPECT_EQ(received, QStringList{u"/p.hueshelf"_s});
}

TEST_F(Instances, TheNameFollowsUserAndConfiguration) {
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
    EXPECT_TRUE(name.startsWith(u"hueshelf-"_s));
    EXPECT_LE(name.size(), 40) << "socket paths are short";
}

// Messages arrive in pieces, and a peer that isn't one of ours can send anything.
TEST_F(Instances, MessagesAreTakenOnlyWhole) {
    const QStringList arguments{u"one"_s, QString(), u"drei ✓"_s};
    const QByteArray message = SingleInstance::encode(arguments);
    for (qsizetype cut = 0; cut < message.size(); ++cut) {
        bool malformed = true;
        EXPECT_FALSE(SingleInstance::decode(message.left(cut), &malformed).has_value()) << cut;
        EXPECT_FALSE(malformed) << cut;
    }
    const auto whole = SingleInstance::decode(message + "trailing");
    ASSERT_TRUE(whole.has_value());
    EXPECT_EQ(whole->arguments, arguments);
    EXPECT_EQ(whole->size, message.size());

    bool malformed = false;
    EXPECT_FALSE(SingleInstance::decode(QByteArray("\xff\xff\xff\xff", 4), &malformed));
    EXPECT_TRUE(malformed) << "an absurd count";
    malformed = false;
    EXPECT_FALSE(
        SingleInstance::decode(QByteArray("\x00\x00\x00\x01\x7f\xff\xff\xff", 8), &malformed));
    EXPECT_TRUE(malformed) << "an absurd length";
}

} // namespace
} // namespace hueshelf::app
