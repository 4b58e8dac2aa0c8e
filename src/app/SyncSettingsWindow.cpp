#include "app/SyncSettingsWindow.h"

#include "app/SymbolIcons.h"
#include "app/SyncStatusColor.h"
#include "app/WindowStyle.h"

#include <QFormLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <functional>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

namespace {

QLabel* headline(const QString& text, QWidget* parent) {
    auto* label = WindowStyle::wrappedLabel(text, parent);
    WindowStyle::makeBold(*label, 16);
    return label;
}

QLabel* secondary(const QString& text, QWidget* parent) {
    auto* label = WindowStyle::wrappedLabel(text, parent);
    WindowStyle::makeSecondary(*label);
    return label;
}

QLabel* symbolLabel(const QString& symbol, int size, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setPixmap(symbolIcon(symbol, WindowStyle::accent()).pixmap(QSize(size, size)));
    return label;
}

// A page of the window, named so tests can find it, its column flush with the window's margins.
QWidget* newPage(QWidget* window, const QString& name, int spacing) {
    auto* page = new QWidget(window);
    page->setObjectName(name);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing);
    return page;
}

// A column of rows that scrolls once it outgrows the window, put into `layout` with all the
// height left; the rows go into the answered list's layout, their parent being the list.
QWidget* addScrollingList(QVBoxLayout& layout, QWidget* page, bool horizontalBar) {
    auto* scroll = new QScrollArea(page);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    if (!horizontalBar)
        scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* list = new QWidget(scroll);
    auto* rows = new QVBoxLayout(list);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(6);
    scroll->setWidget(list);
    layout.addWidget(scroll, 1);
    return list;
}

} // namespace

SyncSettingsWindow::SyncSettingsWindow(SyncSettingsModel& model, FolderPicker pickFolder,
                                       QWidget* parent)
    : QWidget(parent), m_model(model), m_pickFolder(std::move(pickFolder)) {
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(20, 20, 20, 16);
    m_layout->setSpacing(10);
    m_error = WindowStyle::wrappedLabel(QString(), this);
    m_error->setObjectName(u"errorMessage"_s);
    WindowStyle::makeWarning(*m_error);
    m_layout->addWidget(m_error);
    connect(&m_model, &SyncSettingsModel::changed, this, &SyncSettingsWindow::refresh);
    refresh();
}

void SyncSettingsWindow::refresh() {
    // A redraw can come from a click on the old page, which is deleted once that click is over.
    if (m_page) {
        m_layout->removeWidget(m_page);
        m_page->hide();
        m_page->deleteLater();
    }
    if (m_model.showingSetupSheet()) {
        m_page = setUpPage(m_model.setUpSheet());
    } else if (m_model.showingConnectSheet()) {
        m_page = connectPage(m_model.connectSheet());
    } else {
        const SyncSettingsFace face = m_model.face();
        if (const auto* off = std::get_if<SyncOffFace>(&face))
            m_page = offPage(*off);
        else
            m_page = onPage(std::get<SyncOnFace>(face));
    }
    m_layout->insertWidget(0, m_page, 1);
    m_page->show();

    const std::optional<QString>& error = m_model.errorMessage();
    m_error->setVisible(error.has_value());
    m_error->setText(error.value_or(QString()));
    syncAlerts();
}

QWidget* SyncSettingsWindow::offPage(const SyncOffFace& face) {
    QWidget* page = newPage(this, u"syncOff"_s, 8);
    auto* layout = static_cast<QVBoxLayout*>(page->layout());
    layout->addStretch();
    auto* symbol = symbolLabel(u"icloud"_s, 40, page);
    layout->addWidget(symbol, 0, Qt::AlignHCenter);
    auto* title = headline(face.headline, page);
    title->setAlignment(Qt::AlignHCenter);
    layout->addWidget(title);
    auto* sub = secondary(face.subheadline, page);
    sub->setAlignment(Qt::AlignHCenter);
    layout->addWidget(sub);
    auto* description = WindowStyle::wrappedLabel(face.description, page);
    description->setAlignment(Qt::AlignHCenter);
    layout->addWidget(description);
    layout->addSpacing(8);

    auto* setUp = new QPushButton(face.setUpButton, page);
    setUp->setDefault(true);
    auto* connectExisting = new QPushButton(face.connectButton, page);
    auto* autoDetect = new QPushButton(face.autoDetectButton, page);
    for (QPushButton* button : {setUp, connectExisting, autoDetect}) {
        button->setMinimumWidth(220);
        layout->addWidget(button, 0, Qt::AlignHCenter);
    }
    connect(setUp, &QPushButton::clicked, this, [this] { m_model.showSetUpSheet(); });
    connect(connectExisting, &QPushButton::clicked, this, [this] { m_model.showConnectSheet(); });
    connect(autoDetect, &QPushButton::clicked, this, [this] { m_model.autoDetect(); });
    layout->addStretch();
    return page;
}

QWidget* SyncSettingsWindow::onPage(const SyncOnFace& face) {
    QWidget* page = newPage(this, u"syncOn"_s, 8);
    auto* layout = static_cast<QVBoxLayout*>(page->layout());

    auto* top = new QHBoxLayout();
    top->addWidget(headline(face.headline, page), 1);
    auto* status = new QLabel(face.statusText, page);
    status->setTextFormat(Qt::PlainText);
    QPalette palette = status->palette();
    palette.setColor(QPalette::WindowText, syncStatusColor(face.status.kind));
    status->setPalette(palette);
    top->addWidget(status);
    layout->addLayout(top);

    auto* facts = new QFormLayout();
    auto* lastSynced = new QLabel(face.lastSynced.value_or(u"\u2014"_s), page);
    lastSynced->setTextFormat(Qt::PlainText);
    facts->addRow(face.lastSyncedLabel, lastSynced);
    auto* folder = WindowStyle::wrappedLabel(face.folderPath, page);
    folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
    facts->addRow(face.folderLabel, folder);
    layout->addLayout(facts);

    auto* line = new QFrame(page);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    layout->addWidget(line);

    auto* deletedTitle = new QLabel(face.recentlyDeletedTitle, page);
    WindowStyle::makeBold(*deletedTitle);
    layout->addWidget(deletedTitle);
    QWidget* list = addScrollingList(*layout, page, true);
    auto* rows = static_cast<QVBoxLayout*>(list->layout());
    if (face.recentlyDeletedPlaceholder)
        rows->addWidget(secondary(*face.recentlyDeletedPlaceholder, list));
    for (const RecentlyDeletedRow& row : face.recentlyDeleted) {
        auto* line2 = new QHBoxLayout();
        auto* text = new QVBoxLayout();
        text->setSpacing(0);
        text->addWidget(WindowStyle::wrappedLabel(row.name, list));
        auto* when = WindowStyle::wrappedLabel(row.deletedText, list);
        WindowStyle::makeSecondary(*when, 0.9);
        text->addWidget(when);
        line2->addLayout(text, 1);
        auto* restore = new QPushButton(row.restoreButton, list);
        const QUuid id = row.id;
        connect(restore, &QPushButton::clicked, this, [this, id] { m_model.restore(id); });
        line2->addWidget(restore);
        rows->addLayout(line2);
    }
    rows->addStretch();

    auto* disable = new QPushButton(face.disableButton, page);
    disable->setObjectName(u"disableSync"_s);
    connect(disable, &QPushButton::clicked, this, [this] { m_model.askToDisable(); });
    layout->addWidget(disable, 0, Qt::AlignRight);
    return page;
}

QWidget* SyncSettingsWindow::setUpPage(const SetUpSheet& sheet) {
    QWidget* page = newPage(this, u"setUpSheet"_s, 8);
    auto* layout = static_cast<QVBoxLayout*>(page->layout());
    layout->addWidget(headline(sheet.title, page));
    layout->addWidget(secondary(sheet.prompt, page));
    // Every service has a row, more than the window's height holds at larger fonts.
    QWidget* list = addScrollingList(*layout, page, false);
    auto* rows = static_cast<QVBoxLayout*>(list->layout());
    for (const CloudServiceRow& row : sheet.rows) {
        auto* button = new QPushButton(list);
        button->setObjectName(row.name);
        button->setMinimumHeight(42);
        auto* inside = new QHBoxLayout(button);
        inside->setContentsMargins(10, 4, 10, 4);
        inside->addWidget(symbolLabel(row.symbol, 22, button));
        auto* text = new QVBoxLayout();
        text->setSpacing(0);
        auto* name = new QLabel(row.name, button);
        WindowStyle::makeBold(*name);
        text->addWidget(name);
        auto* detail = new QLabel(row.detail, button);
        detail->setTextFormat(Qt::PlainText);
        WindowStyle::makeSecondary(*detail, 0.9);
        text->addWidget(detail);
        inside->addLayout(text, 1);
        if (row.readyMark) {
            auto* ready = new QLabel(*row.readyMark, button);
            QPalette palette = ready->palette();
            palette.setColor(QPalette::WindowText, QColor::fromRgbF(0.36f, 0.68f, 0.42f));
            ready->setPalette(palette);
            inside->addWidget(ready);
        }
        for (QLabel* label : button->findChildren<QLabel*>())
            label->setAttribute(Qt::WA_TransparentForMouseEvents);
        const CloudService service = row.service;
        connect(button, &QPushButton::clicked, this,
                [this, service] { choose(m_model.chooseSetUpFolder(service)); });
        rows->addWidget(button);
    }
    rows->addStretch();
    auto* buttons = new QHBoxLayout();
    auto* other = new QPushButton(sheet.chooseOtherButton, page);
    auto* cancel = new QPushButton(sheet.cancelButton, page);
    buttons->addWidget(other);
    buttons->addStretch();
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(other, &QPushButton::clicked, this,
            [this] { choose(m_model.chooseSetUpFolder(std::nullopt)); });
    connect(cancel, &QPushButton::clicked, this, [this] { m_model.dismissSetUpSheet(); });
    return page;
}

QWidget* SyncSettingsWindow::connectPage(const ConnectSheet& sheet) {
    QWidget* page = newPage(this, u"connectSheet"_s, 10);
    auto* layout = static_cast<QVBoxLayout*>(page->layout());
    layout->addWidget(headline(sheet.title, page));
    layout->addWidget(WindowStyle::wrappedLabel(sheet.prompt, page));
    layout->addStretch();
    layout->addWidget(symbolLabel(sheet.symbol, 44, page), 0, Qt::AlignHCenter);
    auto* note = secondary(sheet.note, page);
    note->setAlignment(Qt::AlignHCenter);
    layout->addWidget(note);
    layout->addStretch();
    auto* buttons = new QHBoxLayout();
    auto* cancel = new QPushButton(sheet.cancelButton, page);
    auto* chooseFolder = new QPushButton(sheet.chooseFolderButton, page);
    chooseFolder->setDefault(true);
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(chooseFolder);
    layout->addLayout(buttons);
    connect(cancel, &QPushButton::clicked, this, [this] { m_model.dismissConnectSheet(); });
    connect(chooseFolder, &QPushButton::clicked, this,
            [this] { choose(m_model.chooseConnectFolder()); });
    return page;
}

void SyncSettingsWindow::syncAlerts() {
    const auto present = [this](QPointer<QMessageBox>& box, bool showing,
                                const SettingsAlert& alert, std::function<void()> onConfirm,
                                std::function<void()> onCancel) {
        if (!showing) {
            if (QMessageBox* old = box.data()) {
                old->hide();
                old->deleteLater();
            }
            box = nullptr;
            return;
        }
        if (box)
            return;
        // Worked on through a plain pointer: the guard is for later turns of the loop.
        auto* made = new QMessageBox(QMessageBox::NoIcon, alert.title, alert.message,
                                     QMessageBox::NoButton, this);
        box = made;
        QPushButton* confirm = made->addButton(alert.confirmButton, QMessageBox::AcceptRole);
        QPushButton* cancel = made->addButton(alert.cancelButton, QMessageBox::RejectRole);
        made->setEscapeButton(cancel);
        connect(made, &QMessageBox::buttonClicked, this,
                [confirm, onConfirm, onCancel](QAbstractButton* clicked) {
                    if (clicked == confirm)
                        onConfirm();
                    else
                        onCancel();
                });
        made->open();
    };
    present(
        m_disableAlert, m_model.showingDisableAlert(), m_model.disableAlert(),
        [this] { m_model.confirmDisable(); }, [this] { m_model.dismissDisableAlert(); });
    present(
        m_autoDetectAlert, m_model.showingAutoDetectAlert(), m_model.autoDetectAlert(),
        [this] {
            if (const std::optional<FolderPanelRequest> request = m_model.connectToDetectedFolder())
                choose(*request);
        },
        [this] { m_model.dismissAutoDetectAlert(); });
}

void SyncSettingsWindow::choose(const FolderPanelRequest& request) {
    if (!m_pickFolder)
        return;
    if (const std::optional<QString> folder = m_pickFolder(this, request))
        m_model.folderChosen(request, *folder);
}

} // namespace hueshelf::app
