#include "QtPrinters.h"
#include "color/ColorUtils.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace hueshelf::ColorUtils;

namespace {

// Every format of canonical codes under their automatic names is compared with an independent
// model through the command line; here stored codes as typed, names a person gave, and the
// rounding limits.
TEST(CopyFormats, EachFormatOfACode) {
    struct Case {
        QString hex;
        CopyFormat format;
        QString name;
        QString output;
    };
    const Case cases[] = {
        {u"3366ff"_s, CopyFormat::hex, u""_s, u"#3366FF"_s},
        {u"#3366FF"_s, CopyFormat::cssVar, u"Primary Blue"_s, u"--primary-blue: #3366FF"_s},
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
    // Only a-z and 0-9 survive; runs of anything else become one hyphen.
    const std::pair<QString, QString> cases[] = {
        {u"  --Deep   Navy 2!! "_s, u"deep-navy-2"_s},
        {u"a__b..c"_s, u"a-b-c"_s},
        {u"Grün"_s, u"gr-n"_s},
        {u"日本"_s, u"color"_s},
        {u"---"_s, u"color"_s},
        {u""_s, u"color"_s},
        {u"42"_s, u"42"_s},
    };
    for (const auto& [name, slug] : cases)
        EXPECT_EQ(cssVariableSlug(name), slug) << name.toStdString();
}

TEST(CopyFormats, IdentifiersReadBackAndAnythingElseMeansHex) {
    for (const CopyFormat format : allCopyFormats())
        EXPECT_EQ(copyFormatFromIdentifier(copyFormatIdentifier(format)), format);
    // A missing or unknown preference means hex; identifiers are case-sensitive.
    for (const QString& text : {u""_s, u"cmyk"_s, u"RGB"_s})
        EXPECT_EQ(copyFormatFromIdentifier(text), CopyFormat::hex) << text.toStdString();
}

} // namespace
