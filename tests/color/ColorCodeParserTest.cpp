#include "QtPrinters.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

// The limits of each pasted form; ordinary codes are compared with an independent reader of
// the same rules by the command-line differential test.
TEST(ColorCodeParser, PastedFormsAndTheirLimits) {
    const std::pair<QString, std::optional<QString>> cases[] = {
        {u"##ff00aa"_s, u"#FF00AA"_s},
        {u"ff#00aa"_s, u"#FF00AA"_s},
        {u"# 3366ff"_s, u"#3366FF"_s}, // trimmed again once the hashes are gone
        {u"abcdef"_s, u"#ABCDEF"_s},   // six hex letters are a code before anything else
        {u"#abc"_s, std::nullopt},
        {u"#abcdef00"_s, std::nullopt},
        {u"#ab cdef"_s, std::nullopt},
        {u""_s, std::nullopt},
        {u"rgba(10, 20, 30, 0.5)"_s, u"#0A141E"_s},
        {u"RGB(255,255,255)"_s, u"#FFFFFF"_s},
        {u"rgb(300, 0, 0)"_s, u"#FF0000"_s},
        {u"  rgb ( 1 , 2 , 3 )  "_s, u"#010203"_s},
        {u"rgb(007, 0, 999)"_s, u"#0700FF"_s},
        {u"rGbA(0,0,0,.)"_s, u"#000000"_s},     // the alpha pattern is loose, and is dropped
        {u"rgb(\u0663, 9, 9)"_s, u"#000909"_s}, // a Unicode digit matches but can't be read
        {u"rgb(1, 2)"_s, std::nullopt},
        {u"rgb(1000, 0, 0)"_s, std::nullopt}, // at most three digits
        {u"rgb(-1, 0, 0)"_s, std::nullopt},
        {u"rgb(1, 2, 3"_s, std::nullopt},
        {u"rgb(1, 2, 3) x"_s, std::nullopt},
        {u"#rgb(1, 2, 3)"_s, std::nullopt},
        {u"hsl(400, 50%, 50%)"_s, hslToHex(40, 0.5, 0.5)},
        {u"HSLA(360, 100%, 50%, 0.3)"_s, u"#FF0000"_s},
        {u"hsl(0, 250%, 50%)"_s, u"#FF0000"_s},      // saturation clamps at 100
        {u"hsl(120, 100%, 100.5%)"_s, u"#FFFFFF"_s}, // lightness too
        {u"hsl(1.2.3, 100%, 50%)"_s, u"#FF0000"_s},  // an unreadable number counts 0
        {u"hsl(.5, 0%, 5.%)"_s, u"#0D0D0D"_s},
        {u"hsl(120, 100, 50)"_s, std::nullopt}, // percent signs are required
        {u"hsl(-10, 100%, 50%)"_s, std::nullopt},
        {u"hsl(120 100% 50%)"_s, std::nullopt},
        {u"hsv(1, 2%, 3%)"_s, std::nullopt},
    };
    for (const auto& [pasted, code] : cases)
        EXPECT_EQ(parseColorCode(pasted), code) << pasted.toStdString();
}

} // namespace
