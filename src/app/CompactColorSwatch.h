#pragma once

#include "app/BarSwatch.h"
#include "app/SwatchAppearance.h"

#include <QPoint>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <functional>

class QVariantAnimation;

namespace hueshelf::app {

// One colour on the bar or in the overflow list. It draws its state and turns the pointer into
// gestures: a click copies, a right click edits, a drag carries "SWATCH-n" to another swatch.
// What each gesture means is decided elsewhere.
class CompactColorSwatch final : public QWidget {
    Q_OBJECT
public:
    static constexpr int barWidth = 28;
    static constexpr int listWidth = 40;
    static constexpr int height = 28;

    // A drop of dragged text on this swatch; answers whether it was taken.
    using DropHandler = std::function<bool(const QStringList& items)>;

    CompactColorSwatch(const BarSwatch& swatch, int width, QWidget* parent = nullptr);

    const BarSwatch& swatch() const { return m_swatch; }
    const SwatchState& state() const { return m_state; }
    QSize sizeHint() const override { return {m_width, height}; }

    void setGroupHighlight(bool dimmed, bool emphasized);
    void setCopiedFeedback(bool showing);
    void setReduceMotion(bool reduceMotion);
    void setDraggable(bool draggable) { m_draggable = draggable; }
    void setDropHandler(DropHandler handler) { m_dropHandler = std::move(handler); }

Q_SIGNALS:
    void copyRequested();
    void editRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void stateChanged();
    void animate(QPointer<QVariantAnimation>& running, double& value, double target, bool animates,
                 const SwatchTransition& how);
    void startDrag();

    BarSwatch m_swatch;
    int m_width;
    SwatchState m_state;
    bool m_reduceMotion = false;
    bool m_draggable = false;
    DropHandler m_dropHandler;
    QPoint m_pressPosition;
    bool m_pressed = false;
    double m_scale = 1.0;
    QPointer<QVariantAnimation> m_scaleAnimation;
    // 0 undimmed, 1 dimmed by a group; between while it fades.
    double m_dim = 0.0;
    QPointer<QVariantAnimation> m_dimAnimation;
    bool m_shownEmphasis = false;
};

} // namespace hueshelf::app
