#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGuiApplication>

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

} // namespace hueshelf::testing
