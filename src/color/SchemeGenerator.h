#pragma once

#include "model/ColorItem.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <array>
#include <optional>

namespace hueshelf {

// A six-colour palette derived from one starting colour: fixed HSL arithmetic per style, then a
// contrast pass that makes the text roles read on both backgrounds. Pure, so that the popover
// and the command line compute the very same scheme.
namespace SchemeGenerator {

enum class SchemeStyle { warm, cool, neutral };

const std::array<SchemeStyle, 3>& allSchemeStyles();
// "Warm", "Cool", "Neutral".
QString styleLabel(SchemeStyle style);
// "warm", "cool", "neutral": what the command line takes.
QString styleIdentifier(SchemeStyle style);
// Exactly one of the identifiers, case included; anything else is absent.
std::optional<SchemeStyle> styleFromIdentifier(const QString& identifier);

struct GeneratedColor {
    QUuid id;
    QString role;
    QString hex;
    QString name;

    friend bool operator==(const GeneratedColor&, const GeneratedColor&) = default;
};

// Positions of the roles in every scheme.
enum Role : qsizetype { primary = 0, header, accent, background, surface, text };
inline constexpr qsizetype roleCount = 6;

// "Primary", "Header", "Accent", "Background", "Surface", "Text", in that order.
const std::array<QString, roleCount>& roles();

// Foreground on background, in the order the contrast pass visits them.
struct ContrastPair {
    Role foreground;
    Role background;
};
inline constexpr std::array<ContrastPair, 4> contrastPairs{{
    {text, background},
    {text, surface},
    {header, background},
    {header, surface},
}};

// The ratio both the pass and the verdict ask of every pair.
inline constexpr double targetRatio = 4.5;

inline const QString defaultPrimaryHex = QStringLiteral("#3B82F6");

// The six colours of the style from the starting colour's own h, s, l; "Primary" is
// `primaryHex` as given. Fresh ids, empty names, no contrast pass.
QList<GeneratedColor> schemeColors(const QString& primaryHex, double h, double s, double l,
                                   SchemeStyle style);

// Each pair in order: a foreground under the target (or unreadable either side) is replaced by
// adjustedForContrast against that background when it gives a colour. The second pair of a role
// starts from what the first made of it.
QList<GeneratedColor> withContrastPass(QList<GeneratedColor> colors);

// Whether every pair reaches the target, judged from the hexes as they are now.
bool allPairsReadable(const QList<GeneratedColor>& colors);

// Each colour named after its look, numbered where two look alike ("Blue", "Blue 2").
QList<GeneratedColor> withNames(QList<GeneratedColor> colors);

struct GeneratedScheme {
    QList<GeneratedColor> colors;
    bool allReadable = false;
};

// The whole derivation; absent when the starting colour can't be read.
std::optional<GeneratedScheme> generateScheme(const QString& primaryHex, SchemeStyle style);

// What one change of the "Starting color" field does: a pasted code other than six hex digits
// (with or without "#") is replaced by its canonical form; six digits stay as typed.
struct StartingTextEdit {
    std::optional<QString> replacementText;
    // Whether the scheme is generated again. Text that can't be read as a code doesn't
    // generate, which leaves the preview as it was, exactly as a generate that stops at its
    // first step would.
    bool generates = false;
};
StartingTextEdit startingTextEdit(const QString& typedText);

// The starting colour for a palette: its first colour's hex if readable, else the default.
QString defaultStartingHex(const QList<ColorItem>& paletteColors);

// The scheme as new palette colours: fresh ids, auto-named, unlocked, no dividers.
QList<ColorItem> schemePaletteColors(const QList<GeneratedColor>& generated);

} // namespace SchemeGenerator
} // namespace hueshelf
