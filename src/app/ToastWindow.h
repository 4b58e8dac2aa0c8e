#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QWidget>

#include <optional>

class QLabel;

namespace hueshelf::app {

class ToastManager;

// Draws the manager's current toast: a small rounded label of symbol and text, centred over its
// source, in a window of its own that stays above the bar and never takes the focus.
class ToastWindow final : public QWidget {
    Q_OBJECT
public:
    // Between the source's top edge and the toast's bottom edge.
    static constexpr int kGap = 6;
    // Kept between the toast and the screen's edges.
    static constexpr int kScreenMargin = 4;

    explicit ToastWindow(ToastManager& manager, QWidget* parent = nullptr);

    QString text() const;
    QString iconName() const { return m_iconName; }

    // Centred over `source`; under it where the screen has no room above; held inside `screen`
    // (the visible area of the screen holding the source) when there is one.
    static QPoint placement(const QRect& source, const QSize& size,
                            const std::optional<QRect>& screen);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void follow();
    void refreshIcon();

    ToastManager& m_manager;
    QLabel* m_icon = nullptr;
    QLabel* m_text = nullptr;
    QString m_iconName;
};

} // namespace hueshelf::app
