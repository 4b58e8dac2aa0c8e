#pragma once

#include <QString>

#include <optional>

namespace hueshelf {

// The escaping of names and labels inside a palette link.
//
// Kept raw: every code point whose Unicode general category is a letter, a mark or a number
// (L*, M*, N*), in any script, plus exactly the nine characters -_.!~*'(). Everything else,
// the link's own separators, "%", blanks, "/", punctuation, symbols and emoji included, is
// written as %XX per UTF-8 byte with upper-case hex digits. So "Café" stays as it is while
// "a:b" becomes "a%3Ab". Links made elsewhere may escape letters too; decoding takes both.
namespace LinkPercentEncoding {

// A text that can't be written as UTF-8 (an unpaired surrogate) comes back unescaped rather
// than failing the whole link.
QString encode(const QString& text);

// Absent for a "%" not followed by two hex digits, or for bytes that aren't valid UTF-8
// (overlong forms, encoded surrogates and cut sequences included). A leading byte order mark is
// kept as a character, not swallowed.
std::optional<QString> decode(const QString& text);

} // namespace LinkPercentEncoding
} // namespace hueshelf
