#pragma once

#include <QString>

#include <optional>

namespace hueshelf::mcp {

// A colour as a model writes it, read with the program's own readers.
namespace ColorArgument {

// Any code that the program reads when a code is pasted (hex with or without "#", rgb(),
// rgba(), hsl(), hsla()), and the short hex form that the swatch editor takes (#FFF). The
// canonical #RRGGBB, or none.
std::optional<QString> read(const QString& text);

// The sentence for text that isn't a colour, naming the forms that are.
QString unreadableSentence(const QString& text);

// What every colour argument's schema says about the forms it takes.
QString formsText();

} // namespace ColorArgument
} // namespace hueshelf::mcp
