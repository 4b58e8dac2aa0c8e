#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QHBoxLayout;

namespace hueshelf::app {

class PaletteLinkOpenModel;

// The preview of a shared palette: what it is called, how many colors it holds, the swatches,
// and the choice between adding it and letting it go. Closing the window lets it go too.
class PaletteLinkImportWindow final : public QWidget {
    Q_OBJECT
public:
    explicit PaletteLinkImportWindow(PaletteLinkOpenModel& model, QWidget* parent = nullptr);

    // Draws the palette the model holds now.
    void refresh();

    QPushButton& addButton() const { return *m_add; }
    QPushButton& cancelButton() const { return *m_cancel; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    PaletteLinkOpenModel& m_model;
    QLabel* m_heading = nullptr;
    QLabel* m_name = nullptr;
    QLabel* m_count = nullptr;
    QWidget* m_swatches = nullptr;
    QLabel* m_note = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_add = nullptr;
};

} // namespace hueshelf::app
