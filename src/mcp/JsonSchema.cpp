#include "mcp/JsonSchema.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace hueshelf::mcp::JsonSchema {

namespace {

QJsonObject typed(const QString& type, const QString& description) {
    QJsonObject schema{{u"type"_s, type}};
    if (!description.isEmpty())
        schema.insert(u"description"_s, description);
    return schema;
}

} // namespace

QJsonObject string(const QString& description) {
    return typed(u"string"_s, description);
}

QJsonObject number(const QString& description) {
    return typed(u"number"_s, description);
}

QJsonObject integer(const QString& description) {
    return typed(u"integer"_s, description);
}

QJsonObject boolean(const QString& description) {
    return typed(u"boolean"_s, description);
}

QJsonObject stringEnum(const QStringList& values, const QString& description) {
    QJsonObject schema = typed(u"string"_s, description);
    schema.insert(u"enum"_s, QJsonArray::fromStringList(values));
    return schema;
}

QJsonObject array(const QJsonObject& items, const QString& description) {
    QJsonObject schema = typed(u"array"_s, description);
    schema.insert(u"items"_s, items);
    return schema;
}

QJsonObject object(const Properties& properties, const QStringList& required,
                   const QString& description) {
    QJsonObject schema = typed(u"object"_s, description);
    QJsonObject members;
    for (const auto& [name, property] : properties)
        members.insert(name, property);
    schema.insert(u"properties"_s, members);
    if (!required.isEmpty())
        schema.insert(u"required"_s, QJsonArray::fromStringList(required));
    return schema;
}

QJsonObject closedObject(const Properties& properties, const QStringList& required,
                         const QString& description) {
    QJsonObject schema = object(properties, required, description);
    schema.insert(u"additionalProperties"_s, false);
    return schema;
}

QJsonObject nullable(QJsonObject schema) {
    const QString type = schema.value(u"type"_s).toString();
    schema.insert(u"type"_s, QJsonArray{type, u"null"_s});
    return schema;
}

QJsonObject anyOf(const QList<QJsonObject>& schemas, const QString& description) {
    QJsonArray options;
    for (const QJsonObject& schema : schemas)
        options.append(schema);
    QJsonObject schema{{u"anyOf"_s, options}};
    if (!description.isEmpty())
        schema.insert(u"description"_s, description);
    return schema;
}

} // namespace hueshelf::mcp::JsonSchema
