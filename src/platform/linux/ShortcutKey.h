#pragma once

#include <array>
#include <cstdint>

namespace hueshelf::ShortcutKey {

// X11 modifier bits as they appear in a key event's state and in a grab.
inline constexpr std::uint16_t shiftMask = 1u << 0;
inline constexpr std::uint16_t lockMask = 1u << 1; // CapsLock
inline constexpr std::uint16_t controlMask = 1u << 2;
inline constexpr std::uint16_t mod1Mask = 1u << 3; // Alt
inline constexpr std::uint16_t mod2Mask = 1u << 4; // NumLock on common layouts
inline constexpr std::uint16_t mod4Mask = 1u << 6; // Super

// The keysym of the lower-case letter b.
inline constexpr std::uint32_t letterBKeysym = 0x0062;

// A passive grab matches only the exact modifier set, so the shortcut is grabbed once for each
// lock state the user may be in; otherwise NumLock or CapsLock would silently swallow it.
inline constexpr std::array<std::uint16_t, 4> grabModifierSets = {
    controlMask | shiftMask,
    controlMask | shiftMask | mod2Mask,
    controlMask | shiftMask | lockMask,
    controlMask | shiftMask | mod2Mask | lockMask,
};

// The shortcut also counts with Alt or Super held. Those grabs are a bonus: another program
// holding one of them costs only that combination, not the shortcut.
inline constexpr std::array<std::uint16_t, 3> optionalExtraModifiers = {
    mod1Mask,
    mod4Mask,
    mod1Mask | mod4Mask,
};

// Whether a key press with this state and key code is the shortcut: Control and Shift held,
// whatever else is held too.
constexpr bool matches(std::uint16_t state, std::uint8_t keycode, std::uint8_t shortcutKeycode) {
    constexpr std::uint16_t required = controlMask | shiftMask;
    return shortcutKeycode != 0 && keycode == shortcutKeycode && (state & required) == required;
}

} // namespace hueshelf::ShortcutKey
