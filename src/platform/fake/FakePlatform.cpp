#include "platform/fake/FakePlatform.h"

#include <utility>

namespace hueshelf {

void FakePlatform::setClipboardText(const QString& text) {
    m_clipboard = text;
    m_history.append(text);
}

bool FakePlatform::registerGlobalShortcut(std::function<void()> onActivated) {
    if (!m_shortcutAvailable)
        return false;
    m_shortcut = std::move(onActivated);
    return true;
}

void FakePlatform::changeDesktopPreferences(const DesktopPreferences& preferences) {
    m_preferences = preferences;
    if (m_preferencesChanged)
        m_preferencesChanged();
}

void FakePlatform::pressGlobalShortcut() {
    if (m_shortcut)
        m_shortcut();
}

bool FakePlatform::setLaunchAtLogin(bool enabled) {
    if (m_launchAtLoginFails)
        return false;
    m_launchAtLogin = enabled;
    return true;
}

bool FakePlatform::openUrl(const QUrl& url) {
    m_openedUrls.append(url);
    return true;
}

void FakePlatform::pickScreenColor(ColorPicked done) {
    ++m_pickRequests;
    m_pickDone = std::move(done);
}

void FakePlatform::finishPick(std::optional<SampledColor> color) {
    // Taken out first: the handler may well ask for the next pick.
    auto done = std::exchange(m_pickDone, nullptr);
    if (done)
        done(color);
}

} // namespace hueshelf
