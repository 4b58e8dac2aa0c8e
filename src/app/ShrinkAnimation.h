#pragma once

#include <QPixmap>
#include <QRect>
#include <QWidget>

#include <functional>

class QVariantAnimation;

namespace hueshelf::app {

// A picture of the bar in a window of its own, flying between the bar's frame and the tray
// icon. It never takes the focus nor a click, and it closes itself at the end.
class ShrinkAnimation final : public QWidget {
    Q_OBJECT
public:
    static constexpr int durationMs = 240;
    // At the icon the picture is this fraction of the bar's size.
    static constexpr double iconScale = 0.05;

    // A rectangle `iconScale` of `barSize`, centred on the icon.
    static QRect frameAtIcon(QSize barSize, const QRect& icon);

    explicit ShrinkAnimation(const QPixmap& snapshot);

    // Flies from one frame and opacity to the other; `finished` runs after the window closed.
    void run(const QRect& from, const QRect& to, double fromOpacity, double toOpacity,
             std::function<void()> finished);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_snapshot;
    QVariantAnimation* m_animation = nullptr;
};

} // namespace hueshelf::app
