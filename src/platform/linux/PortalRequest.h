#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

#include <functional>

namespace hueshelf {

// One call of a desktop portal that answers later through a Request object's Response signal.
// The signal is subscribed at the predicted request path before the call is sent, so a fast
// portal cannot answer unheard. The object deletes itself after the answer.
class PortalRequest final : public QObject {
    Q_OBJECT

public:
    // 0 is success, 1 cancelled by the user, 2 any other end; failures of the call itself
    // arrive as 2 as well.
    using Callback = std::function<void(uint response, const QVariantMap& results)>;

    // A fresh handle_token for the call's options.
    static QString newToken();
    // Sends the call, whose options carry the token; the callback runs on this thread.
    static void send(QDBusConnection bus, const QDBusMessage& call, const QString& token,
                     Callback callback, QObject* parent);

private Q_SLOTS:
    void onResponse(uint response, const QVariantMap& results);

private:
    PortalRequest(QDBusConnection bus, Callback callback, QObject* parent);
    bool subscribe(const QString& path);
    void finish(uint response, const QVariantMap& results);

    QDBusConnection m_bus;
    Callback m_callback;
    QString m_path;
};

} // namespace hueshelf
