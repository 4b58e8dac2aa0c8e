#pragma once

#include <QString>
#include <QUrl>
#include <QWidget>

#include <functional>

class QPushButton;

namespace hueshelf::app {

namespace AboutTexts {
inline const QString title = QStringLiteral("About HueShelf");
inline const QString appName = QStringLiteral("HueShelf");
inline const QString tagline = QStringLiteral("A floating color palette for designers");
inline const QString websiteLink = QStringLiteral("Website");
inline const QString supportLink = QStringLiteral("Support");
inline const QString legal = QStringLiteral("\u00A9 2026 HueShelf. All rights reserved.");
inline constexpr int width = 280;
inline constexpr int height = 260;

// "Version " + the program's version.
QString versionLine(const QString& version);
// The configured web host's home and support pages.
QUrl websiteUrl();
QUrl supportUrl();
} // namespace AboutTexts

// The program's icon, name, version and tagline, with links to its web pages.
class AboutWindow final : public QWidget {
    Q_OBJECT
public:
    using OpenUrl = std::function<void(const QUrl&)>;

    AboutWindow(const QString& version, OpenUrl openUrl, QWidget* parent = nullptr);

    QPushButton& websiteButton() const { return *m_website; }
    QPushButton& supportButton() const { return *m_support; }

private:
    OpenUrl m_openUrl;
    QPushButton* m_website = nullptr;
    QPushButton* m_support = nullptr;
};

} // namespace hueshelf::app
