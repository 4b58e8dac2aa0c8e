#pragma once

#include "exchange/PaletteLink.h"

#include <QString>

#include <optional>

namespace hueshelf {

// One toast: its words, its symbol and how long it stands.
struct LinkToast {
    QString message;
    QString icon;
    double seconds = 0.0;

    friend bool operator==(const LinkToast&, const LinkToast&) = default;
};

// The share-as-link action without the clipboard: what to copy and what to say.
namespace LinkShare {

inline const QString copiedMessage =
    QStringLiteral("Link copied \u2014 anyone can open it in HueShelf");
inline const QString copiedIcon = QStringLiteral("link");
inline constexpr double copiedSeconds = 2.0;
inline const QString errorIcon = QStringLiteral("exclamationmark.triangle");
inline constexpr double errorSeconds = 2.5;

// The user's words for a link that can't be made. Three limits have their own text; every other
// case, a link grown past its length included, shares the generic one.
QString errorMessage(PaletteLink::LinkError error);

struct Outcome {
    std::optional<QString> link; // absent when the palette can't travel as a link
    LinkToast toast;
};

Outcome share(const ColorTemplate& palette);

} // namespace LinkShare
} // namespace hueshelf
