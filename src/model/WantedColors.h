#pragma once

#include "model/ColorItem.h"

#include <QList>
#include <QString>

namespace hueshelf {

// A colour another program asks a new palette to hold: its code already read, its name as
// given, blank for one named by its code.
struct WantedColor {
    QString hex;
    QString name;
};

// The new palette's colours: given names kept as they are, the others named by their code as
// the bar names new colours, apart from every name given or made so far.
QList<ColorItem> colorItemsFor(const QList<WantedColor>& wanted);

} // namespace hueshelf
