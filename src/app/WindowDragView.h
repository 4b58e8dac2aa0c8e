#pragma once

#include <QPoint>
#include <QWidget>

namespace hueshelf::app {

class BarPositionStore;

// The grip at the bar's left end: the only place the bar can be moved by. It forwards the
// pointer's travel to the drag rules and remembers where the bar was left.
class WindowDragView final : public QWidget {
    Q_OBJECT
public:
    static constexpr int gripWidth = 14;

    explicit WindowDragView(QWidget* parent = nullptr);

    // Where the end of a drag is remembered; none until the bar's place has been settled.
    void setPositionStore(BarPositionStore* store) { m_store = store; }
    bool isDragging() const { return m_isDragging; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    BarPositionStore* m_store = nullptr;
    QPoint m_initialMouseLocation;
    QPoint m_initialWindowOrigin;
    bool m_isDragging = false;
};

} // namespace hueshelf::app
