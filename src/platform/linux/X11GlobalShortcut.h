#pragma once

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <functional>
#include <vector>

struct xcb_connection_t;

namespace hueshelf {

// Control-Shift-B from any X11 application: a passive grab of the key on every root window,
// and a native event filter that hears the grabbed presses.
class X11GlobalShortcut final : public QAbstractNativeEventFilter {
public:
    X11GlobalShortcut() = default;
    ~X11GlobalShortcut() override;
    X11GlobalShortcut(const X11GlobalShortcut&) = delete;
    X11GlobalShortcut& operator=(const X11GlobalShortcut&) = delete;

    // True on the xcb platform with a connection to the X server.
    static bool isAvailable();

    // False when another program already holds the key or there is no X server; then nothing
    // stays grabbed. The handler runs on the main thread.
    bool registerShortcut(std::function<void()> onActivated);
    void unregisterShortcut();
    bool isRegistered() const { return m_connection != nullptr; }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    // The four lock states of Control-Shift-B plus the given modifiers, all or none.
    bool grab(xcb_connection_t* connection, std::uint16_t extraModifiers);
    void ungrab(xcb_connection_t* connection, std::uint16_t extraModifiers);
    void ungrabAll(xcb_connection_t* connection);

    xcb_connection_t* m_connection = nullptr;
    std::uint8_t m_keycode = 0;
    std::vector<std::uint32_t> m_roots;
    std::function<void()> m_onActivated;
};

} // namespace hueshelf
