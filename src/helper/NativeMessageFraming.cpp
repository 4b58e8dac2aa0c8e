#include "helper/NativeMessageFraming.h"

#include <cstring>

namespace hueshelf::helper {

void NativeMessageFraming::append(QByteArrayView bytes) {
    if (isRefused() || bytes.isEmpty())
        return;
    if (m_consumed > 0) {
        m_buffer.remove(0, m_consumed);
        m_consumed = 0;
    }
    m_buffer.append(bytes);
}

NativeMessageFraming::Result NativeMessageFraming::next() {
    if (isRefused())
        return {Status::oversized, {}, m_refusedLength};
    if (buffered() < prefixLength)
        return {};
    std::uint32_t length = 0;
    std::memcpy(&length, m_buffer.constData() + m_consumed, sizeof length);
    if (length > maxIncomingLength) {
        // Whatever follows belongs to a frame that will never be read, so it goes now.
        m_refusedLength = length;
        m_buffer = QByteArray();
        m_consumed = 0;
        return {Status::oversized, {}, length};
    }
    const auto size = static_cast<qsizetype>(length);
    if (buffered() - prefixLength < size)
        return {Status::needMore, {}, length};
    Result result{Status::frame, m_buffer.mid(m_consumed + prefixLength, size), length};
    m_consumed += prefixLength + size;
    if (m_consumed == m_buffer.size()) {
        m_buffer.clear();
        m_consumed = 0;
    }
    return result;
}

QByteArray NativeMessageFraming::frame(QByteArrayView body) {
    const auto length = static_cast<std::uint32_t>(body.size());
    QByteArray bytes(prefixLength, Qt::Uninitialized);
    std::memcpy(bytes.data(), &length, sizeof length);
    bytes.append(body);
    return bytes;
}

} // namespace hueshelf::helper
