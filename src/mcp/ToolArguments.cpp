#include "mcp/ToolArguments.h"

using namespace Qt::StringLiterals;

namespace hueshelf::mcp {

namespace {

QString quotedList(const QStringList& names) {
    QStringList quoted;
    for (const QString& name : names)
        quoted << u'"' + name + u'"';
    if (quoted.size() <= 1)
        return quoted.join(QString());
    const QString last = quoted.takeLast();
    return quoted.join(u", "_s) + u" and "_s + last;
}

} // namespace

QString jsonTypeText(const QJsonValue& value) {
    switch (value.type()) {
    case QJsonValue::Bool:
        return u"a boolean"_s;
    case QJsonValue::Double:
        return u"a number"_s;
    case QJsonValue::String:
        return u"a string"_s;
    case QJsonValue::Array:
        return u"a list"_s;
    case QJsonValue::Object:
        return u"an object"_s;
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return u"null"_s;
}

ToolArguments::ToolArguments(QString toolName, QJsonObject arguments)
    : m_toolName(std::move(toolName)), m_arguments(std::move(arguments)) {}

void ToolArguments::allowOnly(const QStringList& names) {
    for (auto it = m_arguments.constBegin(); it != m_arguments.constEnd(); ++it) {
        if (names.contains(it.key()))
            continue;
        if (names.isEmpty())
            fail(m_toolName + u" takes no arguments, but was given \""_s + it.key() + u"\"."_s);
        else
            fail(m_toolName + u" has no argument \""_s + it.key() + u"\"; it takes "_s +
                 quotedList(names) + u'.');
        return;
    }
}

bool ToolArguments::has(const QString& name) const {
    const QJsonValue value = m_arguments.value(name);
    return !value.isUndefined() && !value.isNull();
}

std::optional<QJsonValue> ToolArguments::present(const QString& name, bool required) {
    if (failed())
        return std::nullopt;
    if (!has(name)) {
        if (required)
            fail(m_toolName + u" needs the argument \""_s + name + u"\"."_s);
        return std::nullopt;
    }
    return m_arguments.value(name);
}

std::optional<QString> ToolArguments::optionalText(const QString& name) {
    const std::optional<QJsonValue> value = present(name, false);
    if (!value)
        return std::nullopt;
    if (!value->isString()) {
        fail(u"The argument \""_s + name + u"\" must be a string, not "_s + jsonTypeText(*value) +
             u'.');
        return std::nullopt;
    }
    return value->toString();
}

std::optional<QString> ToolArguments::requiredText(const QString& name) {
    if (!failed() && !has(name)) {
        present(name, true);
        return std::nullopt;
    }
    return optionalText(name);
}

std::optional<QJsonArray> ToolArguments::optionalList(const QString& name) {
    const std::optional<QJsonValue> value = present(name, false);
    if (!value)
        return std::nullopt;
    if (!value->isArray()) {
        fail(u"The argument \""_s + name + u"\" must be a list, not "_s + jsonTypeText(*value) +
             u'.');
        return std::nullopt;
    }
    return value->toArray();
}

std::optional<QJsonArray> ToolArguments::requiredList(const QString& name) {
    if (!failed() && !has(name)) {
        present(name, true);
        return std::nullopt;
    }
    return optionalList(name);
}

void ToolArguments::fail(const QString& sentence) {
    if (!m_problem)
        m_problem = sentence;
}

} // namespace hueshelf::mcp
