#pragma once

#include <QByteArray>
#include <QString>

namespace hueshelf {

// A preferences file that this program can't make sense of may still be worth something to
// its owner (a newer build's format, a hand edit gone wrong). Before a write replaces it, its
// bytes are kept beside it as "<file name>.unreadable-<ms>", once per distinct content.
namespace UnreadablePreferences {

// Answers whether `bytes`, the current content of the file at `path`, are safe: kept by an
// earlier copy with the same bytes, or copied now. False only when a copy was needed and
// could not be written.
bool preserve(const QString& path, const QByteArray& bytes, double nowMs);

} // namespace UnreadablePreferences
} // namespace hueshelf
