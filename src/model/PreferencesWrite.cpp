#include "model/PreferencesWrite.h"

#include "model/PreferencesFile.h"
#include "model/PreferencesKeys.h"
#include "model/TemplateJson.h"
#include "model/TemplateMerge.h"
#include "model/UnreadablePreferences.h"
#include "util/Clock.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace hueshelf {

namespace {

// Palettes in the file that lack their stamps take the time of the save that reads them.
class FixedClock final : public Clock {
public:
    explicit FixedClock(double ms) : m_ms(ms) {}
    double nowMs() const override { return m_ms; }

private:
    double m_ms;
};

struct FileSnapshot {
    QJsonObject object;                            // empty when the file is missing or unreadable
    std::optional<QList<ColorTemplate>> templates; // the file's palettes, when they decode
    // The file holds something this program can't read, which the write would destroy.
    bool needsKeeping = false;
    // ... and its bytes couldn't even be read, so no copy can keep them.
    bool cannotKeep = false;
    QByteArray bytes;
};

FileSnapshot readSnapshot(const QString& path, const Clock& clock) {
    FileSnapshot snapshot;
    const QFileInfo info(path);
    if (!info.isFile())
        return snapshot;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        // Unseen content can't be judged harmless, nor copied: leave it to the fallback.
        snapshot.needsKeeping = true;
        snapshot.cannotKeep = true;
        return snapshot;
    }
    snapshot.bytes = file.readAll();
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(snapshot.bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        // An empty file has nothing to lose.
        snapshot.needsKeeping = !snapshot.bytes.trimmed().isEmpty();
        return snapshot;
    }
    snapshot.object = document.object();
    if (!snapshot.object.contains(PreferencesKeys::templates))
        return snapshot;
    if (const auto data = PreferencesFile::templatesData(snapshot.object))
        snapshot.templates = TemplateJson::decodeTemplates(*data, clock);
    snapshot.needsKeeping = !snapshot.templates;
    return snapshot;
}

double stampOf(const QJsonObject& object) {
    const QJsonValue value = object.value(PreferencesKeys::lastModified);
    return value.isDouble() ? value.toDouble() : 0.0;
}

} // namespace

SaveOutcome writePreferences(const QString& preferencesFile, const SaveRequest& request,
                             std::optional<OwnWrite>& lastOwnWrite) {
    const FixedClock clock(request.nowMs);
    FileSnapshot snapshot = readSnapshot(preferencesFile, clock);
    const double stamp = stampOf(snapshot.object);

    QList<ColorTemplate> written = request.templates;
    QByteArray json = request.json;
    // Someone else wrote since this store last agreed with the file. A list in the file that
    // doesn't decode abandons the merge; the stamped list is written as it is.
    if (request.kind == SaveRequest::Kind::stamped && request.baselineStamp < stamp &&
        snapshot.templates) {
        const bool fileIsOwnLastWrite = lastOwnWrite && lastOwnWrite->stamp == stamp;
        const QList<ColorTemplate>& base =
            fileIsOwnLastWrite ? lastOwnWrite->requested : request.baselineTemplates;
        written = mergeTemplates(base, request.templates, *snapshot.templates,
                                 request.baselineStamp, stamp);
        json = TemplateJson::encodeTemplates(written);
    }

    QJsonObject& object = snapshot.object;
    object.insert(PreferencesKeys::templates, QJsonDocument::fromJson(json).array());
    object.insert(PreferencesKeys::activeTemplateId, request.activeTemplateId);
    object.insert(PreferencesKeys::lastModified, request.nowMs);
    object.insert(PreferencesKeys::schemaVersion, PreferencesKeys::currentSchemaVersion);

    SaveOutcome outcome;
    outcome.writtenTemplates = std::move(written);
    // The bytes a reader of the written file will see, so that the hash recognises them.
    outcome.writtenJson = PreferencesFile::templatesData(object).value_or(json);
    const bool kept = !snapshot.needsKeeping ||
                      (!snapshot.cannotKeep && UnreadablePreferences::preserve(
                                                   preferencesFile, snapshot.bytes, request.nowMs));
    outcome.wroteFile = kept && PreferencesFile::write(preferencesFile, object);
    if (outcome.wroteFile)
        lastOwnWrite = OwnWrite{request.nowMs, request.templates};
    return outcome;
}

} // namespace hueshelf
