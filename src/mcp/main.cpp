#include "mcp/McpOptions.h"
#include "mcp/McpServer.h"
#include "mcp/McpTools.h"
#include "mcp/PaletteSource.h"
#include "model/StoreSession.h"
#include "util/AppPaths.h"
#include "util/Clock.h"

#include <QCoreApplication>
#include <QStringList>

#include <csignal>
#include <cstdio>
#include <iostream>
#include <string>

namespace {

void print(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

// One answer, one line, out at once: the client waits for it before it sends anything more.
bool send(QByteArray line) {
    line.append('\n');
    const auto size = static_cast<std::size_t>(line.size());
    return std::fwrite(line.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
}

} // namespace

int main(int argc, char* argv[]) {
    using namespace hueshelf;
    using namespace hueshelf::mcp;

    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const McpOptions options = McpOptions::parse(arguments);
    switch (options.action) {
    case McpOptions::Action::help:
        print(stdout, McpOptions::helpText());
        return 0;
    case McpOptions::Action::version:
        print(stdout, McpOptions::versionText());
        return 0;
    case McpOptions::Action::usageError:
        print(stderr, QStringLiteral("hueshelf-mcp: ") + options.error +
                          QStringLiteral("\nTry \"hueshelf-mcp --help\".\n"));
        return McpOptions::usageStatus;
    case McpOptions::Action::serve:
        break;
    }

    // A client that goes away mid-answer ends the server quietly rather than by a signal.
    std::signal(SIGPIPE, SIG_IGN);
    // The store's saves run on a writer thread that needs an application object; one for the
    // whole run spares making one for each saved palette. Its event loop never runs: the
    // server only ever waits for its input.
    QCoreApplication application(argc, argv);

    const QProcessEnvironment env = StoreSession::environment();
    const AppPaths paths = AppPaths::fromEnvironment(env);
    const PaletteSource source(paths, env);
    const McpTools tools(source, paths, SystemClock::instance(), options.clientId);
    const McpServer server(tools);
    qInfo("hueshelf-mcp %s serving on standard input and output%s%s", HUESHELF_VERSION,
          options.clientId ? " for " : "",
          options.clientId ? qUtf8Printable(*options.clientId) : "");

    std::string line;
    while (std::getline(std::cin, line)) {
        const std::optional<QByteArray> answer =
            server.handle(QByteArrayView(line.data(), static_cast<qsizetype>(line.size())));
        if (answer && !send(*answer))
            return 0;
    }
    return 0;
}
