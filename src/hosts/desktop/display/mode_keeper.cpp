#include "hosts/desktop/display/mode_keeper.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <initializer_list>

namespace desktop {
namespace {

// Leaves the terminal and everything inherited alone: whoever waits for the end of the show's output must not
// wait for the keeper. Returns the descriptor that stays, as number 3.
int detach(int kept_descriptor) {
    setsid();
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) std::signal(number, SIG_IGN);
    prctl(PR_SET_NAME, "mode-keeper");
    const int null = open("/dev/null", O_RDWR);
    dup2(null, STDIN_FILENO);
    dup2(null, STDOUT_FILENO);
    dup2(null, STDERR_FILENO);
    const int descriptor = 3;
    if (kept_descriptor != descriptor) dup2(kept_descriptor, descriptor);
    close_range(4, ~0u, 0);
    return descriptor;
}

// Whether the show's process ended without a word: its end closed and nothing had come from it.
bool was_left_alone(int end) {
    char word;
    ssize_t count;
    do {
        count = read(end, &word, 1);
    } while (count < 0 && errno == EINTR);
    return count == 0;
}

int g_keeper = -1; // this process's end; it stays open for as long as this process lives

} // namespace

bool keep_display_mode(const DisplayMode& mode) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
    const pid_t child = fork();
    if (child == 0) {
        if (was_left_alone(detach(ends[0]))) {
            if (Display* display = XOpenDisplay(nullptr)) mode.apply(display);
        }
        _exit(0);
    }
    close(ends[0]);
    if (child < 0) {
        close(ends[1]);
        return false;
    }
    g_keeper = ends[1];
    return true;
}

void dismiss_mode_keeper() {
    if (g_keeper < 0) return;
    const char word = 0;
    send(g_keeper, &word, 1, MSG_NOSIGNAL); // fails only where the keeper is gone already
    close(g_keeper);
    g_keeper = -1;
}

} // namespace desktop
