#include "tests/sound/stalls.h"

#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

#include "hosts/desktop/sound/position_clock.h"
#include "tests/sound/urgent.h"

namespace {

constexpr double kInterval = 0.005; // seconds between two times that a thread is due
constexpr double kInFlight = 0.1;   // seconds before a stall: what was measured may have been on its way

} // namespace

struct Stalls::Watch {
    struct Stall {
        double begin, end; // seconds of the steady clock
    };

    Watch(double late_by, double settle_for) : late(late_by), settle(settle_for) {}

    const double late;
    const double settle;
    const double begun = desktop::steady_seconds();
    std::atomic<bool> ends{false};
    mutable std::mutex mutex;
    std::vector<Stall> stalls;
    std::vector<std::thread> threads; // one on each processor

    // Wakes up again and again, and notes when that was late.
    void run() {
        double due = desktop::steady_seconds();
        while (!ends) {
            due += kInterval;
            const double wait = due - desktop::steady_seconds();
            if (wait > 0) std::this_thread::sleep_for(std::chrono::duration<double>(wait));
            const double now = desktop::steady_seconds();
            if (now - due < late) continue;
            const std::lock_guard<std::mutex> lock(mutex);
            stalls.push_back({due, now});
            due = now;
        }
    }
};

Stalls::Stalls(double late, double settle) : watch_(std::make_unique<Watch>(late, settle)) {
    Watch& w = *watch_;
    const bool was_urgent = is_urgent();
    make_urgent(true);
    cpu_set_t allowed;
    sched_getaffinity(0, sizeof(allowed), &allowed);
    for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
        if (!CPU_ISSET(processor, &allowed)) continue;
        w.threads.emplace_back([&w] { w.run(); });
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(processor, &one);
        pthread_setaffinity_np(w.threads.back().native_handle(), sizeof(one), &one);
    }
    make_urgent(was_urgent);
}

Stalls::~Stalls() {
    watch_->ends = true;
    for (std::thread& thread : watch_->threads) thread.join();
}

bool Stalls::calm(double from, double to) const {
    const Watch& w = *watch_;
    const std::lock_guard<std::mutex> lock(w.mutex);
    return std::none_of(w.stalls.begin(), w.stalls.end(), [&](const Watch::Stall& stall) {
        return stall.end > from - w.settle && stall.begin < to + kInFlight;
    });
}

double Stalls::last() const {
    const std::lock_guard<std::mutex> lock(watch_->mutex);
    return watch_->stalls.empty() ? watch_->begun : watch_->stalls.back().end;
}

const Stalls& stalls() {
    static const bool urgent = urgency_is_allowed();
    static const Stalls stalls(urgent ? 0.015 : 0.004, urgent ? 1 : 8);
    return stalls;
}
