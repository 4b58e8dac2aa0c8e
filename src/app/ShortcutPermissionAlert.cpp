#include "app/ShortcutPermissionAlert.h"

#include "app/ShortcutPermissionModel.h"

#include <QMessageBox>
#include <QPushButton>

namespace hueshelf::app {

void showShortcutPermissionAlert(ShortcutPermissionModel& model, QWidget* parent) {
    model.markShown();
    QMessageBox box(QMessageBox::Information, model.title(), model.title(), QMessageBox::NoButton,
                    parent);
    box.setInformativeText(model.text());
    QPushButton* open = box.addButton(model.openSettingsButton(), QMessageBox::AcceptRole);
    QPushButton* notNow = box.addButton(model.notNowButton(), QMessageBox::RejectRole);
    box.setDefaultButton(open);
    box.setEscapeButton(notNow);
    box.exec();
    if (box.clickedButton() == open)
        model.openSettings();
}

} // namespace hueshelf::app
