#include "model/ColorStorage.h"

#include "color/ColorUtils.h"
#include "model/PreferencesFile.h"
#include "model/StoreTexts.h"
#include "model/TemplateJson.h"
#include "model/TemplateNaming.h"

#include <QPointer>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {

QStringList colorNames(const ColorTemplate& palette) {
    QStringList names;
    names.reserve(palette.colors.size());
    for (const ColorItem& color : palette.colors)
        names.append(color.name);
    return names;
}

qsizetype indexOfColor(const ColorTemplate& palette, const QUuid& colorId) {
    for (qsizetype i = 0; i < palette.colors.size(); ++i) {
        if (palette.colors.at(i).id == colorId)
            return i;
    }
    return -1;
}

// A written list counts as different from the stamped one only by its ids or its hashes: the
// narrow record equality would miss a lock or a group that another process changed.
bool differsByIdsOrHashes(const QList<ColorTemplate>& a, const QList<ColorTemplate>& b) {
    if (a.size() != b.size())
        return true;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (a.at(i).id != b.at(i).id || a.at(i).contentHash != b.at(i).contentHash)
            return true;
    }
    return false;
}

} // namespace

ColorStorage::ColorStorage(Clock& clock, Scheduler& scheduler, LoadedTemplates initial,
                           QObject* parent)
    : QObject(parent), m_clock(clock), m_scheduler(scheduler),
      m_templates(std::move(initial.templates)), m_activeTemplateId(initial.activeTemplateId),
      m_shadowState(std::move(initial.shadowState)), m_baselineTemplates(m_templates),
      m_baselineStamp(initial.baselineStamp), m_lastKnownDataHash(initial.dataHash) {
    const double startedAt = m_clock.nowMs();
    for (const ColorTemplate& palette : std::as_const(m_templates))
        m_templateLastModified.insert(palette.id, startedAt);
}

ColorStorage::~ColorStorage() {
    m_renameRequest.cancel();
}

// --- Observable state ----------------------------------------------------------------------

void ColorStorage::setTemplates(const QList<ColorTemplate>& templates) {
    m_templates = templates;
    Q_EMIT templatesChanged();
}

bool ColorStorage::editTemplate(const QUuid& id, const std::function<void(ColorTemplate&)>& edit) {
    ColorTemplate* palette = findTemplate(id);
    if (!palette)
        return false;
    edit(*palette);
    Q_EMIT templatesChanged();
    return true;
}

void ColorStorage::setActiveTemplateId(const QUuid& id) {
    if (m_activeTemplateId == id)
        return;
    m_activeTemplateId = id;
    Q_EMIT activeTemplateIdChanged();
}

std::optional<ColorTemplate> ColorStorage::activeTemplate() const {
    if (const ColorTemplate* palette = findTemplate(m_activeTemplateId))
        return *palette;
    return std::nullopt;
}

void ColorStorage::setEditorPopoverOpen(bool open) {
    if (m_isEditorPopoverOpen == open)
        return;
    m_isEditorPopoverOpen = open;
    Q_EMIT isEditorPopoverOpenChanged();
}

void ColorStorage::setColorAwaitingEdit(const std::optional<QUuid>& colorId) {
    if (m_colorAwaitingEdit == colorId)
        return;
    m_colorAwaitingEdit = colorId;
    Q_EMIT colorAwaitingEditChanged();
}

void ColorStorage::setPendingConflicts(const QList<SyncConflict>& conflicts) {
    m_pendingConflicts = conflicts;
    Q_EMIT pendingConflictsChanged();
}

void ColorStorage::setSyncing(bool syncing) {
    if (m_isSyncing == syncing)
        return;
    m_isSyncing = syncing;
    Q_EMIT isSyncingChanged();
}

void ColorStorage::setCloudSyncStatus(const CloudSyncStatus& status) {
    if (m_cloudSyncStatus == status)
        return;
    m_cloudSyncStatus = status;
    Q_EMIT cloudSyncStatusChanged();
}

// --- Edits ---------------------------------------------------------------------------------

std::optional<qsizetype> ColorStorage::addColor() {
    return addColor(u"#F5F5F5"_s);
}

std::optional<qsizetype> ColorStorage::addColor(const QString& hex) {
    const std::optional<qsizetype> index = addColorTo(m_activeTemplateId, hex);
    if (index)
        setColorAwaitingEdit(activeTemplate()->colors.at(*index).id);
    return index;
}

std::optional<qsizetype> ColorStorage::addColorTo(const QUuid& templateId, const QString& hex,
                                                  const QString& name) {
    ColorTemplate* palette = findTemplate(templateId);
    if (!palette || palette->isLocked)
        return std::nullopt;
    const QString code = ColorUtils::canonicalHex(hex);
    const ColorItem color = ColorItem::make(
        name.isEmpty() ? ColorUtils::uniqueName(ColorUtils::colorName(code), colorNames(*palette))
                       : name,
        code, name.isEmpty());

    // A new colour joins the ungrouped ones, in front of every group.
    qsizetype index = palette->colors.size();
    for (qsizetype i = 0; i < palette->colors.size(); ++i) {
        if (palette->colors.at(i).dividerBefore) {
            index = i;
            break;
        }
    }
    palette->colors.insert(index, color);
    Q_EMIT templatesChanged();
    saveTemplates();
    return index;
}

QUuid ColorStorage::addBlankTemplate() {
    QList<ColorItem> colors;
    QStringList madeNames;
    for (const QString& code : {u"#F5F5F5"_s, u"#E5E5E5"_s, u"#D4D4D4"_s}) {
        const QString colorName = ColorUtils::uniqueName(ColorUtils::colorName(code), madeNames);
        madeNames.append(colorName);
        colors.append(ColorItem::make(colorName, code, true));
    }

    const ColorTemplate palette =
        createTemplate(TemplateNaming::blankTemplateName(m_templates.size()), colors);
    announce(StoreTexts::createdAnnouncement(palette.name), StoreTexts::createdIcon);

    // Only the latest blank palette asks to be named.
    m_renameRequest.cancel();
    m_renameRequest = m_scheduler.scheduleAfter(0.3, [this] { Q_EMIT renameRequested(); });
    return palette.id;
}

void ColorStorage::addTemplate(const ColorTemplate& palette) {
    m_templates.append(palette);
    Q_EMIT templatesChanged();
    setActiveTemplateId(palette.id);
    saveTemplates();
}

ColorTemplate ColorStorage::createTemplate(const QString& wantedName,
                                           const QList<ColorItem>& colors) {
    QStringList templateNames;
    templateNames.reserve(m_templates.size());
    for (const ColorTemplate& palette : std::as_const(m_templates))
        templateNames.append(palette.name);
    const ColorTemplate palette = ColorTemplate::makeNew(
        TemplateNaming::uniqueTemplateName(wantedName, templateNames), colors, m_clock.nowMs());
    addTemplate(palette);
    return palette;
}

void ColorStorage::selectTemplate(const QUuid& id) {
    if (!findTemplate(id))
        return;
    setActiveTemplateId(id);
    saveTemplates();
}

bool ColorStorage::renameActiveTemplate(const QString& text) {
    const QString name = TemplateNaming::trimmedOfBlanks(text);
    if (name.isEmpty())
        return false;
    ColorTemplate* palette = activeTemplateForEdit();
    if (!palette || palette->isLocked)
        return true;
    palette->name = name;
    Q_EMIT templatesChanged();
    saveTemplates();
    return true;
}

void ColorStorage::toggleActiveTemplateLock() {
    ColorTemplate* palette = activeTemplateForEdit();
    if (!palette)
        return;
    palette->isLocked = !palette->isLocked;
    Q_EMIT templatesChanged();
    saveTemplates();
}

bool ColorStorage::setColorLocked(const QUuid& colorId, bool locked) {
    ColorTemplate* palette = activeTemplateForEdit();
    if (!palette || palette->isLocked)
        return false;
    const qsizetype index = indexOfColor(*palette, colorId);
    if (index < 0)
        return false;
    palette->colors[index].isLocked = locked;
    Q_EMIT templatesChanged();
    saveTemplates();
    return true;
}

bool ColorStorage::updateColor(const QUuid& colorId, const QString& name, const QString& hex,
                               bool isAutoNamed) {
    ColorTemplate* palette = activeTemplateForEdit();
    if (!palette || palette->isLocked)
        return false;
    const qsizetype index = indexOfColor(*palette, colorId);
    if (index < 0)
        return false;
    ColorItem& color = palette->colors[index];
    color.name = name;
    color.hex = hex;
    color.isAutoNamed = isAutoNamed;
    Q_EMIT templatesChanged();
    return true;
}

bool ColorStorage::moveColor(qsizetype from, qsizetype to) {
    ColorTemplate* palette = activeTemplateForEdit();
    if (!palette || from == to)
        return false;
    const qsizetype count = palette->colors.size();
    if (from < 0 || to < 0 || from >= count || to >= count)
        return false;
    // The dragging code refuses these with words; the store only makes sure they never move.
    if (palette->isLocked || palette->colors.at(from).isLocked || palette->colors.at(to).isLocked)
        return false;
    // An exchange on purpose, not a removal and insertion; groups travel with their colours.
    palette->colors.swapItemsAt(from, to);
    Q_EMIT templatesChanged();
    saveTemplates();
    return true;
}

std::optional<QString> ColorStorage::deleteColorRefusal(const QUuid& colorId) const {
    const ColorTemplate* palette = findTemplate(m_activeTemplateId);
    if (!palette)
        return std::nullopt;
    if (palette->isLocked)
        return StoreTexts::editColorsRefusal;
    const qsizetype index = indexOfColor(*palette, colorId);
    if (index >= 0 && palette->colors.at(index).isLocked)
        return StoreTexts::deleteLockedColorRefusal;
    if (palette->colors.size() < 2)
        return StoreTexts::lastColorRefusal;
    return std::nullopt;
}

bool ColorStorage::deleteColor(const QUuid& colorId) {
    ColorTemplate* palette = activeTemplateForEdit();
    if (!palette || palette->colors.size() < 2)
        return false;
    const qsizetype index = indexOfColor(*palette, colorId);
    if (index < 0)
        return false;
    const QString name = palette->colors.at(index).name;
    palette->colors.removeIf([&](const ColorItem& color) { return color.id == colorId; });
    Q_EMIT templatesChanged();
    saveTemplates();
    announce(StoreTexts::removedAnnouncement(name), StoreTexts::deletedIcon);
    return true;
}

std::optional<QString> ColorStorage::deleteTemplateRefusal(const QUuid& id) const {
    const ColorTemplate* palette = findTemplate(id);
    if (!palette)
        return std::nullopt;
    if (palette->isLocked)
        return StoreTexts::deleteLockedTemplateRefusal;
    // Counted by id: a list that holds this palette twice (another process's doing) would
    // otherwise lose both copies and be left empty.
    if (std::none_of(m_templates.cbegin(), m_templates.cend(),
                     [&](const ColorTemplate& other) { return other.id != id; }))
        return StoreTexts::lastTemplateRefusal;
    return std::nullopt;
}

bool ColorStorage::confirmDeleteTemplate(const QUuid& id) {
    // Sync may have changed things while the user was asked: test again.
    if (!findTemplate(id) || deleteTemplateRefusal(id))
        return false;
    deleteTemplate(id);
    saveTemplates();
    announce(StoreTexts::templateDeletedAnnouncement, StoreTexts::deletedIcon);
    return true;
}

void ColorStorage::deleteTemplate(const QUuid& id) {
    const bool wasActive = m_activeTemplateId == id;
    const qsizetype removed =
        m_templates.removeIf([&](const ColorTemplate& palette) { return palette.id == id; });
    if (removed > 0)
        Q_EMIT templatesChanged();
    Q_EMIT templateDeleted(id);
    m_templateLastModified.remove(id);
    m_shadowState.remove(id);
    saveShadowState();
    // The first palette, not a neighbour: the gallery's order is the user's.
    if (wasActive && !m_templates.isEmpty())
        setActiveTemplateId(m_templates.constFirst().id);
}

// --- Saving --------------------------------------------------------------------------------

void ColorStorage::saveTemplates() {
    ++_savingCount;
    const double now = m_clock.nowMs();

    QList<ColorTemplate> stamped = m_templates;
    bool anyStamped = false;
    for (qsizetype i = 0; i < stamped.size(); ++i) {
        // Read through a const reference: only a palette that changed is worth detaching for.
        const QString hash = m_encoding.contentHash(std::as_const(stamped).at(i));
        if (hash == std::as_const(stamped).at(i).contentHash)
            continue;
        ColorTemplate& palette = stamped[i];
        palette.contentHash = hash;
        palette.updatedAt = now;
        palette.revision += 1;
        anyStamped = true;
    }
    if (anyStamped) {
        m_templates = stamped;
        Q_EMIT templatesChanged();
    }

    SaveRequest request;
    request.kind = SaveRequest::Kind::stamped;
    request.jsonParts = m_encoding.encodeParts(stamped);
    request.json = TemplateJson::joinEncoded(request.jsonParts);
    request.templates = std::move(stamped);
    request.baselineTemplates = m_baselineTemplates;
    request.baselineStamp = m_baselineStamp;
    request.activeTemplateId = uuidText(m_activeTemplateId);
    request.nowMs = now;
    hand(std::move(request));
}

void ColorStorage::saveTemplatesWithoutStamping() {
    ++_savingCount;
    SaveRequest request;
    request.kind = SaveRequest::Kind::withoutStamping;
    request.templates = m_templates;
    request.jsonParts = m_encoding.encodeParts(m_templates);
    request.json = TemplateJson::joinEncoded(request.jsonParts);
    request.baselineTemplates = m_baselineTemplates;
    request.baselineStamp = m_baselineStamp;
    request.activeTemplateId = uuidText(m_activeTemplateId);
    request.nowMs = m_clock.nowMs();
    hand(std::move(request));
}

void ColorStorage::hand(SaveRequest request) {
    if (!m_writer) {
        --_savingCount;
        return;
    }
    TemplateWriter::Written written;
    if (request.kind == SaveRequest::Kind::stamped) {
        written = [guard = QPointer<ColorStorage>(this), stamped = request.templates,
                   active = request.activeTemplateId,
                   now = request.nowMs](const SaveOutcome& outcome) {
            if (guard)
                guard->finishStampedSave(stamped, active, outcome, now);
        };
    } else {
        // The plain variant leaves the baseline alone and has no fallback to the settings: the
        // next stamped save writes the same list again.
        written = [guard = QPointer<ColorStorage>(this)](const SaveOutcome& outcome) {
            ColorStorage* self = guard.data();
            if (self != nullptr && outcome.wroteFile)
                self->m_lastKnownDataHash = PreferencesFile::dataHash(outcome.writtenJson);
        };
    }
    m_writer->writeTemplates(request, std::move(written), [this] { --_savingCount; });
}

void ColorStorage::finishStampedSave(const QList<ColorTemplate>& stamped,
                                     const QString& activeTemplateId, const SaveOutcome& outcome,
                                     double nowMs) {
    // The in-memory list stays the truth; the fallback only keeps it across a quit.
    if (!outcome.wroteFile && m_writer)
        m_writer->writeFallback(outcome.writtenJson, activeTemplateId, nowMs);
    // This run's own bytes: when the file is next seen holding them, nothing new is there.
    m_lastKnownDataHash = PreferencesFile::dataHash(outcome.writtenJson);
    // A merge result is held back while an editor is open: its working copy must not lose
    // the colour under it.
    if (!m_isEditorPopoverOpen && differsByIdsOrHashes(outcome.writtenTemplates, stamped)) {
        m_templates = outcome.writtenTemplates;
        Q_EMIT templatesChanged();
    }
    m_baselineTemplates = outcome.writtenTemplates;
    m_baselineStamp = outcome.wroteFile ? outcome.writtenStamp : nowMs;
    // A running sync pass holds the folder; the push waits for a save outside it.
    if (!m_isSyncing)
        Q_EMIT templatesWritten();
}

void ColorStorage::saveShadowState() {
    if (m_writer)
        m_writer->writeShadowState(TemplateJson::encodeShadowStates(m_shadowState));
}

void ColorStorage::announce(const QString& message, const QString& icon) {
    Q_EMIT announced(message, icon);
}

// --- Lookup --------------------------------------------------------------------------------

ColorTemplate* ColorStorage::findTemplate(const QUuid& id) {
    for (ColorTemplate& palette : m_templates) {
        if (palette.id == id)
            return &palette;
    }
    return nullptr;
}

const ColorTemplate* ColorStorage::findTemplate(const QUuid& id) const {
    for (const ColorTemplate& palette : m_templates) {
        if (palette.id == id)
            return &palette;
    }
    return nullptr;
}

} // namespace hueshelf
