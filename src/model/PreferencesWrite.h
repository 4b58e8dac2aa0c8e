#pragma once

#include "model/PreferencesLayout.h"
#include "model/TemplateWriter.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace hueshelf {

// One read-merge-write cycle of the shared preferences file, as the writer's thread runs it.
// It works on the request's copies only and never touches the store.
//
// The file is read afresh; anything unreadable counts as an empty object. A stamped save whose
// baseline is older than the file's "colorLastModified" merges the file's palettes in (a file
// list that doesn't decode abandons the merge). The four keys are set, every other key is
// kept, and the file is replaced atomically. A file that held something undecodable is first
// kept beside itself; if that copy can't be made, the file is left alone and the write counts
// as failed, so the caller's fallback keeps the palettes instead.
//
// A save stamped before the completion of this writer's previous one still carries the older
// baseline, so it finds that previous write in the file as if someone else had made it. Merged
// against the old baseline, an edit made in between could lose to the earlier write (a lock
// turned on and straight off again would stay on). When the file still holds exactly this
// writer's previous write, the true common ancestor is the list that previous save started
// from, and that is the base used instead.
//
// The file as this writer left it is remembered too: a file that still holds exactly those bytes
// holds nothing anyone else wrote, so its keys are known without parsing it again, and the next
// layout copies the palettes that didn't change from it.
struct OwnWrite {
    double stamp = 0.0;
    QList<ColorTemplate> requested; // the list the store asked to write
    PreferencesLayout file;         // what was written, byte for byte
    QJsonObject otherKeys;          // the written object without "colorTemplates"
};

SaveOutcome writePreferences(const QString& preferencesFile, const SaveRequest& request,
                             std::optional<OwnWrite>& lastOwnWrite);

} // namespace hueshelf
