#pragma once

#include "model/PaletteGroups.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace hueshelf {
class ColorStorage;
} // namespace hueshelf

namespace hueshelf::app {

namespace GroupsPopoverTexts {

using namespace Qt::StringLiterals;

inline const QString lockedRefusal = u"Unlock this palette to change groups"_s;
inline const QString hint = u"Make a group, then drag colors into it."_s;
inline const QString ungroupedTitle = PaletteGroups::ungroupedTitle;
inline const QString everyColorGrouped =
    u"Every color is in a group. Drag one here to take it out."_s;
inline const QString emptyGroup = u"Drag colors here"_s;
inline const QString pendingPlaceholder = u"Name this group"_s;
inline const QString pendingHint = u"Drag a color here"_s;
inline const QString cancelPending = u"Cancel this group"_s;
inline const QString removeGroupHelp = u"Remove group \u2014 its colors move to Not in a group"_s;

// "No groups yet", "1 group", "N groups", each followed by what the bar does with them.
QString header(qsizetype groupCount);
// The line that stands in for the swatches of a run without colours.
QString emptyRunLine(qsizetype runIndex);

} // namespace GroupsPopoverTexts

// The groups popover without its window. Its runs are a copy of the active palette's groups,
// but every accepted edit writes straight through to the store and reads the runs back, so the
// copy never drifts from the palette. Only a group still waiting for its first colour lives
// here alone, in pendingName, and it is gone when the popover closes.
class GroupsPopoverModel final : public QObject {
    Q_OBJECT
public:
    // Names are cut to this many user-perceived characters, so an emoji or an accented letter
    // is never split in half.
    static constexpr int nameLimit = 40;

    explicit GroupsPopoverModel(ColorStorage& storage, QObject* parent = nullptr);

    // --- Lifecycle -----------------------------------------------------------------------------

    // Reads the runs afresh from the active palette; no group is pending.
    void open();
    void close();
    bool isOpen() const { return m_isOpen; }

    // --- State ---------------------------------------------------------------------------------

    const QList<PaletteGroups::Run>& runs() const { return m_runs; }
    qsizetype groupCount() const { return m_runs.size() - 1; }
    QString headerText() const { return GroupsPopoverTexts::header(groupCount()); }

    std::optional<qsizetype> hoveringRun() const { return m_hoveringRun; }
    void setHoveringRun(std::optional<qsizetype> run);

    // Present, possibly empty, while a new group waits for its first colour.
    const std::optional<QString>& pendingName() const { return m_pendingName; }
    // Typing into the pending row; ignored when no group is pending.
    void setPendingName(const QString& text);

    double listHeight() const { return m_listHeight; }
    void setListHeight(double height);

    // Group names may not be edited in a locked palette.
    bool canEdit() const;

    // --- Actions -------------------------------------------------------------------------------

    // Each answers whether it was taken. Refusals are announced as toasts through the store.
    bool newGroup();
    bool cancelPendingGroup();
    // A drop carries plain-text items; the first is the dragged colour's id.
    bool dropOnPending(const QStringList& payload);
    bool dropOnGroup(qsizetype runIndex, const QStringList& payload);
    bool dropOnUngrouped(const QStringList& payload);
    bool rename(qsizetype runIndex, const QString& text);
    bool removeGroup(qsizetype runIndex);

    // The first `nameLimit` grapheme clusters of a name.
    static QString cutName(const QString& text);

Q_SIGNALS:
    void changed();

private:
    // The lock guard of every editing action but a drop; false (and a toast) when locked.
    bool mayChangeGroups();
    // The colour a drop may move, or none: refused with a toast in a locked palette or for a
    // locked colour, silently for a payload that names no colour of the palette.
    std::optional<QUuid> movableColor(const QStringList& payload);
    bool dropInto(qsizetype runIndex, const QStringList& payload);
    void commit();

    ColorStorage& m_storage;
    bool m_isOpen = false;
    QList<PaletteGroups::Run> m_runs{PaletteGroups::Run{}};
    std::optional<qsizetype> m_hoveringRun;
    std::optional<QString> m_pendingName;
    double m_listHeight = 0.0;
};

} // namespace hueshelf::app
