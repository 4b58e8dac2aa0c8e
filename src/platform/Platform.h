#pragma once

#include "util/AppPaths.h"

#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace hueshelf {

// What the desktop says about its look; "noPreference" leaves the choice to the program.
enum class ColorScheme { noPreference, light, dark };

struct DesktopPreferences {
    ColorScheme colorScheme = ColorScheme::noPreference;
    bool reduceMotion = false;

    friend bool operator==(const DesktopPreferences&, const DesktopPreferences&) = default;
};

// A colour taken from the screen, as sRGB components that should lie in 0..1. A picker may
// hand over values outside that range or not finite at all; the caller decides what they mean.
struct SampledColor {
    double red = 0;
    double green = 0;
    double blue = 0;

    friend bool operator==(const SampledColor&, const SampledColor&) = default;
};

// Everything the shell needs from the desktop it runs on. One backend per platform is chosen
// by the build; tests use the fake beside them.
class Platform {
public:
    virtual ~Platform() = default;

    // "linux", "macos" or "windows": the name devices give themselves in shared files.
    virtual QString platformName() const = 0;
    // The machine's name as people know it.
    virtual QString hostName() const = 0;

    // The copy gesture replaces what the clipboard held with plain text.
    virtual void setClipboardText(const QString& text) = 0;
    virtual QString clipboardText() const = 0;

    // The desktop's look and its wish for less motion, as last heard from it.
    virtual DesktopPreferences desktopPreferences() const = 0;
    // Called on the main thread after the desktop changed one of them.
    virtual void setDesktopPreferencesChangedHandler(std::function<void()> handler) = 0;

    // Control-Shift-B from any application. True when at least one way of hearing it from
    // outside could be set up; without one only the program's own windows hear it. The
    // handler runs on the main thread.
    virtual bool registerGlobalShortcut(std::function<void()> onActivated) = 0;
    virtual void unregisterGlobalShortcut() = 0;
    virtual bool hasGlobalShortcut() const = 0;

    // Starting with the desktop session. False when the change could not be made; then
    // nothing changed.
    virtual bool setLaunchAtLogin(bool enabled) = 0;

    // A web page or a desktop settings page, in the handler the desktop has for it.
    virtual bool openUrl(const QUrl& url) = 0;

    // Lets the user pick one point of the screen. `done` runs once on the main thread, later,
    // with the colour or with nothing when the user cancelled or no picker could be shown.
    using ColorPicked = std::function<void(std::optional<SampledColor>)>;
    virtual void pickScreenColor(ColorPicked done) = 0;
};

// The backend of the platform this build is for; it keeps its files under the given paths.
std::unique_ptr<Platform> createPlatform(const AppPaths& paths);

} // namespace hueshelf
