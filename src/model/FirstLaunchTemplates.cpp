#include "model/FirstLaunchTemplates.h"

namespace hueshelf {

namespace {
ColorItem namedColor(const QString& name, const QString& hex) {
    return ColorItem::make(name, hex, false);
}
} // namespace

QList<ColorTemplate> firstLaunchTemplates(const Clock& clock) {
    QList<ColorTemplate> templates;
    templates.append(
        ColorTemplate::makeNew(QStringLiteral("Starter"),
                               {namedColor(QStringLiteral("Primary"), QStringLiteral("#FFA69E")),
                                namedColor(QStringLiteral("Secondary"), QStringLiteral("#FAF3DD")),
                                namedColor(QStringLiteral("Accent"), QStringLiteral("#B8F2E6"))},
                               clock.nowMs()));
    templates.append(ColorTemplate::makeNew(
        QStringLiteral("Example"),
        {namedColor(QStringLiteral("Deep Coral"), QStringLiteral("#E07A5F")),
         namedColor(QStringLiteral("Warm Sand"), QStringLiteral("#F4E8C1")),
         namedColor(QStringLiteral("Dusty Teal"), QStringLiteral("#81B29A"))},
        clock.nowMs()));
    return templates;
}

} // namespace hueshelf
