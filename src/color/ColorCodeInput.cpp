#include "color/ColorCodeInput.h"

#include "color/ColorUtils.h"

using namespace Qt::StringLiterals;

namespace hueshelf::ColorCodeInput {

std::optional<QString> read(const QString& text) {
    if (std::optional<QString> pasted = ColorUtils::parseColorCode(text))
        return pasted;
    if (const std::optional<QString> digits =
            ColorUtils::normalizedDigits(ColorUtils::canonicalHex(text)))
        return u'#' + *digits;
    return std::nullopt;
}

QString unreadableSentence(const QString& text) {
    return u"\""_s + text + u"\" is not a color code HueShelf can read. "_s + formsText();
}

QString formsText() {
    return u"Write colors as #RRGGBB, #RGB, rgb(r, g, b) or hsl(h, s%, l%)."_s;
}

} // namespace hueshelf::ColorCodeInput
