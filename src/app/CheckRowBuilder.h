#pragma once

#include "app/CheckRow.h"
#include "app/FixRecord.h"
#include "color/PaletteCheck.h"
#include "model/ColorItem.h"

#include <QList>

namespace hueshelf::app::CheckRowBuilder {

// An issue still present in the palette.
CheckRow openRow(const PaletteCheck::Issue& issue, bool onDetailsPage, bool paletteLocked);

// A fix that was made: the pair as it is now (the copies in the issue where a colour has gone).
CheckRow settledRow(const FixRecord& record, const QList<ColorItem>& currentColors,
                    bool undoEnabled);

} // namespace hueshelf::app::CheckRowBuilder
