#pragma once

#include "color/ColorUtils.h"
#include "color/ColorVisionSimulation.h"
#include "model/ColorItem.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>
#include <variant>
#include <vector>

namespace hueshelf {

// The palette check: what a designer should know about one palette's colours (text that can't
// be read, pairs that collapse for colour-blind readers, near-duplicates), and the lightness
// fixes for them. Pure functions over value records: the same colours always give the same
// issues, with the same ids, in the same order, which is what lets a caller compare the issues
// before and after a change by id.
namespace PaletteCheck {

// --- Kinds ---------------------------------------------------------------------------------

// A dark colour that doesn't read on the palette's light colours. Never `readable`.
struct Readability {
    ColorUtils::ContrastLevel level = ColorUtils::ContrastLevel::poor;
    friend bool operator==(const Readability&, const Readability&) = default;
};

// A pair that collapses under `vision`. Never `normal`.
struct LookAlike {
    ColorVisionSimulation::SimulationType vision =
        ColorVisionSimulation::SimulationType::deuteranopia;
    friend bool operator==(const LookAlike&, const LookAlike&) = default;
};

struct NearDuplicate {
    friend bool operator==(const NearDuplicate&, const NearDuplicate&) = default;
};

using Kind = std::variant<Readability, LookAlike, NearDuplicate>;

inline bool isReadability(const Kind& kind) {
    return std::holds_alternative<Readability>(kind);
}
inline bool isLookAlike(const Kind& kind) {
    return std::holds_alternative<LookAlike>(kind);
}
inline bool isNearDuplicate(const Kind& kind) {
    return std::holds_alternative<NearDuplicate>(kind);
}

// --- Records -------------------------------------------------------------------------------

// One colour's lightness change that a fix would make.
struct LightnessMove {
    QUuid colorID;
    QString name;
    QString fromHex;
    QString toHex;
    double lightnessChange = 0.0; // on the 0...1 scale; negative is darker

    friend bool operator==(const LightnessMove&, const LightnessMove&) = default;
};

struct Issue {
    QString id; // stable key: survives renames and level changes
    Kind kind;
    ColorItem color; // copies as of the check
    ColorItem other;
    bool canFix = false;
    QString text;
    std::optional<LightnessMove> move; // only ever set by issuesWithMoves
};

// --- Lightness bands -----------------------------------------------------------------------

enum class Band { light, midTone, dark };

// Light l >= 0.6, mid-tone 0.4 <= l < 0.6, dark below that or when the hex can't be read.
Band bandOf(const QString& hex);

QList<ColorItem> lightColors(const QList<ColorItem>& colors);
QList<ColorItem> darkColors(const QList<ColorItem>& colors);
QList<ColorItem> midToneColors(const QList<ColorItem>& colors);
// The light colour of highest lightness; the first of equals wins.
std::optional<ColorItem> lightestColor(const QList<ColorItem>& colors);

// The highest contrast ratio of `hex` against any of `backgrounds`, a pair that can't be read
// counting 1.0; 1.0 when there are no backgrounds.
double highestRatio(const QString& hex, const QList<ColorItem>& backgrounds);

// --- Detection -----------------------------------------------------------------------------

// Readability in palette order of the dark colours, then near-duplicates by (i, j), then
// look-alikes by vision type (deuteranopia, protanopia, tritanopia), then (i, j). No moves.
std::vector<Issue> detect(const QList<ColorItem>& colors);

// How the sentences name a vision type: red-green or blue-yellow vision, written with a
// non-breaking hyphen.
QString visionText(ColorVisionSimulation::SimulationType type);

// --- Summary texts -------------------------------------------------------------------------

QString fixCountText(int count);
QString checkButtonTooltip(int issueCount);

struct CheckButtonIcon {
    QString symbol;
    ColorUtils::DisplayColor color;
};
CheckButtonIcon checkButtonIcon(int issueCount);

// Notes on mid-tones that fall short as text on the light colours, in palette order.
QStringList midToneNotes(const QList<ColorItem>& colors);

// --- Fixes ---------------------------------------------------------------------------------

// `detect`, with each look-alike's move searched and its `canFix` set by whether one exists.
std::vector<Issue> issuesWithMoves(const QList<ColorItem>& colors);

// The smallest lightness change of one unlocked colour of a look-alike pair that separates it
// under all three vision types and makes no issue outside `issues`. Absent for other kinds.
std::optional<LightnessMove> findLightnessMove(const Issue& issue, const QList<ColorItem>& colors,
                                               const std::vector<Issue>& issues);

// The smallest of the three simulated Euclidean byte distances.
double simulatedDistance(const QString& a, const QString& b);

// The colours with the issue's fix applied; unchanged when there's nothing to apply, empty when
// the colour to change has left the palette.
QList<ColorItem> applyFix(const Issue& issue, const QList<ColorItem>& colors);

// The side effect of a fix: a new look-alike involving the moved colour, in words.
std::optional<QString> fixCost(const Issue& issue, const QList<ColorItem>& before,
                               const QList<ColorItem>& after);

// Every unlocked colour that has a role suggestion renamed to it; no longer automatically named.
QList<ColorItem> namedByRole(const QList<ColorItem>& colors);

// --- Rows of the check popover -------------------------------------------------------------

// Keeps rows where they were while the user works down the list.
QStringList mergedRowOrder(const QStringList& oldOrder, const QStringList& currentIds,
                           const QStringList& fixedIds);

struct VerdictRows {
    QStringList shown;
    int hiddenCount = 0;
};
// Fixed rows are always shown; of the others the first three.
VerdictRows splitVerdictRows(const QStringList& ids, const QStringList& fixedIds);
std::optional<QString> moreRowsText(int hiddenCount);

QString moveText(const LightnessMove& move);
QString fixButtonText(const std::optional<LightnessMove>& move);
QString lookAlikeNote(const Issue& issue, bool paletteLocked);
QString ratioText(double ratio);

// --- The check popover's pages ---------------------------------------------------------------
// (Texts and compositions that depend on the colours; the popover's fixed labels live with it.)

// The WCAG ratio of two codes, 1.0 when either can't be read.
double pairRatio(const QString& hex, const QString& otherHex);

// The note line under an open row; absent where the row has none.
std::optional<QString> rowNote(const Issue& issue, bool onDetailsPage, bool paletteLocked);

// The headline of a fixed row, naming the pair as it is named now.
QString settledHeadline(const Issue& issue, const QString& colorName, const QString& otherName);
// The detail of a fixed readability row: "3.2 → 4.6:1 on White".
QString ratioChangeText(double beforeRatio, double afterRatio, const QString& otherName);

// "Every pair": every dark colour (rows) on every light colour (columns).
struct PairGridCell {
    ColorItem dark;
    ColorItem light;
    double ratio = 1.0;
    bool readsWell = false; // 4.5:1 or more
    QString ratioLabel;     // "%.1f"
    QString symbol;         // "checkmark" or "exclamationmark"
    ColorUtils::DisplayColor symbolColor;
    QString accessibleText;
};
struct PairGrid {
    QList<ColorItem> darks;
    QList<ColorItem> lights;
    QList<PairGridCell> cells; // row by row: darks.size() rows of lights.size() cells
    int readingPairs = 0;
    int pairCount = 0;
    // "Readability needs a dark color and a light one." when a band is empty, else the
    // "N of M text-on-background pairs read well" line.
    QString summary;
    bool isEmpty() const { return darks.isEmpty() || lights.isEmpty(); }
};
PairGrid pairGrid(const QList<ColorItem>& colors);

// "Worth knowing", before the role action: the scheme's name with a full stop, the note on a
// missing dark colour, the mid-tone notes and the harmony messages, in that order.
QStringList worthKnowingLines(const QList<ColorItem>& colors);
// The role action is offered for an unlocked palette of two or more colours whose names
// `namedByRole` would change.
bool offersRoleNaming(const QList<ColorItem>& colors, bool paletteLocked);

} // namespace PaletteCheck
} // namespace hueshelf
