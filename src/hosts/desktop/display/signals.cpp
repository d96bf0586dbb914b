#include "hosts/desktop/display/signals.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <initializer_list>

namespace desktop {
namespace {

// timeout(1) and some terminals send one request twice, a moment apart.
constexpr double kSameRequest = 0.5; // seconds

volatile std::sig_atomic_t g_signal = 0;
double g_signal_time = 0; // seconds; touched by the handler only, which nothing interrupts

double now() {
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

void note(int number) {
    if (g_signal == 0) {
        g_signal_time = now();
        g_signal = number;
    } else if (now() - g_signal_time > kSameRequest) {
        _exit(128 + number);
    }
}

} // namespace

void note_signals() {
    struct sigaction action = {};
    action.sa_handler = note;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        struct sigaction current = {};
        if (sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) continue;
        sigaction(number, &action, nullptr);
    }
}

void end_if_signalled() {
    if (g_signal != 0) std::exit(128 + g_signal);
}

} // namespace desktop
