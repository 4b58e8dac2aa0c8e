#include "aitools/AIToolRegistry.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace hueshelf::AIToolRegistry {

namespace {

bool isInClaudeSet(const AITool& tool) {
    return tool.id == u"claude-code" || tool.id == u"claude-desktop";
}

} // namespace

bool isDetected(const AITool& tool) {
    // QFileInfo::exists follows links: a link to nothing is no installation.
    return std::any_of(tool.markerPaths.cbegin(), tool.markerPaths.cend(),
                       [](const QString& marker) { return QFileInfo::exists(marker); });
}

QList<DisplayRow> displayRows(const QList<AITool>& tools) {
    QList<AITool> detected;
    for (const AITool& tool : tools) {
        if (isDetected(tool))
            detected.append(tool);
    }

    QList<DisplayRow> rows;
    bool claudeRowPlaced = false;
    for (const AITool& tool : detected) {
        if (!isInClaudeSet(tool)) {
            rows.append(DisplayRow{tool.id, tool.name, {tool}});
            continue;
        }
        if (claudeRowPlaced)
            continue;
        DisplayRow claude{u"claude"_s, u"Claude"_s, {}};
        std::copy_if(detected.cbegin(), detected.cend(), std::back_inserter(claude.tools),
                     isInClaudeSet);
        rows.append(claude);
        claudeRowPlaced = true;
    }
    return rows;
}

} // namespace hueshelf::AIToolRegistry
