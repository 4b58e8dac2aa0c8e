#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace hueshelf {

struct ColorItem;

// Everything that knows what a colour code is. A colour is always text (canonical "#RRGGBB");
// these pure functions turn that text into numbers and back. Nothing here keeps state or
// throws: unreadable input gives an absent value, "poor", an empty ladder or the text unchanged.
namespace ColorUtils {

struct HSL {
    double h = 0.0; // degrees
    double s = 0.0; // 0...1
    double l = 0.0; // 0...1
};

struct RGB {
    int r = 0;
    int g = 0;
    int b = 0;
};

// Drawing colour, each component 0...1 in sRGB.
struct DisplayColor {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 1.0;
};

enum class ContrastLevel { readable, lowContrast, poor };

enum class CopyFormat { hex, hexNoHash, rgb, hsl, cssVar, tailwind };

struct ShadeStep {
    int label = 0;
    QString hex;
    bool isBase = false;

    friend bool operator==(const ShadeStep&, const ShadeStep&) = default;
};

// --- Readers -------------------------------------------------------------------------------

// Strict reader used by every computation: six upper-case digits without "#", or absent.
std::optional<QString> normalizedDigits(const QString& text);
// Lenient reader for user text that becomes a stored code; other text comes back untouched.
QString canonicalHex(const QString& text);
// Reader of pasted codes: hex (with stray "#"s), rgb()/rgba(), hsl()/hsla().
std::optional<QString> parseColorCode(const QString& text);
// Reader for drawing only: AARRGGBB, RRGGBB or RGB after trimming non-alphanumerics.
std::optional<DisplayColor> parseDisplayColor(const QString& text);

// --- Conversions ---------------------------------------------------------------------------

std::optional<RGB> hexToRGB(const QString& hex);
std::optional<HSL> hexToHSL(const QString& hex);
QString hslToHex(double h, double s, double l);

// --- Contrast ------------------------------------------------------------------------------

std::optional<double> relativeLuminance(const QString& hex);
double contrastRatio(double luminance1, double luminance2);
ContrastLevel contrastLevel(const QString& hex1, const QString& hex2);
// The level a ratio earns: 4.5 or more readable, 3.0 or more low contrast, below that poor.
ContrastLevel contrastLevelForRatio(double ratio);
QString badgeText(ContrastLevel level);
QString inlineWord(ContrastLevel level);
DisplayColor badgeColor(ContrastLevel level);
QString contrastLevelIdentifier(ContrastLevel level); // "readable", "lowContrast", "poor"
std::optional<QString> adjustedForContrast(const QString& hex, const QString& background,
                                           double target);

// --- Copy formats --------------------------------------------------------------------------

const std::array<CopyFormat, 6>& allCopyFormats();
QString copyFormatIdentifier(CopyFormat format);
QString copyFormatLabel(CopyFormat format);
// Unknown or empty identifiers mean hex, as a missing preference does.
CopyFormat copyFormatFromIdentifier(const QString& identifier);
QString formattedCode(const QString& hex, CopyFormat format, const QString& name);
QString cssVariableSlug(const QString& name);

// --- Names ---------------------------------------------------------------------------------

QString colorName(const QString& hex);
QString hueName(double h, double s, double l);
QString nameModifier(double s, double l);
QString uniqueName(const QString& wanted, const QStringList& existing);

// --- Ladders, pairs, labels ----------------------------------------------------------------

std::vector<ShadeStep> shadeLadder(const QString& hex);
std::vector<std::pair<int, int>> similarPairs(const QList<ColorItem>& colors, int threshold);
bool swatchLabelIsDark(const QString& hex);

// --- Colour theory: scheme analysis and role suggestions ------------------------------------

// One piece of advice about the palette as a whole; `type` is "noConnection", "energy",
// "brightness", "variety", "allDark" or "allLight".
struct HarmonyNote {
    QString message;
    QString type;

    friend bool operator==(const HarmonyNote&, const HarmonyNote&) = default;
};

// `scheme` is one of "none", "neutral", "monochromatic", "analogous", "complementary", "split",
// "triadic"; the notes come in their fixed order.
struct HarmonyAnalysis {
    QString scheme;
    std::vector<HarmonyNote> notes;
};

struct RoleSuggestion {
    QUuid colorId;
    QString colorName;
    QString colorHex;
    QStringList suggestions; // always exactly one entry
};

// A role offered for the code being typed in the swatch editor.
struct RolePreview {
    QString role;
    bool isCurrentName = false; // the colour is already named for it
};

HarmonyAnalysis analyzeHarmony(const QList<ColorItem>& colors);
// The display name of a scheme key, absent for "none" and unknown keys.
std::optional<QString> schemeDisplayName(const QString& scheme);
std::optional<QString> schemeDisplayName(const QList<ColorItem>& colors);
// The notes' messages; "All your colors are light..." is left out when no colour is dark.
QStringList harmonyMessages(const QList<ColorItem>& colors);
// Around the hue circle: 0...180.
double hueDistance(double a, double b);

std::vector<RoleSuggestion> roleSuggestions(const QList<ColorItem>& colors);
std::optional<QString> roleFor(const QUuid& colorId, const QList<ColorItem>& colors);
// The role the colour would get with `typedText` as its code; absent unless the text is 3 or 6
// hex digits with or without "#", or when the colour isn't in the palette.
std::optional<RolePreview> rolePreview(const QString& typedText, const QUuid& colorId,
                                       const QList<ColorItem>& colors);
// "This color is already named for its role", or the role + " as this color's name".
QString rolePreviewText(const RolePreview& preview);

} // namespace ColorUtils
} // namespace hueshelf
