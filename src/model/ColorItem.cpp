#include "model/ColorItem.h"

namespace hueshelf {

ColorItem ColorItem::make(const QString& name, const QString& hex, bool isAutoNamed) {
    return ColorItem{QUuid::createUuid(), name, hex, isAutoNamed, false, false, QString()};
}

namespace {
constexpr qsizetype kUuidTextLength = 36;

char* putHex(char* cursor, quint64 value, int digits) {
    static constexpr char hexDigits[] = "0123456789ABCDEF";
    for (int i = digits - 1; i >= 0; --i) {
        cursor[i] = hexDigits[value & 0xFu];
        value >>= 4;
    }
    return cursor + digits;
}

// Saves spell out every id of every colour; the generic conversion and case mapping of
// QUuid::toString would dominate that.
void writeUuidText(char* cursor, const QUuid& id) {
    cursor = putHex(cursor, id.data1, 8);
    *cursor++ = '-';
    cursor = putHex(cursor, id.data2, 4);
    *cursor++ = '-';
    cursor = putHex(cursor, id.data3, 4);
    *cursor++ = '-';
    cursor = putHex(cursor, quint64(id.data4[0]) << 8 | id.data4[1], 4);
    *cursor++ = '-';
    quint64 node = 0;
    for (int i = 2; i < 8; ++i)
        node = node << 8 | id.data4[i];
    putHex(cursor, node, 12);
}
} // namespace

QString uuidText(const QUuid& id) {
    char text[kUuidTextLength];
    writeUuidText(text, id);
    return QString::fromLatin1(text, kUuidTextLength);
}

void appendUuidText(QByteArray& out, const QUuid& id) {
    const qsizetype start = out.size();
    out.resize(start + kUuidTextLength);
    writeUuidText(out.data() + start, id);
}

} // namespace hueshelf
