#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

namespace hueshelf::testing {

// One application object for the whole test run, as Qt wants: on the X server when there is a
// display, so that the cases needing one can run, and off screen otherwise.
inline QGuiApplication* platformTestApplication() {
    if (QCoreApplication::instance() == nullptr) {
        static int argc = 3;
        static char arg0[] = "hueshelf_platform_tests", arg1[] = "-platform";
        static char xcb[] = "xcb", offscreen[] = "offscreen";
        static char* argv[] = {arg0, arg1, qEnvironmentVariableIsEmpty("DISPLAY") ? offscreen : xcb,
                               nullptr};
        new QGuiApplication(argc, argv);
    }
    return qGuiApp;
}

// Runs the event loop until the condition holds; the deadline only bounds a failing run.
template <typename Condition>
bool processEventsUntil(Condition condition, int milliseconds = 5000) {
    const QDeadlineTimer deadline(milliseconds);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    return condition();
}

// Why a case that needs a real X server (Xvfb will do) and xdotool to drive it can't run here;
// empty when it can. Without them, as in a plain CI run, such cases skip: the decisions they
// exercise are covered by pure tests beside them.
inline QString x11SkipReason() {
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return QStringLiteral("no X display");
    if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
        return QStringLiteral("xdotool is not installed");
    if (platformTestApplication() == nullptr ||
        QGuiApplication::platformName() != QLatin1StringView("xcb"))
        return QStringLiteral("the application is not on xcb");
    return {};
}

inline bool xdotool(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    return process.waitForFinished(10000) && process.exitCode() == 0;
}

} // namespace hueshelf::testing
