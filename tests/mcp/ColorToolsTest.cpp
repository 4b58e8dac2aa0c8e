#include "McpTestHome.h"
#include "SchemaCheck.h"
#include "color/ColorUtils.h"

#include <cmath>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

class ColorTools : public McpTestHome {
protected:
    QJsonObject checkedSuccess(const QString& tool, const QJsonObject& arguments) {
        const QJsonObject structured = success(tool, arguments);
        const QStringList problems = schemaProblems(structured, tools->find(tool)->outputSchema);
        EXPECT_TRUE(problems.isEmpty()) << problems.join(u"; "_s).toStdString();
        return structured;
    }
    QJsonObject contrast(const QString& foreground, const QString& background) {
        return checkedSuccess(u"check_contrast"_s,
                              {{u"foreground"_s, foreground}, {u"background"_s, background}});
    }
};

double exactRatio(const QString& a, const QString& b) {
    return ColorUtils::contrastRatio(*ColorUtils::relativeLuminance(a),
                                     *ColorUtils::relativeLuminance(b));
}

// Each WCAG mark flips exactly at its threshold: #767676 on white is just above 4.5, #777777
// just below; #595959 just above 7.
TEST_F(ColorTools, ContrastPassMarksAtTheirThresholds) {
    struct Case {
        QString foreground;
        QString background;
        bool aaNormal, aaLarge, aaaNormal, aaaLarge;
        QString level;
    };
    const Case cases[] = {
        {u"#000000"_s, u"#FFFFFF"_s, true, true, true, true, u"readable"_s},
        {u"#767676"_s, u"#FFFFFF"_s, true, true, false, true, u"readable"_s},
        {u"#777777"_s, u"#FFFFFF"_s, false, true, false, false, u"lowContrast"_s},
        {u"#595959"_s, u"#FFFFFF"_s, true, true, true, true, u"readable"_s},
        {u"#5A5A5A"_s, u"#FFFFFF"_s, true, true, false, true, u"readable"_s},
        {u"#949494"_s, u"#FFFFFF"_s, false, true, false, false, u"lowContrast"_s},
        {u"#959595"_s, u"#FFFFFF"_s, false, false, false, false, u"poor"_s},
        {u"#FFFFFF"_s, u"#FFFFFF"_s, false, false, false, false, u"poor"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(QString(c.foreground + u" on "_s + c.background).toStdString());
        const double ratio = exactRatio(c.foreground, c.background);
        // The cases sit where they claim to.
        EXPECT_EQ(ratio >= 4.5, c.aaNormal);
        EXPECT_EQ(ratio >= 7.0, c.aaaNormal);
        const QJsonObject answer = contrast(c.foreground, c.background);
        const QJsonObject passes = answer.value(u"passes"_s).toObject();
        EXPECT_EQ(passes.value(u"aaNormalText"_s).toBool(), c.aaNormal);
        EXPECT_EQ(passes.value(u"aaLargeText"_s).toBool(), c.aaLarge);
        EXPECT_EQ(passes.value(u"aaaNormalText"_s).toBool(), c.aaaNormal);
        EXPECT_EQ(passes.value(u"aaaLargeText"_s).toBool(), c.aaaLarge);
        EXPECT_EQ(answer.value(u"level"_s).toString(), c.level);
        // Cut, never rounded up: a failing pair never shows 4.50.
        EXPECT_DOUBLE_EQ(answer.value(u"ratio"_s).toDouble(), std::floor(ratio * 100.0) / 100.0);
        EXPECT_EQ(answer.value(u"ratio"_s).toDouble() >= 4.5, c.aaNormal);
    }
}

TEST_F(ColorTools, ContrastIsTheSameEitherWayRound) {
    const QJsonObject a = contrast(u"#1B2A49"_s, u"#F4E8C1"_s);
    const QJsonObject b = contrast(u"#F4E8C1"_s, u"#1B2A49"_s);
    EXPECT_EQ(a.value(u"ratio"_s), b.value(u"ratio"_s));
    EXPECT_EQ(a.value(u"passes"_s), b.value(u"passes"_s));
    EXPECT_EQ(a.value(u"foreground"_s), u"#1B2A49"_s);
    EXPECT_EQ(b.value(u"foreground"_s), u"#F4E8C1"_s);
}

TEST_F(ColorTools, ContrastReadsEveryCodeFormTheProgramReads) {
    const std::pair<QString, QString> forms[] = {
        {u"#000"_s, u"#000000"_s},
        {u"000000"_s, u"#000000"_s},
        {u"  #abcdef "_s, u"#ABCDEF"_s},
        {u"rgb(255, 0, 0)"_s, u"#FF0000"_s},
        {u"rgba(0, 128, 0, 0.5)"_s, u"#008000"_s},
        {u"hsl(240, 100%, 50%)"_s, u"#0000FF"_s},
        {u"#FFF"_s, u"#FFFFFF"_s},
    };
    for (const auto& [text, hex] : forms) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(contrast(text, u"#808080"_s).value(u"foreground"_s).toString(), hex);
        EXPECT_EQ(contrast(u"#808080"_s, text).value(u"background"_s).toString(), hex);
    }
}

// A failing pair gets a foreground that passes; a passing one gets none.
TEST_F(ColorTools, ContrastSuggestsAForegroundOnlyWhenItFails) {
    const QJsonObject failing = contrast(u"#777777"_s, u"#FFFFFF"_s);
    const QString suggested = failing.value(u"suggestedForeground"_s).toString();
    ASSERT_FALSE(suggested.isEmpty());
    EXPECT_EQ(suggested, *ColorUtils::adjustedForContrast(u"#777777"_s, u"#FFFFFF"_s, 4.5));
    EXPECT_GE(exactRatio(suggested, u"#FFFFFF"_s), 4.5);
    EXPECT_TRUE(contrast(u"#767676"_s, u"#FFFFFF"_s).value(u"suggestedForeground"_s).isNull());
}

TEST_F(ColorTools, ContrastRefusals) {
    const std::pair<QJsonObject, QString> cases[] = {
        {{{u"foreground"_s, u"blue"_s}, {u"background"_s, u"#FFFFFF"_s}},
         u"\"blue\" is not a color code HueShelf can read. Write colors as #RRGGBB, #RGB, "
         u"rgb(r, g, b) or hsl(h, s%, l%)."_s},
        {{{u"foreground"_s, u"#000000"_s}, {u"background"_s, u"#12345"_s}},
         u"\"#12345\" is not a color code HueShelf can read. Write colors as #RRGGBB, #RGB, "
         u"rgb(r, g, b) or hsl(h, s%, l%)."_s},
        {{{u"background"_s, u"#FFFFFF"_s}}, u"check_contrast needs the argument \"foreground\"."_s},
        {{}, u"check_contrast needs the argument \"foreground\"."_s},
        {{{u"foreground"_s, 0}, {u"background"_s, u"#FFFFFF"_s}},
         u"The argument \"foreground\" must be a string, not a number."_s},
        {{{u"foreground"_s, u"#000000"_s}, {u"background"_s, QJsonObject()}},
         u"The argument \"background\" must be a string, not an object."_s},
        {{{u"text"_s, u"#000000"_s}, {u"background"_s, u"#FFFFFF"_s}},
         u"check_contrast has no argument \"text\"; it takes \"foreground\" and "
         u"\"background\"."_s},
    };
    for (const auto& [arguments, sentence] : cases) {
        SCOPED_TRACE(toText(arguments));
        EXPECT_EQ(failure(u"check_contrast"_s, arguments), sentence);
    }
}

TEST_F(ColorTools, ConvertGivesEveryCopyFormat) {
    const QJsonObject answer = checkedSuccess(u"convert_color"_s, {{u"color"_s, u"#3366ff"_s}});
    EXPECT_EQ(answer.value(u"input"_s), u"#3366ff"_s);
    EXPECT_EQ(answer.value(u"hex"_s), u"#3366FF"_s);
    const QString name = ColorUtils::colorName(u"#3366FF"_s);
    EXPECT_EQ(answer.value(u"name"_s).toString(), name);
    const QJsonObject formats = answer.value(u"formats"_s).toObject();
    EXPECT_EQ(formats.size(), 6);
    for (const ColorUtils::CopyFormat format : ColorUtils::allCopyFormats()) {
        EXPECT_EQ(formats.value(ColorUtils::copyFormatIdentifier(format)).toString(),
                  ColorUtils::formattedCode(u"#3366FF"_s, format, name));
    }
    EXPECT_EQ(formats.value(u"hex-no-hash"_s), u"3366FF"_s);
    EXPECT_EQ(formats.value(u"rgb"_s), u"rgb(51, 102, 255)"_s);
    EXPECT_EQ(formats.value(u"tailwind"_s), u"bg-[#3366FF]"_s);
    EXPECT_EQ(answer.value(u"rgb"_s).toObject(),
              (QJsonObject{{u"r"_s, 51}, {u"g"_s, 102}, {u"b"_s, 255}}));
    EXPECT_EQ(answer.value(u"hsl"_s).toObject(),
              (QJsonObject{{u"h"_s, 225}, {u"s"_s, 100}, {u"l"_s, 60}}));
}

TEST_F(ColorTools, ConvertNamesTheCssVariableAfterTheGivenName) {
    const QJsonObject formats =
        checkedSuccess(u"convert_color"_s,
                       {{u"color"_s, u"hsl(0, 0%, 0%)"_s}, {u"name"_s, u" Brand Ink "_s}})
            .value(u"formats"_s)
            .toObject();
    EXPECT_EQ(formats.value(u"css-var"_s), u"--brand-ink: #000000"_s);
    const QJsonObject unnamed =
        checkedSuccess(u"convert_color"_s, {{u"color"_s, u"#000000"_s}, {u"name"_s, u"  "_s}})
            .value(u"formats"_s)
            .toObject();
    EXPECT_EQ(unnamed.value(u"css-var"_s),
              ColorUtils::formattedCode(u"#000000"_s, ColorUtils::CopyFormat::cssVar,
                                        ColorUtils::colorName(u"#000000"_s)));
}

TEST_F(ColorTools, ConvertRefusals) {
    const std::pair<QJsonObject, QString> cases[] = {
        {{}, u"convert_color needs the argument \"color\"."_s},
        {{{u"color"_s, u""_s}},
         u"\"\" is not a color code HueShelf can read. Write colors as #RRGGBB, #RGB, "
         u"rgb(r, g, b) or hsl(h, s%, l%)."_s},
        {{{u"color"_s, true}}, u"The argument \"color\" must be a string, not a boolean."_s},
        {{{u"color"_s, u"#000000"_s}, {u"format"_s, u"rgb"_s}},
         u"convert_color has no argument \"format\"; it takes \"color\" and \"name\"."_s},
    };
    for (const auto& [arguments, sentence] : cases) {
        SCOPED_TRACE(toText(arguments));
        EXPECT_EQ(failure(u"convert_color"_s, arguments), sentence);
    }
}

} // namespace
} // namespace hueshelf::testing
