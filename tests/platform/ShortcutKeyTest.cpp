#include "platform/linux/ShortcutKey.h"

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace ShortcutKey;

constexpr std::uint8_t keyB = 56;
constexpr std::uint8_t keyN = 57;
// Bit 13 is the keyboard group of XKB, present on a second layout.
constexpr std::uint16_t secondGroup = 1u << 13;

struct PressCase {
    const char* description;
    std::uint16_t state;
    std::uint8_t keycode;
    bool counts;
};

TEST(ShortcutKey, CountsControlShiftBWhateverElseIsHeld) {
    const std::uint16_t ctrlShift = controlMask | shiftMask;
    const PressCase cases[] = {
        {"Control+Shift", ctrlShift, keyB, true},
        {"with NumLock", ctrlShift | mod2Mask, keyB, true},
        {"with CapsLock", ctrlShift | lockMask, keyB, true},
        {"with both locks", ctrlShift | mod2Mask | lockMask, keyB, true},
        {"with Alt", ctrlShift | mod1Mask, keyB, true},
        {"with Super", ctrlShift | mod4Mask, keyB, true},
        {"on a second layout", ctrlShift | secondGroup, keyB, true},
        {"Control alone", controlMask, keyB, false},
        {"Shift alone", shiftMask, keyB, false},
        {"Control with CapsLock is no Shift", controlMask | lockMask, keyB, false},
        {"no modifier", 0, keyB, false},
        {"another key", ctrlShift, keyN, false},
    };
    for (const PressCase& c : cases) {
        SCOPED_TRACE(c.description);
        EXPECT_EQ(matches(c.state, c.keycode, keyB), c.counts);
    }
}

TEST(ShortcutKey, NothingCountsWithoutAKeyForTheLetter) {
    EXPECT_FALSE(matches(controlMask | shiftMask, 0, 0));
}

TEST(ShortcutKey, GrabsEveryLockStateOnceAndAlwaysControlShift) {
    for (std::size_t i = 0; i < grabModifierSets.size(); ++i) {
        EXPECT_EQ(grabModifierSets[i] & (controlMask | shiftMask), controlMask | shiftMask);
        EXPECT_EQ(grabModifierSets[i] & ~(controlMask | shiftMask | lockMask | mod2Mask), 0);
        for (std::size_t j = i + 1; j < grabModifierSets.size(); ++j)
            EXPECT_NE(grabModifierSets[i], grabModifierSets[j]);
    }
}

} // namespace
} // namespace hueshelf
