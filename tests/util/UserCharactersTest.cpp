#include "util/UserCharacters.h"

#include <gtest/gtest.h>

namespace hueshelf {
namespace {

using namespace Qt::StringLiterals;

// Written with escapes so the clusters are plain to see: what a reader counts as one character.
TEST(UserCharacters, CountsExtendedGraphemeClusters) {
    const struct {
        QString text;
        int characters;
    } cases[] = {
        {u""_s, 0},
        {u"abc"_s, 3},
        {u"e\u0301"_s, 1},                                  // combining acute
        {u"\U0001F469\u200D\U0001F4BB"_s, 1},               // ZWJ sequence
        {u"\U0001F44D\U0001F3FD"_s, 1},                     // skin tone
        {u"\U0001F1EB\U0001F1F7"_s, 1},                     // a flag
        {u"\U0001F3A8\U0001F1EB\U0001F1F7"_s, 2},           // a flag right after a pictograph
        {u"\u00A9\U0001F1EB\U0001F1F7"_s, 2},               // ... or after a text-style symbol
        {u"\U0001F1EB\U0001F1F7\U0001F1E9\U0001F1EA"_s, 2}, // two flags
        {u"\U0001F1EB\U0001F1F7\U0001F1E9"_s, 2},           // a lone indicator after a pair
        {u"\r\n"_s, 1},
        {u"\uAC00\u11A8"_s, 1}, // Hangul syllable with a trailing jamo
    };
    for (const auto& c : cases)
        EXPECT_EQ(UserCharacters::count(c.text), c.characters) << c.text.toStdString();
}

TEST(UserCharacters, CutsBetweenClustersOnly) {
    const QString flags = u"\U0001F3A8\U0001F1EB\U0001F1F7\U0001F3A8"_s;
    EXPECT_EQ(UserCharacters::first(flags, 2), u"\U0001F3A8\U0001F1EB\U0001F1F7"_s);
    EXPECT_EQ(UserCharacters::first(u"ae\u0301b"_s, 2), u"ae\u0301"_s);
    EXPECT_EQ(UserCharacters::first(u"ab"_s, 5), u"ab"_s);
    EXPECT_EQ(UserCharacters::first(u"ab"_s, 0), QString());
}

} // namespace
} // namespace hueshelf
