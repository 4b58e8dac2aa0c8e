#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstdint>

namespace hueshelf::helper {

// The browser's native-messaging frames: a 32-bit unsigned length in this machine's byte order,
// then that many bytes of UTF-8 JSON. Bytes go in as the pipe delivers them, in pieces of any
// size; whole frames come out. Nothing here knows about JSON.
class NativeMessageFraming {
public:
    // Larger incoming frames are refused before a byte of them is kept: a length prefix is
    // trusted for nothing more than this.
    static constexpr std::uint32_t maxIncomingLength = 64u * 1024u * 1024u;
    // The browser closes the connection on a larger message from the host.
    static constexpr qsizetype maxOutgoingLength = 1024 * 1024;
    static constexpr qsizetype prefixLength = 4;

    enum class Status {
        needMore,  // no whole frame yet
        frame,     // `body` holds the next frame
        oversized, // the next frame's length is over the limit; the stream can't be followed
    };

    struct Result {
        Status status = Status::needMore;
        QByteArray body;
        std::uint32_t declaredLength = 0; // of the frame that was taken or refused
    };

    // Keeps the bytes for the frames to come. After a refusal nothing more is kept.
    void append(QByteArrayView bytes);
    // The next whole frame, if there is one. An oversized prefix is answered as soon as its four
    // bytes are here, and from then on every call answers the same.
    Result next();

    // Bytes of a frame begun and not finished (a prefix or a body cut short).
    bool isMidFrame() const { return buffered() > 0; }
    bool isRefused() const { return m_refusedLength != 0; }
    // What is held for frames not yet taken: the pieces that have arrived, whatever length a
    // prefix announces; and the memory set aside for them.
    qsizetype buffered() const { return m_buffer.size() - m_consumed; }
    qsizetype reserved() const { return m_buffer.capacity(); }

    // The length prefix and the body, ready for the pipe. The caller keeps to maxOutgoingLength.
    static QByteArray frame(QByteArrayView body);
    static bool fitsOutgoing(qsizetype bodyLength) { return bodyLength <= maxOutgoingLength; }

private:
    QByteArray m_buffer;
    // Bytes at the front of m_buffer already taken as frames; dropped on the next append, so
    // many small frames in one read cost one copy, not one each.
    qsizetype m_consumed = 0;
    std::uint32_t m_refusedLength = 0;
};

} // namespace hueshelf::helper
