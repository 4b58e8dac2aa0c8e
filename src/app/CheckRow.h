#pragma once

#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf::app {

// One of the two colours a row shows.
struct CheckSwatch {
    QUuid colorId;
    QString name;
    QString hex;   // what to draw: as the issue's vision type sees it on look-alike rows
    QString label; // on the swatch and for accessibility
};

// A row of the check popover: open (an issue with its note and Fix button) or settled (a fix
// that was made, with its undo).
struct CheckRow {
    QString issueId;
    bool isSettled = false;
    CheckSwatch first;
    CheckSwatch second;

    // Open rows.
    QString text;
    std::optional<QString> note;
    bool hasFixButton = false;
    bool isFixEnabled = false; // drawn by canFix, usable only while the palette is unlocked
    QString fixAccessibleLabel;

    // Settled rows.
    QString headline;
    QString detail;
    std::optional<QString> cost;
    bool isUndoEnabled = false; // off for a moment after the fix, so a double click can't undo
};

} // namespace hueshelf::app
