#include "platform/linux/ScreenSamplerOverlay.h"

#include "platform/linux/SamplerWindow.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

#include <utility>

namespace hueshelf {

void ScreenSamplerOverlay::pickFromScreens(Platform::ColorPicked done) {
    std::vector<FrozenScreen> screens;
    // Every picture is taken before any window is shown, so none shows the overlay itself.
    for (QScreen* screen : QGuiApplication::screens()) {
        QImage grab = screen->grabWindow(0).toImage();
        if (!grab.isNull())
            screens.push_back({screen, std::move(grab)});
    }
    start(std::move(screens), std::move(done));
}

ScreenSamplerOverlay* ScreenSamplerOverlay::start(std::vector<FrozenScreen> screens,
                                                  Platform::ColorPicked done) {
    auto* overlay = new ScreenSamplerOverlay(std::move(screens), std::move(done));
    if (overlay->m_windows.empty()) {
        QMetaObject::invokeMethod(
            overlay, [overlay] { overlay->finish(std::nullopt); }, Qt::QueuedConnection);
    }
    return overlay;
}

ScreenSamplerOverlay::ScreenSamplerOverlay(std::vector<FrozenScreen> screens,
                                           Platform::ColorPicked done)
    : m_done(std::move(done)) {
    for (FrozenScreen& frozen : screens) {
        if (frozen.screen == nullptr || frozen.grab.isNull())
            continue;
        auto window = std::make_unique<SamplerWindow>(frozen.screen, std::move(frozen.grab));
        connect(window.get(), &SamplerWindow::pointerMoved, this,
                &ScreenSamplerOverlay::followPointer);
        connect(window.get(), &SamplerWindow::clicked, this, &ScreenSamplerOverlay::pickAt);
        connect(window.get(), &SamplerWindow::cancelled, this, [this] { finish(std::nullopt); });
        m_windows.push_back(std::move(window));
    }
    if (m_windows.empty())
        return;
    // The server gives keyboard and pointer to one window only. The one under the pointer
    // takes them, and reports positions over the other screens too, in global coordinates.
    const QPointF pointer = QCursor::pos();
    SamplerWindow* inputWindow = m_windows.front().get();
    for (const auto& window : m_windows) {
        window->show();
        if (window->containsGlobal(pointer))
            inputWindow = window.get();
    }
    inputWindow->takeInput();
}

ScreenSamplerOverlay::~ScreenSamplerOverlay() {
    for (const auto& window : m_windows)
        window->releaseInput();
}

void ScreenSamplerOverlay::followPointer(QPointF global) {
    for (const auto& window : m_windows)
        window->setPointer(global);
}

void ScreenSamplerOverlay::pickAt(QPointF global) {
    for (const auto& window : m_windows) {
        if (window->containsGlobal(global)) {
            finish(window->colorAt(global));
            return;
        }
    }
    // Between screens of different sizes there are points no screen shows; the pick goes on.
}

void ScreenSamplerOverlay::finish(std::optional<SampledColor> color) {
    if (!m_done)
        return;
    for (const auto& window : m_windows) {
        window->releaseInput();
        window->hide();
    }
    deleteLater();
    std::exchange(m_done, nullptr)(color);
}

} // namespace hueshelf
