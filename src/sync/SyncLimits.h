#pragma once

#include "util/UserCharacters.h"

#include <QString>

namespace hueshelf::SyncLimits {

inline constexpr int maxNameLength = 100;        // palette and colour names, in characters
inline constexpr int maxDividerLabelLength = 40; // characters
inline constexpr int maxColorCount = 200;        // colours kept after bad entries are dropped
// A template file larger than this is skipped unread; one of exactly this size is read.
inline constexpr qint64 maxTemplateFileSize = 1048576;

// The first `limit` user-perceived characters. A text of no more UTF-16 units than that can't
// hold more characters, so the usual short name is passed through without a boundary search:
// a pull cuts every name of every palette in the folder.
inline QString cutToCharacters(const QString& text, int limit) {
    if (text.size() <= limit)
        return text;
    return UserCharacters::first(text, limit);
}

} // namespace hueshelf::SyncLimits
