#pragma once

#include <QString>

#include <optional>

namespace hueshelf::helper {

// A colour code as an extension sends it, read as the command line and the MCP server read
// theirs: the program's reader of pasted codes (hex with or without "#", rgb(), rgba(), hsl(),
// hsla()), and the short hex form the swatch editor takes (#FFF).
namespace ColorCodeText {

// The canonical #RRGGBB, or none.
std::optional<QString> read(const QString& text);

// The sentence for text that isn't a colour, naming the forms that are.
QString unreadableSentence(const QString& text);

} // namespace ColorCodeText
} // namespace hueshelf::helper
