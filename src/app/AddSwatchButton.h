#pragma once

#include <QAbstractButton>

namespace hueshelf::app {

// The dashed square behind the swatches that adds a colour; dimmed in a locked palette, where
// it names what to do instead.
class AddSwatchButton final : public QAbstractButton {
    Q_OBJECT
public:
    static constexpr int side = 28;

    explicit AddSwatchButton(QWidget* parent = nullptr);

    void setPaletteLocked(bool locked);
    QSize sizeHint() const override { return {side, side}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_locked = false;
};

} // namespace hueshelf::app
