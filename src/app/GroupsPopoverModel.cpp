#include "app/GroupsPopoverModel.h"

#include "model/ColorStorage.h"
#include "model/StoreTexts.h"
#include "util/UserCharacters.h"

namespace hueshelf::app {

using namespace Qt::StringLiterals;

namespace GroupsPopoverTexts {

QString header(qsizetype groupCount) {
    const QString count = groupCount == 0   ? u"No groups yet"_s
                          : groupCount == 1 ? u"1 group"_s
                                            : QString::number(groupCount) + u" groups"_s;
    return count + u" \u00B7 the bar draws a line where each one starts"_s;
}

QString emptyRunLine(qsizetype runIndex) {
    return runIndex == 0 ? everyColorGrouped : emptyGroup;
}

} // namespace GroupsPopoverTexts

GroupsPopoverModel::GroupsPopoverModel(ColorStorage& storage, QObject* parent)
    : QObject(parent), m_storage(storage) {}

// --- Lifecycle -------------------------------------------------------------------------------

void GroupsPopoverModel::open() {
    const std::optional<ColorTemplate> palette = m_storage.activeTemplate();
    m_runs = PaletteGroups::runs(palette ? palette->colors : QList<ColorItem>());
    m_pendingName.reset();
    m_hoveringRun.reset();
    m_isOpen = true;
    Q_EMIT changed();
}

void GroupsPopoverModel::close() {
    m_isOpen = false;
    m_pendingName.reset();
    m_hoveringRun.reset();
}

// --- State -----------------------------------------------------------------------------------

void GroupsPopoverModel::setHoveringRun(std::optional<qsizetype> run) {
    if (m_hoveringRun == run)
        return;
    m_hoveringRun = run;
    Q_EMIT changed();
}

void GroupsPopoverModel::setPendingName(const QString& text) {
    if (!m_pendingName)
        return;
    m_pendingName = text;
    Q_EMIT changed();
}

void GroupsPopoverModel::setListHeight(double height) {
    m_listHeight = height;
}

bool GroupsPopoverModel::canEdit() const {
    const std::optional<ColorTemplate> palette = m_storage.activeTemplate();
    return !palette || !palette->isLocked;
}

QString GroupsPopoverModel::cutName(const QString& text) {
    return UserCharacters::first(text, nameLimit);
}

// --- Actions ---------------------------------------------------------------------------------

bool GroupsPopoverModel::newGroup() {
    if (!mayChangeGroups())
        return false;
    m_pendingName = QString();
    Q_EMIT changed();
    return true;
}

bool GroupsPopoverModel::cancelPendingGroup() {
    if (!mayChangeGroups() || !m_pendingName)
        return false;
    m_pendingName.reset();
    Q_EMIT changed();
    return true;
}

bool GroupsPopoverModel::dropOnPending(const QStringList& payload) {
    m_hoveringRun.reset();
    if (!m_pendingName)
        return false; // there is no pending row to drop on
    const std::optional<QUuid> id = movableColor(payload);
    if (!id)
        return false;
    // The pending field has the same limit as a rename, so a group never starts longer than
    // it could be renamed to.
    m_runs.append(PaletteGroups::Run{cutName(m_pendingName->trimmed()), {}});
    m_runs = PaletteGroups::movedColor(*id, m_runs.size() - 1, std::nullopt, m_runs);
    m_pendingName.reset();
    commit();
    return true;
}

bool GroupsPopoverModel::dropOnGroup(qsizetype runIndex, const QStringList& payload) {
    return dropInto(runIndex, payload);
}

bool GroupsPopoverModel::dropOnUngrouped(const QStringList& payload) {
    return dropInto(0, payload);
}

bool GroupsPopoverModel::rename(qsizetype runIndex, const QString& text) {
    if (!mayChangeGroups() || runIndex < 0 || runIndex >= m_runs.size())
        return false;
    m_runs[runIndex].name = cutName(text);
    commit();
    return true;
}

bool GroupsPopoverModel::removeGroup(qsizetype runIndex) {
    if (!mayChangeGroups())
        return false;
    if (runIndex < 1 || runIndex >= m_runs.size())
        return false; // run 0 stays, and there is nothing else to remove
    m_runs = PaletteGroups::removeGroup(runIndex, m_runs);
    commit();
    return true;
}

// --- Private ---------------------------------------------------------------------------------

bool GroupsPopoverModel::mayChangeGroups() {
    if (canEdit())
        return true;
    m_storage.announce(GroupsPopoverTexts::lockedRefusal, StoreTexts::refusalIcon);
    return false;
}

std::optional<QUuid> GroupsPopoverModel::movableColor(const QStringList& payload) {
    const std::optional<ColorTemplate> palette = m_storage.activeTemplate();
    if (!palette)
        return std::nullopt;
    // A drop is a move, so a locked palette refuses it in the words of every other move.
    if (palette->isLocked) {
        m_storage.announce(StoreTexts::moveColorsRefusal, StoreTexts::refusalIcon);
        return std::nullopt;
    }
    if (payload.isEmpty())
        return std::nullopt;
    const QUuid id = QUuid::fromString(payload.constFirst());
    if (id.isNull())
        return std::nullopt;
    for (const ColorItem& color : palette->colors) {
        if (color.id != id)
            continue;
        if (color.isLocked) {
            m_storage.announce(StoreTexts::moveLockedColorRefusal, StoreTexts::refusalIcon);
            return std::nullopt;
        }
        return id;
    }
    return std::nullopt; // not a colour of this palette: nothing to move
}

bool GroupsPopoverModel::dropInto(qsizetype runIndex, const QStringList& payload) {
    m_hoveringRun.reset();
    const std::optional<QUuid> id = movableColor(payload);
    if (!id)
        return false;
    // A run index out of range leaves the colour in no run, and the commit returns it to the
    // end of the ungrouped colours: nothing is lost.
    m_runs = PaletteGroups::movedColor(*id, runIndex, std::nullopt, m_runs);
    commit();
    return true;
}

void GroupsPopoverModel::commit() {
    const std::optional<ColorTemplate> palette = m_storage.activeTemplate();
    if (!palette || palette->isLocked)
        return;
    QList<ColorItem> written;
    m_storage.editTemplate(palette->id, [this, &written](ColorTemplate& edited) {
        edited.colors = PaletteGroups::applied(m_runs, edited.colors);
        written = edited.colors;
    });
    m_storage.saveTemplates();
    // Read back, so emptied groups are gone and a colour that fell out shows in run 0; a name
    // on run 0 comes back as a group of its own.
    m_runs = PaletteGroups::runs(written);
    Q_EMIT changed();
}

} // namespace hueshelf::app
