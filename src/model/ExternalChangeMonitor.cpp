#include "model/ExternalChangeMonitor.h"

#include "model/ColorStorage.h"
#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/TemplateJson.h"
#include "model/TemplateMerge.h"

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QJsonValue>
#include <QSet>
#include <QUuid>

#include <utility>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {

bool holds(const QList<ColorTemplate>& templates, const QUuid& id) {
    for (const ColorTemplate& palette : templates) {
        if (palette.id == id)
            return true;
    }
    return false;
}

// "colorLastModified" as the other writers put it: a number, or nothing usable.
std::optional<double> lastModifiedOf(const QJsonObject& file) {
    const QJsonValue value = file.value(PreferencesKeys::lastModified);
    if (!value.isDouble())
        return std::nullopt;
    return value.toDouble();
}

// The file's active id, if it is text in the canonical form.
std::optional<QUuid> activeIdOf(const QJsonObject& file) {
    const QJsonValue value = file.value(PreferencesKeys::activeTemplateId);
    if (!value.isString())
        return std::nullopt;
    return TemplateJson::uuidFromText(value.toString());
}

// What each side holds, by id and stored hash. Equal sets mean the file already holds the
// merge, so writing it back would only start another round between the processes.
QSet<QString> signaturesOf(const QList<ColorTemplate>& templates) {
    QSet<QString> signatures;
    signatures.reserve(templates.size());
    for (const ColorTemplate& palette : templates)
        signatures.insert(uuidText(palette.id) + u'|' + palette.contentHash);
    return signatures;
}

} // namespace

ExternalChangeMonitor::ExternalChangeMonitor(ColorStorage& storage, Clock& clock,
                                             Scheduler& scheduler, QString preferencesPath,
                                             QString preferencesDir, QObject* parent)
    : QObject(parent), m_storage(storage), m_clock(clock), m_scheduler(scheduler),
      m_preferencesPath(std::move(preferencesPath)), m_preferencesDir(std::move(preferencesDir)) {
    connect(&m_storage, &ColorStorage::isEditorPopoverOpenChanged, this,
            &ExternalChangeMonitor::editorPopoverOpenChanged);
}

ExternalChangeMonitor::~ExternalChangeMonitor() {
    stop();
}

// --- Ways to a check -----------------------------------------------------------------------

void ExternalChangeMonitor::start() {
    startStartupPoll();
    startDirectoryWatch();
}

void ExternalChangeMonitor::startStartupPoll() {
    if (m_initialSyncComplete || m_externalChangeTimer.isActive())
        return;
    checkForExternalChanges();
    m_startupPollCount = 0;
    m_externalChangeTimer =
        m_scheduler.scheduleRepeating(startupPollIntervalSeconds, [this] { startupPollTick(); });
}

void ExternalChangeMonitor::startupPollTick() {
    ++m_startupPollCount;
    if (m_initialSyncComplete) {
        m_externalChangeTimer.cancel();
        return;
    }
    checkForExternalChanges();
    if (m_startupPollCount >= startupPollTicks) {
        m_externalChangeTimer.cancel();
        m_externalChangeTimer = TaskHandle();
        m_initialSyncComplete = true;
    }
}

void ExternalChangeMonitor::endStartupPoll() {
    m_initialSyncComplete = true;
    m_externalChangeTimer.cancel();
    m_externalChangeTimer = TaskHandle();
}

void ExternalChangeMonitor::startDirectoryWatch() {
    if (m_preferencesWatchSource)
        return;
    auto watcher = std::make_unique<QFileSystemWatcher>();
    if (QFileInfo(m_preferencesDir).isDir() && watcher->addPath(m_preferencesDir)) {
        connect(watcher.get(), &QFileSystemWatcher::directoryChanged, this,
                &ExternalChangeMonitor::preferencesDirectoryChanged);
        m_preferencesWatchSource = std::move(watcher);
        return;
    }
    startSlowPoll();
}

void ExternalChangeMonitor::startSlowPoll() {
    if (m_slowExternalChangeTimer.isActive())
        return;
    m_slowExternalChangeTimer = m_scheduler.scheduleRepeating(
        slowPollIntervalSeconds, [this] { checkForExternalChanges(); });
}

void ExternalChangeMonitor::preferencesDirectoryChanged() {
    m_externalChangeDebounce.cancel();
    m_externalChangeDebounce = m_scheduler.scheduleAfter(externalChangeDebounceSeconds,
                                                         [this] { checkForExternalChanges(); });
}

void ExternalChangeMonitor::editorPopoverOpenChanged() {
    if (m_storage.isEditorPopoverOpen() || !m_externalChangeHeldBack)
        return;
    m_externalChangeHeldBack = false;
    checkForExternalChanges();
}

void ExternalChangeMonitor::stop() {
    m_externalChangeDebounce.cancel();
    m_externalChangeTimer.cancel();
    m_slowExternalChangeTimer.cancel();
    m_preferencesWatchSource.reset();
}

// --- The check -----------------------------------------------------------------------------

std::optional<ExternalChangeMonitor::FileState> ExternalChangeMonitor::readFile() const {
    std::optional<QJsonObject> object = PreferencesFile::read(m_preferencesPath);
    if (!object)
        return std::nullopt;
    std::optional<QByteArray> data = PreferencesFile::templatesData(*object);
    if (!data)
        return std::nullopt;
    const qint64 hash = PreferencesFile::dataHash(*data);
    return FileState{std::move(*object), std::move(*data), hash};
}

void ExternalChangeMonitor::checkForExternalChanges() {
    // This program's own write is under way: what the file holds now is not someone else's.
    if (m_storage.savingCount() > 0 || m_storage.isSyncing())
        return;
    const std::optional<FileState> file = readFile();
    if (!file)
        return;
    const double stamp = lastModifiedOf(file->object).value_or(0.0);
    // Both must move: a write of another key leaves the stamp alone, and this program's own
    // write carries the hash it already knows.
    if (!(m_storage.baselineStamp() < stamp) || file->dataHash == m_storage.lastKnownDataHash())
        return;
    // Not under the user's hands: the editor's working copy would lose its colour. The file is
    // read again when the editor closes, so the newest state wins.
    if (m_storage.isEditorPopoverOpen()) {
        m_externalChangeHeldBack = true;
        return;
    }
    const std::optional<QList<ColorTemplate>> incoming =
        TemplateJson::decodeTemplates(file->data, m_clock);
    if (!incoming)
        return;
    apply(*incoming, stamp, *file);
}

void ExternalChangeMonitor::apply(const QList<ColorTemplate>& incoming, double stamp,
                                  const FileState& file) {
    const QList<ColorTemplate> merged =
        mergeTemplates(m_storage.baselineTemplates(), m_storage.templates(), incoming,
                       m_storage.baselineStamp(), stamp);

    std::optional<QUuid> active;
    const std::optional<QUuid> fileActive = activeIdOf(file.object);
    if (holds(merged, m_storage.activeTemplateId()))
        active = m_storage.activeTemplateId();
    else if (fileActive && holds(merged, *fileActive))
        active = *fileActive;
    else if (!merged.isEmpty())
        active = merged.constFirst().id;

    m_storage.setTemplates(merged);
    if (active)
        m_storage.setActiveTemplateId(*active);
    m_storage.setBaseline(merged, stamp);
    m_storage.setLastKnownDataHash(file.dataHash);

    if (signaturesOf(incoming) != signaturesOf(merged))
        m_storage.saveTemplates();
}

void ExternalChangeMonitor::reloadFromDisk() {
    if (m_storage.savingCount() > 0 || m_storage.isEditorPopoverOpen())
        return;
    const std::optional<FileState> file = readFile();
    if (!file)
        return;
    const std::optional<QList<ColorTemplate>> templates =
        TemplateJson::decodeTemplates(file->data, m_clock);
    if (!templates)
        return;

    m_storage.setTemplates(*templates);
    m_storage.setLastKnownDataHash(file->dataHash);
    m_storage.setBaseline(*templates,
                          lastModifiedOf(file->object).value_or(m_storage.baselineStamp()));

    // Only a usable id in the file moves the active palette; without one the bar keeps its own.
    if (const std::optional<QUuid> fileActive = activeIdOf(file->object)) {
        if (holds(*templates, *fileActive))
            m_storage.setActiveTemplateId(*fileActive);
        else if (!templates->isEmpty())
            m_storage.setActiveTemplateId(templates->constFirst().id);
        else
            m_storage.setActiveTemplateId(QUuid::createUuid());
    }
}

} // namespace hueshelf
