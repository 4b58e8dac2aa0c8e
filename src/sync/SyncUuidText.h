#pragma once

#include <QStringView>
#include <QUuid>

#include <optional>

namespace hueshelf {

// A UUID in exactly the canonical 8-4-4-4-12 form, hex digits in either case: the same texts
// that the store's reader takes, parsed directly. A pull reads thirteen ids for every palette
// file, and Qt's general parser costs more than all the rest of a colour.
std::optional<QUuid> parseCanonicalUuid(QStringView text);

} // namespace hueshelf
