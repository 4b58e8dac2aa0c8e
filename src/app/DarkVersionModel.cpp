#include "app/DarkVersionModel.h"

#include "color/DarkVersion.h"
#include "model/ColorStorage.h"
#include "model/TemplateNaming.h"

#include <algorithm>

namespace hueshelf::app {

DarkVersionModel::DarkVersionModel(ColorStorage& storage, QObject* parent)
    : QObject(parent), m_storage(storage) {}

void DarkVersionModel::open() {
    const std::optional<ColorTemplate> active = m_storage.activeTemplate();
    m_templateName =
        DarkVersion::defaultName(active ? std::optional<QString>(active->name) : std::nullopt);
    Q_EMIT changed();
}

void DarkVersionModel::cancel() {
    Q_EMIT closed();
}

void DarkVersionModel::setTemplateName(const QString& name) {
    m_templateName = name;
    Q_EMIT changed();
}

QList<DarkPreviewRow> DarkVersionModel::previewRows() const {
    const std::optional<ColorTemplate> active = m_storage.activeTemplate();
    if (!active) {
        return {};
    }
    // The pass looks at the whole palette, so the shown rows come from the full dark version.
    const QList<ColorItem> dark = DarkVersion::darkVersion(active->colors);
    const qsizetype shown = std::min(active->colors.size(), DarkVersion::previewCount);
    QList<DarkPreviewRow> rows;
    rows.reserve(shown);
    for (qsizetype i = 0; i < shown; ++i) {
        rows.append(DarkPreviewRow{active->colors.at(i).hex, dark.at(i).hex});
    }
    return rows;
}

std::optional<QString> DarkVersionModel::morePreviewLine() const {
    const std::optional<ColorTemplate> active = m_storage.activeTemplate();
    return DarkVersion::morePreviewLine(active ? active->colors.size() : 0);
}

bool DarkVersionModel::canCreate() const {
    return !TemplateNaming::trimmedOfBlanks(m_templateName).isEmpty() &&
           m_storage.activeTemplate().has_value();
}

bool DarkVersionModel::createDarkPalette() {
    const QString name = TemplateNaming::trimmedOfBlanks(m_templateName);
    const std::optional<ColorTemplate> active = m_storage.activeTemplate();
    if (name.isEmpty() || !active) {
        return false;
    }
    // Made active and saved by the store; this popover only closes, with no toast of its own.
    m_storage.createTemplate(name, DarkVersion::darkPaletteColors(active->colors));
    Q_EMIT closed();
    return true;
}

} // namespace hueshelf::app
