#pragma once

#include <QSize>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace hueshelf::app {

// One auxiliary window that exists at most once. It is made on the first request, and closing
// only hides it, so a later request brings back the same window with its state. It stands above
// the floating bar, which is itself always on top.
class SingletonWindowController {
public:
    using Factory = std::function<std::unique_ptr<QWidget>()>;

    // Without a content size the window takes the size its content asks for.
    SingletonWindowController(QString title, std::optional<QSize> contentSize, Factory factory);
    ~SingletonWindowController();

    SingletonWindowController(const SingletonWindowController&) = delete;
    SingletonWindowController& operator=(const SingletonWindowController&) = delete;

    // Brings the window forward, creating it first if there is none yet.
    QWidget& show();
    // Hides the window, if there is one; it is kept for the next show.
    void hide();

    QWidget* window() const { return m_window.get(); }
    bool isVisible() const { return m_window && m_window->isVisible(); }

    // Titled and closable, nothing else, and above the bar.
    static Qt::WindowFlags windowFlags();

private:
    void create();

    QString m_title;
    std::optional<QSize> m_contentSize;
    Factory m_factory;
    std::unique_ptr<QWidget> m_window;
};

} // namespace hueshelf::app
