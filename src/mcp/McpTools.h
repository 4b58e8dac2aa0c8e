#pragma once

#include "mcp/McpTool.h"
#include "util/AppPaths.h"
#include "util/Clock.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace hueshelf::mcp {

class PaletteSource;

// The server's tools: the table that tools/list shows, and each call. A call is noted in the
// last-used file under the client's id when the server was started for a known client.
class McpTools {
public:
    McpTools(const PaletteSource& source, const AppPaths& paths, const Clock& clock,
             std::optional<QString> clientId);

    const std::vector<McpTool>& tools() const { return m_tools; }
    const McpTool* find(const QString& name) const;
    QJsonArray listJson() const;

    // The result of the named tool; none when there is no such tool.
    std::optional<ToolResult> call(const QString& name, const QJsonObject& arguments) const;

private:
    std::vector<McpTool> m_tools;
    QString m_lastUsedPath;
    const Clock& m_clock;
    std::optional<QString> m_clientId;
};

} // namespace hueshelf::mcp
