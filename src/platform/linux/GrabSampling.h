#pragma once

#include "platform/Platform.h"

#include <QImage>
#include <QPoint>
#include <QPointF>
#include <QSize>

#include <optional>

namespace hueshelf::GrabSampling {

// The pixel of a screen grab, `deviceSize` device pixels large, that lies under a point given in
// the screen's logical coordinates. A point off the grab (the pointer can rest on the last
// logical pixel's far edge, and a grab may come out a pixel short) takes the nearest edge pixel.
QPoint devicePixel(QPointF logical, qreal devicePixelRatio, QSize deviceSize);

// The sRGB components, 0..1, of the grab's pixel under the logical point; nothing when the grab
// is empty. A screen's bytes carry no colour space of their own, so they are taken as sRGB.
std::optional<SampledColor> colorAt(const QImage& grab, QPointF logical, qreal devicePixelRatio);

} // namespace hueshelf::GrabSampling
