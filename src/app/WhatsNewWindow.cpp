#include "app/WhatsNewWindow.h"

#include "app/ApplicationIcon.h"
#include "app/SymbolIcons.h"
#include "app/WindowStyle.h"

#include <QApplication>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

WhatsNewWindow::WhatsNewWindow(const WhatsNewReleases& releases, const QString& runningVersion,
                               QWidget* parent)
    : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* header = new QWidget(this);
    auto* headerLayout = new QHBoxLayout(header);
    headerLayout->setContentsMargins(20, 16, 20, 12);
    headerLayout->setSpacing(10);
    QIcon icon = QApplication::windowIcon();
    if (icon.isNull())
        icon = applicationIcon();
    auto* iconLabel = new QLabel(header);
    iconLabel->setPixmap(icon.pixmap(QSize(40, 40)));
    headerLayout->addWidget(iconLabel);
    auto* titles = new QVBoxLayout();
    titles->setSpacing(0);
    auto* heading = new QLabel(WhatsNewTexts::heading, header);
    WindowStyle::makeBold(*heading, 17);
    auto* name = new QLabel(WhatsNewTexts::appName, header);
    WindowStyle::makeSecondary(*name);
    titles->addWidget(heading);
    titles->addWidget(name);
    headerLayout->addLayout(titles, 1);
    layout->addWidget(header);

    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    layout->addWidget(line);

    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(u"releaseScroll"_s);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* body = new QWidget(scroll);
    auto* bodyLayout = new QVBoxLayout(body);
    bodyLayout->setContentsMargins(20, 14, 20, 20);
    bodyLayout->setSpacing(18);
    for (const WhatsNewRelease& release : releases.shown(runningVersion))
        bodyLayout->addWidget(releaseBlock(release, body));
    bodyLayout->addStretch();
    scroll->setWidget(body);
    layout->addWidget(scroll, 1);
}

QWidget* WhatsNewWindow::releaseBlock(const WhatsNewRelease& release, QWidget* parent) const {
    auto* block = new QWidget(parent);
    block->setObjectName(u"release"_s);
    auto* layout = new QVBoxLayout(block);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);

    auto* titleRow = new QHBoxLayout();
    auto* version = new QLabel(u"Version "_s + release.version, block);
    version->setTextFormat(Qt::PlainText);
    WindowStyle::makeBold(*version);
    auto* date = new QLabel(release.date, block);
    date->setTextFormat(Qt::PlainText);
    WindowStyle::makeSecondary(*date, 0.9);
    titleRow->addWidget(version);
    titleRow->addStretch();
    titleRow->addWidget(date);
    layout->addLayout(titleRow);

    auto* items = new QGridLayout();
    items->setHorizontalSpacing(10);
    items->setVerticalSpacing(10);
    items->setColumnStretch(1, 1);
    int row = 0;
    for (const WhatsNewItem& item : release.items) {
        auto* symbol = new QLabel(block);
        symbol->setPixmap(symbolIcon(item.icon, WindowStyle::accent()).pixmap(QSize(20, 20)));
        symbol->setFixedSize(22, 22);
        symbol->setAlignment(Qt::AlignCenter);
        items->addWidget(symbol, row, 0, Qt::AlignTop);
        auto* text = new QVBoxLayout();
        text->setSpacing(2);
        auto* title = WindowStyle::wrappedLabel(item.title, block);
        WindowStyle::makeBold(*title);
        auto* description = WindowStyle::wrappedLabel(item.description, block);
        WindowStyle::makeSecondary(*description);
        text->addWidget(title);
        text->addWidget(description);
        items->addLayout(text, row, 1);
        ++row;
    }
    layout->addLayout(items);
    return block;
}

} // namespace hueshelf::app
