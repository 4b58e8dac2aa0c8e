#pragma once

#include "app/BarSwatch.h"

#include <QAbstractButton>

namespace hueshelf::app {

// One colour on the bar: a rounded square in its colour. It only draws and reports clicks; what
// a click means is the model's business.
class CompactColorSwatch final : public QAbstractButton {
    Q_OBJECT
public:
    static constexpr int kSide = 28;

    explicit CompactColorSwatch(const BarSwatch& swatch, QWidget* parent = nullptr);

    const BarSwatch& swatch() const { return m_swatch; }
    QSize sizeHint() const override { return {kSide, kSide}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    BarSwatch m_swatch;
};

} // namespace hueshelf::app
