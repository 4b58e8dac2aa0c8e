#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

namespace hueshelf::mcp {

// Builders for the JSON Schema pieces that describe the tools' arguments and answers, so the
// tool table reads as a table and not as nested braces.
namespace JsonSchema {

using Properties = QList<std::pair<QString, QJsonObject>>;

QJsonObject string(const QString& description = QString());
QJsonObject number(const QString& description = QString());
QJsonObject integer(const QString& description = QString());
QJsonObject boolean(const QString& description = QString());
QJsonObject stringEnum(const QStringList& values, const QString& description = QString());
QJsonObject array(const QJsonObject& items, const QString& description = QString());
QJsonObject object(const Properties& properties, const QStringList& required,
                   const QString& description = QString());
// The same, refusing any other property: for arguments, which the tools check the same way.
QJsonObject closedObject(const Properties& properties, const QStringList& required,
                         const QString& description = QString());
// The schema's type, or null.
QJsonObject nullable(QJsonObject schema);
// Any one of the given schemas.
QJsonObject anyOf(const QList<QJsonObject>& schemas, const QString& description = QString());

} // namespace JsonSchema
} // namespace hueshelf::mcp
