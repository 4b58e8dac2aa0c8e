#pragma once

#include <QString>

namespace hueshelf {

// The words of saving and opening palette files, in one place so that the bar, the gallery and
// the command line say exactly the same thing.
namespace PaletteFileTexts {

// Saving.
inline const QString savePanelTitle = QStringLiteral("Save palette");
inline const QString savePanelMessage = QStringLiteral("Choose where to save this palette");
inline const QString saveAlertTitle = QStringLiteral("Couldn't save the palette");
inline const QString savedToast = QStringLiteral("Palette saved");
inline const QString savedIcon = QStringLiteral("arrow.down.circle.fill");
inline constexpr double savedToastSeconds = 1.2;

// Opening. The alert's message is the reader's own text.
inline const QString openAlertTitle = QStringLiteral("Couldn't open that file");
inline const QString alertButton = QStringLiteral("OK");
// Followed by the file system's description of what went wrong.
inline const QString readFailurePrefix = QStringLiteral("HueShelf couldn't read that file.\n\n");
inline const QString importIcon = QStringLiteral("paintpalette.fill");
inline const QString alreadyHave = QStringLiteral("You already have this palette.");
inline const QString alreadyHaveOneOfSeveral =
    QStringLiteral("You already have this palette. One file at a time.");

// Imported "NAME", in straight double quotes; when several files were dropped and only the
// first was taken, ". One file at a time." follows.
inline QString importedAnnouncement(const QString& name, bool isOneOfSeveral) {
    QString text = QStringLiteral("Imported \"") + name + u'"';
    if (isOneOfSeveral)
        text += QStringLiteral(". One file at a time.");
    return text;
}

// Where a file reaches a caller that can't get at the importer at all.
inline const QString standInToast =
    QStringLiteral("Couldn't open that palette file \u2014 please try again");
inline const QString standInIcon = QStringLiteral("exclamationmark.triangle");
inline constexpr double standInToastSeconds = 2.5;

// A drop on the bar that is neither an image nor a palette file.
inline const QString dropRefusal = QStringLiteral("Please drop an image or .hueshelf file");

} // namespace PaletteFileTexts
} // namespace hueshelf
