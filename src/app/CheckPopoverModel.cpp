#include "app/CheckPopoverModel.h"

#include "app/CheckPopoverTexts.h"
#include "app/CheckRowBuilder.h"
#include "model/ColorStorage.h"
#include "util/Clock.h"

#include <QSet>

#include <algorithm>

namespace hueshelf::app {

namespace {

// A double click on "Fix" must not land on "Undo" in the same place, even where the system's
// double-click interval is very short.
constexpr double kShortestUndoGuardSeconds = 0.35;
// The redraw comes just after the guard, so the button is surely usable when it is drawn.
constexpr double kSettleMarginSeconds = 0.05;

// Only what the check reads: ids, names (in the sentences), codes and locks.
bool sameForCheck(const QList<ColorItem>& a, const QList<ColorItem>& b) {
    return std::equal(
        a.cbegin(), a.cend(), b.cbegin(), b.cend(), [](const ColorItem& x, const ColorItem& y) {
            return x.id == y.id && x.name == y.name && x.hex == y.hex && x.isLocked == y.isLocked;
        });
}

qsizetype indexOfColor(const QList<ColorItem>& colors, const QUuid& id) {
    for (qsizetype i = 0; i < colors.size(); ++i) {
        if (colors.at(i).id == id) {
            return i;
        }
    }
    return -1;
}

QStringList idsOf(const std::vector<PaletteCheck::Issue>& issues) {
    QStringList ids;
    ids.reserve(static_cast<qsizetype>(issues.size()));
    for (const PaletteCheck::Issue& issue : issues) {
        ids.append(issue.id);
    }
    return ids;
}

} // namespace

CheckPopoverModel::CheckPopoverModel(ColorStorage& storage, Clock& clock, Scheduler& scheduler,
                                     double doubleClickIntervalSeconds, QObject* parent)
    : QObject(parent), m_storage(storage), m_clock(clock), m_scheduler(scheduler),
      m_doubleClickInterval(doubleClickIntervalSeconds) {
    connect(&m_storage, &ColorStorage::templatesChanged, this, &CheckPopoverModel::refresh);
    connect(&m_storage, &ColorStorage::activeTemplateIdChanged, this, &CheckPopoverModel::refresh);
}

CheckPopoverModel::~CheckPopoverModel() {
    for (TaskHandle& task : m_settleTasks) {
        task.cancel();
    }
}

// --- Lifecycle -------------------------------------------------------------------------------

void CheckPopoverModel::open() {
    close();
    m_isOpen = true;
    recomputeIssues(activeColors());
    m_rowOrder = m_issueIds;
    Q_EMIT changed();
}

void CheckPopoverModel::close() {
    for (TaskHandle& task : m_settleTasks) {
        task.cancel();
    }
    m_settleTasks.clear();
    m_isOpen = false;
    m_showingDetails = false;
    m_goingForward = false;
    m_gridOpen = false;
    m_fixes.clear();
    m_rowOrder.clear();
    m_lastRoleRenames.reset();
    m_checkedColors.reset();
    m_issues.clear();
    m_issueIds.clear();
}

// --- Pages -----------------------------------------------------------------------------------

void CheckPopoverModel::showDetails() {
    m_goingForward = true;
    m_showingDetails = true;
    Q_EMIT changed();
}

void CheckPopoverModel::showVerdict() {
    m_goingForward = false;
    m_showingDetails = false;
    Q_EMIT changed();
}

void CheckPopoverModel::setGridOpen(bool open) {
    if (m_gridOpen == open) {
        return;
    }
    m_gridOpen = open;
    Q_EMIT changed();
}

CheckVerdictPage CheckPopoverModel::verdictPage() const {
    CheckVerdictPage page;
    const std::optional<ColorTemplate> palette = activePalette();
    if (!palette || palette->colors.size() < 2) {
        page.state = CheckVerdictPage::State::addColorsFirst;
        page.message = CheckPopoverTexts::addColorsFirst;
        return page;
    }
    if (m_issues.empty() && m_fixes.isEmpty()) {
        page.state = CheckVerdictPage::State::looksGood;
        page.message = CheckPopoverTexts::looksGood;
        return page;
    }
    page.state = CheckVerdictPage::State::issues;
    page.title = PaletteCheck::fixCountText(static_cast<int>(m_issues.size()));
    const PaletteCheck::VerdictRows split = PaletteCheck::splitVerdictRows(m_rowOrder, fixedIds());
    page.rows = rowsFor(split.shown, false);
    page.moreRowsText = PaletteCheck::moreRowsText(split.hiddenCount);
    page.detailsButton = CheckPopoverTexts::detailsButton;
    return page;
}

CheckDetailsPage CheckPopoverModel::detailsPage() const {
    const std::optional<ColorTemplate> palette = activePalette();
    const QList<ColorItem> colors = palette ? palette->colors : QList<ColorItem>();

    CheckDetailsPage page;
    page.backButton = CheckPopoverTexts::backButton;
    page.title = CheckPopoverTexts::detailsTitle;
    page.countText = PaletteCheck::fixCountText(static_cast<int>(m_issues.size()));
    page.rows = rowsFor(m_rowOrder, true);

    page.everyPairTitle = CheckPopoverTexts::everyPairTitle;
    page.grid = PaletteCheck::pairGrid(colors);
    page.gridOpen = m_gridOpen;
    if (!page.grid.isEmpty()) {
        page.gridToggle = m_gridOpen ? CheckPopoverTexts::hideGrid : CheckPopoverTexts::showGrid;
    }

    page.othersSeeTitle = CheckPopoverTexts::othersSeeTitle;
    QSet<QUuid> lookAlikeColors;
    for (const PaletteCheck::Issue& issue : m_issues) {
        if (PaletteCheck::isLookAlike(issue.kind)) {
            lookAlikeColors.insert(issue.color.id);
            lookAlikeColors.insert(issue.other.id);
        }
    }
    for (const ColorVisionSimulation::SimulationType type :
         ColorVisionSimulation::allSimulationTypes()) {
        VisionStrip strip;
        strip.type = type;
        strip.label = ColorVisionSimulation::detailsLabel(type);
        strip.accessibleText = ColorVisionSimulation::detailsAccessibleText(type);
        for (const ColorItem& color : colors) {
            strip.swatches.append({color.id, ColorVisionSimulation::simulated(color.hex, type),
                                   lookAlikeColors.contains(color.id)});
        }
        page.strips.append(std::move(strip));
    }

    page.worthKnowing = worthKnowing(palette);
    return page;
}

WorthKnowingSection
CheckPopoverModel::worthKnowing(const std::optional<ColorTemplate>& palette) const {
    WorthKnowingSection section;
    section.title = CheckPopoverTexts::worthKnowingTitle;
    if (palette) {
        section.lines = PaletteCheck::worthKnowingLines(palette->colors);
    }
    if (m_lastRoleRenames) {
        // The result of the last renaming, with its undo, stands where the action was.
        section.renamed =
            RoleRenameNotice{CheckPopoverTexts::settledIcon, roleRenameSummary(*m_lastRoleRenames),
                             CheckPopoverTexts::undoButton};
    } else if (palette && PaletteCheck::offersRoleNaming(palette->colors, palette->isLocked)) {
        section.offersRoleNaming = true;
        section.roleNamingButton = CheckPopoverTexts::nameByRoleButton;
        section.roleNamingHelp = CheckPopoverTexts::nameByRoleHelp;
    }
    if (section.lines.isEmpty() && !section.offersRoleNaming && !section.renamed) {
        section.nothingToAdd = CheckPopoverTexts::nothingToAdd;
    }
    return section;
}

QList<CheckRow> CheckPopoverModel::rowsFor(const QStringList& ids, bool onDetailsPage) const {
    const std::optional<ColorTemplate> palette = activePalette();
    const QList<ColorItem> colors = palette ? palette->colors : QList<ColorItem>();
    const bool locked = palette && palette->isLocked;
    QList<CheckRow> rows;
    for (const QString& id : ids) {
        const auto record = m_fixes.constFind(id);
        if (record != m_fixes.constEnd()) {
            rows.append(CheckRowBuilder::settledRow(*record, colors, isUndoEnabled(id)));
        } else if (const PaletteCheck::Issue* issue = currentIssue(id)) {
            rows.append(CheckRowBuilder::openRow(*issue, onDetailsPage, locked));
        }
    }
    return rows;
}

// --- State -----------------------------------------------------------------------------------

double CheckPopoverModel::undoGuardSeconds() const {
    return std::max(m_doubleClickInterval, kShortestUndoGuardSeconds);
}

bool CheckPopoverModel::isUndoEnabled(const QString& issueId) const {
    const auto record = m_fixes.constFind(issueId);
    if (record == m_fixes.constEnd()) {
        return false;
    }
    return m_clock.nowMs() - record->at >= undoGuardSeconds() * 1000.0;
}

std::optional<ColorTemplate> CheckPopoverModel::activePalette() const {
    return m_storage.activeTemplate();
}

QList<ColorItem> CheckPopoverModel::activeColors() const {
    const std::optional<ColorTemplate> palette = activePalette();
    return palette ? palette->colors : QList<ColorItem>();
}

const PaletteCheck::Issue* CheckPopoverModel::currentIssue(const QString& issueId) const {
    for (const PaletteCheck::Issue& issue : m_issues) {
        if (issue.id == issueId) {
            return &issue;
        }
    }
    return nullptr;
}

void CheckPopoverModel::refresh() {
    if (!m_isOpen) {
        return;
    }
    const QList<ColorItem> colors = activeColors();
    if (!m_checkedColors || !sameForCheck(*m_checkedColors, colors)) {
        recomputeIssues(colors);
    }
    // Also for a change that left the issues alone: a lock or a name is drawn all the same.
    Q_EMIT changed();
}

void CheckPopoverModel::recomputeIssues(const QList<ColorItem>& colors) {
    m_checkedColors = colors;
    m_issues = PaletteCheck::issuesWithMoves(colors);
    const QStringList ids = idsOf(m_issues);
    if (ids != m_issueIds) {
        m_issueIds = ids;
        m_rowOrder = PaletteCheck::mergedRowOrder(m_rowOrder, m_issueIds, fixedIds());
    }
}

void CheckPopoverModel::setActiveColors(const QList<ColorItem>& colors) {
    m_storage.editTemplate(m_storage.activeTemplateId(),
                           [&colors](ColorTemplate& palette) { palette.colors = colors; });
}

// --- Actions ---------------------------------------------------------------------------------

bool CheckPopoverModel::fix(const QString& issueId) {
    const std::optional<ColorTemplate> palette = activePalette();
    if (!m_isOpen || !palette || palette->isLocked || m_fixes.contains(issueId)) {
        return false;
    }
    const PaletteCheck::Issue* current = currentIssue(issueId);
    if (!current) {
        return false;
    }
    const PaletteCheck::Issue issue = *current;
    const QList<ColorItem>& before = palette->colors;
    const QList<ColorItem> after = PaletteCheck::applyFix(issue, before);
    const QUuid movedId = issue.move ? issue.move->colorID : issue.color.id;
    const qsizetype beforeIndex = indexOfColor(before, movedId);
    const qsizetype afterIndex = indexOfColor(after, movedId);
    if (beforeIndex < 0 || afterIndex < 0 ||
        before.at(beforeIndex).hex == after.at(afterIndex).hex) {
        return false;
    }

    // The fixed issue counts as fixed already, so that its row keeps its place.
    std::vector<PaletteCheck::Issue> afterIssues = PaletteCheck::issuesWithMoves(after);
    const QStringList afterIds = idsOf(afterIssues);
    QStringList fixed = fixedIds();
    fixed.append(issueId);
    m_rowOrder = PaletteCheck::mergedRowOrder(m_rowOrder, afterIds, fixed);

    FixRecord record;
    record.issue = issue;
    record.colorID = movedId;
    record.beforeHex = before.at(beforeIndex).hex;
    record.afterHex = after.at(afterIndex).hex;
    record.cost = PaletteCheck::fixCost(issue, before, after);
    record.at = m_clock.nowMs();

    m_checkedColors = after;
    m_issues = std::move(afterIssues);
    m_issueIds = afterIds;
    m_fixes.insert(issueId, record);
    setActiveColors(after);
    m_storage.saveTemplates();

    m_settleTasks.erase(std::remove_if(m_settleTasks.begin(), m_settleTasks.end(),
                                       [](const TaskHandle& task) { return !task.isActive(); }),
                        m_settleTasks.end());
    m_settleTasks.append(
        m_scheduler.scheduleAfter(undoGuardSeconds() + kSettleMarginSeconds, [this] {
            ++m_settleTick;
            Q_EMIT changed();
        }));

    Q_EMIT paletteChangeAnimated();
    Q_EMIT changed();
    return true;
}

bool CheckPopoverModel::undoFix(const QString& issueId) {
    if (!m_isOpen || !isUndoEnabled(issueId)) {
        return false;
    }
    const std::optional<ColorTemplate> palette = activePalette();
    if (!palette) {
        return false;
    }
    const FixRecord record = m_fixes.value(issueId);
    QList<ColorItem> colors = palette->colors;
    const qsizetype index = indexOfColor(colors, record.colorID);
    if (index < 0) {
        return false;
    }
    // Whatever the colour became since, undo puts back what the fix found.
    colors[index].hex = record.beforeHex;
    m_fixes.remove(issueId);
    setActiveColors(colors);
    m_storage.saveTemplates();
    Q_EMIT paletteChangeAnimated();
    Q_EMIT changed();
    return true;
}

bool CheckPopoverModel::nameByRole() {
    const std::optional<ColorTemplate> palette = activePalette();
    if (!m_isOpen || !palette || palette->isLocked) {
        return false;
    }
    const QList<ColorItem>& before = palette->colors;
    const QList<ColorItem> after = PaletteCheck::namedByRole(before);
    QList<RoleRename> renames;
    for (qsizetype i = 0; i < before.size() && i < after.size(); ++i) {
        if (before.at(i).name != after.at(i).name) {
            renames.append(
                {before.at(i).id, before.at(i).name, after.at(i).name, before.at(i).isAutoNamed});
        }
    }
    if (renames.isEmpty()) {
        return false;
    }
    m_lastRoleRenames = renames;
    setActiveColors(after);
    m_storage.saveTemplates();
    Q_EMIT changed();
    return true;
}

bool CheckPopoverModel::undoRoleNames() {
    if (!m_isOpen || !m_lastRoleRenames) {
        return false;
    }
    const QList<RoleRename> renames = *m_lastRoleRenames;
    m_lastRoleRenames.reset();
    bool restored = false;
    if (const std::optional<ColorTemplate> palette = activePalette()) {
        QList<ColorItem> colors = palette->colors;
        for (const RoleRename& rename : renames) {
            const qsizetype index = indexOfColor(colors, rename.id);
            if (index < 0) {
                continue;
            }
            colors[index].name = rename.from;
            colors[index].isAutoNamed = rename.wasAutoNamed;
            restored = true;
        }
        setActiveColors(colors);
    }
    m_storage.saveTemplates();
    Q_EMIT changed();
    return restored;
}

} // namespace hueshelf::app
