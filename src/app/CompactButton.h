#pragma once

#include <QAbstractButton>
#include <QColor>

namespace hueshelf::app {

// The bar's small tool button: a symbol, a tooltip that doubles as its accessible name, a
// soft fill under the pointer and a darker one while pressed.
class CompactButton : public QAbstractButton {
    Q_OBJECT
public:
    static constexpr int side = 24;

    CompactButton(const QString& symbol, const QString& label, QWidget* parent = nullptr);

    void setSymbol(const QString& symbol, const QColor& tint = {});
    void setLabel(const QString& label);
    // A tint behind the symbol, as the lock shows when closed; invalid for none.
    void setBackdrop(const QColor& backdrop);
    // Shown greyed but still clickable, so that its refusal can be heard.
    void setDimmed(bool dimmed);
    QString symbol() const { return m_symbol; }
    QSize sizeHint() const override { return {side, side}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QString m_symbol;
    QColor m_tint;
    QColor m_backdrop;
    bool m_dimmed = false;
    bool m_hovered = false;
};

} // namespace hueshelf::app
