#include "display/mode_keeper.h"

#include <fcntl.h>
#include <sys/prctl.h>
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

// The pipe's other end is never written to: it closes when the show's process is gone.
void wait_for_end(int pipe_end) {
    char byte;
    while (read(pipe_end, &byte, 1) < 0 && errno == EINTR) {
    }
}

} // namespace

bool keep_display_mode(const DisplayMode& mode) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return false;
    const pid_t child = fork();
    if (child == 0) {
        wait_for_end(detach(ends[0]));
        if (Display* display = XOpenDisplay(nullptr)) mode.apply(display);
        _exit(0);
    }
    close(ends[0]);
    if (child < 0) close(ends[1]); // else it stays open for as long as this process lives
    return child > 0;
}

} // namespace desktop
