#include "app/BarApplication.h"

#include "app/AppDelegate.h"
#include "app/ApplicationIcon.h"
#include "app/LaunchArguments.h"
#include "app/SingleInstance.h"
#include "platform/DisplayEnvironment.h"

#include <QApplication>
#include <QDir>
#include <QProcessEnvironment>
#include <QTextStream>

#include <cstdio>

namespace hueshelf::app {

namespace {

QStringList commandLineArguments(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

// A second launch only passes on what the first can open, with paths made absolute: the
// running program has a working directory of its own. Set-aside arguments are reported here,
// in the terminal of the one who launched.
LaunchArguments sortedArguments(const QStringList& arguments) {
    const LaunchArguments sorted = LaunchArguments::classify(arguments, QDir::currentPath());
    QTextStream err(stderr);
    for (const QString& ignored : sorted.ignored)
        err << LaunchArguments::ignoredMessage(ignored) << Qt::endl;
    return sorted;
}

// Before any window system is touched: a launch while the bar runs only hands over.
bool handedToRunningInstance(int& argc, char** argv, const QString& serverName,
                             const QStringList& handOver) {
    const QCoreApplication probe(argc, argv);
    return SingleInstance::sendToRunning(serverName, handOver);
}

} // namespace

int runBar(int& argc, char** argv) {
    const QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    const AppPaths paths = AppPaths::fromEnvironment(env);
    const QString serverName = SingleInstance::serverNameFor(paths, env);
    const LaunchArguments arguments = sortedArguments(commandLineArguments(argc, argv));
    if (handedToRunningInstance(argc, argv, serverName, arguments.handOver()))
        return 0;

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
    QApplication::setWindowIcon(applicationIcon());
    // Ties the windows to the installed launcher, for its icon and name.
    QGuiApplication::setDesktopFileName(QStringLiteral("io.hueshelf.Hueshelf"));
    // The bar comes and goes; only "Quit HueShelf" ends the program.
    QApplication::setQuitOnLastWindowClosed(false);

    // Another launch may have won the race since the probe; then it is the one to talk to.
    SingleInstance instance(serverName);
    if (!instance.listen() && SingleInstance::sendToRunning(serverName, arguments.handOver()))
        return 0;

    AppDelegate delegate(paths, createPlatform(paths));
    QObject::connect(&instance, &SingleInstance::argumentsReceived, &delegate,
                     [&delegate](const QStringList& handedOver) {
                         // Paths arrive absolute; the folder only matters for the odd relative one.
                         delegate.openArguments(handedOver, QDir::homePath());
                     });
    delegate.start();
    delegate.openArguments(arguments.handOver());
    return QApplication::exec();
}

} // namespace hueshelf::app
