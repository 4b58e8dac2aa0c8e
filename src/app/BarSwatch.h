#pragma once

#include <QColor>
#include <QString>
#include <QUuid>

namespace hueshelf::app {

// One colour as the bar draws it: everything the swatch needs, worked out once by the model so
// the widget only paints.
struct BarSwatch {
    QUuid id;
    QString name;
    QString hex;
    // The fill; gray when the code cannot be read.
    QColor displayColor;
    // Marks drawn over the fill (hover ring, later the copied check) use dark ink when true.
    bool labelIsDark = false;

    friend bool operator==(const BarSwatch&, const BarSwatch&) = default;
};

} // namespace hueshelf::app
