#pragma once

#include "model/ColorTemplate.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QUuid>

namespace hueshelf {

// Every save recomputes the content hash of every palette and encodes the whole list, on the
// main thread; with thousands of palettes that is far more than a frame, although an edit
// changes one palette. This remembers, per palette id, what was last hashed and encoded, and
// answers from there whenever the palette still holds exactly those values: the results are
// always those of computeContentHash and TemplateJson::encodeTemplates.
//
// Values are compared, not trusted: copies of the lists and texts are kept, so a palette whose
// colours still share the remembered list is known to be unchanged without looking further, and
// any other is compared field by field.
class TemplateEncodingCache {
public:
    QString contentHash(const ColorTemplate& palette);

    // The list's elements of TemplateJson::encodeTemplates, one per palette (joinEncoded makes
    // the array). Forgets the palettes that are no longer in the list.
    QList<QByteArray> encodeParts(const QList<ColorTemplate>& templates);

private:
    struct Entry {
        // What the hash was computed from.
        QString hashedName;
        QList<ColorItem> hashedColors;
        QString hash;
        bool hasHash = false;
        // What the JSON was written from.
        ColorTemplate encodedPalette;
        QByteArray json;
        bool hasJson = false;
        quint64 seenInEncode = 0;
    };

    QHash<QUuid, Entry> m_entries;
    quint64 m_encodeCount = 0;
};

} // namespace hueshelf
