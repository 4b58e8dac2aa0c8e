#pragma once

#include <QRect>
#include <QString>
#include <QUuid>

#include <optional>

namespace hueshelf::app {

// One short message over the bar. A view draws it; the manager alone decides when it goes.
struct Toast {
    QUuid id;
    QString message;
    // A symbol name; empty for a toast without a picture.
    QString icon;
    double duration = 0.0;
    // What the toast points at, in global coordinates.
    QRect sourceRect;
    // The anchor control's frame when the toast was pinned to one.
    std::optional<QRect> sourceFrame;
};

} // namespace hueshelf::app
