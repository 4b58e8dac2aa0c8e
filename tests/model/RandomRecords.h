#pragma once

#include "ModelTestSupport.h"

#include <QString>

#include <cmath>
#include <cstring>
#include <iterator>
#include <random>

namespace hueshelf::testing {

inline constexpr double kTwoTo53 = 9007199254740992.0;

// Random records over an alphabet that favours the characters with special forms, and numbers
// drawn from raw bit patterns as well as from the integral ranges around 2^53.
class RandomRecords {
public:
    explicit RandomRecords(std::uint32_t seed) : m_random(seed) {}

    QString text() {
        static const char16_t alphabet[] = {
            u'a', u'Z',  u' ',  u'"',   u'\\',  u'/',   0x00,   0x09,   0x0A, 0x1F, 0x7F,
            0xE9, 0x7FF, 0x800, 0x20AC, 0xFFFD, 0xFFFF, 0xD83D, 0xDE00, u'|', u':', u'd'};
        QString result;
        const int length = int(m_random() % 9);
        for (int i = 0; i < length; ++i)
            result.append(QChar(alphabet[m_random() % std::size(alphabet)]));
        return result;
    }

    double number() {
        switch (m_random() % 4) {
        case 0: {
            const quint64 bits = quint64(m_random()) << 32 | m_random();
            double value = 0.0;
            std::memcpy(&value, &bits, sizeof value);
            return value;
        }
        case 1: // integral, around the end of the exact integers, often with trailing zeros
            return std::round((kTwoTo53 * 2.0 * (m_random() / 4294967296.0)) /
                              std::pow(10.0, m_random() % 6)) *
                   std::pow(10.0, m_random() % 6) * (m_random() % 2 ? 1.0 : -1.0);
        case 2:
            return 1.7e12 + double(m_random() % 1000000) / 8.0;
        default:
            return double(qint32(m_random()));
        }
    }

    ColorTemplate palette() {
        QList<ColorItem> colors;
        const int count = int(m_random() % 4);
        for (int i = 0; i < count; ++i) {
            ColorItem color = makeColor(text(), text(), bit(), bit(), text());
            color.isAutoNamed = bit();
            color.dividerBefore = bit();
            colors.append(color);
        }
        ColorTemplate palette = makePalette(text(), colors);
        palette.createdAt = number();
        palette.updatedAt = number();
        palette.revision = qint64(quint64(m_random()) << 32 | m_random());
        palette.contentHash = text();
        palette.isLocked = bit();
        if (bit())
            palette.updatedByDeviceId = text();
        return palette;
    }

    bool bit() { return m_random() % 2 == 0; }
    std::uint32_t below(std::uint32_t bound) { return m_random() % bound; }

private:
    std::mt19937 m_random;
};

} // namespace hueshelf::testing
