#include "app/KeyboardModality.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>

namespace hueshelf::app {

KeyboardModality::KeyboardModality(QObject* parent) : QObject(parent) {}

KeyboardModality::~KeyboardModality() {
    stopMonitoring();
}

KeyboardModality& KeyboardModality::shared() {
    static KeyboardModality* instance = new KeyboardModality(QCoreApplication::instance());
    return *instance;
}

void KeyboardModality::startMonitoring() {
    if (m_isMonitoring)
        return;
    if (QCoreApplication* application = QCoreApplication::instance()) {
        application->installEventFilter(this);
        m_isMonitoring = true;
    }
}

void KeyboardModality::stopMonitoring() {
    if (!m_isMonitoring)
        return;
    if (QCoreApplication* application = QCoreApplication::instance())
        application->removeEventFilter(this);
    m_isMonitoring = false;
}

void KeyboardModality::setTabbing(bool tabbing) {
    if (m_isTabbing == tabbing)
        return;
    m_isTabbing = tabbing;
    Q_EMIT isTabbingChanged(tabbing);
}

bool KeyboardModality::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress: {
        // Shift-Tab arrives as Backtab; it is the same key going the other way.
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab)
            setTabbing(true);
        break;
    }
    // Presses only: a mouse that merely drifts while the user tabs shouldn't hide the ring.
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        setTabbing(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace hueshelf::app
