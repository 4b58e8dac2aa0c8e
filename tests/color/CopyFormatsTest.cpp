#include "QtPrinters.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

TEST(CopyFormats, EachFormatOfACode) {
    struct Case {
        QString hex;
        CopyFormat format;
        QString name;
        QString output;
    };
    const Case cases[] = {
        {u"#3366FF"_s, CopyFormat::hex, u""_s, u"#3366FF"_s},
        {u"3366ff"_s, CopyFormat::hex, u""_s, u"#3366FF"_s},
        {u"#3366FF"_s, CopyFormat::hexNoHash, u""_s, u"3366FF"_s},
        {u"#3366FF"_s, CopyFormat::rgb, u""_s, u"rgb(51, 102, 255)"_s},
        {u"#3366FF"_s, CopyFormat::hsl, u""_s, u"hsl(225, 100%, 60%)"_s},
        {u"#3366FF"_s, CopyFormat::cssVar, u"Primary Blue"_s, u"--primary-blue: #3366FF"_s},
        {u"#3366FF"_s, CopyFormat::tailwind, u""_s, u"bg-[#3366FF]"_s},
        {u"#abc"_s, CopyFormat::cssVar, u"  "_s, u"--color: #AABBCC"_s},
        {u"#abc"_s, CopyFormat::rgb, u""_s, u"rgb(170, 187, 204)"_s},
        // #780500 has a hue of exactly 2.5 degrees: half rounds away from zero, not to even.
        {u"#780500"_s, CopyFormat::hsl, u""_s, u"hsl(3, 100%, 24%)"_s},
        {u"#780100"_s, CopyFormat::hsl, u""_s, u"hsl(1, 100%, 24%)"_s},
        {u"#010101"_s, CopyFormat::hsl, u""_s, u"hsl(0, 0%, 0%)"_s},
        {u"#FF0001"_s, CopyFormat::hsl, u""_s, u"hsl(360, 100%, 50%)"_s},
        // Text that isn't a code passes through; hexNoHash drops its first character anyway.
        {u"nope"_s, CopyFormat::hexNoHash, u"x"_s, u"ope"_s},
        {u"nope"_s, CopyFormat::rgb, u""_s, u"nope"_s},
        {u"nope"_s, CopyFormat::hsl, u""_s, u"nope"_s},
        {u"nope"_s, CopyFormat::tailwind, u""_s, u"bg-[nope]"_s},
        {u""_s, CopyFormat::hexNoHash, u""_s, u""_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(QString(c.hex + u' ' + copyFormatIdentifier(c.format)).toStdString());
        EXPECT_EQ(formattedCode(c.hex, c.format, c.name), c.output);
    }
}

TEST(CopyFormats, CssVariableSlugs) {
    struct Case {
        QString name;
        QString slug;
    };
    const Case cases[] = {
        {u"Primary Blue"_s, u"primary-blue"_s},
        {u"  --Deep   Navy 2!! "_s, u"deep-navy-2"_s},
        {u"a__b..c"_s, u"a-b-c"_s},
        {u"Grün"_s, u"gr-n"_s}, // only a-z and 0-9 survive
        {u"日本"_s, u"color"_s},
        {u"---"_s, u"color"_s},
        {u""_s, u"color"_s},
        {u"42"_s, u"42"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        EXPECT_EQ(cssVariableSlug(c.name), c.slug);
    }
}

TEST(CopyFormats, IdentifiersLabelsAndMenuOrder) {
    const QString identifiers[] = {u"hex"_s, u"hex-no-hash"_s, u"rgb"_s,
                                   u"hsl"_s, u"css-var"_s,     u"tailwind"_s};
    const QString labels[] = {u"HEX"_s, u"HEX (no #)"_s,   u"RGB"_s,
                              u"HSL"_s, u"CSS Variable"_s, u"Tailwind"_s};
    const auto& formats = allCopyFormats();
    for (std::size_t i = 0; i < formats.size(); ++i) {
        EXPECT_EQ(copyFormatIdentifier(formats[i]), identifiers[i]);
        EXPECT_EQ(copyFormatLabel(formats[i]), labels[i]);
        EXPECT_EQ(copyFormatFromIdentifier(identifiers[i]), formats[i]);
    }
    // A missing or unknown preference means hex; identifiers are case-sensitive.
    EXPECT_EQ(copyFormatFromIdentifier(u""_s), CopyFormat::hex);
    EXPECT_EQ(copyFormatFromIdentifier(u"cmyk"_s), CopyFormat::hex);
    EXPECT_EQ(copyFormatFromIdentifier(u"RGB"_s), CopyFormat::hex);
}

} // namespace
