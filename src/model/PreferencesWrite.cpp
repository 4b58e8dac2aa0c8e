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
#include <QLockFile>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
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

double stampOf(const QJsonObject& object) {
    const QJsonValue value = object.value(PreferencesKeys::lastModified);
    return value.isDouble() ? value.toDouble() : 0.0;
}

// Whether the open file holds exactly `expected`. Read in pieces, so that the usual answer, yes,
// costs no copy of a file of megabytes; the file is left at its start.
bool holdsExactly(QFile& file, const QByteArray& expected) {
    if (file.size() != expected.size())
        return false;
    constexpr qint64 kPiece = 256 * 1024;
    QByteArray piece(kPiece, Qt::Uninitialized);
    qint64 offset = 0;
    bool same = true;
    while (same && offset < expected.size()) {
        const qint64 read = file.read(piece.data(), std::min(kPiece, expected.size() - offset));
        same = read > 0 &&
               std::memcmp(piece.constData(), expected.constData() + offset, size_t(read)) == 0;
        offset += read;
    }
    // Nothing may follow: the file could have grown since its size was taken.
    char extra = 0;
    same = same && file.read(&extra, 1) == 0;
    file.seek(0);
    return same;
}

constexpr int staleLockMs = 30'000;
constexpr int lockWaitMs = 10'000;

QString lockFilePath(const QString& preferencesFile) {
    return preferencesFile + u".lock";
}

// Other processes only look at a file whose stamp moved past the one they last agreed on. A
// save that started before another process's write, but reaches the file after it, must not
// move the stamp backwards, or that process would never look at it.
double laterStamp(double requestedMs, double fileStamp) {
    if (requestedMs > fileStamp)
        return requestedMs;
    return std::nextafter(fileStamp, std::numeric_limits<double>::infinity());
}

bool mergesAgainst(const SaveRequest& request, double fileStamp) {
    return request.kind == SaveRequest::Kind::stamped && request.baselineStamp < fileStamp;
}

FileSnapshot readSnapshot(const QString& path, const Clock& clock, const SaveRequest& request,
                          const std::optional<OwnWrite>& lastOwnWrite) {
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
    // Still this writer's own last write: its keys are known and its palettes decode (they were
    // encoded from records). Only a merge needs them decoded, and then the file is read in full.
    if (lastOwnWrite && !mergesAgainst(request, stampOf(lastOwnWrite->otherKeys)) &&
        holdsExactly(file, lastOwnWrite->file.bytes())) {
        snapshot.object = lastOwnWrite->otherKeys;
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

} // namespace

SaveOutcome writePreferences(const QString& preferencesFile, const SaveRequest& request,
                             std::optional<OwnWrite>& lastOwnWrite) {
    // Every process of the product runs this cycle on the same file. Without the lock, two that
    // read it at once each write back only their own merge, and the later write drops what the
    // earlier one added. A lock left by a crashed process is taken over; one that can't be had
    // in time doesn't stop the write, which the merge of the next cycle then repairs.
    QLockFile lock(lockFilePath(preferencesFile));
    lock.setStaleLockTime(staleLockMs);
    lock.tryLock(lockWaitMs);

    const FixedClock clock(request.nowMs);
    FileSnapshot snapshot = readSnapshot(preferencesFile, clock, request, lastOwnWrite);
    const double stamp = stampOf(snapshot.object);

    QList<ColorTemplate> written = request.templates;
    QByteArray json = request.json;
    bool merged = false;
    // Someone else wrote since this store last agreed with the file. A list in the file that
    // doesn't decode abandons the merge; the stamped list is written as it is.
    if (mergesAgainst(request, stamp) && snapshot.templates) {
        const bool fileIsOwnLastWrite = lastOwnWrite && lastOwnWrite->stamp == stamp;
        const QList<ColorTemplate>& base =
            fileIsOwnLastWrite ? lastOwnWrite->requested : request.baselineTemplates;
        written = mergeTemplates(base, request.templates, *snapshot.templates,
                                 request.baselineStamp, stamp);
        json = TemplateJson::encodeTemplates(written);
        merged = true;
    }

    QJsonObject& object = snapshot.object;
    object.remove(PreferencesKeys::templates);
    object.insert(PreferencesKeys::activeTemplateId, request.activeTemplateId);
    const double writtenStamp = laterStamp(request.nowMs, stamp);
    object.insert(PreferencesKeys::lastModified, writtenStamp);
    object.insert(PreferencesKeys::schemaVersion, PreferencesKeys::currentSchemaVersion);

    SaveOutcome outcome;
    outcome.writtenStamp = writtenStamp;
    outcome.writtenTemplates = std::move(written);
    std::optional<PreferencesLayout> layout =
        PreferencesLayout::make(object, json, merged ? QList<QByteArray>() : request.jsonParts,
                                lastOwnWrite ? &lastOwnWrite->file : nullptr);
    if (layout) {
        outcome.writtenJson = json;
    } else {
        QJsonObject whole = object;
        whole.insert(PreferencesKeys::templates, QJsonDocument::fromJson(json).array());
        // The bytes a reader of the written file will see, so that the hash recognises them.
        outcome.writtenJson = PreferencesFile::templatesData(whole).value_or(json);
        layout = PreferencesLayout::ofBytes(PreferencesFile::serialise(whole));
    }
    const bool kept = !snapshot.needsKeeping ||
                      (!snapshot.cannotKeep && UnreadablePreferences::preserve(
                                                   preferencesFile, snapshot.bytes, request.nowMs));
    outcome.wroteFile = kept && PreferencesFile::writeBytes(preferencesFile, layout->bytes());
    if (outcome.wroteFile)
        lastOwnWrite = OwnWrite{writtenStamp, request.templates, std::move(*layout), object};
    return outcome;
}

} // namespace hueshelf
