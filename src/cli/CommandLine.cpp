#include "cli/CommandLine.h"

namespace hueshelf::cli {

bool isCommandLineUse(const QStringList& arguments) {
    return !arguments.isEmpty() && (arguments.first() == u"--version" || arguments.first() == u"--help");
}

int run(const QStringList& arguments, QTextStream& out, QTextStream& err) {
    Q_UNUSED(err);
    if (arguments.first() == u"--version")
        out << "hueshelf " HUESHELF_VERSION "\n";
    return 0;
}

} // namespace hueshelf::cli
