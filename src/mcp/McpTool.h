#pragma once

#include "mcp/ToolArguments.h"
#include "mcp/ToolResult.h"

#include <QJsonObject>
#include <QString>

#include <functional>

namespace hueshelf::mcp {

// One entry of the tool table: what tools/list shows the model, and the call behind it.
struct McpTool {
    QString name; // ^[a-z0-9_]{1,64}$
    QString title;
    QString description;
    QJsonObject inputSchema;
    QJsonObject outputSchema;
    // Every tool but one only reads; the one that writes adds a palette and never removes
    // or changes anything.
    bool isReadOnly = true;
    std::function<ToolResult(ToolArguments&)> call;

    // The entry of tools/list, with the annotations that tell a client what a call may change.
    QJsonObject toJson() const;
};

} // namespace hueshelf::mcp
