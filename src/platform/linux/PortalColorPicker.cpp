#include "platform/linux/PortalColorPicker.h"

#include "platform/linux/PortalNames.h"
#include "platform/linux/PortalRequest.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QPointer>

#include <memory>
#include <utility>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {
const QString screenshotInterface = u"org.freedesktop.portal.Screenshot"_s;
} // namespace

PortalColorPicker::PortalColorPicker(Fallback fallback, QDBusConnection bus, QObject* parent)
    : QObject(parent), m_fallback(std::move(fallback)), m_bus(std::move(bus)) {}

void PortalColorPicker::pick(Platform::ColorPicked done) {
    if (m_picking) {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    m_picking = true;
    // Whatever answers first answers alone; the picker may be gone by the time a fallback
    // overlay is done.
    auto pending = std::make_shared<Platform::ColorPicked>(std::move(done));
    Platform::ColorPicked finish = [self = QPointer(this),
                                    pending](std::optional<SampledColor> color) {
        // Through a plain pointer: the optimiser can't follow QPointer's check.
        if (PortalColorPicker* picker = self.data())
            picker->m_picking = false;
        if (auto answer = std::exchange(*pending, nullptr))
            answer(color);
    };
    // Without a session bus there is no portal to ask.
    if (!m_bus.isConnected()) {
        m_fallback(std::move(finish));
        return;
    }
    const QString token = PortalRequest::newToken();
    QDBusMessage call = QDBusMessage::createMethodCall(Portal::service, Portal::path,
                                                       screenshotInterface, u"PickColor"_s);
    // No parent window: the platform layer does not know the bar's, and the portal then centres
    // whatever it shows on its own.
    call << QString() << QVariantMap{{u"handle_token"_s, token}};
    PortalRequest::send(
        m_bus, call, token,
        [this, finish](uint response, const QVariantMap& results) {
            if (response == Portal::success)
                finish(colorFromResults(results));
            else if (response == Portal::cancelled)
                finish(std::nullopt);
            else
                // A missing portal, one without PickColor, or one that could not show its
                // picker all end here.
                m_fallback(finish);
        },
        this);
}

std::optional<SampledColor> PortalColorPicker::colorFromResults(const QVariantMap& results) {
    const QVariant value = results.value(u"color"_s);
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return std::nullopt;
    const QDBusArgument argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != u"(ddd)")
        return std::nullopt;
    SampledColor color;
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    return color;
}

} // namespace hueshelf
