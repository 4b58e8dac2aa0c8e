#pragma once

#include "app/MenuEntry.h"

#include <QList>
#include <QWidget>

#include <functional>

class QHBoxLayout;
class QLabel;

namespace hueshelf::app {

class BarModel;
class BarPositionStore;
class CompactColorSwatch;
class WindowDragView;

// The bar: a frameless window over all others that never takes the focus, as wide as its
// content. It draws the model and forwards clicks to it; only the grip at its left end moves it.
class FloatingWindow final : public QWidget {
    Q_OBJECT
public:
    using MenuProvider = std::function<QList<MenuEntry>()>;

    explicit FloatingWindow(BarModel& model, QWidget* parent = nullptr);

    // Where no tray icon can carry the status menu, a right click on the bar opens it instead.
    void setMenuProvider(MenuProvider provider) { m_menuProvider = std::move(provider); }

    // Every later move of the window, and the end of each drag, is remembered there. Set once
    // the launch has placed the bar, so that the launch's own placing isn't stored.
    void setPositionStore(BarPositionStore* store);

    WindowDragView* dragView() const { return m_dragView; }
    QList<CompactColorSwatch*> swatchWidgets() const { return m_swatches; }
    QString shownPaletteName() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void rebuild();

    BarModel& m_model;
    WindowDragView* m_dragView = nullptr;
    BarPositionStore* m_positionStore = nullptr;
    QLabel* m_nameLabel = nullptr;
    QHBoxLayout* m_swatchRow = nullptr;
    QList<CompactColorSwatch*> m_swatches;
    MenuProvider m_menuProvider;
};

} // namespace hueshelf::app
