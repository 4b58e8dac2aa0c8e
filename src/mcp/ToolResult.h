#pragma once

#include <QJsonObject>
#include <QString>

namespace hueshelf::mcp {

// What one tool call ends in: the structured answer, or a sentence for the model about what
// went wrong with its arguments. Both reach the model as a result, never as a protocol error,
// so it can read the sentence and try again.
class ToolResult {
public:
    static ToolResult success(QJsonObject structured);
    static ToolResult failure(QString sentence);

    bool isError() const { return m_isError; }
    const QJsonObject& structured() const { return m_structured; }
    const QString& sentence() const { return m_sentence; }

    // The result of tools/call: the structured content and the same JSON as text, or the
    // sentence as text with isError.
    QJsonObject toJson() const;

private:
    bool m_isError = false;
    QJsonObject m_structured;
    QString m_sentence;
};

} // namespace hueshelf::mcp
