#pragma once

#include "app/OverflowHoverMachine.h"

#include <QAbstractButton>

namespace hueshelf::app {

// "+n" behind the sixth swatch: the way into the colours that don't fit on the bar. It lights
// up when the hovered group reaches into them and fades when it doesn't.
class OverflowButton final : public QAbstractButton {
    Q_OBJECT
public:
    static constexpr int side = 28;

    explicit OverflowButton(QWidget* parent = nullptr);

    void setHiddenCount(int count);
    void setEmphasis(OverflowHoverMachine::ButtonEmphasis emphasis);
    QSize sizeHint() const override { return {side, side}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    OverflowHoverMachine::ButtonEmphasis m_emphasis = OverflowHoverMachine::ButtonEmphasis::none;
};

} // namespace hueshelf::app
