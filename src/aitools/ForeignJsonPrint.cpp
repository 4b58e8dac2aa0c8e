#include "aitools/ForeignJson.h"

namespace hueshelf {

namespace {

void appendQuoted(QByteArray& out, const QString& text) {
    static constexpr char hexDigits[] = "0123456789abcdef";
    out.append('"');
    for (const char byte : text.toUtf8()) {
        switch (byte) {
        case '"':
            out.append("\\\"");
            break;
        case '\\':
            out.append("\\\\");
            break;
        case '/':
            out.append("\\/");
            break;
        case '\b':
            out.append("\\b");
            break;
        case '\f':
            out.append("\\f");
            break;
        case '\n':
            out.append("\\n");
            break;
        case '\r':
            out.append("\\r");
            break;
        case '\t':
            out.append("\\t");
            break;
        default:
            if (static_cast<unsigned char>(byte) < 0x20) {
                out.append("\\u00");
                out.append(hexDigits[byte >> 4]);
                out.append(hexDigits[byte & 0xF]);
            } else {
                out.append(byte);
            }
        }
    }
    out.append('"');
}

void appendIndent(QByteArray& out, int level) {
    out.append(QByteArray(2 * level, ' '));
}

void appendValue(QByteArray& out, const ForeignJson& value, int level) {
    switch (value.kind()) {
    case ForeignJson::Kind::null:
        out.append("null");
        return;
    case ForeignJson::Kind::boolean:
        out.append(value.booleanValue() ? "true" : "false");
        return;
    case ForeignJson::Kind::number:
        out.append(value.numberText());
        return;
    case ForeignJson::Kind::string:
        appendQuoted(out, value.stringValue());
        return;
    case ForeignJson::Kind::array: {
        if (value.items().empty()) {
            out.append("[]");
            return;
        }
        out.append("[\n");
        bool first = true;
        for (const ForeignJson& item : value.items()) {
            if (!first)
                out.append(",\n");
            first = false;
            appendIndent(out, level + 1);
            appendValue(out, item, level + 1);
        }
        out.append('\n');
        appendIndent(out, level);
        out.append(']');
        return;
    }
    case ForeignJson::Kind::object: {
        if (value.members().empty()) {
            out.append("{}");
            return;
        }
        out.append("{\n");
        bool first = true;
        for (const ForeignJson::Member& member : value.members()) {
            if (!first)
                out.append(",\n");
            first = false;
            appendIndent(out, level + 1);
            appendQuoted(out, member.key);
            out.append(" : ");
            appendValue(out, member.value, level + 1);
        }
        out.append('\n');
        appendIndent(out, level);
        out.append('}');
        return;
    }
    }
}

} // namespace

QByteArray ForeignJson::prettyPrinted() const {
    QByteArray out;
    appendValue(out, *this, 0);
    return out;
}

} // namespace hueshelf
