#pragma once

#include <QAbstractButton>

namespace hueshelf::app {

// The active palette's name with a chevron: the way to the gallery. A name too wide for the
// chip is cut, and its tooltip then carries it whole.
class PaletteChip final : public QAbstractButton {
    Q_OBJECT
public:
    explicit PaletteChip(QWidget* parent = nullptr);

    void setPaletteName(const QString& name);
    QString shownName() const { return m_shown; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QString m_shown;
    bool m_hovered = false;
};

} // namespace hueshelf::app
