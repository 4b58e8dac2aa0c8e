#include "helper/NativeMessageFraming.h"

#include "FrameBytes.h"

#include <QByteArray>
#include <QList>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace hueshelf::testing {
namespace {

using helper::NativeMessageFraming;
using Status = NativeMessageFraming::Status;

constexpr std::uint32_t kLimit = NativeMessageFraming::maxIncomingLength;

QList<QByteArray> byteByByte(const QByteArray& bytes) {
    QList<QByteArray> pieces;
    for (const char byte : bytes)
        pieces.append(QByteArray(1, byte));
    return pieces;
}

struct FramingCase {
    std::string name;
    QList<QByteArray> reads; // as the pipe delivers them
    QList<QByteArray> frames;
    bool midFrame = false;
    bool refused = false;
};

class Framing : public ::testing::TestWithParam<FramingCase> {};

TEST_P(Framing, cutsTheStreamIntoFrames) {
    const FramingCase& test = GetParam();
    NativeMessageFraming framing;
    QList<QByteArray> frames;
    bool refused = false;
    for (const QByteArray& read : test.reads) {
        framing.append(read);
        for (NativeMessageFraming::Result next = framing.next(); next.status != Status::needMore;
             next = framing.next()) {
            if (next.status == Status::oversized) {
                refused = true;
                break;
            }
            EXPECT_EQ(next.declaredLength, static_cast<std::uint32_t>(next.body.size()));
            frames.append(next.body);
        }
    }
    EXPECT_EQ(frames, test.frames);
    EXPECT_EQ(framing.isMidFrame(), test.midFrame);
    EXPECT_EQ(refused, test.refused);
    EXPECT_EQ(framing.isRefused(), test.refused);
}

const QByteArray kHello = R"({"type":"hello"})";
const QByteArray kList = R"({"type":"palettes","id":2})";

INSTANTIATE_TEST_SUITE_P(
    Streams, Framing,
    ::testing::Values(
        FramingCase{"empty", {}, {}, false, false},
        FramingCase{"emptyRead", {QByteArray()}, {}, false, false},
        FramingCase{"exactFrame", {framed(kHello)}, {kHello}, false, false},
        FramingCase{"twoFramesInOneRead", {framed(kHello) + framed(kList)}, {kHello, kList}},
        FramingCase{"splitByteByByte", byteByByte(framed(kHello) + framed(kList)), {kHello, kList}},
        // The split falls inside the second prefix.
        FramingCase{"splitInsidePrefix",
                    {framed(kHello) + prefix(static_cast<std::uint32_t>(kList.size())).left(3),
                     prefix(static_cast<std::uint32_t>(kList.size())).mid(3) + kList},
                    {kHello, kList}},
        FramingCase{"zeroLength", {framed({}) + framed(kHello)}, {QByteArray(), kHello}},
        FramingCase{"prefixCutShort", {framed(kHello) + prefix(9).left(2)}, {kHello}, true},
        FramingCase{"bodyCutShort", {prefix(40) + "{\"type\":"}, {}, true},
        // Refused on its four bytes, whatever follows; a frame behind it never comes out.
        FramingCase{"overTheLimit", {prefix(kLimit + 1) + framed(kHello)}, {}, false, true},
        FramingCase{"largestLength", {framed(kHello) + prefix(0xFFFFFFFFu)}, {kHello}, false, true},
        FramingCase{"refusedThenMore", {prefix(kLimit + 1), framed(kHello)}, {}, false, true},
        // At the limit the length is taken: the frame waits for its bytes.
        FramingCase{"atTheLimit", {prefix(kLimit) + "{}"}, {}, true, false}),
    [](const ::testing::TestParamInfo<FramingCase>& testCase) { return testCase.param.name; });

// A refused length keeps nothing of what comes after it; a length at the limit keeps only the
// bytes that arrived, not the room for the rest.
TEST(FramingLimits, nothingIsAllocatedOnTheWordOfALengthPrefix) {
    NativeMessageFraming refused;
    refused.append(QByteArray(prefix(kLimit + 1) + QByteArray(1000, 'x')));
    EXPECT_EQ(refused.next().status, Status::oversized);
    refused.append(QByteArray(1000, 'x'));
    EXPECT_EQ(refused.buffered(), 0);
    EXPECT_LT(refused.reserved(), 64 * 1024);
    EXPECT_EQ(refused.next().declaredLength, kLimit + 1);

    NativeMessageFraming waiting;
    waiting.append(QByteArray(prefix(kLimit) + "{}"));
    const NativeMessageFraming::Result next = waiting.next();
    EXPECT_EQ(next.status, Status::needMore);
    EXPECT_EQ(next.declaredLength, kLimit);
    EXPECT_EQ(waiting.buffered(), 6);
    EXPECT_LT(waiting.reserved(), 64 * 1024);
}

// A frame of exactly the limit comes out whole, and the stream goes on behind it.
TEST(FramingLimits, aFrameOfTheLimitIsRead) {
    QByteArray body(static_cast<qsizetype>(kLimit), ' ');
    body[0] = '{';
    body[body.size() - 1] = '}';
    NativeMessageFraming framing;
    const QByteArray stream = framed(body) + framed(kHello);
    // In pieces as a pipe hands them over.
    for (qsizetype at = 0; at < stream.size(); at += 65536)
        framing.append(stream.mid(at, 65536));
    const NativeMessageFraming::Result first = framing.next();
    ASSERT_EQ(first.status, Status::frame);
    EXPECT_EQ(first.body.size(), body.size());
    EXPECT_EQ(first.body, body);
    EXPECT_EQ(framing.next().body, kHello);
    EXPECT_FALSE(framing.isMidFrame());
}

} // namespace
} // namespace hueshelf::testing
