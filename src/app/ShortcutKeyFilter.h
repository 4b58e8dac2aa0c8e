#pragma once

#include <QObject>

#include <functional>

class QKeyEvent;

namespace hueshelf::app {

// Control-Shift-B in any of the program's own windows, other modifiers allowed: the key press is
// taken, whatever has the focus (a dialog's text field too), and the bar toggles. Installed on
// the application; the desktop-wide shortcut comes from the platform.
class ShortcutKeyFilter final : public QObject {
    Q_OBJECT
public:
    explicit ShortcutKeyFilter(std::function<void()> onShortcut, QObject* parent = nullptr)
        : QObject(parent), m_onShortcut(std::move(onShortcut)) {}

    static bool isShortcut(const QKeyEvent& event);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_onShortcut;
};

} // namespace hueshelf::app
