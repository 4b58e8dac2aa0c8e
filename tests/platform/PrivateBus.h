#pragma once

#include "PlatformTestApplication.h"

#include <QDBusConnection>
#include <QProcess>
#include <QStandardPaths>

namespace hueshelf::testing {

// A private session bus, so the test neither needs nor disturbs the user's.
class PrivateBus {
public:
    PrivateBus() {
        platformTestApplication(); // its event loop reads the daemon's address
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (daemon.isEmpty())
            return;
        m_daemon.start(daemon, {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                QStringLiteral("--print-address=1")});
        if (!m_daemon.waitForStarted() ||
            !processEventsUntil([this] { return m_daemon.canReadLine(); }))
            return;
        m_address = QString::fromUtf8(m_daemon.readLine().trimmed());
    }
    ~PrivateBus() {
        QDBusConnection::disconnectFromBus(QStringLiteral("portal-test-service"));
        QDBusConnection::disconnectFromBus(QStringLiteral("portal-test-client"));
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    bool isRunning() const { return !m_address.isEmpty(); }
    QDBusConnection service() const {
        return QDBusConnection::connectToBus(m_address, QStringLiteral("portal-test-service"));
    }
    QDBusConnection client() const {
        return QDBusConnection::connectToBus(m_address, QStringLiteral("portal-test-client"));
    }

private:
    QProcess m_daemon;
    QString m_address;
};

} // namespace hueshelf::testing
