#include "helper/ColorCodeText.h"

#include "color/ColorUtils.h"

using namespace Qt::StringLiterals;

namespace hueshelf::helper::ColorCodeText {

std::optional<QString> read(const QString& text) {
    if (std::optional<QString> pasted = ColorUtils::parseColorCode(text))
        return pasted;
    if (const std::optional<QString> digits =
            ColorUtils::normalizedDigits(ColorUtils::canonicalHex(text)))
        return u'#' + *digits;
    return std::nullopt;
}

QString unreadableSentence(const QString& text) {
    return u"\""_s + text +
           u"\" is not a color code HueShelf can read. Write colors as #RRGGBB, #RGB, "
           u"rgb(r, g, b) or hsl(h, s%, l%)."_s;
}

} // namespace hueshelf::helper::ColorCodeText
