#pragma once

#include "exchange/PaletteImport.h"
#include "exchange/PaletteLink.h"

namespace hueshelf {

class ColorStorage;

// Adding the palette of a decoded link to the store, for the preview's "Add to HueShelf" and
// for the command line alike.
namespace LinkImport {

// What the user is told of a link that can't be opened, whatever was wrong with it.
inline const QString openFailureText =
    QStringLiteral("That link isn't a HueShelf palette. It may have been cut short when it was "
                   "copied, or made with a newer version of HueShelf.");

// Whether a text is a link the application opens: scheme "hueshelf" and host "import", both in
// any case.
bool isOwnSchemeLink(const QString& text);
// Whether a text is the web form of a link, "https://" + the link host + "/p/...", host in any
// case; the bar turns it into its own scheme before opening it.
bool isWebLink(const QString& text);

// When the store already holds the same palette (compared as a palette file's would be), that
// one becomes active and the store saves; the outcome is alreadyHave with "You already have
// this palette.". Otherwise a new palette under a name made free with " (1)", " (2)", ... is
// appended, made active and saved; the outcome is imported with Imported "NAME", the name as
// added. Nothing is announced here: the bar toasts only the first case, on the next turn, and
// the command line prints either message.
PaletteImportOutcome addDecodedPalette(ColorStorage& storage, const PaletteLink::Palette& palette,
                                       double nowMs);

} // namespace LinkImport
} // namespace hueshelf
