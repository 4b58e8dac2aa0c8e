#pragma once

#include "model/ColorItem.h"

#include <QList>
#include <QString>

#include <optional>

namespace hueshelf {

// A dark-mode counterpart of a palette: every lightness inverted, then the colours that now act
// as backgrounds moved until the colours that now act as text read on them. Pure; the source
// colours are never changed.
namespace DarkVersion {

// Below this lightness a colour is a background of the dark palette, at or above it text. Not
// the bands of the palette check: this split only has to sort an inverted palette in two.
inline constexpr double darkBelowLightness = 0.55;
// Inversion stops short of pure black and white, so a palette holding both keeps some depth.
inline constexpr double darkestLightness = 0.04;
inline constexpr double lightestLightness = 0.96;
inline constexpr double targetRatio = 4.5;
// The preview shows this many colours; the rest are counted.
inline constexpr qsizetype previewCount = 6;

// Inverted lightness, then darkContrastPass. Unreadable codes and every other field (the id
// too) stay as they are.
QList<ColorItem> darkVersion(const QList<ColorItem>& colors);

// Each dark colour, in palette order, against each light colour in turn, always from its latest
// value; the two lists are fixed before anything moves. Only dark colours move.
QList<ColorItem> darkContrastPass(QList<ColorItem> colors);

// "+N more color(s) not shown" for a palette of more than previewCount colours, else absent.
std::optional<QString> morePreviewLine(qsizetype colorCount);

// The name field's start: the active palette's name + " (Dark)", or "My Palette (Dark)".
QString defaultName(const std::optional<QString>& activeTemplateName);

// The new palette's colours: the dark version with fresh ids, and no locks carried over.
QList<ColorItem> darkPaletteColors(const QList<ColorItem>& activeColors);

} // namespace DarkVersion
} // namespace hueshelf
