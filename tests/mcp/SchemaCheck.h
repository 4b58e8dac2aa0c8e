#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <cmath>

namespace hueshelf::testing {

using namespace Qt::StringLiterals;

// The part of JSON Schema that the tools' schemas use, as a client that checks structured
// content against a tool's output schema would apply it. Answers every mismatch with its path.
inline bool matchesType(const QJsonValue& value, const QString& type) {
    if (type == u"object"_s)
        return value.isObject();
    if (type == u"array"_s)
        return value.isArray();
    if (type == u"string"_s)
        return value.isString();
    if (type == u"boolean"_s)
        return value.isBool();
    if (type == u"null"_s)
        return value.isNull();
    if (type == u"number"_s)
        return value.isDouble();
    if (type == u"integer"_s)
        return value.isDouble() && std::floor(value.toDouble()) == value.toDouble();
    return false;
}

inline QStringList schemaProblems(const QJsonValue& value, const QJsonObject& schema,
                                  const QString& path = QStringLiteral("$")) {
    QStringList problems;
    if (schema.contains(u"anyOf"_s)) {
        for (const QJsonValue& option : schema.value(u"anyOf"_s).toArray()) {
            if (schemaProblems(value, option.toObject(), path).isEmpty())
                return {};
        }
        return {path + u": matches no option of anyOf"_s};
    }
    const QJsonValue type = schema.value(u"type"_s);
    QStringList types;
    if (type.isArray()) {
        for (const QJsonValue& each : type.toArray())
            types << each.toString();
    } else if (type.isString()) {
        types << type.toString();
    }
    bool typeMatches = types.isEmpty();
    for (const QString& each : types)
        typeMatches = typeMatches || matchesType(value, each);
    if (!typeMatches)
        return {path + u": not of type "_s + types.join(u'|')};
    if (schema.contains(u"enum"_s) && !schema.value(u"enum"_s).toArray().contains(value))
        problems << path + u": not in enum"_s;
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        const QJsonObject properties = schema.value(u"properties"_s).toObject();
        for (const QJsonValue& required : schema.value(u"required"_s).toArray()) {
            if (!object.contains(required.toString()))
                problems << path + u": missing "_s + required.toString();
        }
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            if (properties.contains(it.key()))
                problems << schemaProblems(it.value(), properties.value(it.key()).toObject(),
                                           path + u'.' + it.key());
            else if (schema.value(u"additionalProperties"_s) == QJsonValue(false))
                problems << path + u": unexpected "_s + it.key();
        }
    }
    if (value.isArray() && schema.contains(u"items"_s)) {
        const QJsonArray array = value.toArray();
        for (qsizetype i = 0; i < array.size(); ++i)
            problems << schemaProblems(array.at(i), schema.value(u"items"_s).toObject(),
                                       path + u'[' + QString::number(i) + u']');
    }
    return problems;
}

} // namespace hueshelf::testing
