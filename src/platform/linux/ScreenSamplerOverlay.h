#pragma once

#include "platform/Platform.h"

#include <QImage>
#include <QObject>

#include <memory>
#include <optional>
#include <vector>

class QScreen;

namespace hueshelf {

class SamplerWindow;

// Picking a colour where no desktop portal offers it (X11): every screen is frozen in a still
// picture and covered by a window that shows it, so the colour picked is the one the user saw
// when the pick began, and the click reaches no other program. Escape or a right click cancels.
class ScreenSamplerOverlay final : public QObject {
    Q_OBJECT

public:
    struct FrozenScreen {
        QScreen* screen = nullptr;
        QImage grab; // in the screen's device pixels
    };

    // Grabs every screen and covers them. `done` runs once, later, on the main thread; with
    // nothing at once (queued) where no screen could be grabbed, as on Wayland.
    static void pickFromScreens(Platform::ColorPicked done);
    // Covers the given screens with the given pictures. The overlay deletes itself once it
    // has answered.
    static ScreenSamplerOverlay* start(std::vector<FrozenScreen> screens,
                                       Platform::ColorPicked done);

    ~ScreenSamplerOverlay() override;

private:
    ScreenSamplerOverlay(std::vector<FrozenScreen> screens, Platform::ColorPicked done);
    void followPointer(QPointF global);
    void pickAt(QPointF global);
    void finish(std::optional<SampledColor> color);

    std::vector<std::unique_ptr<SamplerWindow>> m_windows;
    Platform::ColorPicked m_done;
};

} // namespace hueshelf
