#include "hosts/offscreen/retry.h"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "hosts/offscreen/failure.h"

namespace {

// What the child tells the parent: memory of both.
struct Message {
    bool again;
    std::int64_t first;
    std::int64_t end;
    std::int64_t delivered;
};

Message* g_message = nullptr;
volatile pid_t g_child = 0;

void pass_on(int signal) {
    if (g_child > 0) kill(g_child, signal);
}

void pass_on_signals() {
    struct sigaction action = {};
    action.sa_handler = pass_on;
    action.sa_flags = SA_RESTART;
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

void restore_signals() {
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_DFL);
}

int wait_for(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

} // namespace

Attempt begin_attempts() {
    void* memory = mmap(nullptr, sizeof(Message), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw Failure(std::string("cannot share memory: ") + std::strerror(errno));
    g_message = static_cast<Message*>(memory);
    pass_on_signals();
    Attempt attempt;
    for (;;) {
        *g_message = {};
        const pid_t parent = getpid();
        const pid_t child = fork();
        if (child < 0) throw Failure(std::string("cannot start a process: ") + std::strerror(errno));
        if (child == 0) {
            restore_signals();
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (getppid() != parent) _exit(kStatusFailed);
            return attempt;
        }
        g_child = child;
        const int status = wait_for(child);
        g_child = 0;
        if (g_message->again) {
            attempt.must_draw.add(g_message->first, g_message->end);
            attempt.delivered = g_message->delivered;
            continue;
        }
        if (WIFEXITED(status)) _exit(WEXITSTATUS(status));
        std::fprintf(stderr, "skav-export: the show ended by signal %d (%s)\n", WTERMSIG(status),
                     strsignal(WTERMSIG(status)));
        _exit(128 + WTERMSIG(status));
    }
}

void try_again(std::int64_t first, std::int64_t end, std::int64_t delivered) {
    *g_message = {true, first, end, delivered};
    _exit(kStatusFailed);
}
