// Palette files come from strangers. Beyond "no crash, no hang, no unbounded allocation", every
// accepted file must meet the reader's own promises, and what it reads must survive being
// written again and read back.

#include "exchange/PaletteFile.h"
#include "util/UserCharacters.h"

#include <QByteArray>
#include <QDateTime>
#include <QRegularExpression>

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
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const PaletteFileResult result = PaletteFile::parsePaletteFile(bytes);
    if (result.errorMessage) {
        check(!result.name && result.colors.isEmpty());
        return 0;
    }
    check(result.name.has_value());
    check(UserCharacters::count(*result.name) <= PaletteFile::maxNameLength);
    check(!result.colors.isEmpty() && result.colors.size() <= PaletteFile::maxColorCount);
    static const QRegularExpression code(QStringLiteral("^#[0-9A-F]{6}$"));
    for (const ColorItem& color : result.colors) {
        check(code.match(color.hex).hasMatch());
        check(!color.name.isEmpty());
        check(UserCharacters::count(color.name) <= PaletteFile::maxColorNameLength);
        check(UserCharacters::count(color.dividerLabel) <= PaletteFile::maxDividerLabelLength);
        check(color.dividerBefore || color.dividerLabel.isEmpty());
        check(!color.isLocked);
    }

    // Written out and read again, the palette is the same in everything a file carries.
    const PaletteFileResult again = PaletteFile::parsePaletteFile(PaletteFile::exportBytes(
        *result.name, result.colors, QDateTime::fromSecsSinceEpoch(0, Qt::UTC)));
    check(!again.errorMessage && again.name == result.name);
    check(again.colors.size() == result.colors.size());
    for (qsizetype i = 0; i < result.colors.size(); ++i) {
        const ColorItem& before = result.colors.at(i);
        const ColorItem& after = again.colors.at(i);
        check(after.hex == before.hex && after.dividerBefore == before.dividerBefore &&
              after.dividerLabel == before.dividerLabel);
        // The reader trims before it cuts to the limit, so a cut name may end in a blank that
        // the second reading trims away.
        check(after.name == before.name.trimmed());
    }
    return 0;
}
