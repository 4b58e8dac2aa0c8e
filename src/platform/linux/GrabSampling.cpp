#include "platform/linux/GrabSampling.h"

#include <QColor>

#include <algorithm>
#include <cmath>

namespace hueshelf::GrabSampling {

namespace {
int clampedIndex(double deviceCoordinate, int count) {
    if (!std::isfinite(deviceCoordinate))
        return 0;
    // Clamped as a double first: a huge coordinate must not overflow the conversion.
    const double index = std::clamp(std::floor(deviceCoordinate), 0.0, double(count - 1));
    return static_cast<int>(index);
}
} // namespace

QPoint devicePixel(QPointF logical, qreal devicePixelRatio, QSize deviceSize) {
    if (deviceSize.isEmpty())
        return {};
    const qreal ratio =
        std::isfinite(devicePixelRatio) && devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    return {clampedIndex(logical.x() * ratio, deviceSize.width()),
            clampedIndex(logical.y() * ratio, deviceSize.height())};
}

std::optional<SampledColor> colorAt(const QImage& grab, QPointF logical, qreal devicePixelRatio) {
    if (grab.isNull() || grab.size().isEmpty())
        return std::nullopt;
    const QRgb pixel = grab.pixel(devicePixel(logical, devicePixelRatio, grab.size()));
    return SampledColor{qRed(pixel) / 255.0, qGreen(pixel) / 255.0, qBlue(pixel) / 255.0};
}

} // namespace hueshelf::GrabSampling
