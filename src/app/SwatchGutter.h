#pragma once

#include <QUuid>
#include <QWidget>

namespace hueshelf::app {

// The strip in front of a swatch. Where a group starts it draws the divider and grows a wider
// hit area over its neighbours; hovering it lights the group up.
class SwatchGutter final : public QWidget {
    Q_OBJECT
public:
    static constexpr int plainWidth = 6;
    static constexpr int plainHeight = 32;
    static constexpr int dividerHitWidth = 14;
    static constexpr int dividerHitHeight = 40;

    SwatchGutter(const QUuid& colorId, bool showsDivider, const QString& label,
                 QWidget* parent = nullptr);

    bool showsDivider() const { return m_showsDivider; }
    // The size the gutter takes, centred on its place in the row.
    QSize hitSize() const;

Q_SIGNALS:
    // The gutter's onHover: the pointer entered or left it.
    void hovered(const QUuid& colorId, bool hovering);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QUuid m_colorId;
    bool m_showsDivider;
    bool m_hovering = false;
};

} // namespace hueshelf::app
