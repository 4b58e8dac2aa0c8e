#include "app/BarLayout.h"

#include "app/RelativeTime.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

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

QString syncLabel(SyncStatus::Kind kind) {
    switch (kind) {
    case SyncStatus::Kind::disabled:
        return u"Sync disabled"_s;
    case SyncStatus::Kind::syncing:
        return u"Syncing..."_s;
    case SyncStatus::Kind::synced:
        return u"Synced - Click to sync now"_s;
    case SyncStatus::Kind::offline:
        return u"Offline - Click to retry"_s;
    case SyncStatus::Kind::error:
        break;
    }
    return u"Sync error - Click to retry"_s;
}

QString syncTitle(SyncStatus::Kind kind) {
    switch (kind) {
    case SyncStatus::Kind::disabled:
        return u"Sync Disabled"_s;
    case SyncStatus::Kind::syncing:
        return u"Syncing..."_s;
    case SyncStatus::Kind::synced:
        return u"Synced"_s;
    case SyncStatus::Kind::offline:
        return u"Offline"_s;
    case SyncStatus::Kind::error:
        break;
    }
    return u"Sync Error"_s;
}

QString syncDetail(SyncStatus::Kind kind) {
    switch (kind) {
    case SyncStatus::Kind::disabled:
        return u"Cloud sync is turned off"_s;
    case SyncStatus::Kind::syncing:
        return u"Syncing changes..."_s;
    case SyncStatus::Kind::synced:
        return u"All changes are up to date. Click to sync now."_s;
    case SyncStatus::Kind::offline:
        return u"Cloud folder not accessible"_s;
    case SyncStatus::Kind::error:
        break;
    }
    return u"There was a problem syncing. Click to retry."_s;
}

QString syncSymbol(SyncStatus::Kind kind) {
    switch (kind) {
    case SyncStatus::Kind::syncing:
        return u"arrow.triangle.2.circlepath"_s;
    case SyncStatus::Kind::synced:
        return u"icloud"_s;
    case SyncStatus::Kind::error:
        return u"exclamationmark.triangle"_s;
    case SyncStatus::Kind::disabled:
    case SyncStatus::Kind::offline:
        break;
    }
    return u"cloud"_s;
}

QString syncTooltip(SyncStatus::Kind kind, std::optional<double> lastSyncMs, double nowMs) {
    QString text = syncTitle(kind) + u'\n' + syncDetail(kind);
    if (lastSyncMs)
        text += u"\nLast synced "_s + RelativeTime::span(*lastSyncMs, nowMs) + u" ago"_s;
    return text;
}

} // namespace hueshelf::app::BarLayout
