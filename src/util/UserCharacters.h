#pragma once

#include <QString>

namespace hueshelf {

// Limits on names count what a reader sees as characters (extended grapheme clusters): an
// accented letter written with a combining mark, or an emoji of several code points, counts
// once and is never cut in half.
namespace UserCharacters {

int count(const QString& text);

// The first `limit` characters, or the whole text when it has no more than that.
QString first(const QString& text, int limit);

} // namespace UserCharacters
} // namespace hueshelf
