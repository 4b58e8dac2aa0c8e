#include "helper/NativeMessageHost.h"

#include "../color/QtPrinters.h"
#include "FrameBytes.h"
#include "helper/HelperJson.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;
using helper::NativeMessageFraming;
using helper::NativeMessageHost;

// The body of one framed reply, checked against its prefix.
QJsonObject replyOf(const QByteArray& frame) {
    std::uint32_t length = 0;
    EXPECT_GE(frame.size(), 4);
    std::memcpy(&length, frame.constData(), sizeof length);
    EXPECT_EQ(static_cast<qsizetype>(length), frame.size() - 4);
    return QJsonDocument::fromJson(frame.mid(4)).object();
}

// Echoes each request back under "echo", or a reply padded to the size the request asks for.
QJsonObject echo(const QJsonObject& request) {
    if (request.contains(u"padTo"_s)) {
        const QJsonObject base = helper::HelperJson::answering(
            request, QJsonObject{{u"type"_s, u"big"_s}, {u"pad"_s, QString()}});
        const qsizetype overhead = QJsonDocument(base).toJson(QJsonDocument::Compact).size();
        const qsizetype padding = request.value(u"padTo"_s).toInteger() - overhead;
        return helper::HelperJson::answering(
            request, QJsonObject{{u"type"_s, u"big"_s}, {u"pad"_s, QString(padding, u'a')}});
    }
    return helper::HelperJson::answering(request,
                                         QJsonObject{{u"type"_s, u"echo"_s}, {u"echo"_s, request}});
}

class Host : public ::testing::Test {
protected:
    NativeMessageHost host{echo};
};

// One reply per frame, in order: a body that isn't a JSON object gets an error and the
// stream goes on.
TEST_F(Host, answersEveryFrameAndGoesOnPastBadOnes) {
    const QList<QByteArray> replies = host.receive(
        QByteArray(framed(R"({"type":"a","id":1})") + framed({}) + framed("[1,2]") +
                   framed("{\"type\":") + framed("\"text\"") + framed(R"({"type":"b"})")));
    ASSERT_EQ(replies.size(), 6);
    EXPECT_EQ(replyOf(replies[0])[u"echo"_s][u"type"_s], u"a"_s);
    EXPECT_EQ(replyOf(replies[0])[u"id"_s], 1);
    for (qsizetype i = 1; i <= 4; ++i) {
        const QJsonObject error = replyOf(replies[i]);
        EXPECT_EQ(error[u"type"_s], u"error"_s) << i;
        EXPECT_FALSE(error[u"message"_s].toString().isEmpty()) << i;
        EXPECT_FALSE(error.contains(u"id"_s)) << i;
    }
    EXPECT_EQ(replyOf(replies[2])[u"message"_s],
              u"The message must be a JSON object, not an array."_s);
    EXPECT_EQ(replyOf(replies[5])[u"echo"_s][u"type"_s], u"b"_s);
    EXPECT_FALSE(host.isBroken());
}

// A reply goes out as soon as its frame is complete, not when more input arrives.
TEST_F(Host, answersAFrameTheMomentItsLastByteArrives) {
    const QByteArray stream = framed(R"({"type":"a"})") + framed(R"({"type":"b"})");
    QList<qsizetype> repliesAt;
    for (qsizetype i = 0; i < stream.size(); ++i) {
        if (!host.receive(stream.mid(i, 1)).isEmpty())
            repliesAt.append(i);
    }
    EXPECT_EQ(repliesAt, (QList<qsizetype>{15, 31}));
}

// An oversized frame ends the conversation: one error, then nothing more is read.
TEST_F(Host, refusesAnOversizedFrameAndStops) {
    const QByteArray tooLong = prefix(NativeMessageFraming::maxIncomingLength + 1);
    const QList<QByteArray> replies =
        host.receive(QByteArray(framed(R"({"type":"a"})") + tooLong + framed(R"({"type":"b"})")));
    ASSERT_EQ(replies.size(), 2);
    EXPECT_EQ(replyOf(replies[1])[u"type"_s], u"error"_s);
    EXPECT_TRUE(replyOf(replies[1])[u"message"_s].toString().contains(u"67108865 bytes"_s));
    EXPECT_TRUE(host.isBroken());
    EXPECT_TRUE(host.receive(framed(R"({"type":"c"})")).isEmpty());
}

// 1 MiB of JSON is the most the browser takes: a reply of exactly that goes out, one byte more
// becomes an error that still carries the request's id.
TEST_F(Host, keepsRepliesWithinTheBrowsersLimit) {
    const QByteArray atLimit = host.answer(R"({"id":"x","padTo":1048576})");
    EXPECT_EQ(atLimit.size(), 4 + 1'048'576);
    EXPECT_EQ(replyOf(atLimit)[u"type"_s], u"big"_s);

    const QByteArray overLimit = host.answer(R"({"id":"x","padTo":1048577})");
    const QJsonObject error = replyOf(overLimit);
    EXPECT_EQ(error[u"type"_s], u"error"_s);
    EXPECT_EQ(error[u"id"_s], u"x"_s);
    EXPECT_EQ(error[u"message"_s],
              u"The reply would be 1048577 bytes long, more than the 1 MiB the browser takes."_s);
}

} // namespace
} // namespace hueshelf::testing
