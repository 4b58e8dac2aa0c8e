#include "model/PreferencesLayout.h"

#include "model/PreferencesKeys.h"

#include <QHash>
#include <QJsonDocument>

#include <array>
#include <cstring>
#include <utility>

namespace hueshelf {

namespace {

// What a byte of compact JSON means to the indenter, outside strings.
enum class Token : unsigned char { plain, quote, open, close, comma, colon };

constexpr std::array<Token, 256> makeTokenTable() {
    std::array<Token, 256> table{};
    table[uchar('"')] = Token::quote;
    table[uchar('{')] = Token::open;
    table[uchar('[')] = Token::open;
    table[uchar('}')] = Token::close;
    table[uchar(']')] = Token::close;
    table[uchar(',')] = Token::comma;
    table[uchar(':')] = Token::colon;
    return table;
}
constexpr std::array<Token, 256> kTokens = makeTokenTable();

// Appends to a buffer sized ahead, growing it only when a piece doesn't fit. Generous sizing
// costs little: pages never written are never touched.
class Output {
public:
    explicit Output(qsizetype expected) {
        m_bytes.resize(expected);
        m_cursor = m_bytes.data();
    }

    void append(const char* data, qsizetype size) {
        reserve(size);
        std::memcpy(m_cursor, data, size_t(size));
        m_cursor += size;
    }
    void put(char c) {
        reserve(1);
        *m_cursor++ = c;
    }
    void newLine(int level) {
        const qsizetype spaces = 4 * qsizetype(level);
        reserve(1 + spaces);
        *m_cursor++ = '\n';
        std::memset(m_cursor, ' ', size_t(spaces));
        m_cursor += spaces;
    }
    qsizetype size() const { return m_cursor - m_bytes.constData(); }
    QByteArray take() {
        m_bytes.resize(m_cursor - m_bytes.constData());
        return std::move(m_bytes);
    }

private:
    void reserve(qsizetype more) {
        if (m_bytes.constData() + m_bytes.size() - m_cursor >= more)
            return;
        const qsizetype used = m_cursor - m_bytes.constData();
        m_bytes.resize(m_bytes.size() * 2 + more);
        m_cursor = m_bytes.data() + used;
    }

    QByteArray m_bytes;
    char* m_cursor = nullptr;
};

// Qt's indented form of a value whose compact form is `compact`, standing at `level` (four
// spaces each): a line for each element, "key": value with one space, an empty container as
// its brackets on two lines. Compact text has no whitespace outside strings and no raw line
// breaks inside them, so the structure can be read off the brackets, commas and colons.
void appendIndented(Output& out, QByteArrayView compact, int level) {
    const char* in = compact.data();
    const char* const end = in + compact.size();
    while (in != end) {
        const char* const run = in;
        while (in != end && kTokens[uchar(*in)] == Token::plain)
            ++in;
        out.append(run, in - run);
        if (in == end)
            break;
        const char c = *in++;
        switch (kTokens[uchar(c)]) {
        case Token::quote: {
            const char* const start = in - 1;
            for (;;) {
                while (in != end && *in != '"' && *in != '\\')
                    ++in;
                if (in == end)
                    break;
                if (*in == '"') {
                    ++in;
                    break;
                }
                in += in + 1 != end ? 2 : 1;
            }
            out.append(start, in - start);
            break;
        }
        case Token::open:
            out.put(c);
            if (in != end && kTokens[uchar(*in)] == Token::close) {
                out.newLine(level);
                out.put(*in++);
            } else {
                out.newLine(++level);
            }
            break;
        case Token::close:
            out.newLine(--level);
            out.put(c);
            break;
        case Token::comma:
            out.put(',');
            out.newLine(level);
            break;
        case Token::colon:
            out.append(": ", 2);
            break;
        case Token::plain:
            break;
        }
    }
}

bool sameBuffer(const QByteArray& a, const QByteArray& b) {
    return a.size() == b.size() && a.constData() == b.constData();
}

// The elements make the array only if their sizes add up to it; a cheap guard against a caller
// whose two forms went apart.
bool joinsTo(const QList<QByteArray>& elements, const QByteArray& json) {
    qsizetype size = 2 + elements.size() - 1;
    for (const QByteArray& element : elements)
        size += element.size();
    return size == json.size() && json.startsWith('[') && json.endsWith(']');
}

} // namespace

std::optional<PreferencesLayout> PreferencesLayout::make(const QJsonObject& others,
                                                         const QByteArray& templatesJson,
                                                         const QList<QByteArray>& elements,
                                                         const PreferencesLayout* previous) {
    // An empty text as a stand-in: the key is unique and the only one at the first level of
    // indentation, so its line is found without doubt.
    QJsonObject object = others;
    object.insert(PreferencesKeys::templates, QString());
    const QByteArray document = QJsonDocument(object).toJson(QJsonDocument::Indented);
    const QByteArray placeholder = "\n    \"" + PreferencesKeys::templates.toLatin1() + "\": \"\"";
    const qsizetype at = document.indexOf(placeholder);
    if (at < 0)
        return std::nullopt;
    const qsizetype valueAt = at + placeholder.size() - 2;
    const qsizetype restAt = valueAt + 2;

    PreferencesLayout layout;
    // Indenting palettes takes their compact size about 2.2 times.
    Output out(document.size() + templatesJson.size() * 5 / 2 + 64);
    out.append(document.constData(), valueAt);
    if (elements.isEmpty() || !joinsTo(elements, templatesJson)) {
        appendIndented(out, templatesJson, 1);
    } else {
        // The array at the first level, its elements at the second. Each of the previous
        // layout's elements is found by its buffer: first at the same position, else through an
        // index made on the first miss (palettes added, removed or moved).
        QHash<const char*, qsizetype> previousAt;
        const auto laidOutBefore = [&](const QByteArray& element,
                                       qsizetype i) -> std::optional<QByteArrayView> {
            if (!previous || previous->m_elements.isEmpty())
                return std::nullopt;
            const QList<QByteArray>& old = previous->m_elements;
            qsizetype j = -1;
            if (i < old.size() && sameBuffer(old.at(i), element)) {
                j = i;
            } else {
                if (previousAt.isEmpty()) {
                    previousAt.reserve(old.size());
                    for (qsizetype k = 0; k < old.size(); ++k)
                        previousAt.insert(old.at(k).constData(), k);
                }
                const auto it = previousAt.constFind(element.constData());
                if (it != previousAt.cend() && sameBuffer(old.at(*it), element))
                    j = *it;
            }
            if (j < 0)
                return std::nullopt;
            const Span span = previous->m_spans.at(j);
            return QByteArrayView(previous->m_bytes.constData() + span.offset, span.size);
        };
        layout.m_spans.reserve(elements.size());
        out.put('[');
        for (qsizetype i = 0; i < elements.size(); ++i) {
            if (i > 0)
                out.put(',');
            out.newLine(2);
            const QByteArray& element = elements.at(i);
            const qsizetype start = out.size();
            if (const std::optional<QByteArrayView> known = laidOutBefore(element, i))
                out.append(known->data(), known->size());
            else
                appendIndented(out, element, 2);
            layout.m_spans.append(Span{start, out.size() - start});
        }
        out.newLine(1);
        out.put(']');
        layout.m_elements = elements;
    }
    out.append(document.constData() + restAt, document.size() - restAt);
    layout.m_bytes = out.take();
    return layout;
}

PreferencesLayout PreferencesLayout::ofBytes(QByteArray bytes) {
    PreferencesLayout layout;
    layout.m_bytes = std::move(bytes);
    return layout;
}

} // namespace hueshelf
