#include "platform/linux/ShortcutKey.h"

#include <gtest/gtest.h>

#include <set>

namespace hueshelf {
namespace {

using namespace ShortcutKey;

constexpr std::uint8_t keyB = 56;
constexpr std::uint16_t ctrlShift = controlMask | shiftMask;

// Control and Shift held, whatever else is (locks, Alt, Super, the XKB group in bit 13).
TEST(ShortcutKey, CountsControlShiftBWhateverElseIsHeld) {
    const std::tuple<std::uint16_t, std::uint8_t, std::uint8_t, bool> cases[] = {
        {ctrlShift | mod2Mask | lockMask, keyB, keyB, true},
        {ctrlShift | mod1Mask | mod4Mask | (1u << 13), keyB, keyB, true},
        {controlMask | lockMask, keyB, keyB, false},
        {shiftMask, keyB, keyB, false},
        {ctrlShift, keyB + 1, keyB, false},
        {ctrlShift, 0, 0, false},
    };
    for (const auto& [state, keycode, shortcutKeycode, counts] : cases)
        EXPECT_EQ(matches(state, keycode, shortcutKeycode), counts) << state << ' ' << +keycode;
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
