#include "model/TemplateEncodingCache.h"

#include "model/ContentHash.h"
#include "model/TemplateJson.h"

#include <bit>

namespace hueshelf {

namespace {

// Lists that share their elements hold the same values: a shared list can't be changed in
// place, a write to either copy detaches it first.
bool sameBuffer(const QList<ColorItem>& a, const QList<ColorItem>& b) {
    return a.size() == b.size() && a.constData() == b.constData();
}

// Equal in everything the content hash reads; a stale divider label doesn't count.
bool sameHashInput(const QList<ColorItem>& a, const QList<ColorItem>& b) {
    if (sameBuffer(a, b))
        return true;
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        const ColorItem& x = a.at(i);
        const ColorItem& y = b.at(i);
        if (x.id != y.id || x.name != y.name || x.hex != y.hex || x.isAutoNamed != y.isAutoNamed ||
            x.isLocked != y.isLocked || x.dividerBefore != y.dividerBefore ||
            (x.dividerBefore && x.dividerLabel != y.dividerLabel))
            return false;
    }
    return true;
}

// Equal in every field the JSON form writes.
bool sameColorsJson(const QList<ColorItem>& a, const QList<ColorItem>& b) {
    if (sameBuffer(a, b))
        return true;
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        const ColorItem& x = a.at(i);
        const ColorItem& y = b.at(i);
        if (x.id != y.id || x.name != y.name || x.hex != y.hex || x.isAutoNamed != y.isAutoNamed ||
            x.isLocked != y.isLocked || x.dividerBefore != y.dividerBefore ||
            x.dividerLabel != y.dividerLabel)
            return false;
    }
    return true;
}

// Stamps are compared by their bits: the encoder's output is a function of those.
bool sameBits(double a, double b) {
    return std::bit_cast<quint64>(a) == std::bit_cast<quint64>(b);
}

bool sameJson(const ColorTemplate& a, const ColorTemplate& b) {
    return a.id == b.id && a.name == b.name && sameBits(a.createdAt, b.createdAt) &&
           sameBits(a.updatedAt, b.updatedAt) && a.updatedByDeviceId == b.updatedByDeviceId &&
           a.revision == b.revision && a.contentHash == b.contentHash && a.isLocked == b.isLocked &&
           sameColorsJson(a.colors, b.colors);
}

} // namespace

QString TemplateEncodingCache::contentHash(const ColorTemplate& palette) {
    Entry& entry = m_entries[palette.id];
    if (entry.hasHash && entry.hashedName == palette.name &&
        sameHashInput(entry.hashedColors, palette.colors))
        return entry.hash;
    entry.hashedName = palette.name;
    entry.hashedColors = palette.colors;
    entry.hash = computeContentHash(palette.name, palette.colors);
    entry.hasHash = true;
    return entry.hash;
}

QList<QByteArray> TemplateEncodingCache::encodeParts(const QList<ColorTemplate>& templates) {
    const quint64 pass = ++m_encodeCount;
    QList<QByteArray> parts;
    parts.reserve(templates.size());
    for (const ColorTemplate& palette : templates) {
        Entry& entry = m_entries[palette.id];
        entry.seenInEncode = pass;
        if (!entry.hasJson || !sameJson(entry.encodedPalette, palette)) {
            entry.encodedPalette = palette;
            entry.json = TemplateJson::encodeTemplate(palette);
            entry.hasJson = true;
        }
        parts.append(entry.json);
    }
    if (m_entries.size() > templates.size())
        m_entries.removeIf(
            [pass](const QHash<QUuid, Entry>::iterator& it) { return it->seenInEncode != pass; });
    return parts;
}

} // namespace hueshelf
