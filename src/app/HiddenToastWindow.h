#pragma once

#include <QString>
#include <QWidget>

#include <functional>

namespace hueshelf::app {

// Says where the bar went when it could not be seen going: a small window of its own at the top
// middle of the primary screen, since the bar that usually carries toasts is gone. It never
// takes the focus nor a click; it fades in, stays, fades out and closes itself.
class HiddenToastWindow final : public QWidget {
    Q_OBJECT
public:
    static inline const QString message =
        QStringLiteral("HueShelf is hidden. Press \u2303\u21E7B to bring it back.");
    static constexpr int stayMs = 2600;
    static constexpr int fadeMs = 200;

    HiddenToastWindow();

    // Shows the toast and starts its life.
    void present();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void fadeTo(double opacity, std::function<void()> then);
};

} // namespace hueshelf::app
