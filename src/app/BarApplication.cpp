#include "app/BarApplication.h"

#include "app/AppDelegate.h"
#include "app/FloatingWindow.h"
#include "platform/DisplayEnvironment.h"

#include <QApplication>
#include <QImage>
#include <QProcessEnvironment>
#include <QScreen>
#include <QTimer>

#include <cstdio>

namespace hueshelf::app {

namespace {

// HUESHELF_SCREENSHOT=path saves what the X server shows around the bar once it is up: a way
// to look at the real bar on a headless server.
void scheduleScreenshot(FloatingWindow& window, const QString& path) {
    QTimer::singleShot(700, &window, [&window, path] {
        QScreen* screen = window.screen();
        if (!screen)
            return;
        const QRect area = window.frameGeometry().adjusted(-16, -16, 16, 16);
        const QImage shot =
            screen->grabWindow(0, area.x(), area.y(), area.width(), area.height()).toImage();
        // The root window has no alpha; keep whatever the server reports out of the file.
        if (!shot.convertToFormat(QImage::Format_RGB32).save(path))
            std::fprintf(stderr, "hueshelf: could not save the screenshot to %s\n",
                         path.toLocal8Bit().constData());
    });
}

} // namespace

int runBar(int& argc, char** argv) {
    const QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    // Checked before any application object exists: Qt would abort with a far longer story.
    if (const auto message = DisplayEnvironment::missingDisplayMessage(env)) {
        std::fprintf(stderr, "%s\n", message->toLocal8Bit().constData());
        return 1;
    }
    if (const auto plugin = DisplayEnvironment::requiredQpaPlatform(env))
        qputenv("QT_QPA_PLATFORM", plugin->toUtf8());

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("HueShelf"));
    QApplication::setOrganizationDomain(QStringLiteral("hueshelf.io"));
    QApplication::setApplicationVersion(QStringLiteral(HUESHELF_VERSION));
    // The bar comes and goes; only "Quit HueShelf" ends the program.
    QApplication::setQuitOnLastWindowClosed(false);

    AppDelegate delegate(AppPaths::fromEnvironment(env),
                         createPlatform(AppPaths::fromEnvironment(env)));
    delegate.start();

    const QString screenshot = env.value(QStringLiteral("HUESHELF_SCREENSHOT"));
    if (!screenshot.isEmpty())
        scheduleScreenshot(delegate.window(), screenshot);
    return QApplication::exec();
}

} // namespace hueshelf::app
