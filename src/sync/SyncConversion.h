#pragma once

#include "model/ColorTemplate.h"
#include "sync/SyncableColorItem.h"
#include "sync/SyncableTemplate.h"

#include <QList>
#include <QString>

namespace hueshelf {

// A palette as its sync record: the same id, name, colours, revision, hash and lock;
// `lastModified` from `updatedAt`; written by `deviceId` unless the palette already names the
// device that last wrote it; schema version 2, not deleted. The push replaces some of these
// before writing.
SyncableTemplate syncableFrom(const ColorTemplate& palette, const QString& deviceId);

// A record as a palette: `updatedAt` from `lastModified`, `updatedByDeviceId` from
// `modifiedBy`, and the record's contentHash as found, not recomputed.
ColorTemplate toColorTemplate(const SyncableTemplate& record);

// computeContentHash over sync records: the same text, digest and form, so a record's hash is
// comparable with a palette's.
QString syncableContentHash(const QString& name, const QList<SyncableColorItem>& colors);

} // namespace hueshelf
