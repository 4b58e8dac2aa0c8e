#pragma once

#include "model/ColorStorage.h"
#include "model/ColorTemplate.h"

#include <QList>
#include <QString>

#include <optional>

namespace hueshelf::cli {

// How a command's PALETTE argument names a stored palette: by its exact name first, and only
// when no palette has that name, by its id (the UUID text in either case). Names need not be
// unique when other processes write the file; the first in gallery order wins.
namespace PaletteLookup {

std::optional<ColorTemplate> find(const QList<ColorTemplate>& templates, const QString& nameOrId);

// The palette with this id, whatever the names: for a command that already knows which palette
// it means and reads it back after a save.
std::optional<ColorTemplate> byId(const QList<ColorTemplate>& templates, const QUuid& id);

// The named palette, or the active one when no name was given.
std::optional<ColorTemplate> resolve(const ColorStorage& storage,
                                     const std::optional<QString>& nameOrId);

// The one line for a PALETTE that names nothing (or for no active palette at all).
QString notFoundMessage(const std::optional<QString>& nameOrId);

} // namespace PaletteLookup
} // namespace hueshelf::cli
