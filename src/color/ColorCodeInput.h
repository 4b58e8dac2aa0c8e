#pragma once

#include <QString>

#include <optional>

namespace hueshelf {

// A colour code as another program or a model writes it (the MCP server's arguments, the
// browser helper's requests), read with the program's own readers.
namespace ColorCodeInput {

// Any code that the program reads when a code is pasted (hex with or without "#", rgb(),
// rgba(), hsl(), hsla()), and the short hex form that the swatch editor takes (#FFF). The
// canonical #RRGGBB, or none.
std::optional<QString> read(const QString& text);

// The sentence for text that isn't a colour, naming the forms that are.
QString unreadableSentence(const QString& text);

// The forms a code may take, as one sentence (the MCP server's schemas say it too).
QString formsText();

} // namespace ColorCodeInput
} // namespace hueshelf
