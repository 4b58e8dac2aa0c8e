#include "platform/linux/X11GlobalShortcut.h"

#include "platform/linux/ShortcutKey.h"
#include "platform/linux/X11Keymap.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMetaObject>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace hueshelf {

namespace {

struct FreeDeleter {
    void operator()(void* pointer) const { std::free(pointer); }
};
template <typename T>
using XcbReply = std::unique_ptr<T, FreeDeleter>;

xcb_connection_t* qtConnection() {
    if (QGuiApplication::platformName() != u"xcb")
        return nullptr;
    auto* application = qGuiApp;
    if (application == nullptr)
        return nullptr;
    auto* x11 = application->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

} // namespace

X11GlobalShortcut::~X11GlobalShortcut() {
    unregisterShortcut();
}

bool X11GlobalShortcut::isAvailable() {
    return qtConnection() != nullptr;
}

bool X11GlobalShortcut::registerShortcut(std::function<void()> onActivated) {
    unregisterShortcut();
    xcb_connection_t* connection = qtConnection();
    if (connection == nullptr || xcb_connection_has_error(connection) != 0)
        return false;
    m_keycode = X11Keymap::keycodeFor(connection, ShortcutKey::letterBKeysym);
    if (m_keycode == 0)
        return false;

    for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection)); screens.rem > 0;
         xcb_screen_next(&screens))
        m_roots.push_back(screens.data->root);

    // Every grab is checked: the server refuses one with BadAccess when another client already
    // holds that key, and a partly grabbed shortcut would work only in some lock states.
    if (!grab(connection, 0)) {
        ungrabAll(connection);
        return false;
    }
    for (const std::uint16_t extra : ShortcutKey::optionalExtraModifiers)
        grab(connection, extra);
    m_connection = connection;
    m_onActivated = std::move(onActivated);
    QCoreApplication::instance()->installNativeEventFilter(this);
    return true;
}

void X11GlobalShortcut::unregisterShortcut() {
    if (m_connection == nullptr)
        return;
    QCoreApplication::instance()->removeNativeEventFilter(this);
    ungrabAll(m_connection);
    m_connection = nullptr;
    m_onActivated = nullptr;
}

bool X11GlobalShortcut::grab(xcb_connection_t* connection, std::uint16_t extraModifiers) {
    std::vector<xcb_void_cookie_t> cookies;
    for (const std::uint32_t root : m_roots) {
        for (const std::uint16_t modifiers : ShortcutKey::grabModifierSets)
            cookies.push_back(xcb_grab_key_checked(connection, 1, root, modifiers | extraModifiers,
                                                   m_keycode, XCB_GRAB_MODE_ASYNC,
                                                   XCB_GRAB_MODE_ASYNC));
    }
    bool allGrabbed = true;
    for (const xcb_void_cookie_t cookie : cookies) {
        const XcbReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
        if (error)
            allGrabbed = false;
    }
    if (!allGrabbed)
        ungrab(connection, extraModifiers);
    return allGrabbed;
}

void X11GlobalShortcut::ungrab(xcb_connection_t* connection, std::uint16_t extraModifiers) {
    for (const std::uint32_t root : m_roots) {
        for (const std::uint16_t modifiers : ShortcutKey::grabModifierSets)
            xcb_ungrab_key(connection, m_keycode, root, modifiers | extraModifiers);
    }
}

// Ungrabbing touches only this client's own grabs, so combinations that another program won
// are left alone.
void X11GlobalShortcut::ungrabAll(xcb_connection_t* connection) {
    ungrab(connection, 0);
    for (const std::uint16_t extra : ShortcutKey::optionalExtraModifiers)
        ungrab(connection, extra);
    // A round trip, so that when this returns the key is free for other programs, rather than
    // whenever the server gets to our requests.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    m_roots.clear();
    m_keycode = 0;
}

bool X11GlobalShortcut::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t" || message == nullptr)
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_KEY_PRESS)
        return false;
    const auto* press = reinterpret_cast<const xcb_key_press_event_t*>(event);
    if (!ShortcutKey::matches(press->state, press->detail, m_keycode))
        return false;
    // The handler may show or hide windows; doing that from inside Qt's event dispatch of a
    // native event is asking for trouble, so it runs on the next turn of the loop.
    if (m_onActivated)
        QMetaObject::invokeMethod(QCoreApplication::instance(), m_onActivated,
                                  Qt::QueuedConnection);
    return true;
}

} // namespace hueshelf
