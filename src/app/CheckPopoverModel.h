#pragma once

#include "app/CheckPopoverPages.h"
#include "app/FixRecord.h"
#include "app/RoleRename.h"
#include "color/PaletteCheck.h"
#include "model/ColorTemplate.h"
#include "util/Scheduler.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace hueshelf {
class Clock;
class ColorStorage;
} // namespace hueshelf

namespace hueshelf::app {

// The check popover without its window: the issues of the active palette, the fixes made while
// it is open and their undo, the row order that keeps rows in place, the role naming, and the
// records its two pages draw. Everything here lives only while the popover is open.
class CheckPopoverModel final : public QObject {
    Q_OBJECT
public:
    // `doubleClickIntervalSeconds` is the system's; the undo guard is never shorter than 0.35 s.
    CheckPopoverModel(ColorStorage& storage, Clock& clock, Scheduler& scheduler,
                      double doubleClickIntervalSeconds, QObject* parent = nullptr);
    ~CheckPopoverModel() override;

    // --- Lifecycle -----------------------------------------------------------------------------

    // Starts afresh on the verdict page: no fixes, no renames, rows in the issues' order.
    void open();
    // Forgets everything: a fix made before can't be undone from the next popover.
    void close();
    bool isOpen() const { return m_isOpen; }

    // --- Pages ---------------------------------------------------------------------------------

    void showDetails();
    void showVerdict();
    bool showingDetails() const { return m_showingDetails; }
    // The direction of the last page transition: true towards the details.
    bool goingForward() const { return m_goingForward; }
    void setGridOpen(bool open);
    bool gridOpen() const { return m_gridOpen; }

    CheckVerdictPage verdictPage() const;
    CheckDetailsPage detailsPage() const;

    // --- State ---------------------------------------------------------------------------------

    // The active palette's current issues, with their moves.
    const std::vector<PaletteCheck::Issue>& issues() const { return m_issues; }
    const QStringList& rowOrder() const { return m_rowOrder; }
    const QMap<QString, FixRecord>& fixes() const { return m_fixes; }
    // Goes up once per fix, when its undo becomes usable; the view redraws on it.
    int settleTick() const { return m_settleTick; }
    const std::optional<QList<RoleRename>>& lastRoleRenames() const { return m_lastRoleRenames; }

    double undoGuardSeconds() const;
    bool isUndoEnabled(const QString& issueId) const;

    // --- Actions -------------------------------------------------------------------------------

    // Each answers whether it changed the palette.
    bool fix(const QString& issueId);
    // Ignored inside the undo guard.
    bool undoFix(const QString& issueId);
    bool nameByRole();
    bool undoRoleNames();

Q_SIGNALS:
    // Something the pages draw changed.
    void changed();
    // A fix or its undo changed the palette: the view animates this change, unless the system
    // asks for reduced motion.
    void paletteChangeAnimated();

private:
    std::optional<ColorTemplate> activePalette() const;
    QList<ColorItem> activeColors() const;
    // Recomputes the issues when the colours changed, and merges the row order when their ids
    // did.
    void refresh();
    void recomputeIssues(const QList<ColorItem>& colors);
    void setActiveColors(const QList<ColorItem>& colors);
    QList<CheckRow> rowsFor(const QStringList& ids, bool onDetailsPage) const;
    WorthKnowingSection worthKnowing(const std::optional<ColorTemplate>& palette) const;
    QStringList fixedIds() const { return m_fixes.keys(); }
    const PaletteCheck::Issue* currentIssue(const QString& issueId) const;

    ColorStorage& m_storage;
    Clock& m_clock;
    Scheduler& m_scheduler;
    double m_doubleClickInterval;

    bool m_isOpen = false;
    bool m_showingDetails = false;
    bool m_goingForward = false;
    bool m_gridOpen = false;
    QMap<QString, FixRecord> m_fixes;
    QStringList m_rowOrder;
    int m_settleTick = 0;
    std::optional<QList<RoleRename>> m_lastRoleRenames;
    QList<TaskHandle> m_settleTasks;

    // The colours the issues were computed for; the search is too dear to repeat for every
    // notification that leaves the colours as they were.
    std::optional<QList<ColorItem>> m_checkedColors;
    std::vector<PaletteCheck::Issue> m_issues;
    QStringList m_issueIds;
};

} // namespace hueshelf::app
