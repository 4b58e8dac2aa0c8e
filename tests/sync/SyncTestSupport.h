#pragma once

#include "sync/SyncableTemplate.h"

#include <QString>

#include <ostream>

// Readable failures for Qt text; found by argument lookup in QString's own (global) namespace,
// so it must be seen before GoogleTest's printers are.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <ostream>

namespace hueshelf::testing {

using namespace Qt::StringLiterals;

inline const QString kDeviceA = u"0A0A0A0A-1111-4222-8333-444444444444"_s;
inline const QString kDeviceB = u"0B0B0B0B-5555-4666-8777-888888888888"_s;

inline std::uint64_t bitsOf(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

// One colour entry as a palette file holds it.
inline QJsonObject colorEntry(const QString& id, const QString& name, const QString& hex) {
    QJsonObject object;
    object.insert(u"id"_s, id);
    object.insert(u"name"_s, name);
    object.insert(u"hex"_s, hex);
    object.insert(u"isAutoNamed"_s, false);
    object.insert(u"isLocked"_s, false);
    object.insert(u"dividerBefore"_s, false);
    object.insert(u"dividerLabel"_s, u""_s);
    return object;
}

// A complete, valid palette record of two colours, as another device would have written it.
inline QJsonObject paletteObject(const QString& id = u"D1D1D1D1-AAAA-4BBB-8CCC-DDDDDDDDDDDD"_s) {
    QJsonArray colors;
    colors.append(
        colorEntry(u"11111111-2222-4333-8444-555555555555"_s, u"Primary"_s, u"#FFA69E"_s));
    colors.append(colorEntry(u"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE"_s, u"Accent"_s, u"#B8F2E6"_s));
    QJsonObject object;
    object.insert(u"id"_s, id);
    object.insert(u"name"_s, u"Starter"_s);
    object.insert(u"colors"_s, colors);
    object.insert(u"createdAt"_s, 1700000000000.5);
    object.insert(u"createdBy"_s, kDeviceA);
    object.insert(u"lastModified"_s, 1700000000123.4567);
    object.insert(u"modifiedBy"_s, kDeviceB);
    object.insert(u"schemaVersion"_s, 2);
    object.insert(u"revision"_s, 7);
    object.insert(u"contentHash"_s, u"0123456789abcdef"_s);
    object.insert(u"isLocked"_s, false);
    object.insert(u"deleted"_s, false);
    return object;
}

inline QByteArray pretty(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

inline void writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

inline QByteArray readBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QJsonObject readObject(const QString& path) {
    return QJsonDocument::fromJson(readBytes(path)).object();
}

} // namespace hueshelf::testing
