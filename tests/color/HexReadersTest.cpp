#include "QtPrinters.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

TEST(HexReaders, StrictReaderAcceptsOnlySixDigitsAfterOneHash) {
    struct Case {
        QString input;
        std::optional<QString> digits;
    };
    const Case cases[] = {
        {u" #abcdef\n"_s, u"ABCDEF"_s},
        {u"abcdef"_s, u"ABCDEF"_s},
        {u"\t#3366Ff "_s, u"3366FF"_s},
        {u"#abc"_s, std::nullopt},      // three digits have no colour in a computation
        {u"##abcdef"_s, std::nullopt},  // only one hash comes off
        {u"#abcdefff"_s, std::nullopt}, // no alpha
        {u"#abcdeg"_s, std::nullopt},
        {u"# abcdef"_s, std::nullopt}, // the trim happens before the hash comes off
        {u"abcdef#"_s, std::nullopt},
        {u""_s, std::nullopt},
        {u"#"_s, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.input.toStdString());
        EXPECT_EQ(normalizedDigits(c.input), c.digits);
    }
}

TEST(HexReaders, LenientReaderDoublesShortCodesAndLeavesOtherTextAlone) {
    struct Case {
        QString input;
        QString output;
    };
    const Case cases[] = {
        {u"abc"_s, u"#AABBCC"_s},
        {u"  #abc "_s, u"#AABBCC"_s},
        {u"f0a"_s, u"#FF00AA"_s},
        {u"#3366ff"_s, u"#3366FF"_s},
        {u"\n3366FF\n"_s, u"#3366FF"_s},
        {u" hello "_s, u" hello "_s}, // returned untrimmed
        {u"#abcdefff"_s, u"#abcdefff"_s},
        {u"##abc"_s, u"##abc"_s},
        {u"#abcd"_s, u"#abcd"_s},
        {u"#ab"_s, u"#ab"_s},
        {u""_s, u""_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.input.toStdString());
        EXPECT_EQ(canonicalHex(c.input), c.output);
    }
}

TEST(HexReaders, DisplayReaderKnowsAlphaFirstEightDigitCodes) {
    struct Case {
        QString input;
        std::optional<DisplayColor> color;
    };
    const Case cases[] = {
        {u"#3366FF"_s, DisplayColor{51 / 255.0, 102 / 255.0, 1.0, 1.0}},
        {u"80FF0000"_s, DisplayColor{1.0, 0.0, 0.0, 128 / 255.0}},
        {u"#f0a"_s, DisplayColor{1.0, 0.0, 170 / 255.0, 1.0}},
        {u"--#0000ff;;"_s, DisplayColor{0.0, 0.0, 1.0, 1.0}}, // non-alphanumerics trimmed
        {u"  ABC  "_s, DisplayColor{170 / 255.0, 187 / 255.0, 204 / 255.0, 1.0}},
        {u"#12345"_s, std::nullopt},
        {u"#ab-cdef"_s, std::nullopt}, // only the ends are trimmed
        {u"#GG0000"_s, std::nullopt},
        {u"###"_s, std::nullopt},
        {u"#1234567"_s, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.input.toStdString());
        const std::optional<DisplayColor> got = parseDisplayColor(c.input);
        ASSERT_EQ(got.has_value(), c.color.has_value());
        if (got) {
            EXPECT_DOUBLE_EQ(got->red, c.color->red);
            EXPECT_DOUBLE_EQ(got->green, c.color->green);
            EXPECT_DOUBLE_EQ(got->blue, c.color->blue);
            EXPECT_DOUBLE_EQ(got->alpha, c.color->alpha);
        }
    }
}

TEST(HexReaders, BytesComeFromTheStrictReader) {
    const std::optional<RGB> rgb = hexToRGB(u" #0a141e "_s);
    ASSERT_TRUE(rgb);
    EXPECT_EQ(rgb->r, 10);
    EXPECT_EQ(rgb->g, 20);
    EXPECT_EQ(rgb->b, 30);
    EXPECT_FALSE(hexToRGB(u"#abc"_s)); // the lenient reader would accept this one
    EXPECT_FALSE(hexToRGB(u"rgb(1, 2, 3)"_s));
}

} // namespace
