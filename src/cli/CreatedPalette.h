#pragma once

#include "cli/Command.h"
#include "model/ColorItem.h"

#include <QList>
#include <QString>

#include <optional>

namespace hueshelf {
class StoreSession;
} // namespace hueshelf

namespace hueshelf::cli {

class Invocation;

// The "--create [--name NAME]" half that the generator commands share: the name rule and the
// new palette, added as the generators' "Create palette" adds it.
namespace CreatedPalette {

// "--create" (with `createHelp`) and "--name NAME", for the command's option table.
QList<OptionSpec> options(const QString& createHelp);

// The wanted name: --name trimmed of blanks, else `defaultName`. Absent after a usage error
// was reported (--name without --create, or a name of blanks only).
std::optional<QString> wantedName(Invocation& call, const QString& defaultName);

// Adds the palette under `wantedName` made unique, waits until it is in the file, and prints
// its stored record (JSON) or a line for people. Answers the exit status.
int create(Invocation& call, StoreSession& session, const QString& wantedName,
           const QList<ColorItem>& colors);

} // namespace CreatedPalette
} // namespace hueshelf::cli
