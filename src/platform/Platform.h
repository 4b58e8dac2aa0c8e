#pragma once

#include <QString>

#include <memory>

namespace hueshelf {

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
};

// The backend of the platform this build is for.
std::unique_ptr<Platform> createPlatform();

} // namespace hueshelf
