#include "aitools/AIToolConnector.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace hueshelf {

bool AIToolConnector::isUnstablePath(const QString& path, AIToolRegistry::ToolPlatform platform) {
    // A mounted disk image, the trash, the system's relocation of quarantined applications,
    // temporary folders.
    static const QStringList macOSPlaces{u"/Volumes/"_s, u"/.Trash/"_s, u"/AppTranslocation/"_s,
                                         u"/private/var/folders/"_s};
    // Temporary folders, the mount of a running AppImage, the desktop trash.
    static const QStringList linuxPlaces{u"/tmp/"_s, u"/tmp/.mount_"_s, u"/.local/share/Trash/"_s};
    const auto inPath = [&path](const QString& place) { return path.contains(place); };
    if (std::any_of(macOSPlaces.cbegin(), macOSPlaces.cend(), inPath))
        return true;
    return platform == AIToolRegistry::ToolPlatform::Linux &&
           std::any_of(linuxPlaces.cbegin(), linuxPlaces.cend(), inPath);
}

HealResult AIToolConnector::healEntry(const AITool& tool) const {
    if (!isConfigured(tool))
        return HealResult::notConfigured();
    const std::optional<QString> current = configuredCommand(tool);
    if (current == binaryPath)
        return HealResult::upToDate();
    if (isUnstablePath(binaryPath))
        return HealResult::leftAlone();

    // `claude mcp add` refuses a name that is taken; whatever the removal says, adding decides.
    if (std::holds_alternative<AITool::ClaudeCLIConfig>(tool.config))
        static_cast<void>(removeEntry(tool));
    if (connect(tool).has_value())
        return HealResult::needsAttention(tool.name + u"'s settings file couldn't be updated."_s);

    // Only what reads back counts, not a write that seemed to go well.
    if (configuredCommand(tool) == binaryPath)
        return HealResult::repaired(current);
    return HealResult::needsAttention(tool.name +
                                      u" still points at a different copy of HueShelf."_s);
}

QMap<QString, QString> AIToolConnector::healAll(const QList<AITool>& tools) const {
    QMap<QString, QString> attention;
    for (const AITool& tool : tools) {
        const HealResult result = healEntry(tool);
        if (result.kind == HealResult::Kind::needsAttention)
            attention.insert(tool.id, result.message);
    }
    return attention;
}

AIToolConnector::DisconnectReport AIToolConnector::disconnectAll(const QList<AITool>& tools) const {
    DisconnectReport report;
    for (const AITool& tool : tools) {
        if (!isConfigured(tool))
            continue;
        const AIToolFailure failure = removeEntry(tool);
        (failure ? report.failed : report.removed).append(tool.name);
    }
    return report;
}

} // namespace hueshelf
