#include "sync/SyncUuidText.h"

#include <array>

namespace hueshelf {

namespace {

constexpr qsizetype kLength = 36;

// Where each byte's two digits start in "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx".
constexpr std::array<qsizetype, 16> kByteStarts = {0,  2,  4,  6,  9,  11, 14, 16,
                                                   19, 21, 24, 26, 28, 30, 32, 34};

// The value of every ASCII hex digit, -1 for every other code unit below 128.
constexpr std::array<signed char, 128> kHexValues = [] {
    std::array<signed char, 128> values{};
    for (signed char& value : values)
        value = -1;
    for (int digit = 0; digit < 10; ++digit)
        values[std::size_t('0' + digit)] = static_cast<signed char>(digit);
    for (int digit = 0; digit < 6; ++digit) {
        values[std::size_t('a' + digit)] = static_cast<signed char>(10 + digit);
        values[std::size_t('A' + digit)] = static_cast<signed char>(10 + digit);
    }
    return values;
}();

int hexValue(char16_t unit) {
    return unit < kHexValues.size() ? kHexValues[unit] : -1;
}

} // namespace

std::optional<QUuid> parseCanonicalUuid(QStringView text) {
    if (text.size() != kLength)
        return std::nullopt;
    const char16_t* units = text.utf16();
    if (units[8] != u'-' || units[13] != u'-' || units[18] != u'-' || units[23] != u'-')
        return std::nullopt;
    std::array<uchar, 16> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const int high = hexValue(units[kByteStarts[i]]);
        const int low = hexValue(units[kByteStarts[i] + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes[i] = uchar((high << 4) | low);
    }
    return QUuid::fromRfc4122(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
}

} // namespace hueshelf
