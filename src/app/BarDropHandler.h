#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <functional>

namespace hueshelf::app {

class ToastManager;

// Files dropped anywhere on the bar: a palette file is opened, an image becomes a palette, and
// anything else is refused with a toast and a shake. Only the first file of a drop is ever
// used, and the user is told when more came along.
class BarDropHandler final {
public:
    enum class Kind { paletteFile, image, neither };

    struct Actions {
        // Opens a palette file through the exchange's import; empty when nothing can.
        std::function<void(const QString& path, bool isOneOfSeveral)> importFile;
        // Extracts colours from an image off the main thread.
        std::function<void(const QString& path)> extractImage;
        std::function<bool()> reduceMotion;
        // The refusal's shake of the whole bar.
        std::function<void()> shake;
    };

    BarDropHandler(ToastManager& toasts, Actions actions);

    // By the lower-cased extension of the path alone: the file isn't opened to decide.
    static Kind classify(const QUrl& url);

    // Whether the drop was taken.
    bool handleBarDrop(const QList<QUrl>& urls);

private:
    ToastManager& m_toasts;
    Actions m_actions;
};

} // namespace hueshelf::app
