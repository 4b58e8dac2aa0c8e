#pragma once

#include "ModelTestSupport.h"

#include <QString>

#include <bit>
#include <cmath>
#include <functional>
#include <iterator>
#include <random>

namespace hueshelf::testing {

// Random records with text that favours characters of special forms in JSON and UTF-8, and
// numbers from raw bits, around 2^53 and at the edges of each form a number takes.
class RandomRecords {
public:
    explicit RandomRecords(std::uint32_t seed) : m_random(seed) {}

    QString text() {
        // Named escapes, other controls, each UTF-8 length, lone and paired surrogates.
        static const char16_t alphabet[] = {
            u'a',   u'Z',   u' ',   u'"',   u'\\',  u'/',   0x00,  0x08,   0x09,   0x0A,
            0x0C,   0x0D,   0x1F,   0x7F,   0xE9,   0x7FF,  0x800, 0x20AC, 0x2028, 0xFFFD,
            0xFFFE, 0xFFFF, 0xD83D, 0xDBFF, 0xDC00, 0xDE00, u'|',  u':',   u'd',   u'u'};
        QString result;
        for (int i = 0, length = int(m_random() % 9); i < length; ++i)
            result.append(QChar(alphabet[m_random() % std::size(alphabet)]));
        return result;
    }

    double number() {
        constexpr double kTwoTo53 = 9007199254740992.0;
        static const double edges[] = {0.0,      0.1,      1e-7, 1e21, 1.7976931348623157e308,
                                       4.9e-324, INFINITY, NAN};
        const double sign = m_random() % 2 ? 1.0 : -1.0;
        switch (m_random() % 5) {
        case 0:
            return std::bit_cast<double>(quint64(m_random()) << 32 | m_random());
        case 1: // integral, around the end of the exact integers, often with trailing zeros
            return std::round((kTwoTo53 * 2.0 * (m_random() / 4294967296.0)) /
                              std::pow(10.0, m_random() % 6)) *
                   std::pow(10.0, m_random() % 6) * sign;
        case 2: // the last integers that are exact, and the first that aren't
            return (kTwoTo53 + double(int(m_random() % 7) - 3)) * sign;
        case 3:
            return edges[m_random() % std::size(edges)] * sign;
        default:
            return 1.7e12 + double(m_random() % 1000000) / 8.0;
        }
    }

    ColorTemplate palette() {
        QList<ColorItem> colors;
        for (int i = 0, count = int(m_random() % 4); i < count; ++i)
            colors.append({QUuid::createUuid(), text(), text(), bit(), bit(), bit(), text()});
        return {QUuid::createUuid(),
                text(),
                colors,
                number(),
                number(),
                bit() ? std::optional(text()) : std::nullopt,
                qint64(quint64(m_random()) << 32 | m_random()),
                text(),
                bit()};
    }

    // One step between two saves: a field edited (some change the JSON but not the content
    // hash), or a palette added, removed, moved, or sharing an id.
    void edit(QList<ColorTemplate>& list) {
        const qsizetype at = qsizetype(below(std::uint32_t(list.size())));
        ColorTemplate& p = list[at];
        ColorItem unused;
        ColorItem& c = p.colors.isEmpty() ? unused : p.colors.last();
        const std::function<void()> edits[] = {
            [&] { p.name = text(); },
            [&] { p.updatedAt = number(); },
            [&] { p.isLocked = !p.isLocked; },
            [&] { c.name = text(); },
            [&] { c.dividerLabel = text(); },
            [&] { c.dividerBefore = !c.dividerBefore; },
            [&] { c.isLocked = !c.isLocked; },
            [&] { c.isAutoNamed = !c.isAutoNamed; },
            [&] { list.swapItemsAt(at, 0); },
            [&] { list.insert(at, palette()); },
            [&] { list.size() > 2 ? list.removeAt(at) : void(); },
            [&] { list.append(palette()), list.last().id = list.at(0).id; }};
        edits[below(std::size(edits))]();
    }

    bool bit() { return m_random() % 2 == 0; }
    std::uint32_t below(std::uint32_t bound) { return m_random() % bound; }

private:
    std::mt19937 m_random;
};

} // namespace hueshelf::testing
