#include "app/ShortcutKeyFilter.h"

#include <QKeyEvent>

namespace hueshelf::app {

bool ShortcutKeyFilter::isShortcut(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    return event.key() == Qt::Key_B && modifiers.testFlag(Qt::ControlModifier) &&
           modifiers.testFlag(Qt::ShiftModifier);
}

bool ShortcutKeyFilter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && isShortcut(*static_cast<QKeyEvent*>(event))) {
        if (m_onShortcut)
            m_onShortcut();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace hueshelf::app
