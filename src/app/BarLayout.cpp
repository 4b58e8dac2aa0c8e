#include "app/BarLayout.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>
#include <map>

namespace hueshelf::app::BarLayout {

namespace {

int roundedUp(double width) {
    return static_cast<int>(std::ceil(width));
}

} // namespace

TextWidth systemTextWidth() {
    return [](const QString& text, bool medium) {
        QFont font = QGuiApplication::font();
        font.setPointSizeF(11);
        font.setWeight(medium ? QFont::Medium : QFont::Normal);
        return QFontMetricsF(font).horizontalAdvance(text);
    };
}

int visibleCount(qsizetype colorCount) {
    return static_cast<int>(std::clamp<qsizetype>(colorCount, 0, maxVisibleSwatches));
}

int overflowCount(qsizetype colorCount) {
    return static_cast<int>(std::max<qsizetype>(colorCount - maxVisibleSwatches, 0));
}

int nameWidth(const QString& name, const TextWidth& width) {
    return roundedUp(width(name, false)) + 2;
}

int barWidth(const QString& paletteName, qsizetype colorCount, bool syncEnabled,
             const TextWidth& width) {
    const int n = visibleCount(colorCount);
    int total = syncEnabled ? 54 : 24;
    total += overflowCount(colorCount) > 0 ? 34 : 0;
    total += n * swatchSide + std::max(n - 1, 0) * swatchGap + 6 + 28;
    total += roundedUp(width(brand, true)) + 18;
    total += 1;
    const int name = nameWidth(paletteName, width);
    total += name > chipNameMaxWidth ? 235 : name + 66 + 9;
    total += 237 + 1;
    total += 48 + 20 + 12;
    return total;
}

QString chipAccessibleLabel(const QString& name) {
    return u"Palette: "_s + name + u". Switch or make a palette"_s;
}

QString chipTooltip(const QString& name, const TextWidth& width) {
    if (nameWidth(name, width) > chipNameMaxWidth)
        return name + u". Switch palette"_s;
    return u"Switch palette"_s;
}

QString addButtonLabel(bool paletteLocked) {
    return paletteLocked ? u"Unlock this palette to add colors"_s : u"Add a color"_s;
}

LockLook lockLook(bool paletteLocked) {
    if (!paletteLocked)
        return {u"lock.open"_s, {}, {}};
    const QColor amber = QColor::fromRgbF(0.83f, 0.64f, 0.30f);
    QColor fill = amber;
    fill.setAlphaF(0.12f);
    return {u"lock.fill"_s, amber, fill};
}

QString lockButtonLabel(bool paletteLocked) {
    return paletteLocked ? u"Unlock palette"_s : u"Lock palette"_s;
}

QString minimizeLabel(const std::optional<QString>& hotKey) {
    QString label = u"Minimize to the menu bar"_s;
    if (hotKey && !hotKey->isEmpty())
        label += u" ("_s + *hotKey + u')';
    return label;
}

QString overflowAccessibleLabel(int hiddenCount) {
    if (hiddenCount == 1)
        return u"1 more color"_s;
    return QString::number(hiddenCount) + u" more colors"_s;
}

int overflowColumns(const QList<PaletteGroups::OverflowSection>& sections) {
    if (sections.isEmpty())
        return 2;
    qsizetype widest = 0;
    for (const auto& section : sections)
        widest = std::max(widest, section.ids.size());
    return static_cast<int>(std::clamp<qsizetype>(widest, 2, 6));
}

int overflowPopoverWidth(int columns) {
    return columns * overflowSwatchWidth + (columns - 1) * overflowSwatchGap + 24;
}

namespace {

// The sync button's words and symbol for each status.
struct SyncWords {
    QString label;
    QString title;
    QString detail;
    QString symbol;
};

const SyncWords& syncWords(SyncStatus::Kind kind) {
    using Kind = SyncStatus::Kind;
    static const std::map<Kind, SyncWords> words = {
        {Kind::disabled,
         {u"Sync disabled"_s, u"Sync Disabled"_s, u"Cloud sync is turned off"_s, u"cloud"_s}},
        {Kind::syncing,
         {u"Syncing..."_s, u"Syncing..."_s, u"Syncing changes..."_s,
          u"arrow.triangle.2.circlepath"_s}},
        {Kind::synced,
         {u"Synced - Click to sync now"_s, u"Synced"_s,
          u"All changes are up to date. Click to sync now."_s, u"icloud"_s}},
        {Kind::offline,
         {u"Offline - Click to retry"_s, u"Offline"_s, u"Cloud folder not accessible"_s,
          u"cloud"_s}},
        {Kind::error,
         {u"Sync error - Click to retry"_s, u"Sync Error"_s,
          u"There was a problem syncing. Click to retry."_s, u"exclamationmark.triangle"_s}},
    };
    return words.at(kind);
}

} // namespace

QString syncLabel(SyncStatus::Kind kind) {
    return syncWords(kind).label;
}

QString syncTitle(SyncStatus::Kind kind) {
    return syncWords(kind).title;
}

QString syncDetail(SyncStatus::Kind kind) {
    return syncWords(kind).detail;
}

QString syncSymbol(SyncStatus::Kind kind) {
    return syncWords(kind).symbol;
}

} // namespace hueshelf::app::BarLayout
