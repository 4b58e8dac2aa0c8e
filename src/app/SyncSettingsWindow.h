#pragma once

#include "app/FolderPanel.h"
#include "app/SyncSettingsModel.h"

#include <QPointer>
#include <QWidget>

class QLabel;
class QMessageBox;
class QVBoxLayout;

namespace hueshelf::app {

// "Cloud Sync Settings": the face for sync off or on, with the set-up and connect sheets drawn
// in place of the face while they are open, the two alerts as message boxes and the folder
// panels through `pickFolder`. What to show is entirely the model's; this only draws it.
class SyncSettingsWindow final : public QWidget {
    Q_OBJECT
public:
    static constexpr int contentWidth = 450;
    static constexpr int contentHeight = 400;

    SyncSettingsWindow(SyncSettingsModel& model, FolderPicker pickFolder,
                       QWidget* parent = nullptr);

    void refresh();

    // The page on show, replaced on every redraw.
    QWidget& page() const { return *m_page; }
    QLabel& errorLabel() const { return *m_error; }

private:
    QWidget* offPage(const SyncOffFace& face);
    QWidget* onPage(const SyncOnFace& face);
    QWidget* setUpPage(const SetUpSheet& sheet);
    QWidget* connectPage(const ConnectSheet& sheet);
    void syncAlerts();
    void choose(const FolderPanelRequest& request);

    SyncSettingsModel& m_model;
    FolderPicker m_pickFolder;
    QVBoxLayout* m_layout = nullptr;
    QWidget* m_page = nullptr;
    QLabel* m_error = nullptr;
    QPointer<QMessageBox> m_disableAlert;
    QPointer<QMessageBox> m_autoDetectAlert;
};

} // namespace hueshelf::app
