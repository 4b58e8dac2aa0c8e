#pragma once

#include <cstdint>

struct xcb_connection_t;

namespace hueshelf::X11Keymap {

// The key that types the keysym on the server's current layout, preferring one where it needs
// no modifier; 0 when the layout has none.
std::uint8_t keycodeFor(xcb_connection_t* connection, std::uint32_t keysym);

} // namespace hueshelf::X11Keymap
