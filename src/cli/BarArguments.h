#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace hueshelf::cli {

// What the bar takes as plain arguments: palette links and palette files. Whether a link or
// file is actually a valid palette is for the bar to find out; this only tells them apart from
// command names and typos.
namespace BarArguments {

// "hueshelf:..." or "https://..." in any letter case.
bool isLink(const QString& argument);
// A path (or file:// URL) of an existing file that isn't a directory.
bool isExistingFile(const QString& argument);
bool isBarArgument(const QString& argument);
// The first argument that the bar wouldn't take, if any.
std::optional<QString> firstNonBarArgument(const QStringList& arguments);

} // namespace BarArguments
} // namespace hueshelf::cli
