#pragma once

#include "color/PaletteCheck.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf::app {

// A fix made in the check popover, kept while the popover stays open so the row can show what
// changed and take it back.
struct FixRecord {
    PaletteCheck::Issue issue; // as it stood when the fix was made
    QUuid colorID;             // the colour that changed
    QString beforeHex;
    QString afterHex;
    std::optional<QString> cost; // a new look-alike the fix brought with it, in words
    double at = 0.0;             // ms since 1970
};

} // namespace hueshelf::app
