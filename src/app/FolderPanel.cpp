#include "app/FolderPanel.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>

namespace hueshelf::app {

std::optional<QString> runFolderPanel(QWidget* parent, const FolderPanelRequest& request) {
    QFileDialog dialog(parent, request.title, request.startDirectory.value_or(QString()));
    // The toolkit's own dialog, so the message has a place and the window can stay on top.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(request.canChooseFiles && !request.canChooseDirectories
                           ? QFileDialog::ExistingFile
                           : QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly, !request.canChooseFiles);
    dialog.setOption(QFileDialog::ReadOnly, !request.canCreateDirectories);
    dialog.setLabelText(QFileDialog::Accept, request.prompt);
    dialog.setWindowFlag(Qt::WindowStaysOnTopHint, true);
    if (!request.message.isEmpty()) {
        if (auto* grid = qobject_cast<QGridLayout*>(dialog.layout())) {
            auto* message = new QLabel(request.message, &dialog);
            message->setWordWrap(true);
            message->setTextFormat(Qt::PlainText);
            grid->addWidget(message, grid->rowCount(), 0, 1, grid->columnCount());
        }
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

} // namespace hueshelf::app
