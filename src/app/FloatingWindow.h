#pragma once

#include "app/MenuEntry.h"

#include <QList>
#include <QPoint>
#include <QWidget>

#include <functional>
#include <optional>

class QHBoxLayout;
class QLabel;

namespace hueshelf::app {

class BarModel;
class CompactColorSwatch;

// The bar: a frameless window over all others that never takes the focus, as wide as its
// content. It draws the model and forwards clicks to it; its empty area drags it.
class FloatingWindow final : public QWidget {
    Q_OBJECT
public:
    using MenuProvider = std::function<QList<MenuEntry>()>;

    explicit FloatingWindow(BarModel& model, QWidget* parent = nullptr);

    // Where no tray icon can carry the status menu, a right click on the bar opens it instead.
    void setMenuProvider(MenuProvider provider) { m_menuProvider = std::move(provider); }

    QList<CompactColorSwatch*> swatchWidgets() const { return m_swatches; }
    QString shownPaletteName() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void rebuild();

    BarModel& m_model;
    QLabel* m_nameLabel = nullptr;
    QHBoxLayout* m_swatchRow = nullptr;
    QList<CompactColorSwatch*> m_swatches;
    MenuProvider m_menuProvider;
    // Pointer position relative to the window's corner while it is dragged.
    std::optional<QPoint> m_dragOffset;
};

} // namespace hueshelf::app
