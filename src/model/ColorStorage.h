#pragma once

#include "model/CloudSyncStatus.h"
#include "model/ColorTemplate.h"
#include "model/LoadedTemplates.h"
#include "model/ShadowTemplateState.h"
#include "model/TemplateEncodingCache.h"
#include "model/TemplateWriter.h"
#include "sync/SyncConflict.h"
#include "util/Clock.h"
#include "util/Scheduler.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QUuid>

#include <atomic>
#include <functional>
#include <optional>

namespace hueshelf {

// The one observable store of palettes. Views read it and edit through it, on the main thread;
// every edit ends in saveTemplates, which stamps what changed and hands a copy to the writer.
// Refusal words live in StoreTexts; the store itself refuses silently by leaving its state as
// it was.
class ColorStorage final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<hueshelf::ColorTemplate> templates READ templates NOTIFY templatesChanged)
    Q_PROPERTY(QUuid activeTemplateId READ activeTemplateId WRITE setActiveTemplateId NOTIFY
                   activeTemplateIdChanged)
    Q_PROPERTY(bool isEditorPopoverOpen READ isEditorPopoverOpen WRITE setEditorPopoverOpen NOTIFY
                   isEditorPopoverOpenChanged)
    Q_PROPERTY(std::optional<QUuid> colorAwaitingEdit READ colorAwaitingEdit WRITE
                   setColorAwaitingEdit NOTIFY colorAwaitingEditChanged)
    Q_PROPERTY(QList<hueshelf::SyncConflict> pendingConflicts READ pendingConflicts WRITE
                   setPendingConflicts NOTIFY pendingConflictsChanged)
    Q_PROPERTY(bool isSyncing READ isSyncing WRITE setSyncing NOTIFY isSyncingChanged)
    Q_PROPERTY(hueshelf::CloudSyncStatus cloudSyncStatus READ cloudSyncStatus WRITE
                   setCloudSyncStatus NOTIFY cloudSyncStatusChanged)

public:
    ColorStorage(Clock& clock, Scheduler& scheduler, LoadedTemplates initial,
                 QObject* parent = nullptr);
    ~ColorStorage() override;

    // Not owned. Without a writer a save ends once it has stamped.
    void setWriter(TemplateWriter* writer) { m_writer = writer; }

    // --- Observable state ------------------------------------------------------------------

    const QList<ColorTemplate>& templates() const { return m_templates; }
    // Replaces the whole list (callers' own edits, sync, reload); always notifies.
    void setTemplates(const QList<ColorTemplate>& templates);
    // Edits the palette with this id in place and notifies; false if there is none. Does not
    // save: the caller does when its edit is complete.
    bool editTemplate(const QUuid& id, const std::function<void(ColorTemplate&)>& edit);

    QUuid activeTemplateId() const { return m_activeTemplateId; }
    void setActiveTemplateId(const QUuid& id);
    // The first palette whose id is the active id, or none.
    std::optional<ColorTemplate> activeTemplate() const;

    bool isEditorPopoverOpen() const { return m_isEditorPopoverOpen; }
    void setEditorPopoverOpen(bool open);

    std::optional<QUuid> colorAwaitingEdit() const { return m_colorAwaitingEdit; }
    void setColorAwaitingEdit(const std::optional<QUuid>& colorId);

    // What the last sync could not reconcile; filled by the sync, read by nothing yet.
    const QList<SyncConflict>& pendingConflicts() const { return m_pendingConflicts; }
    void setPendingConflicts(const QList<SyncConflict>& conflicts);

    bool isSyncing() const { return m_isSyncing; }
    void setSyncing(bool syncing);

    CloudSyncStatus cloudSyncStatus() const { return m_cloudSyncStatus; }
    void setCloudSyncStatus(const CloudSyncStatus& status);

    // --- Edits -------------------------------------------------------------------------------

    // A new auto-named colour in the active palette, in front of the first group. Answers its
    // index (the bar opens its overflow for one above 5), or none in a locked or missing
    // palette. The new colour then waits in colorAwaitingEdit for its editor.
    std::optional<qsizetype> addColor();
    std::optional<qsizetype> addColor(const QString& hex);
    // The same for any palette, the active one left as it is and nothing awaiting an editor:
    // for programs beside the bar. A given name is taken as it stands; an empty one is made
    // from the code.
    std::optional<qsizetype> addColorTo(const QUuid& templateId, const QString& hex,
                                        const QString& name = {});

    // "Palette N" with three greys, made active and announced; renameRequested follows 0.3 s
    // later. Answers the new palette's id.
    QUuid addBlankTemplate();
    // A palette made elsewhere by the new-palette rule (generators, links, files): appended,
    // made active, saved. The maker announces in its own words.
    void addTemplate(const ColorTemplate& palette);
    // The generators' and the extractor's "Create palette": a fresh palette under the wanted name
    // made unique among the palette names (" 2", " 3", ...), appended, made active, saved.
    // Answers the palette as added; the caller announces it.
    ColorTemplate createTemplate(const QString& wantedName, const QList<ColorItem>& colors);

    // No guard: a locked palette can be selected. Unknown ids do nothing.
    void selectTemplate(const QUuid& id);

    // Answers whether the rename popover should close: not for a text of blanks only (nothing
    // happens), yes when a locked palette kept its name, yes after renaming.
    bool renameActiveTemplate(const QString& text);

    // The lock doesn't take part in the content hash, so this saves without stamping anything.
    void toggleActiveTemplateLock();

    // The swatch editor's lock toggle: refused (false) only in a locked palette.
    bool setColorLocked(const QUuid& colorId, bool locked);
    // The swatch editor's "Save": name, code and flag written in place, guarded by the palette
    // lock. Does not save; the editor does as it closes.
    bool updateColor(const QUuid& colorId, const QString& name, const QString& hex,
                     bool isAutoNamed);

    // Exchanges two colours of the active palette (A B C D, 0 -> 3: D B C A). Equal or
    // out-of-range indexes, a locked palette or a locked colour: nothing, and no save.
    bool moveColor(qsizetype from, qsizetype to);

    // Deleting a colour of the active palette: ask first, then confirm.
    std::optional<QString> deleteColorRefusal(const QUuid& colorId) const;
    bool deleteColor(const QUuid& colorId);

    // Deleting a palette: ask first, then confirm (which tests again, deletes, saves and
    // announces).
    std::optional<QString> deleteTemplateRefusal(const QUuid& id) const;
    bool confirmDeleteTemplate(const QUuid& id);
    // The removal alone, without a save; the active palette falls back to the first one.
    void deleteTemplate(const QUuid& id);

    // --- Saving ------------------------------------------------------------------------------

    void saveTemplates();
    void saveTemplatesWithoutStamping();
    void saveShadowState();
    int savingCount() const { return _savingCount.load(); }

    // Asks the bar for a toast (the message and a symbol name).
    void announce(const QString& message, const QString& icon);

    // --- Unobserved state --------------------------------------------------------------------

    const QMap<QUuid, double>& templateLastModified() const { return m_templateLastModified; }
    void setTemplateLastModified(const QUuid& id, double ms) { m_templateLastModified[id] = ms; }

    const QMap<QUuid, ShadowTemplateState>& shadowState() const { return m_shadowState; }
    void setShadowState(const QUuid& id, const ShadowTemplateState& state) {
        m_shadowState[id] = state;
    }
    void removeShadowState(const QUuid& id) { m_shadowState.remove(id); }

    // The list as this store and the file last agreed on, and that agreement's stamp: the base
    // of every three-way merge.
    const QList<ColorTemplate>& baselineTemplates() const { return m_baselineTemplates; }
    double baselineStamp() const { return m_baselineStamp; }
    void setBaseline(const QList<ColorTemplate>& templates, double stamp) {
        m_baselineTemplates = templates;
        m_baselineStamp = stamp;
    }
    void setBaselineStamp(double stamp) { m_baselineStamp = stamp; }

    // Hash of the palette bytes last seen in or written to the file; a file holding these
    // bytes holds nothing new.
    qint64 lastKnownDataHash() const { return m_lastKnownDataHash; }
    void setLastKnownDataHash(qint64 hash) { m_lastKnownDataHash = hash; }

Q_SIGNALS:
    void templatesChanged();
    void activeTemplateIdChanged();
    void isEditorPopoverOpenChanged();
    void colorAwaitingEditChanged();
    void pendingConflictsChanged();
    void isSyncingChanged();
    void cloudSyncStatusChanged();

    void announced(const QString& message, const QString& icon);
    // The bar opens its rename popover.
    void renameRequested();
    // deleteTemplate removed this id; sync writes its deletion record.
    void templateDeleted(const QUuid& id);
    // A stamped save reached the file (or its fallback) while no sync pass was running; the
    // cloud push hangs on this.
    void templatesWritten();

private:
    ColorTemplate* findTemplate(const QUuid& id);
    const ColorTemplate* findTemplate(const QUuid& id) const;
    ColorTemplate* activeTemplateForEdit() { return findTemplate(m_activeTemplateId); }
    void finishStampedSave(const QList<ColorTemplate>& stamped, const QString& activeTemplateId,
                           const SaveOutcome& outcome, double nowMs);
    void hand(SaveRequest request);

    Clock& m_clock;
    Scheduler& m_scheduler;
    TemplateWriter* m_writer = nullptr;

    QList<ColorTemplate> m_templates;
    QUuid m_activeTemplateId;
    bool m_isEditorPopoverOpen = false;
    std::optional<QUuid> m_colorAwaitingEdit;
    QList<SyncConflict> m_pendingConflicts;
    bool m_isSyncing = false;
    CloudSyncStatus m_cloudSyncStatus;

    QMap<QUuid, double> m_templateLastModified;
    QMap<QUuid, ShadowTemplateState> m_shadowState;
    QList<ColorTemplate> m_baselineTemplates;
    double m_baselineStamp = 0.0;
    qint64 m_lastKnownDataHash = 0;

    // Hashes and JSON of the palettes as the last saves found them; main thread only.
    TemplateEncodingCache m_encoding;

    // Saves begun and not yet finished. Shared with the writer's thread, hence atomic.
    std::atomic<int> _savingCount{0};
    TaskHandle m_renameRequest;
};

} // namespace hueshelf
