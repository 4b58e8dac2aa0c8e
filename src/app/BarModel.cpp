#include "app/BarModel.h"

#include "app/AppSettingsKeys.h"
#include "color/ColorUtils.h"
#include "model/ColorStorage.h"
#include "platform/Platform.h"

#include <QSettings>

namespace hueshelf::app {

namespace {

QColor displayColorOf(const QString& hex) {
    const auto parsed = ColorUtils::parseDisplayColor(hex);
    if (!parsed)
        return QColor::fromRgbF(0.5f, 0.5f, 0.5f);
    return QColor::fromRgbF(static_cast<float>(parsed->red), static_cast<float>(parsed->green),
                            static_cast<float>(parsed->blue), static_cast<float>(parsed->alpha));
}

BarSwatch swatchOf(const ColorItem& color) {
    return BarSwatch{color.id, color.name, color.hex, displayColorOf(color.hex),
                     ColorUtils::swatchLabelIsDark(color.hex)};
}

} // namespace

BarModel::BarModel(ColorStorage& storage, Platform& platform, QSettings& settings, QObject* parent)
    : QObject(parent), m_storage(storage), m_platform(platform), m_settings(settings) {
    connect(&m_storage, &ColorStorage::templatesChanged, this, &BarModel::changed);
    connect(&m_storage, &ColorStorage::activeTemplateIdChanged, this, &BarModel::changed);
}

QString BarModel::paletteName() const {
    const auto active = m_storage.activeTemplate();
    return active ? active->name : QStringLiteral("Select");
}

QList<BarSwatch> BarModel::swatches() const {
    QList<BarSwatch> result;
    if (const auto active = m_storage.activeTemplate()) {
        result.reserve(active->colors.size());
        for (const ColorItem& color : active->colors)
            result.append(swatchOf(color));
    }
    return result;
}

std::optional<QString> BarModel::copyColor(const QUuid& colorId) {
    const auto active = m_storage.activeTemplate();
    if (!active)
        return std::nullopt;
    for (const ColorItem& color : active->colors) {
        if (color.id != colorId)
            continue;
        // The command line may have changed the format since this process read the file.
        m_settings.sync();
        const auto format = ColorUtils::copyFormatFromIdentifier(
            m_settings.value(AppSettingsKeys::defaultCopyFormat).toString());
        const QString text = ColorUtils::formattedCode(color.hex, format, color.name);
        m_platform.setClipboardText(text);
        return text;
    }
    return std::nullopt;
}

} // namespace hueshelf::app
