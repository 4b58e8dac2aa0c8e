#pragma once

#include "aitools/AITool.h"

#include <QList>
#include <QString>

namespace hueshelf::AIToolRegistry {

// Which machine's tool table to build. Both tables exist on every build so either can be
// checked anywhere; production uses the one of the platform it was built for.
enum class ToolPlatform { macOS, Linux };

constexpr ToolPlatform currentPlatform() {
#if defined(Q_OS_MACOS)
    return ToolPlatform::macOS;
#else
    return ToolPlatform::Linux;
#endif
}

// One checkbox of the tools panel: usually one tool, two for the shared "Claude" row.
struct DisplayRow {
    QString id;
    QString name;
    QList<AITool> tools;

    bool operator==(const DisplayRow&) const = default;
};

// The eight tools, in table order: the order of the panel's rows, of healing and of
// disconnecting. `home` is the user's home directory, `applications` the applications folder
// ("/Applications" in production; the Linux table has no use for it). `systemRoot` is prepended
// to the absolute markers outside the home (such as "/usr/local/bin/claude"), so that a whole
// machine can be laid out in a scratch directory; production passes "/". Built anew each call.
QList<AITool> allTools(const QString& home, const QString& applications,
                       ToolPlatform platform = currentPlatform(),
                       const QString& systemRoot = QStringLiteral("/"));

// The table of each platform, as `allTools` returns it.
QList<AITool> macOSTools(const QString& home, const QString& applications,
                         const QString& systemRoot);
QList<AITool> linuxTools(const QString& home, const QString& systemRoot);

// True if any marker exists. Symbolic links are followed, so a dangling link counts as absent;
// files and directories count alike. A tool without markers is never detected.
bool isDetected(const AITool& tool);

// Rows for the detected tools among `tools`, in their order. The two Claude tools share one row
// "Claude" placed where the first detected of them stands, holding those of them detected.
QList<DisplayRow> displayRows(const QList<AITool>& tools);

} // namespace hueshelf::AIToolRegistry
