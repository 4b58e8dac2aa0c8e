#pragma once

#include "app/BarSwatch.h"

#include <QList>
#include <QPointer>
#include <QUuid>
#include <QWidget>

#include <functional>

class QHBoxLayout;
class QLabel;
class QVariantAnimation;

namespace hueshelf::app {

class AddSwatchButton;
class BarModel;
class CompactButton;
class CompactColorSwatch;
class OverflowButton;
class OverflowPopover;
class PaletteChip;
class SwatchGutter;
class WindowDragView;

// The bar's row, left to right: the handle, up to six swatches with their gutters, the overflow
// button, the add button, the palette chip, the tools, sync and minimize. It draws what the
// model says and hands every gesture to it.
class FloatingHueShelfView final : public QWidget {
    Q_OBJECT
public:
    static constexpr int rowHeight = 40;

    // Where the save panel is asked for a path; empty for a cancel.
    using SavePathPrompt = std::function<QString(const QString& suggestedName)>;

    explicit FloatingHueShelfView(BarModel& model, QWidget* parent = nullptr);
    ~FloatingHueShelfView() override;

    void setSavePathPrompt(SavePathPrompt prompt) { m_savePathPrompt = std::move(prompt); }

    WindowDragView* dragView() const { return m_dragView; }
    QList<CompactColorSwatch*> swatchWidgets() const { return m_swatches; }
    QList<SwatchGutter*> gutters() const { return m_gutters; }
    OverflowButton* overflowButton() const { return m_overflowButton; }
    AddSwatchButton* addButton() const { return m_addButton; }
    PaletteChip* paletteChip() const { return m_chip; }
    OverflowPopover* overflowPopover() const { return m_overflow; }
    // By symbol name: "lock.fill"/"lock.open", "rectangle.3.group", the check's, "eye"/"eye.fill",
    // "eyedropper", "link", "square.and.arrow.down", the sync button's, "minus".
    CompactButton* tool(const QString& symbol) const;
    CompactButton* syncButton() const { return m_syncButton; }

Q_SIGNALS:
    void galleryRequested();
    void groupsRequested();
    void checkRequested();
    void minimizeRequested();
    // The swatch of this colour (on the bar or in the list) opens its editor.
    void editorRequested(const QUuid& colorId, QWidget* anchor);
    // "Couldn't save the palette" with the file system's words.
    void saveFailed(const QString& message);

private:
    void rebuild();
    void rebuildSwatches();
    void updateTools();
    void updateHighlight();
    void updateOverflow();
    void refreshOverflowContent();
    void openLensMenu();
    void saveAsFile();
    void shake();
    CompactColorSwatch* makeSwatch(const BarSwatch& swatch, int width, QWidget* parent);
    CompactColorSwatch* swatchWidgetFor(const QUuid& id) const;
    QRect globalFrame(const QWidget* widget) const;

    BarModel& m_model;
    QHBoxLayout* m_row = nullptr;
    WindowDragView* m_dragView = nullptr;
    QLabel* m_brand = nullptr;
    QWidget* m_strip = nullptr;
    QList<CompactColorSwatch*> m_swatches;
    QList<CompactColorSwatch*> m_listSwatches;
    QList<SwatchGutter*> m_gutters;
    OverflowButton* m_overflowButton = nullptr;
    AddSwatchButton* m_addButton = nullptr;
    PaletteChip* m_chip = nullptr;
    QList<CompactButton*> m_tools;
    CompactButton* m_lockButton = nullptr;
    CompactButton* m_checkButton = nullptr;
    CompactButton* m_lensButton = nullptr;
    CompactButton* m_eyedropperButton = nullptr;
    QWidget* m_syncSeparator = nullptr;
    CompactButton* m_syncButton = nullptr;
    OverflowPopover* m_overflow = nullptr;
    // The palette changed since the list was last filled.
    bool m_overflowStale = true;
    SavePathPrompt m_savePathPrompt;
    QPointer<QVariantAnimation> m_shakeAnimation;
};

} // namespace hueshelf::app
