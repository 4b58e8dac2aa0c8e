#pragma once

#include "app/WhatsNewReleases.h"

#include <QString>
#include <QWidget>

namespace hueshelf::app {

namespace WhatsNewTexts {
inline const QString title = QStringLiteral("What's New");
inline const QString heading = QStringLiteral("What's New");
inline const QString appName = QStringLiteral("HueShelf");
inline constexpr int width = 340;
inline constexpr int height = 440;
} // namespace WhatsNewTexts

// The release notes the running version may show, newest as the list orders them, in a
// scrolling column under a header. Without notes only the header stands.
class WhatsNewWindow final : public QWidget {
    Q_OBJECT
public:
    WhatsNewWindow(const WhatsNewReleases& releases, const QString& runningVersion,
                   QWidget* parent = nullptr);

private:
    QWidget* releaseBlock(const WhatsNewRelease& release, QWidget* parent) const;
};

} // namespace hueshelf::app
