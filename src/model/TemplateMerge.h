#pragma once

#include "model/ColorTemplate.h"

#include <QList>

namespace hueshelf {

// The three-way merge of whole palettes by id, used both when another process's write is
// noticed and inside a save that finds the file changed since this store last looked.
// `base` is the list both sides last agreed on; a tie of updatedAt goes to `incoming`.
QList<ColorTemplate> mergeTemplates(const QList<ColorTemplate>& base,
                                    const QList<ColorTemplate>& local,
                                    const QList<ColorTemplate>& incoming, double baseStamp,
                                    double incomingStamp);

} // namespace hueshelf
