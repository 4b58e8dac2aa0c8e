#include "color/PaletteCheck.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteCheck {

QString moveText(const LightnessMove& move) {
    const long percent = std::lround(std::abs(move.lightnessChange) * 100.0);
    return move.name + u" is "_s + QString::number(percent) + u"% "_s +
           (move.lightnessChange < 0 ? u"darker"_s : u"lighter"_s) + u", same hue."_s;
}

QString fixButtonText(const std::optional<LightnessMove>& move) {
    if (!move) {
        return u"Fix"_s;
    }
    return u"Fix: "_s + (move->lightnessChange < 0 ? u"darken "_s : u"lighten "_s) + move->name;
}

QString lookAlikeNote(const Issue& issue, bool paletteLocked) {
    if (paletteLocked) {
        return u"Shown as they see them. Unlock the palette to fix."_s;
    }
    if (issue.move) {
        return u"Shown as they see them. Fix "_s +
               (issue.move->lightnessChange < 0 ? u"darkens "_s : u"lightens "_s) +
               issue.move->name + u" a little."_s;
    }
    if (!issue.color.isLocked && !issue.other.isLocked) {
        return u"Shown as they see them. Any change would cause another problem, so make one "
               u"lighter or darker by hand."_s;
    }
    return u"Shown as they see them. Fix won't change a locked color, so adjust one by hand."_s;
}

QString ratioText(double ratio) {
    return QString::asprintf("%.1f:1 ", ratio) +
           ColorUtils::inlineWord(ColorUtils::contrastLevelForRatio(ratio));
}

} // namespace hueshelf::PaletteCheck
