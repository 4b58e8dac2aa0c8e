#pragma once

#include <QString>
#include <QStringList>

namespace hueshelf::cli {

// Wording shared by the commands that read colour arguments.
namespace ColorArguments {

// The one stderr line for arguments that aren't colour codes: Not a color code: "a", "b"
QString unreadableMessage(const QStringList& inputs);

} // namespace ColorArguments
} // namespace hueshelf::cli
