#include "mcp/ToolResult.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace hueshelf::mcp {

namespace {

QJsonArray textContent(const QString& text) {
    return QJsonArray{QJsonObject{{u"type"_s, u"text"_s}, {u"text"_s, text}}};
}

} // namespace

ToolResult ToolResult::success(QJsonObject structured) {
    ToolResult result;
    result.m_structured = std::move(structured);
    return result;
}

ToolResult ToolResult::failure(QString sentence) {
    ToolResult result;
    result.m_isError = true;
    result.m_sentence = std::move(sentence);
    return result;
}

QJsonObject ToolResult::toJson() const {
    if (m_isError)
        return QJsonObject{{u"content"_s, textContent(m_sentence)}, {u"isError"_s, true}};
    // Clients that don't read structured content still get every fact, as the same JSON.
    const QString text =
        QString::fromUtf8(QJsonDocument(m_structured).toJson(QJsonDocument::Compact));
    return QJsonObject{{u"content"_s, textContent(text)},
                       {u"structuredContent"_s, m_structured},
                       {u"isError"_s, false}};
}

} // namespace hueshelf::mcp
