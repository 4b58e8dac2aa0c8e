#include "mcp/RequestId.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace hueshelf::mcp {

namespace {

// A small walk over text that is already known to be valid JSON: it only needs to find where
// the members of the outer object begin and end, never to check them.

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

qsizetype skipSpace(QByteArrayView text, qsizetype at) {
    while (at < text.size() && isSpace(text[at]))
        ++at;
    return at;
}

// Just past the string that opens at `at`.
qsizetype skipString(QByteArrayView text, qsizetype at) {
    for (++at; at < text.size(); ++at) {
        if (text[at] == '\\')
            ++at;
        else if (text[at] == '"')
            return at + 1;
    }
    return text.size();
}

// Just past the value that starts at `at`.
qsizetype skipValue(QByteArrayView text, qsizetype at) {
    if (at >= text.size())
        return text.size();
    if (text[at] == '"')
        return skipString(text, at);
    if (text[at] == '{' || text[at] == '[') {
        int depth = 0;
        while (at < text.size()) {
            const char c = text[at];
            if (c == '"') {
                at = skipString(text, at);
                continue;
            }
            if (c == '{' || c == '[') {
                ++depth;
            } else if ((c == '}' || c == ']') && --depth == 0) {
                return at + 1;
            }
            ++at;
        }
        return at;
    }
    while (at < text.size() && !isSpace(text[at]) && text[at] != ',' && text[at] != '}' &&
           text[at] != ']')
        ++at;
    return at;
}

// One JSON value on its own, through the same parser as the message.
std::optional<QJsonValue> parseValue(QByteArrayView token) {
    const QByteArray wrapped = '[' + token.toByteArray() + ']';
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(wrapped, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray() ||
        document.array().size() != 1)
        return std::nullopt;
    return document.array().at(0);
}

bool isIdKey(QByteArrayView token) {
    if (token == QByteArrayView("\"id\""))
        return true;
    // A key written with escapes ("\u0069d") is still the id.
    if (!token.contains('\\'))
        return false;
    const std::optional<QJsonValue> key = parseValue(token);
    return key && *key == QJsonValue(QStringLiteral("id"));
}

// The text of the last top-level "id" member, as the parser keeps the last of duplicate keys.
std::optional<QByteArrayView> rawIdMember(QByteArrayView text) {
    qsizetype at = skipSpace(text, 0);
    if (at >= text.size() || text[at] != '{')
        return std::nullopt;
    std::optional<QByteArrayView> found;
    ++at;
    while (true) {
        at = skipSpace(text, at);
        if (at >= text.size() || text[at] != '"')
            return found;
        const qsizetype keyEnd = skipString(text, at);
        const bool isId = isIdKey(text.sliced(at, keyEnd - at));
        at = skipSpace(text, keyEnd);
        if (at >= text.size() || text[at] != ':')
            return found;
        at = skipSpace(text, at + 1);
        const qsizetype valueEnd = skipValue(text, at);
        if (isId)
            found = text.sliced(at, valueEnd - at);
        at = skipSpace(text, valueEnd);
        if (at >= text.size() || text[at] != ',')
            return found;
        ++at;
    }
}

QByteArray serialized(const QJsonValue& value) {
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

} // namespace

RequestId RequestId::null() {
    return RequestId(QByteArrayLiteral("null"));
}

std::optional<RequestId> RequestId::read(QByteArrayView message, const QJsonValue& parsedId) {
    if (!parsedId.isString() && !parsedId.isDouble())
        return std::nullopt;
    const std::optional<QByteArrayView> raw = rawIdMember(message);
    // The raw text is used only when it provably is the id that the parser saw.
    if (raw) {
        const std::optional<QJsonValue> reparsed = parseValue(*raw);
        if (reparsed && *reparsed == parsedId)
            return RequestId(raw->toByteArray());
    }
    return RequestId(serialized(parsedId));
}

} // namespace hueshelf::mcp
