// Starts a program under the X server of $DISPLAY and measures, the same way for any program,
// how long it takes from the start of the process to the map of its first window, and how much
// memory the process holds once it has settled. Used by scripts/bench-startup to set HueShelf
// beside other colour tools; it knows nothing of any of them.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <memory>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

namespace {

double monotonicMs() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1000.0 + static_cast<double>(now.tv_nsec) / 1e6;
}

// The kibibytes on the line of /proc/<pid>/<file> that starts with the given key.
std::optional<long> procKib(pid_t pid, const char* file, const char* key) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/" + file);
    std::string line;
    const std::size_t keyLength = std::strlen(key);
    while (std::getline(in, line)) {
        if (line.compare(0, keyLength, key) == 0)
            return std::strtol(line.c_str() + keyLength, nullptr, 10);
    }
    return std::nullopt;
}

struct Options {
    int settleMs = 3000;
    int timeoutMs = 20000;
    std::vector<char*> command;
};

std::optional<Options> parse(int argc, char** argv) {
    Options options;
    int i = 1;
    for (; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--") {
            ++i;
            break;
        }
        if (arg == "--settle-ms" && i + 1 < argc)
            options.settleMs = std::atoi(argv[++i]);
        else if (arg == "--timeout-ms" && i + 1 < argc)
            options.timeoutMs = std::atoi(argv[++i]);
        else
            return std::nullopt;
    }
    for (; i < argc; ++i)
        options.command.push_back(argv[i]);
    if (options.command.empty())
        return std::nullopt;
    options.command.push_back(nullptr);
    return options;
}

} // namespace

int main(int argc, char** argv) {
    const std::optional<Options> options = parse(argc, argv);
    if (!options) {
        std::fprintf(stderr, "usage: %s [--settle-ms N] [--timeout-ms N] -- PROGRAM [ARGS...]\n",
                     argv[0]);
        return 2;
    }
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)) {
        std::fprintf(stderr, "startup probe: no X server on $DISPLAY\n");
        return 2;
    }
    // Every top-level window is a child of the root while no window manager reparents it, so
    // the root's substructure events see the first map of any program.
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection, screen->root, XCB_CW_EVENT_MASK, &mask);
    // A round trip, so the mask is in force before the program starts.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));

    const double start = monotonicMs();
    const pid_t child = fork();
    if (child == 0) {
        execvp(options->command[0], options->command.data());
        std::perror("startup probe: exec");
        _exit(127);
    }

    std::optional<double> firstMapMs;
    pollfd fd{xcb_get_file_descriptor(connection), POLLIN, 0};
    while (!firstMapMs && monotonicMs() - start < options->timeoutMs) {
        poll(&fd, 1, 50);
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
            const bool isMap = (event->response_type & 0x7f) == XCB_MAP_NOTIFY;
            // Menus and tooltips bypass the window manager; a program's window does not.
            if (isMap && !reinterpret_cast<xcb_map_notify_event_t*>(event)->override_redirect &&
                !firstMapMs)
                firstMapMs = monotonicMs() - start;
            std::free(event);
        }
        int status = 0;
        if (waitpid(child, &status, WNOHANG) == child) {
            std::fprintf(stderr, "startup probe: %s ended before showing a window\n",
                         options->command[0]);
            return 1;
        }
    }
    if (!firstMapMs) {
        std::fprintf(stderr, "startup probe: no window within %d ms\n", options->timeoutMs);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        return 1;
    }

    usleep(static_cast<useconds_t>(options->settleMs) * 1000);
    const long rss = procKib(child, "status", "VmRSS:").value_or(-1);
    const long pss = procKib(child, "smaps_rollup", "Pss:").value_or(-1);
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    xcb_disconnect(connection);

    std::printf("{\"first_map_ms\": %.1f, \"rss_kib\": %ld, \"pss_kib\": %ld}\n", *firstMapMs, rss,
                pss);
    return 0;
}
