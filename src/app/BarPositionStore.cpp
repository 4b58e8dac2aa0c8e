#include "app/BarPositionStore.h"

#include "app/AppSettingsKeys.h"

#include <QSettings>
#include <QVariantMap>

#include <cmath>

namespace hueshelf::app {

namespace {

using namespace Qt::StringLiterals;

// Numbers only: a text that happens to read as one was not written by this program.
std::optional<double> coordinate(const QVariantMap& map, const QString& key) {
    const auto found = map.constFind(key);
    if (found == map.constEnd())
        return std::nullopt;
    switch (found->typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong: {
        const double value = found->toDouble();
        if (std::isfinite(value))
            return value;
        return std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

} // namespace

BarPosition::StoredPosition BarPositionStore::load() const {
    const QVariant value = m_settings.value(AppSettingsKeys::barPosition);
    if (value.typeId() != QMetaType::QVariantMap)
        return {};
    const QVariantMap map = value.toMap();
    return {coordinate(map, u"x"_s), coordinate(map, u"y"_s)};
}

void BarPositionStore::save(QPoint origin) {
    if (m_isIsolatedRun)
        return;
    m_settings.setValue(AppSettingsKeys::barPosition,
                        QVariantMap{{u"x"_s, double(origin.x())}, {u"y"_s, double(origin.y())}});
}

void BarPositionStore::remove() {
    m_settings.remove(AppSettingsKeys::barPosition);
}

} // namespace hueshelf::app
