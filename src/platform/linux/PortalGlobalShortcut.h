#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QVariantMap>

#include <functional>

namespace hueshelf {

// Control-Shift-B through the desktop's GlobalShortcuts portal, the only way a Wayland session
// lets a program hear a key while another one has the focus. Binding asks the portal (and may
// ask the user), so it completes later; until then the shortcut is not bound.
class PortalGlobalShortcut final : public QObject {
    Q_OBJECT

public:
    explicit PortalGlobalShortcut(QDBusConnection bus = QDBusConnection::sessionBus(),
                                  QObject* parent = nullptr);
    ~PortalGlobalShortcut() override;

    // Starts the binding; the handler runs on the main thread for each activation.
    void bind(std::function<void()> onActivated);
    void unbind();
    bool isBound() const { return m_bound; }
    // Called once the portal answered the binding, with whether it holds now.
    void setBoundHandler(std::function<void(bool)> handler) { m_boundChanged = std::move(handler); }

private Q_SLOTS:
    void onActivated(const QDBusObjectPath& session, const QString& shortcutId,
                     qulonglong timestamp, const QVariantMap& options);

private:
    void createSession();
    void bindShortcuts();
    void setBound(bool bound);

    QDBusConnection m_bus;
    QString m_session;
    bool m_bound = false;
    // Counts bindings, so an answer for one that was given up is ignored.
    int m_generation = 0;
    std::function<void()> m_onActivated;
    std::function<void(bool)> m_boundChanged;
};

} // namespace hueshelf
