#include "hosts/desktop/display/screen_mode.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <initializer_list>

#include "hosts/desktop/display/monitors.h"
#include "hosts/desktop/display/x_server.h"

namespace desktop {
namespace {

Display* g_display = nullptr; // null while no change has to be undone

struct Change {
    MonitorLayout before, after;
};
Change g_change;

int g_keeper = -1; // this process's end of the connection; it stays open for as long as this process lives

// Frees the mode keeper from the terminal and everything inherited: whoever waits for the end of the show's output
// must not wait for the keeper. Returns the descriptor that stays, as number 3.
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

// Waits until the show's process has ended, which closes its end, or has dismissed the keeper; whether it has ended.
bool show_has_ended(int end) {
    char byte;
    ssize_t count;
    do {
        count = read(end, &byte, 1);
    } while (count < 0 && errno == EINTR);
    return count == 0;
}

// Undoes what is left of the change. To be called under a ServerGrab.
void undo(Display* display, const Change& change) {
    const XErrorTrap trap(display);
    MonitorLayout::current(display).with_undone(change.before, change.after).apply(display);
}

// Forks the mode keeper: a process that sleeps until this one is gone, then undoes the change through a connection of
// its own, and ends. Killed and crashed processes run no exit handlers. To be called while the process has no GL
// context. Returns false where no process can be had.
bool start_mode_keeper(const Change& change) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
    const pid_t child = fork();
    if (child == 0) {
        if (show_has_ended(detach(ends[0]))) {
            if (Display* display = XOpenDisplay(nullptr)) {
                const ServerGrab grab(display);
                undo(display, change);
            }
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

// Ends the keeper once the mode has been put back, so that it undoes nothing that is changed from now on.
void dismiss_mode_keeper() {
    const char byte = 0;
    send(g_keeper, &byte, 1, MSG_NOSIGNAL); // fails only where the keeper is gone already
    close(g_keeper);
    g_keeper = -1;
}

void leave_mode() {
    if (!g_display) return;
    {
        const ServerGrab grab(g_display);
        undo(g_display, g_change);
    }
    dismiss_mode_keeper();
    g_display = nullptr;
}

} // namespace

void leave_mode_at_exit() { std::atexit(leave_mode); }

void enter_mode(Display* display, common::Extent size, int rate) {
    const ServerGrab grab(display);
    const XErrorTrap trap(display); // the server may refuse
    const MonitorLayout before = MonitorLayout::current(display);
    const MonitorLayout after = before.with_main_monitor_in(display, size, rate);
    if (after == before || !start_mode_keeper({before, after})) return;
    after.apply(display);
    g_change = {before, after};
    g_display = display;
    if (MonitorLayout::current(display) == after) return;
    g_change.after = MonitorLayout::current(display);
    undo(display, g_change);
    dismiss_mode_keeper();
    g_display = nullptr;
}

common::Box main_monitor(Display* display) { return MonitorLayout::current(display).main_monitor(); }

double refresh_rate(Display* display) { return MonitorLayout::current(display).refresh_rate(display); }

} // namespace desktop
