#pragma once

#include "model/PaletteGroups.h"
#include "sync/SyncStatus.h"

#include <QColor>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace hueshelf::app {

// The bar's arithmetic and its fixed words, kept apart from any widget so that the window can
// be sized before the row is laid out, and so the rules can be checked without a screen.
namespace BarLayout {

using namespace Qt::StringLiterals;

// The first colours of the palette stand on the bar; the rest wait behind the overflow button.
inline constexpr int maxVisibleSwatches = 6;
inline constexpr int swatchSide = 28;
inline constexpr int swatchGap = 6;
inline constexpr int overflowSwatchWidth = 40;
inline constexpr int overflowSwatchGap = 8;
// Longer palette names are cut on the chip; the tooltip then carries the whole name.
inline constexpr int chipNameMaxWidth = 160;
inline constexpr int toolSpacing = 6;

// How wide a text is drawn: at 11 points, medium weight or regular.
using TextWidth = std::function<double(const QString& text, bool medium)>;
// The system font at 11 points, as the bar draws its words.
TextWidth systemTextWidth();

int visibleCount(qsizetype colorCount);
// Colours behind the overflow button; 0 while every colour stands on the bar.
int overflowCount(qsizetype colorCount);

// The palette name's measure, shared by the chip and its tooltip: the drawn width rounded up,
// plus 2.
int nameWidth(const QString& name, const TextWidth& width);

// The bar's ideal width from three values alone, so the window can be resized the moment the
// palette changes, with no layout pass.
int barWidth(const QString& paletteName, qsizetype colorCount, bool syncEnabled,
             const TextWidth& width);

inline const QString brand = u"HueShelf"_s;
inline const QString brandTooltip = u"Drag to move HueShelf"_s;
inline const QString noPaletteName = u"Select"_s;

QString chipAccessibleLabel(const QString& name);
QString chipTooltip(const QString& name, const TextWidth& width);

QString addButtonLabel(bool paletteLocked);
// The lock button: "lock.fill" in amber on a faint amber fill when locked, "lock.open" plain.
struct LockLook {
    QString symbol;
    QColor tint;     // invalid: the secondary text colour
    QColor backdrop; // invalid: none
};
LockLook lockLook(bool paletteLocked);
QString lockButtonLabel(bool paletteLocked);
// "Minimize to the menu bar", with the hot key in parentheses when one is known.
QString minimizeLabel(const std::optional<QString>& hotKey);

QString overflowAccessibleLabel(int hiddenCount);
inline const QString overflowAccessibleHint = u"Shows the remaining colors."_s;

// The overflow list's columns: its largest section, held to 2..6; 2 with no sections.
int overflowColumns(const QList<PaletteGroups::OverflowSection>& sections);
int overflowPopoverWidth(int columns);

// The sync button's accessible label, and its tooltip card's title and longer text.
QString syncLabel(SyncStatus::Kind kind);
QString syncTitle(SyncStatus::Kind kind);
QString syncDetail(SyncStatus::Kind kind);

QString syncSymbol(SyncStatus::Kind kind);

inline const QString groupsLabel = u"Groups"_s;
inline const QString shareLabel = u"Share palette"_s;
inline const QString saveLabel = u"Save as file"_s;
inline const QString eyedropperLabel = u"Pick a color from the screen"_s;
inline const QString gutterFallbackTooltip = u"Group divider"_s;

} // namespace BarLayout
} // namespace hueshelf::app
