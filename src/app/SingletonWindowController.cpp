#include "app/SingletonWindowController.h"

#include <QGuiApplication>
#include <QScreen>

namespace hueshelf::app {

SingletonWindowController::SingletonWindowController(QString title,
                                                     std::optional<QSize> contentSize,
                                                     Factory factory)
    : m_title(std::move(title)), m_contentSize(contentSize), m_factory(std::move(factory)) {}

SingletonWindowController::~SingletonWindowController() = default;

Qt::WindowFlags SingletonWindowController::windowFlags() {
    return Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
           Qt::WindowStaysOnTopHint;
}

QWidget& SingletonWindowController::show() {
    if (!m_window)
        create();
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    return *m_window;
}

void SingletonWindowController::hide() {
    if (m_window)
        m_window->hide();
}

void SingletonWindowController::create() {
    m_window = m_factory();
    // A widget made with a parent would be deleted by that parent behind the controller's back.
    m_window->setParent(nullptr, windowFlags());
    m_window->setAttribute(Qt::WA_DeleteOnClose, false);
    m_window->setWindowTitle(m_title);
    if (m_contentSize)
        m_window->resize(*m_contentSize);
    else
        m_window->adjustSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->availableGeometry();
        m_window->move(area.center() - QPoint(m_window->width() / 2, m_window->height() / 2));
    }
}

} // namespace hueshelf::app
