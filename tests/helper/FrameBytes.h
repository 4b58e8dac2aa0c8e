#pragma once

#include <QByteArray>

#include <cstdint>
#include <cstring>

namespace hueshelf::testing {

// A length prefix as the browser writes it: four bytes in this machine's order.
inline QByteArray prefix(std::uint32_t length) {
    QByteArray bytes(4, '\0');
    std::memcpy(bytes.data(), &length, sizeof length);
    return bytes;
}

// `body` as one whole frame.
inline QByteArray framed(const QByteArray& body) {
    QByteArray bytes = prefix(static_cast<std::uint32_t>(body.size()));
    bytes.append(body);
    return bytes;
}

} // namespace hueshelf::testing
