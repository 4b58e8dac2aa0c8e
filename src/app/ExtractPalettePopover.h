#pragma once

#include <QList>
#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;
class QGridLayout;

namespace hueshelf::app {

class ExtractPaletteModel;

// "Extract colors": the colours found in a dropped image, their names to edit, the palette's
// name and "Create palette". It shows what the model holds and hands every edit to it; a click
// outside or "Cancel" ends it without touching the store.
class ExtractPalettePopover final : public QWidget {
    Q_OBJECT
public:
    explicit ExtractPalettePopover(ExtractPaletteModel& model, QWidget* parent = nullptr);

    // Where the popover points, asked when it opens: the bar's global frame. It opens under the
    // bar where the screen has room, otherwise over it.
    void setAnchor(std::function<QRect()> anchor) { m_anchor = std::move(anchor); }

    QLineEdit* paletteNameField() const { return m_nameField; }
    QList<QLineEdit*> swatchNameFields() const { return m_swatchNames; }
    QPushButton* createButton() const { return m_create; }

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void open();
    void fill();
    void refreshButtons();

    ExtractPaletteModel& m_model;
    std::function<QRect()> m_anchor;
    QLineEdit* m_nameField = nullptr;
    QGridLayout* m_grid = nullptr;
    QList<QLineEdit*> m_swatchNames;
    QLabel* m_info = nullptr;
    QPushButton* m_create = nullptr;
};

} // namespace hueshelf::app
