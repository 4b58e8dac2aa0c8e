#pragma once

#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace hueshelf::app {

class AIToolsPanelModel;

// "Connect Your AI Tools": a single column drawn from the panel model, redrawn whenever the
// model changes; every click goes straight back to the model.
class AIToolsWindow final : public QWidget {
    Q_OBJECT
public:
    static constexpr int panelWidth = 380;

    explicit AIToolsWindow(AIToolsPanelModel& model, QWidget* parent = nullptr);

    void refresh();

    QComboBox& palettePicker() const { return *m_picker; }
    QPushButton& copySnippetButton() const { return *m_copySnippet; }
    QPushButton& disconnectAllButton() const { return *m_disconnectAll; }
    QLabel& statusLabel() const { return *m_status; }
    // The current row widgets, replaced on every redraw.
    QWidget& rowList() const { return *m_rows; }

private:
    void rebuildRows();

    AIToolsPanelModel& m_model;
    QComboBox* m_picker = nullptr;
    QVBoxLayout* m_rowsHolder = nullptr;
    QWidget* m_rows = nullptr;
    QLabel* m_status = nullptr;
    QPushButton* m_copySnippet = nullptr;
    QPushButton* m_disconnectAll = nullptr;
    QLabel* m_disconnectCaption = nullptr;
};

} // namespace hueshelf::app
