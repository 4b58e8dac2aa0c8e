#include "mcp/McpTool.h"

using namespace Qt::StringLiterals;

namespace hueshelf::mcp {

QJsonObject McpTool::toJson() const {
    QJsonObject annotations{
        {u"title"_s, title},
        {u"readOnlyHint"_s, isReadOnly},
        {u"openWorldHint"_s, false},
    };
    // A write that only ever adds is not destructive, and each call adds one more palette.
    if (!isReadOnly) {
        annotations.insert(u"destructiveHint"_s, false);
        annotations.insert(u"idempotentHint"_s, false);
    }
    return QJsonObject{
        {u"name"_s, name},
        {u"title"_s, title},
        {u"description"_s, description},
        {u"inputSchema"_s, inputSchema},
        {u"outputSchema"_s, outputSchema},
        {u"annotations"_s, annotations},
    };
}

} // namespace hueshelf::mcp
