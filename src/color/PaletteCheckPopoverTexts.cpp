#include "color/PaletteCheck.h"

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteCheck {

namespace {

const QString kLockedColorNote = u"Fix won't change a locked color, so adjust one by hand."_s;
const QString kNoDarkColorNote =
    u"No dark color to read as text. Add one so words have something readable to sit on."_s;
const QString kAllLightPrefix = u"All your colors are light"_s;

} // namespace

double pairRatio(const QString& hex, const QString& otherHex) {
    const std::optional<double> luminance = ColorUtils::relativeLuminance(hex);
    const std::optional<double> otherLuminance = ColorUtils::relativeLuminance(otherHex);
    if (!luminance || !otherLuminance) {
        return 1.0;
    }
    return ColorUtils::contrastRatio(*luminance, *otherLuminance);
}

std::optional<QString> rowNote(const Issue& issue, bool onDetailsPage, bool paletteLocked) {
    if (isLookAlike(issue.kind)) {
        return lookAlikeNote(issue, paletteLocked);
    }
    if (isReadability(issue.kind)) {
        if (issue.color.isLocked) {
            return kLockedColorNote;
        }
        if (onDetailsPage) {
            return ratioText(pairRatio(issue.color.hex, issue.other.hex));
        }
        return std::nullopt;
    }
    if (onDetailsPage) {
        return issue.color.name + u" · "_s + issue.other.name;
    }
    return std::nullopt;
}

QString settledHeadline(const Issue& issue, const QString& colorName, const QString& otherName) {
    if (isLookAlike(issue.kind)) {
        return colorName + u" and "_s + otherName + u" look different now."_s;
    }
    return colorName + u" reads on "_s + otherName + u" now."_s;
}

QString ratioChangeText(double beforeRatio, double afterRatio, const QString& otherName) {
    return QString::asprintf("%.1f", beforeRatio) + u" → "_s +
           QString::asprintf("%.1f", afterRatio) + u":1 on "_s + otherName;
}

QStringList worthKnowingLines(const QList<ColorItem>& colors) {
    QStringList lines;
    if (const std::optional<QString> scheme = ColorUtils::schemeDisplayName(colors)) {
        lines.append(*scheme + u'.');
    }
    const bool lacksDark = !colors.isEmpty() && darkColors(colors).isEmpty();
    if (lacksDark) {
        lines.append(kNoDarkColorNote);
    }
    lines.append(midToneNotes(colors));
    for (const QString& message : ColorUtils::harmonyMessages(colors)) {
        // The no-dark note already says what this one would.
        if (lacksDark && message.startsWith(kAllLightPrefix)) {
            continue;
        }
        lines.append(message);
    }
    return lines;
}

bool offersRoleNaming(const QList<ColorItem>& colors, bool paletteLocked) {
    if (paletteLocked || colors.size() < 2) {
        return false;
    }
    const QList<ColorItem> named = namedByRole(colors);
    for (qsizetype i = 0; i < colors.size(); ++i) {
        if (named.at(i).name != colors.at(i).name) {
            return true;
        }
    }
    return false;
}

} // namespace hueshelf::PaletteCheck
