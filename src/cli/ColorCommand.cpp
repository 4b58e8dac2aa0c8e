#include "cli/ColorArguments.h"
#include "cli/Invocation.h"
#include "cli/TextTable.h"
#include "color/ColorUtils.h"

#include <QJsonValue>

using namespace Qt::StringLiterals;

namespace hueshelf::cli {
namespace {

// Everything the colour command tells about one readable code.
struct ColorFacts {
    QString hex;
    QString name;
    ColorUtils::RGB rgb;
    ColorUtils::HSL hsl;
    double luminance = 0.0;
};

std::optional<ColorFacts> factsOf(const QString& input) {
    const std::optional<QString> hex = ColorUtils::parseColorCode(input);
    if (!hex)
        return std::nullopt;
    const auto rgb = ColorUtils::hexToRGB(*hex);
    const auto hsl = ColorUtils::hexToHSL(*hex);
    const auto luminance = ColorUtils::relativeLuminance(*hex);
    if (!rgb || !hsl || !luminance)
        return std::nullopt;
    return ColorFacts{*hex, ColorUtils::colorName(*hex), *rgb, *hsl, *luminance};
}

QJsonObject jsonOf(const QString& input, const std::optional<ColorFacts>& facts) {
    QJsonObject object{{u"input"_s, input}};
    if (!facts) {
        object.insert(u"hex"_s, QJsonValue::Null);
        return object;
    }
    QJsonObject formats;
    for (const ColorUtils::CopyFormat format : ColorUtils::allCopyFormats()) {
        formats.insert(ColorUtils::copyFormatIdentifier(format),
                       ColorUtils::formattedCode(facts->hex, format, facts->name));
    }
    object.insert(u"hex"_s, facts->hex);
    object.insert(u"name"_s, facts->name);
    object.insert(u"rgb"_s, QJsonArray{facts->rgb.r, facts->rgb.g, facts->rgb.b});
    object.insert(u"hsl"_s, QJsonArray{facts->hsl.h, facts->hsl.s, facts->hsl.l});
    object.insert(u"luminance"_s, facts->luminance);
    object.insert(u"formats"_s, formats);
    return object;
}

QString textOf(const QString& input, const std::optional<ColorFacts>& facts) {
    TextTable rows(u"  "_s);
    if (!facts) {
        rows.addRow({u"not a color code"_s});
        return input + u'\n' + rows.render();
    }
    rows.addRow({u"hex"_s, facts->hex});
    rows.addRow({u"name"_s, facts->name});
    rows.addRow({u"luminance"_s, QString::number(facts->luminance, 'f', 4)});
    for (const ColorUtils::CopyFormat format : ColorUtils::allCopyFormats()) {
        if (format == ColorUtils::CopyFormat::hex)
            continue; // the hex row above
        rows.addRow({ColorUtils::copyFormatIdentifier(format),
                     ColorUtils::formattedCode(facts->hex, format, facts->name)});
    }
    return input + u'\n' + rows.render();
}

int runColor(Invocation& call) {
    return ColorArguments::reportEachCode(call, [](const QString& input) {
        const auto facts = factsOf(input);
        return ColorArguments::CodeReport{facts.has_value(), jsonOf(input, facts),
                                          textOf(input, facts)};
    });
}

} // namespace

Command colorCommand() {
    return Command{
        .name = u"color"_s,
        .summary = u"Describe colors: canonical code, name, RGB, HSL, luminance, copy formats"_s,
        .usage = u"color CODE... [--json]"_s,
        .description =
            u"Reads each CODE as a pasted code and prints its canonical code (#RRGGBB), its\n"
            u"automatic name, its luminance and its six copy formats (hex, hex-no-hash, rgb,\n"
            u"hsl, css-var, tailwind), the css-var named after the automatic name.\n"
            u"\n"
            u"JSON: an array, one object per CODE:\n"
            u"  {\"input\", \"hex\", \"name\", \"rgb\": [r, g, b], \"hsl\": [h, s, l],\n"
            u"   \"luminance\", \"formats\": {\"hex\", \"hex-no-hash\", \"rgb\", \"hsl\",\n"
            u"   \"css-var\", \"tailwind\"}}\n"
            u"h is in degrees, s and l from 0 to 1, unrounded. A CODE that isn't a color gives\n"
            u"{\"input\", \"hex\": null}; after all of them were printed the exit status is 1.\n"_s,
        .options = {},
        .minPositionals = 1,
        .maxPositionals = -1,
        .takesJson = true,
        .handler = &runColor,
    };
}

} // namespace hueshelf::cli
