#pragma once

#include <QByteArray>
#include <QString>
#include <QUuid>

namespace hueshelf {

// One colour of a palette. A plain value record: copied freely, compared narrowly.
struct ColorItem {
    QUuid id;
    QString name;
    QString hex;
    bool isAutoNamed = false;
    bool isLocked = false;
    bool dividerBefore = false;
    QString dividerLabel;

    // A colour made now: fresh random id, unlocked, no divider.
    static ColorItem make(const QString& name, const QString& hex, bool isAutoNamed);

    // Locks and dividers deliberately don't take part: whoever must notice them compares the
    // palette's content hash instead.
    friend bool operator==(const ColorItem& a, const ColorItem& b) {
        return a.id == b.id && a.name == b.name && a.hex == b.hex;
    }
};

// Upper-case 8-4-4-4-12 text, the only form in which ids are written anywhere.
QString uuidText(const QUuid& id);
// The same 36 characters appended as bytes, for the encoders that build UTF-8 directly.
void appendUuidText(QByteArray& out, const QUuid& id);

} // namespace hueshelf
