#include "sync/SyncUuidText.h"

#include <array>

namespace hueshelf {

namespace {

constexpr qsizetype kLength = 36;

int hexValue(char16_t unit) {
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0';
    if (unit >= u'a' && unit <= u'f')
        return unit - u'a' + 10;
    if (unit >= u'A' && unit <= u'F')
        return unit - u'A' + 10;
    return -1;
}

bool isDashPosition(qsizetype index) {
    return index == 8 || index == 13 || index == 18 || index == 23;
}

} // namespace

std::optional<QUuid> parseCanonicalUuid(QStringView text) {
    if (text.size() != kLength)
        return std::nullopt;
    std::array<uchar, 16> bytes{};
    int nibble = 0;
    for (qsizetype i = 0; i < kLength; ++i) {
        const char16_t unit = text.at(i).unicode();
        if (isDashPosition(i)) {
            if (unit != u'-')
                return std::nullopt;
            continue;
        }
        const int value = hexValue(unit);
        if (value < 0)
            return std::nullopt;
        bytes[std::size_t(nibble / 2)] |= uchar(nibble % 2 == 0 ? value << 4 : value);
        ++nibble;
    }
    return QUuid::fromRfc4122(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
}

} // namespace hueshelf
