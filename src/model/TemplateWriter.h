#pragma once

#include "model/ColorTemplate.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>

namespace hueshelf {

// Everything a write needs, copied on the main thread so the writer never touches the store.
struct SaveRequest {
    enum class Kind {
        stamped,        // saveTemplates: read, merge if someone else wrote, write, fall back
        withoutStamping // after sync: read, write, no merge, no fallback
    };

    Kind kind = Kind::stamped;
    QList<ColorTemplate> templates; // the stamped list (or the list as it stood)
    QByteArray json;                // templates, encoded
    // The same bytes palette by palette, when the encoder kept them (json is these joined into
    // an array); lets the writer lay out the file without going through every palette again.
    QList<QByteArray> jsonParts;
    QList<ColorTemplate> baselineTemplates;
    double baselineStamp = 0.0;
    QString activeTemplateId; // upper-case text
    double nowMs = 0.0;
};

// What a write ended with.
struct SaveOutcome {
    bool wroteFile = false;
    // What reached the file (or the fallback): the merge result if another process had
    // written meanwhile, otherwise the request's own list.
    QList<ColorTemplate> writtenTemplates;
    QByteArray writtenJson;
    // The "colorLastModified" the file received: the request's time, or just past the stamp
    // already in the file when that one is not older, so stamps in the file only ever grow.
    double writtenStamp = 0.0;
};

// The store's seam to persistence. The store hands over a request and goes on; the writer
// does the file work off the main thread.
class TemplateWriter {
public:
    using Written = std::function<void(const SaveOutcome&)>;
    using Finished = std::function<void()>;

    virtual ~TemplateWriter() = default;

    // `written` must be called on the main thread once the write is done; `finished` exactly
    // once afterwards, from any thread, when no write queued behind this one can still be
    // mistaken for an outside change. A writer must have called every `finished` before the
    // store goes away.
    virtual void writeTemplates(const SaveRequest& request, Written written, Finished finished) = 0;

    // The shadow state's own key; failures are dropped.
    virtual void writeShadowState(const QByteArray& json) = 0;

    // A stamped write that could not reach the file: the palettes, the active id and the time
    // go to the fallback store instead, on the main thread. A writer without a fallback store
    // has nowhere to put them.
    virtual void writeFallback(const QByteArray& json, const QString& activeTemplateId,
                               double nowMs) {
        Q_UNUSED(json);
        Q_UNUSED(activeTemplateId);
        Q_UNUSED(nowMs);
    }
};

} // namespace hueshelf
