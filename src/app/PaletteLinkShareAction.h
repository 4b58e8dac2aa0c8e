#pragma once

#include "exchange/LinkShare.h"

#include <optional>

namespace hueshelf {
class ColorStorage;
class Platform;
} // namespace hueshelf

namespace hueshelf::app {

// The bar's share-as-link action.
namespace PaletteLinkShareAction {

// Encodes the active palette; on success its link replaces what the clipboard held. Answers
// the toast that says how it went, for the bar to pin to its share button. Without an active
// palette nothing happens and nothing is answered.
std::optional<LinkToast> shareActivePalette(ColorStorage& storage, Platform& platform);

} // namespace PaletteLinkShareAction
} // namespace hueshelf::app
