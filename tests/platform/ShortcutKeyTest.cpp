#include "platform/linux/ShortcutKey.h"

#include <gtest/gtest.h>

#include <set>

namespace hueshelf {
namespace {

using namespace ShortcutKey;

constexpr std::uint8_t keyB = 56;
constexpr std::uint16_t ctrlShift = controlMask | shiftMask;

TEST(ShortcutKey, CountsControlShiftBWhateverElseIsHeld) {
    const struct {
        const char* description;
        std::uint16_t state;
        std::uint8_t keycode;
        std::uint8_t shortcutKeycode;
        bool counts;
    } cases[] = {
        {"Control+Shift", ctrlShift, keyB, keyB, true},
        {"with both locks", ctrlShift | mod2Mask | lockMask, keyB, keyB, true},
        {"with Alt and Super", ctrlShift | mod1Mask | mod4Mask, keyB, keyB, true},
        // Bit 13 is the keyboard group of XKB, present on a second layout.
        {"on a second layout", ctrlShift | (1u << 13), keyB, keyB, true},
        {"Control alone", controlMask, keyB, keyB, false},
        {"Control with CapsLock is no Shift", controlMask | lockMask, keyB, keyB, false},
        {"Shift alone", shiftMask, keyB, keyB, false},
        {"another key", ctrlShift, keyB + 1, keyB, false},
        {"no key for the letter", ctrlShift, 0, 0, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.description);
        EXPECT_EQ(matches(c.state, c.keycode, c.shortcutKeycode), c.counts);
    }
}

TEST(ShortcutKey, GrabsEveryLockStateOnceAndAlwaysControlShift) {
    std::set<std::uint16_t> lockStates;
    for (const std::uint16_t set : grabModifierSets) {
        EXPECT_EQ(set & ~(lockMask | mod2Mask), ctrlShift);
        lockStates.insert(set & (lockMask | mod2Mask));
    }
    EXPECT_EQ(lockStates.size(), 4u);
}

} // namespace
} // namespace hueshelf
