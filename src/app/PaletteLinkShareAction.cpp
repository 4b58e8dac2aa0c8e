#include "app/PaletteLinkShareAction.h"

#include "model/ColorStorage.h"
#include "platform/Platform.h"

namespace hueshelf::app::PaletteLinkShareAction {

std::optional<LinkToast> shareActivePalette(ColorStorage& storage, Platform& platform) {
    const std::optional<ColorTemplate> active = storage.activeTemplate();
    if (!active)
        return std::nullopt;
    const LinkShare::Outcome outcome = LinkShare::share(*active);
    if (outcome.link)
        platform.setClipboardText(*outcome.link);
    return outcome.toast;
}

} // namespace hueshelf::app::PaletteLinkShareAction
