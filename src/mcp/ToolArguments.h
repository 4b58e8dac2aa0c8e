#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace hueshelf::mcp {

// A tool's arguments as the model sent them, read with the first mistake kept as a sentence
// that tells the model how to do better. Once a mistake is found, every later read answers
// nothing, so a tool reads all it needs and then asks once whether anything went wrong.
// A null counts as a missing argument: models often send null for an optional one.
class ToolArguments {
public:
    ToolArguments(QString toolName, QJsonObject arguments);

    // Refuses any argument that the tool doesn't take: a misspelt name would otherwise be
    // dropped without a word, and the tool would answer a question that wasn't asked.
    void allowOnly(const QStringList& names);

    std::optional<QString> optionalText(const QString& name);
    std::optional<QString> requiredText(const QString& name);
    std::optional<QJsonArray> optionalList(const QString& name);
    std::optional<QJsonArray> requiredList(const QString& name);

    bool has(const QString& name) const;
    const QString& toolName() const { return m_toolName; }

    // Records a mistake found by the tool itself (the first one wins).
    void fail(const QString& sentence);
    bool failed() const { return m_problem.has_value(); }
    const QString& problem() const { return *m_problem; }

private:
    std::optional<QJsonValue> present(const QString& name, bool required);

    QString m_toolName;
    QJsonObject m_arguments;
    std::optional<QString> m_problem;
};

// How a sentence names a JSON value's type: "a number", "an object", ...
QString jsonTypeText(const QJsonValue& value);

} // namespace hueshelf::mcp
