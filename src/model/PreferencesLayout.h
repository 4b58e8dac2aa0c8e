#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>

#include <optional>

namespace hueshelf {

// The bytes of the preferences file, laid out exactly as QJsonDocument prints the object
// indented, but with the palette array taken as the encoder's compact text instead of being
// parsed and printed again: at thousands of palettes that round trip cost many times the write
// itself.
//
// The array may come palette by palette (the compact elements, in order). An element whose
// text still shares its buffer with one of the previous layout's elements is the same text, so
// its laid-out bytes are copied from that layout instead of being laid out again: a save that
// changed one palette lays out one palette.
class PreferencesLayout {
public:
    // The file for `others` with `templatesJson` (compact, as TemplateJson::encodeTemplates
    // writes it; when `elements` is not empty, the same bytes as TemplateJson::joinEncoded of
    // them) under "colorTemplates". The encoder's text reads back as it is, so this is what Qt
    // prints after parsing it in. None if the object can't be laid out this way, in which case
    // whoever asked takes the long way.
    static std::optional<PreferencesLayout> make(const QJsonObject& others,
                                                 const QByteArray& templatesJson,
                                                 const QList<QByteArray>& elements,
                                                 const PreferencesLayout* previous);

    // Bytes laid out some other way, with nothing to reuse.
    static PreferencesLayout ofBytes(QByteArray bytes);

    const QByteArray& bytes() const { return m_bytes; }

private:
    struct Span {
        qsizetype offset = 0;
        qsizetype size = 0;
    };

    QByteArray m_bytes;
    // Kept so that their buffers identify them to the next layout.
    QList<QByteArray> m_elements;
    QList<Span> m_spans; // where each element's laid-out text sits in m_bytes
};

} // namespace hueshelf
