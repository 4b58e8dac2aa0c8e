#include "helper/HelperRequests.h"
#include "helper/NativeMessageHost.h"
#include "model/StoreSession.h"
#include "util/AppPaths.h"

#include <QCoreApplication>

#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace {

bool writeAll(const QByteArray& bytes) {
    const char* data = bytes.constData();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t written = ::write(STDOUT_FILENO, data, static_cast<size_t>(left));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        data += written;
        left -= written;
    }
    return true;
}

} // namespace

// The browser starts this with its pipes and the extension's origin as the one argument, and
// ends it by closing standard input. Standard output carries replies only; notes go to
// standard error.
int main(int argc, char* argv[]) {
    using namespace hueshelf;
    using namespace hueshelf::helper;

    // A browser that goes away mid-reply ends the helper quietly rather than by a signal.
    std::signal(SIGPIPE, SIG_IGN);
    // The store's saves run on a writer thread that needs an application object; one for the
    // whole run spares making one for each edit. Its event loop never runs.
    QCoreApplication application(argc, argv);

    const QProcessEnvironment env = StoreSession::environment();
    const HelperRequests requests(AppPaths::fromEnvironment(env), env);
    NativeMessageHost host(
        [&requests](const QJsonObject& request) { return requests.handle(request); });
    qInfo("hueshelf-helper %s for %s", HUESHELF_VERSION,
          argc > 1 ? argv[1] : "a caller that gave no origin");

    char buffer[64 * 1024];
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        for (const QByteArray& reply : host.receive(QByteArrayView(buffer, count))) {
            if (!writeAll(reply))
                return 0;
        }
        if (host.isBroken())
            return 1;
    }
    // A message cut short by the end of input is the browser going away: nothing to answer.
    return 0;
}
