#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1StringView>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf {

// Reads the fields of one sync-folder record and remembers whether anything was wrong, so that
// a record reader takes every field in turn and decides once at the end. The rules, which every
// device must share to read the same folder alike:
//  - A required key that is missing, null or of the wrong type fails the record.
//  - An optional key that is missing or null takes its default; of the wrong type it fails the
//    record all the same.
//  - Texts are JSON strings, flags JSON booleans, numbers any JSON number. An integer must have
//    an integral value that fits 64 bits (2 and 2.0 are fine, 2.5 is the wrong type).
//  - An id is exactly 8-4-4-4-12 hex digits in either case.
class SyncFieldReader {
public:
    explicit SyncFieldReader(const QJsonObject& object) : m_object(object) {}

    bool failed() const { return m_failed; }
    // For a rule the reader itself can't see, such as a list entry of the wrong kind.
    void fail() { m_failed = true; }

    QString requiredString(QLatin1StringView key);
    QUuid requiredUuid(QLatin1StringView key);
    QJsonArray requiredArray(QLatin1StringView key);
    QJsonObject requiredObject(QLatin1StringView key);
    double requiredDouble(QLatin1StringView key);
    bool requiredBool(QLatin1StringView key);

    std::optional<QString> optionalString(QLatin1StringView key);
    std::optional<double> optionalDouble(QLatin1StringView key);
    std::optional<qint64> optionalInteger(QLatin1StringView key);
    std::optional<bool> optionalBool(QLatin1StringView key);

private:
    QString string(const QJsonValue& value);
    double number(const QJsonValue& value);
    bool boolean(const QJsonValue& value);

    const QJsonObject& m_object;
    bool m_failed = false;
};

} // namespace hueshelf
