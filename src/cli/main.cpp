#include "app/BarApplication.h"
#include "cli/CommandLine.h"

#include <QStringList>
#include <QTextStream>

#include <cstdio>

int main(int argc, char* argv[]) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    // Commands never open a window, so they run without any application object or display.
    if (hueshelf::cli::isCommandLineUse(arguments)) {
        QTextStream out(stdout);
        QTextStream err(stderr);
        const int status = hueshelf::cli::run(arguments, out, err);
        out.flush();
        err.flush();
        return status;
    }
    return hueshelf::app::runBar(argc, argv);
}
