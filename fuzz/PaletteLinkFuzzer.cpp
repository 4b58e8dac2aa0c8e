// Palette links come from strangers. Whatever decodes must meet the link's own limits, and its
// palette must encode and decode again to itself.

#include "exchange/PaletteLink.h"
#include "util/UserCharacters.h"

#include <QRegularExpression>
#include <QString>

#include <cstddef>
#include <cstdint>

namespace {

void check(bool condition) {
    if (!condition)
        __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace hueshelf;
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const PaletteLink::Result<PaletteLink::Palette> palette = PaletteLink::decode(text);
    if (!palette)
        return 0;

    check(!palette->name.isEmpty() &&
          UserCharacters::count(palette->name) <= PaletteLink::Limits::maxPaletteNameLength);
    check(!palette->colors.isEmpty() && palette->colors.size() <= PaletteLink::Limits::maxColors);
    static const QRegularExpression code(QStringLiteral("^#[0-9A-F]{6}$"));
    for (const PaletteLink::Color& color : palette->colors) {
        check(code.match(color.hex).hasMatch());
        check(!color.name.isEmpty());
        check(UserCharacters::count(color.name) <= PaletteLink::Limits::maxColorNameLength);
        check(UserCharacters::count(color.dividerLabel) <=
              PaletteLink::Limits::maxDividerLabelLength);
    }

    // A decoded palette travels again. The one exception the format can't avoid: a colour name
    // that begins with "|" and has no divider is written as "%7C...", which the repair of
    // escaped pipes then reads as a divider.
    for (const PaletteLink::Color& color : palette->colors) {
        if (!color.dividerBefore && color.name.startsWith(u'|'))
            return 0;
    }
    const PaletteLink::Result<QString> again = PaletteLink::encode(palette->name, palette->colors);
    if (!again) {
        // Only the length can stop it: escaping may make the text longer than it came.
        check(again.error() == PaletteLink::LinkError::tooLong);
        return 0;
    }
    check(PaletteLink::decode(*again) == palette);
    return 0;
}
