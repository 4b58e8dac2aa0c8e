#include "color/PaletteCheck.h"

using namespace Qt::StringLiterals;

namespace hueshelf::PaletteCheck {

namespace {

// The interface's "good" and "caution" colours.
constexpr ColorUtils::DisplayColor kGood{0.36, 0.68, 0.42, 1.0};
constexpr ColorUtils::DisplayColor kCaution{0.83, 0.64, 0.30, 1.0};

} // namespace

QString visionText(ColorVisionSimulation::SimulationType type) {
    // The hyphen doesn't break, so the words never part at the end of a line.
    return type == ColorVisionSimulation::SimulationType::tritanopia ? u"blue‑yellow vision"_s
                                                                     : u"red‑green vision"_s;
}

QString fixCountText(int count) {
    if (count == 0) {
        return u"Nothing to fix"_s;
    }
    if (count == 1) {
        return u"1 thing to fix"_s;
    }
    return QString::number(count) + u" things to fix"_s;
}

QString checkButtonTooltip(int issueCount) {
    if (issueCount == 0) {
        return u"Check — everything reads well"_s;
    }
    if (issueCount == 1) {
        return u"Check — 1 thing to fix"_s;
    }
    return u"Check — "_s + QString::number(issueCount) + u" things to fix"_s;
}

CheckButtonIcon checkButtonIcon(int issueCount) {
    if (issueCount == 0) {
        return {u"checkmark.circle.fill"_s, kGood};
    }
    return {u"exclamationmark.circle.fill"_s, kCaution};
}

QStringList midToneNotes(const QList<ColorItem>& colors) {
    QStringList notes;
    const QList<ColorItem> lights = lightColors(colors);
    if (lights.isEmpty()) {
        return notes;
    }
    for (const ColorItem& midTone : midToneColors(colors)) {
        const double ratio = highestRatio(midTone.hex, lights);
        if (ratio >= 4.5) {
            continue;
        }
        if (ratio >= 3.0) {
            notes.append(midTone.name +
                         u" works for headings on your light colors, not body text."_s);
        } else {
            notes.append(
                midTone.name +
                u" won’t carry even a heading on your light colors. Keep it for fills and lines."_s);
        }
    }
    return notes;
}

} // namespace hueshelf::PaletteCheck
