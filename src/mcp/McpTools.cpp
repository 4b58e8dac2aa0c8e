#include "mcp/McpTools.h"

#include "aitools/AIToolConnector.h"
#include "mcp/LastUsedFile.h"
#include "mcp/ToolCatalog.h"

#include <QtGlobal>

using namespace Qt::StringLiterals;

namespace hueshelf::mcp {

McpTools::McpTools(const PaletteSource& source, const AppPaths& paths, const Clock& clock,
                   std::optional<QString> clientId)
    : m_tools{ToolCatalog::getBrandColors(source), ToolCatalog::listPalettes(source),
              ToolCatalog::getPalette(source),     ToolCatalog::checkPalette(source),
              ToolCatalog::checkContrast(),        ToolCatalog::convertColor(),
              ToolCatalog::createPalette(source)},
      m_lastUsedPath(AIToolConnector::lastUsedPathFor(paths)), m_clock(clock),
      m_clientId(std::move(clientId)) {}

const McpTool* McpTools::find(const QString& name) const {
    for (const McpTool& tool : m_tools) {
        if (tool.name == name)
            return &tool;
    }
    return nullptr;
}

QJsonArray McpTools::listJson() const {
    QJsonArray list;
    for (const McpTool& tool : m_tools)
        list.append(tool.toJson());
    return list;
}

std::optional<ToolResult> McpTools::call(const QString& name, const QJsonObject& arguments) const {
    const McpTool* tool = find(name);
    if (!tool)
        return std::nullopt;
    // A failed note costs the user only the panel's "Last used" line, never the answer.
    if (m_clientId && !LastUsedFile::record(m_lastUsedPath, *m_clientId, m_clock.nowMs()))
        qWarning("hueshelf-mcp: could not write %s", qUtf8Printable(m_lastUsedPath));
    ToolArguments reader(tool->name, arguments);
    return tool->call(reader);
}

} // namespace hueshelf::mcp
