#include "exchange/LinkShare.h"

namespace hueshelf::LinkShare {

QString errorMessage(PaletteLink::LinkError error) {
    namespace Limits = PaletteLink::Limits;
    switch (error) {
    case PaletteLink::LinkError::tooManyColors:
        return QStringLiteral("Links hold up to ") + QString::number(Limits::maxColors) +
               QStringLiteral(" colors");
    case PaletteLink::LinkError::paletteNameTooLong:
        return QStringLiteral("The palette name is too long for a link (") +
               QString::number(Limits::maxPaletteNameLength) + QStringLiteral(" characters max)");
    case PaletteLink::LinkError::colorNameTooLong:
        return QStringLiteral("A color name is too long for a link (") +
               QString::number(Limits::maxColorNameLength) + QStringLiteral(" characters max)");
    default:
        break;
    }
    return QStringLiteral("Couldn't make a link for this palette");
}

Outcome share(const ColorTemplate& palette) {
    const PaletteLink::Result<QString> link = PaletteLink::encode(palette);
    if (!link)
        return Outcome{std::nullopt,
                       LinkToast{errorMessage(link.error()), errorIcon, errorSeconds}};
    return Outcome{*link, LinkToast{copiedMessage, copiedIcon, copiedSeconds}};
}

} // namespace hueshelf::LinkShare
