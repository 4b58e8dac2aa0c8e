#include "exchange/PaletteIdentity.h"

#include "model/TemplateNaming.h"

namespace hueshelf {

namespace {

// "#ffa69e", " FFA69E " and "#FFA69E" are one code here; "##FFA69E" is not.
QString comparableCode(const QString& hex) {
    QString code = TemplateNaming::trimmedOfBlanks(hex).toUpper();
    if (code.startsWith(u'#'))
        code.remove(0, 1);
    return code;
}

bool sameColor(const ColorItem& a, const ColorItem& b) {
    if (a.name != b.name || a.dividerBefore != b.dividerBefore)
        return false;
    if (a.dividerBefore && a.dividerLabel != b.dividerLabel)
        return false;
    return comparableCode(a.hex) == comparableCode(b.hex);
}

bool sameContent(const QString& name, const QList<ColorItem>& colors,
                 const ColorTemplate& palette) {
    if (palette.name != name || palette.colors.size() != colors.size())
        return false;
    for (qsizetype i = 0; i < colors.size(); ++i) {
        if (!sameColor(colors.at(i), palette.colors.at(i)))
            return false;
    }
    return true;
}

} // namespace

std::optional<QUuid> findIdenticalPalette(const QString& name, const QList<ColorItem>& colors,
                                          const QList<ColorTemplate>& templates) {
    for (const ColorTemplate& palette : templates) {
        if (sameContent(name, colors, palette))
            return palette.id;
    }
    return std::nullopt;
}

} // namespace hueshelf
