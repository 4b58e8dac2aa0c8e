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

// Encodes the active palette; on success its link replaces what the clipboard held. Either way
// the toast is announced through the store and answered, so the bar can hold it for its time.
// Without an active palette nothing happens and nothing is answered.
std::optional<LinkToast> shareActivePalette(ColorStorage& storage, Platform& platform);

} // namespace PaletteLinkShareAction
} // namespace hueshelf::app
