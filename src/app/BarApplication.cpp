#include "app/BarApplication.h"

#include <QApplication>
#include <QWidget>

namespace hueshelf::app {

int runBar(int& argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.show();
    return QApplication::exec();
}

} // namespace hueshelf::app
