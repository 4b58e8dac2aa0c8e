#include "app/AboutWindow.h"

#include "app/ApplicationIcon.h"
#include "app/WindowStyle.h"
#include "exchange/PaletteLink.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace hueshelf::app {

QString AboutTexts::versionLine(const QString& version) {
    return u"Version "_s + version;
}

QUrl AboutTexts::websiteUrl() {
    return QUrl(u"https://"_s + PaletteLink::linkHost() + u"/"_s);
}

QUrl AboutTexts::supportUrl() {
    return QUrl(u"https://"_s + PaletteLink::linkHost() + u"/support"_s);
}

AboutWindow::AboutWindow(const QString& version, OpenUrl openUrl, QWidget* parent)
    : QWidget(parent), m_openUrl(std::move(openUrl)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 16, 24, 24);
    layout->setSpacing(6);

    // The desktop's icon for the program when it has one; the tray's drawing otherwise.
    QIcon icon = QApplication::windowIcon();
    if (icon.isNull())
        icon = applicationIcon();
    auto* iconLabel = new QLabel(this);
    iconLabel->setPixmap(icon.pixmap(QSize(80, 80)));
    iconLabel->setFixedSize(80, 80);
    layout->addWidget(iconLabel, 0, Qt::AlignHCenter);

    auto* name = new QLabel(AboutTexts::appName, this);
    QFont nameFont = name->font();
    nameFont.setPointSizeF(18);
    nameFont.setBold(true);
    name->setFont(nameFont);
    layout->addWidget(name, 0, Qt::AlignHCenter);

    auto* versionLabel = new QLabel(AboutTexts::versionLine(version), this);
    WindowStyle::makeSecondary(*versionLabel);
    layout->addWidget(versionLabel, 0, Qt::AlignHCenter);

    auto* tagline = new QLabel(AboutTexts::tagline, this);
    tagline->setWordWrap(true);
    tagline->setAlignment(Qt::AlignHCenter);
    layout->addWidget(tagline);

    auto* links = new QHBoxLayout();
    links->setSpacing(16);
    m_website = WindowStyle::linkButton(AboutTexts::websiteLink, this);
    m_support = WindowStyle::linkButton(AboutTexts::supportLink, this);
    connect(m_website, &QPushButton::clicked, this, [this] {
        if (m_openUrl)
            m_openUrl(AboutTexts::websiteUrl());
    });
    connect(m_support, &QPushButton::clicked, this, [this] {
        if (m_openUrl)
            m_openUrl(AboutTexts::supportUrl());
    });
    links->addStretch();
    links->addWidget(m_website);
    links->addWidget(m_support);
    links->addStretch();
    layout->addLayout(links);

    auto* legal = new QLabel(AboutTexts::legal, this);
    WindowStyle::makeSecondary(*legal, 0.85);
    legal->setAlignment(Qt::AlignHCenter);
    legal->setWordWrap(true);
    layout->addWidget(legal);
    layout->addStretch();
}

} // namespace hueshelf::app
