#pragma once

#include "platform/Platform.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace hueshelf {

// Picking a colour from the screen through the desktop's Screenshot portal, the only way a
// Wayland session lets a program see what other programs show. Where no portal answers, the
// fallback is asked instead; a user who cancels the portal's picker is not asked again.
class PortalColorPicker final : public QObject {
    Q_OBJECT

public:
    // Shows another picker; it calls its argument once, later, on the main thread.
    using Fallback = std::function<void(Platform::ColorPicked)>;

    explicit PortalColorPicker(Fallback fallback,
                               QDBusConnection bus = QDBusConnection::sessionBus(),
                               QObject* parent = nullptr);

    // `done` runs once, later, on this thread. While a pick runs, another is answered with
    // nothing: two pickers on one screen would fight over the pointer.
    void pick(Platform::ColorPicked done);
    bool isPicking() const { return m_picking; }

    // The portal's `color` result, a (ddd) structure; nothing when it is missing or malformed.
    static std::optional<SampledColor> colorFromResults(const QVariantMap& results);

private:
    Fallback m_fallback;
    QDBusConnection m_bus;
    bool m_picking = false;
};

} // namespace hueshelf
