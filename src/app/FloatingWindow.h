#pragma once

#include "app/MenuEntry.h"

#include <QList>
#include <QPointer>
#include <QWidget>

#include <functional>

class QVariantAnimation;

namespace hueshelf::app {

class BarModel;
class BarPositionStore;
class CompactColorSwatch;
class FloatingHueShelfView;
class WindowDragView;

// The bar: a frameless window over all others that never takes the focus, exactly as wide as
// the bar's width rule says, resized the moment the palette changes. It holds the row in its
// rounded chrome and takes files dropped anywhere on it.
class FloatingWindow final : public QWidget {
    Q_OBJECT
public:
    using MenuProvider = std::function<QList<MenuEntry>()>;
    static constexpr int barHeight = 44;

    explicit FloatingWindow(BarModel& model, QWidget* parent = nullptr);

    // Where no tray icon can carry the status menu, a right click on the bar opens it instead.
    void setMenuProvider(MenuProvider provider) { m_menuProvider = std::move(provider); }

    // Every later move of the window, and the end of each drag, is remembered there. Set once
    // the launch has placed the bar, so that the launch's own placing isn't stored.
    void setPositionStore(BarPositionStore* store);

    FloatingHueShelfView& view() const { return *m_view; }
    WindowDragView* dragView() const;
    QList<CompactColorSwatch*> swatchWidgets() const;
    QString shownPaletteName() const;
    bool isBarDropHover() const { return m_isBarDropHover; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void updateWidth();
    void setBarDropHover(bool hover);

    BarModel& m_model;
    FloatingHueShelfView* m_view = nullptr;
    BarPositionStore* m_positionStore = nullptr;
    MenuProvider m_menuProvider;
    bool m_isBarDropHover = false;
    // The drop mark fades in and out.
    double m_dropHoverOpacity = 0.0;
    QPointer<QVariantAnimation> m_dropHoverFade;
};

} // namespace hueshelf::app
