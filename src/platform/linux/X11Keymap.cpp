#include "platform/linux/X11Keymap.h"

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace hueshelf::X11Keymap {

std::uint8_t keycodeFor(xcb_connection_t* connection, std::uint32_t keysym) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const int first = setup->min_keycode;
    const int count = setup->max_keycode - setup->min_keycode + 1;
    const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, decltype(&std::free)> reply(
        xcb_get_keyboard_mapping_reply(connection,
                                       xcb_get_keyboard_mapping(connection, setup->min_keycode,
                                                                static_cast<std::uint8_t>(count)),
                                       nullptr),
        &std::free);
    if (!reply)
        return 0;
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(reply.get());
    const int perKeycode = reply->keysyms_per_keycode;
    const int length = xcb_get_keyboard_mapping_keysyms_length(reply.get());
    // Column 0 is the unshifted symbol of the first group: the key a user means by "B".
    for (int column = 0; column < perKeycode; ++column) {
        for (int index = 0; index < count && index * perKeycode + column < length; ++index) {
            if (keysyms[index * perKeycode + column] == keysym)
                return static_cast<std::uint8_t>(first + index);
        }
    }
    return 0;
}

} // namespace hueshelf::X11Keymap
