#pragma once

#include <QColor>
#include <QString>
#include <QUuid>

namespace hueshelf::app {

// One colour as the bar draws it: everything the swatch needs, worked out once by the model so
// the widget only paints.
struct BarSwatch {
    QUuid id;
    qsizetype index = 0;
    QString name;
    // The real code: what a click copies, whatever the lens.
    QString hex;
    // The fill as the lens shows it; gray when the code cannot be read.
    QColor displayColor;
    // Marks drawn over the fill use dark ink when true.
    bool labelIsDark = false;
    bool isLocked = false;
    // The gutter in front of the swatch: whether a group starts here, and its name.
    bool showsDivider = false;
    QString dividerLabel;

    friend bool operator==(const BarSwatch&, const BarSwatch&) = default;
};

} // namespace hueshelf::app
