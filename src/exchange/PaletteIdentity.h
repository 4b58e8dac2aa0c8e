#pragma once

#include "model/ColorItem.h"
#include "model/ColorTemplate.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf {

// The palette, among `templates` and in their order, that already holds what a file or link
// brings: the same name exactly, as many colours, and at each position the same code (blanks,
// case and one leading "#" aside), the same name and the same divider (its label only where
// there is one). Locks, automatic naming and ids don't count, so a palette saved and opened
// again is found instead of doubled. Answers the first match's id.
std::optional<QUuid> findIdenticalPalette(const QString& name, const QList<ColorItem>& colors,
                                          const QList<ColorTemplate>& templates);

} // namespace hueshelf
