#pragma once

// Palette lists shaped like a heavy user's: twelve named colours each, a few groups and locks,
// some palettes that came through the sync folder. Everything comes from one seeded generator,
// ids included, so every run measures the same bytes.

#include "model/ColorItem.h"
#include "model/ColorTemplate.h"
#include "model/ContentHash.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <array>
#include <cstdint>
#include <random>

namespace hueshelf::bench {

using namespace Qt::StringLiterals;

inline constexpr int kColorsPerPalette = 12;
inline constexpr double kEpochMs = 1'700'000'000'000.0;

class PaletteMaker {
public:
    explicit PaletteMaker(std::uint32_t seed) : m_random(seed) {}

    // A version-4 id drawn from the seeded generator instead of the system's randomness.
    QUuid nextId() {
        std::array<uchar, 16> bytes{};
        for (uchar& byte : bytes)
            byte = static_cast<uchar>(m_random() & 0xFFu);
        bytes[6] = static_cast<uchar>((bytes[6] & 0x0Fu) | 0x40u);
        bytes[8] = static_cast<uchar>((bytes[8] & 0x3Fu) | 0x80u);
        return QUuid::fromRfc4122(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
    }

    QString nextHex() {
        const std::uint32_t rgb = m_random() & 0xFFFFFFu;
        return u"#"_s + QString::number(rgb, 16).rightJustified(6, u'0').toUpper();
    }

    ColorItem nextColor(int index) {
        static const std::array<QString, 24> names{
            u"Deep Coral"_s, u"Warm Sand"_s,     u"Dusty Teal"_s,  u"Midnight Blue"_s,
            u"Sage"_s,       u"Terracotta"_s,    u"Ivory"_s,       u"Charcoal"_s,
            u"Blush Pink"_s, u"Ochre"_s,         u"Slate Grey"_s,  u"Mint"_s,
            u"Burgundy"_s,   u"Lavender Mist"_s, u"Olive Drab"_s,  u"Sky"_s,
            u"Rust"_s,       u"Peach Fuzz"_s,    u"Forest"_s,      u"Café au lait"_s,
            u"Indigo Ink"_s, u"Butter"_s,        u"Storm Cloud"_s, u"Électrique"_s,
        };
        ColorItem color;
        color.id = nextId();
        color.hex = nextHex();
        color.isAutoNamed = chance(3);
        color.name = names[m_random() % names.size()];
        if (!color.isAutoNamed && chance(4))
            color.name += u' ' + QString::number(index + 1);
        color.isLocked = chance(30);
        // Groups start in the second half of a palette, now and then.
        if (index == kColorsPerPalette / 2 && chance(5)) {
            color.dividerBefore = true;
            color.dividerLabel = chance(2) ? u"Accents"_s : QString();
        }
        return color;
    }

    ColorTemplate nextPalette(int index) {
        static const std::array<QString, 10> names{
            u"Brand"_s,        u"Sunset Study"_s, u"Web UI"_s,    u"Autumn"_s,
            u"Client: Acme"_s, u"Packaging"_s,    u"Moodboard"_s, u"Print | CMYK-safe"_s,
            u"Dark Mode"_s,    u"Spring 2024"_s,
        };
        ColorTemplate palette;
        palette.id = nextId();
        palette.name = names[m_random() % names.size()] + u' ' + QString::number(index + 1);
        for (int i = 0; i < kColorsPerPalette; ++i)
            palette.colors.append(nextColor(i));
        palette.createdAt = kEpochMs - double(m_random() % 900'000'000u) - 0.25;
        palette.updatedAt = palette.createdAt + double(m_random() % 50'000'000u) + 0.5;
        if (chance(10))
            palette.updatedByDeviceId = uuidText(nextId());
        palette.revision = 1 + qint64(m_random() % 40u);
        palette.contentHash = computeContentHash(palette.name, palette.colors);
        palette.isLocked = chance(20);
        return palette;
    }

    QList<ColorTemplate> palettes(int count) {
        QList<ColorTemplate> list;
        list.reserve(count);
        for (int i = 0; i < count; ++i)
            list.append(nextPalette(i));
        return list;
    }

    // A content change somebody made on one side: a new code for one colour, stamped as the
    // save on that side would stamp it.
    void edit(ColorTemplate& palette, double nowMs) {
        palette.colors[qsizetype(m_random() % std::uint32_t(palette.colors.size()))].hex =
            nextHex();
        palette.contentHash = computeContentHash(palette.name, palette.colors);
        palette.updatedAt = nowMs;
        palette.revision += 1;
    }

    std::uint32_t below(std::uint32_t bound) { return m_random() % bound; }

private:
    bool chance(std::uint32_t oneIn) { return m_random() % oneIn == 0; }

    std::mt19937 m_random;
};

} // namespace hueshelf::bench
