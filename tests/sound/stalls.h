// When the machine kept threads that were due from running. What a test measures in real time then is the machine's
// doing, and does not count.
#pragma once

#include <memory>

class Stalls {
public:
    // Watches every processor from now on, urgently where the system allows it. A thread that is `late` by so many
    // seconds is a stall, and `settle` seconds after it a sound server has found its pace again.
    Stalls(double late, double settle);
    ~Stalls();
    Stalls(const Stalls&) = delete;
    Stalls& operator=(const Stalls&) = delete;

    // Whether each processor ran its threads in time from `from` until `to` (seconds of the steady clock), and before
    // that for as long as a stall matters.
    bool calm(double from, double to) const;

    // The end of the last stall so far, or the beginning of the watch.
    double last() const;

private:
    struct Watch;
    std::unique_ptr<Watch> watch_;
};

// For what this process and its sound server do urgently (tests/sound/urgent.h); watches from the first call on. Where
// nothing is urgent a busy machine disturbs much more, for longer.
const Stalls& stalls();
