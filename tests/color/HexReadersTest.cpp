#include "QtPrinters.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

// Stored codes reach these readers as they were typed or synced; the command line only ever
// hands them canonical codes.
TEST(HexReaders, StrictReaderAcceptsOnlySixDigitsAfterOneHash) {
    const std::pair<QString, std::optional<QString>> cases[] = {
        {u" #abcdef\n"_s, u"ABCDEF"_s},
        {u"\t#3366Ff "_s, u"3366FF"_s},
        {u"#abc"_s, std::nullopt},      // three digits have no colour in a computation
        {u"##abcdef"_s, std::nullopt},  // only one hash comes off
        {u"#abcdefff"_s, std::nullopt}, // no alpha
        {u"#abcdeg"_s, std::nullopt},
        {u"# abcdef"_s, std::nullopt}, // the trim happens before the hash comes off
        {u"abcdef#"_s, std::nullopt},
        {u"#"_s, std::nullopt},
    };
    for (const auto& [input, digits] : cases)
        EXPECT_EQ(normalizedDigits(input), digits) << input.toStdString();
    EXPECT_FALSE(hexToRGB(u"#abc"_s)); // the lenient reader would accept this one
    EXPECT_EQ(hexToRGB(u" #0a141e "_s)->g, 20);
}

TEST(HexReaders, LenientReaderDoublesShortCodesAndLeavesOtherTextAlone) {
    const std::pair<QString, QString> cases[] = {
        {u"  #abc "_s, u"#AABBCC"_s},
        {u"f0a"_s, u"#FF00AA"_s},
        {u"\n3366ff\n"_s, u"#3366FF"_s},
        {u" hello "_s, u" hello "_s}, // returned untrimmed
        {u"#abcdefff"_s, u"#abcdefff"_s},
        {u"##abc"_s, u"##abc"_s},
        {u"#abcd"_s, u"#abcd"_s},
        {u"#ab"_s, u"#ab"_s},
        {u""_s, u""_s},
    };
    for (const auto& [input, output] : cases)
        EXPECT_EQ(canonicalHex(input), output) << input.toStdString();
}

TEST(HexReaders, DisplayReaderKnowsAlphaFirstEightDigitCodes) {
    const std::pair<QString, std::optional<DisplayColor>> cases[] = {
        {u"#3366FF"_s, DisplayColor{51 / 255.0, 102 / 255.0, 1.0, 1.0}},
        {u"80FF0000"_s, DisplayColor{1.0, 0.0, 0.0, 128 / 255.0}},
        {u"#f0a"_s, DisplayColor{1.0, 0.0, 170 / 255.0, 1.0}},
        {u"--#0000ff;;"_s, DisplayColor{0.0, 0.0, 1.0, 1.0}}, // non-alphanumerics trimmed
        {u"#12345"_s, std::nullopt},
        {u"#ab-cdef"_s, std::nullopt}, // only the ends are trimmed
        {u"#GG0000"_s, std::nullopt},
        {u"###"_s, std::nullopt},
        {u"#1234567"_s, std::nullopt},
    };
    for (const auto& [input, color] : cases) {
        SCOPED_TRACE(input.toStdString());
        const std::optional<DisplayColor> got = parseDisplayColor(input);
        ASSERT_EQ(got.has_value(), color.has_value());
        if (got) {
            EXPECT_DOUBLE_EQ(got->red, color->red);
            EXPECT_DOUBLE_EQ(got->green, color->green);
            EXPECT_DOUBLE_EQ(got->blue, color->blue);
            EXPECT_DOUBLE_EQ(got->alpha, color->alpha);
        }
    }
}

} // namespace
