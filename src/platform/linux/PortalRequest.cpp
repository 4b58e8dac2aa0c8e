#include "platform/linux/PortalRequest.h"

#include "platform/linux/PortalNames.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QRandomGenerator>

namespace hueshelf {

using namespace Qt::StringLiterals;

namespace {
const QString requestInterface = u"org.freedesktop.portal.Request"_s;

// The portal names the request after the caller: its unique name without the colon, dots
// turned into underscores.
QString predictedPath(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService();
    sender.remove(0, 1).replace(u'.', u'_');
    return u"/org/freedesktop/portal/desktop/request/"_s + sender + u'/' + token;
}
} // namespace

QString PortalRequest::newToken() {
    return u"hueshelf"_s + QString::number(QRandomGenerator::global()->generate());
}

PortalRequest::PortalRequest(QDBusConnection bus, Callback callback, QObject* parent)
    : QObject(parent), m_bus(std::move(bus)), m_callback(std::move(callback)) {}

void PortalRequest::send(QDBusConnection bus, const QDBusMessage& call, const QString& token,
                         Callback callback, QObject* parent) {
    auto* request = new PortalRequest(bus, std::move(callback), parent);
    request->subscribe(predictedPath(bus, token));
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), request);
    connect(watcher, &QDBusPendingCallWatcher::finished, request,
            [request](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<QDBusObjectPath> reply = *finished;
                if (reply.isError()) {
                    request->finish(Portal::otherEnd, {});
                    return;
                }
                // Portals older than the handle_token rule choose the path themselves.
                const QString path = reply.value().path();
                if (path != request->m_path)
                    request->subscribe(path);
            });
}

bool PortalRequest::subscribe(const QString& path) {
    if (!m_path.isEmpty())
        m_bus.disconnect(Portal::service, m_path, requestInterface, u"Response"_s, this,
                         SLOT(onResponse(uint, QVariantMap)));
    m_path = path;
    return m_bus.connect(Portal::service, m_path, requestInterface, u"Response"_s, this,
                         SLOT(onResponse(uint, QVariantMap)));
}

void PortalRequest::onResponse(uint response, const QVariantMap& results) {
    finish(response, results);
}

void PortalRequest::finish(uint response, const QVariantMap& results) {
    if (!m_callback)
        return;
    m_bus.disconnect(Portal::service, m_path, requestInterface, u"Response"_s, this,
                     SLOT(onResponse(uint, QVariantMap)));
    const Callback callback = std::exchange(m_callback, nullptr);
    deleteLater();
    callback(response, results);
}

} // namespace hueshelf
