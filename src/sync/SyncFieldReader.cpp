#include "sync/SyncFieldReader.h"

#include "sync/SyncUuidText.h"

namespace hueshelf {

namespace {

bool isMissing(const QJsonValue& value) {
    return value.isUndefined() || value.isNull();
}

} // namespace

// Each key is looked up once: a pull reads every field of every colour of every palette file.

QString SyncFieldReader::requiredString(QLatin1StringView key) {
    return string(m_object.value(key));
}

QUuid SyncFieldReader::requiredUuid(QLatin1StringView key) {
    const QJsonValue value = m_object.value(key);
    const std::optional<QUuid> id =
        value.isString() ? parseCanonicalUuid(value.toString()) : std::nullopt;
    if (!id) {
        fail();
        return {};
    }
    return *id;
}

QJsonArray SyncFieldReader::requiredArray(QLatin1StringView key) {
    const QJsonValue value = m_object.value(key);
    if (!value.isArray()) {
        fail();
        return {};
    }
    return value.toArray();
}

QJsonObject SyncFieldReader::requiredObject(QLatin1StringView key) {
    const QJsonValue value = m_object.value(key);
    if (!value.isObject()) {
        fail();
        return {};
    }
    return value.toObject();
}

double SyncFieldReader::requiredDouble(QLatin1StringView key) {
    return number(m_object.value(key));
}

bool SyncFieldReader::requiredBool(QLatin1StringView key) {
    return boolean(m_object.value(key));
}

std::optional<QString> SyncFieldReader::optionalString(QLatin1StringView key) {
    const QJsonValue value = m_object.value(key);
    if (isMissing(value))
        return std::nullopt;
    return string(value);
}

std::optional<double> SyncFieldReader::optionalDouble(QLatin1StringView key) {
    const QJsonValue value = m_object.value(key);
    if (isMissing(value))
        return std::nullopt;
    return number(value);
}

std::optional<qint64> SyncFieldReader::optionalInteger(QLatin1StringView key) {
    const QJsonValue value = m_object.value(key);
    if (isMissing(value))
        return std::nullopt;
    // toInteger answers its fallback for anything without an exact integer value; two different
    // fallbacks tell that apart from a stored value equal to either of them.
    const qint64 first = value.toInteger(0);
    const qint64 second = value.toInteger(1);
    if (!value.isDouble() || first != second) {
        fail();
        return std::nullopt;
    }
    return first;
}

std::optional<bool> SyncFieldReader::optionalBool(QLatin1StringView key) {
    const QJsonValue value = m_object.value(key);
    if (isMissing(value))
        return std::nullopt;
    return boolean(value);
}

QString SyncFieldReader::string(const QJsonValue& value) {
    if (!value.isString()) {
        fail();
        return {};
    }
    return value.toString();
}

double SyncFieldReader::number(const QJsonValue& value) {
    if (!value.isDouble()) {
        fail();
        return 0.0;
    }
    return value.toDouble();
}

bool SyncFieldReader::boolean(const QJsonValue& value) {
    if (!value.isBool()) {
        fail();
        return false;
    }
    return value.toBool();
}

} // namespace hueshelf
