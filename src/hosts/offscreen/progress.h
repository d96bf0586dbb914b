// What a long export tells on standard error: on a terminal a bar that is drawn over and over, elsewhere a
// plain line now and then.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "hosts/offscreen/times.h"

class Progress {
public:
    // What lies ahead: frames to be drawn and frames to be skipped. Quiet: says nothing at all.
    Progress(bool quiet, std::int64_t to_draw, std::int64_t to_skip);

    // The frame of show time `time` is done: drawn or skipped, and with a picture that was wanted or without.
    void frame(ShowTime time, bool drawn, bool wanted);

    // Something the user should know, in a line of its own.
    void note(const std::string& text);

    // The export is complete: one line with what was made, how many pictures in how much time.
    void complete(const std::string& what);

    // Removes the bar, so that a message can stand in its place.
    void clear();

    // Wanted pictures so far.
    std::int64_t pictures() const { return pictures_; }

private:
    using Clock = std::chrono::steady_clock;

    double done() const; // 0..1
    std::string status(ShowTime time) const;

    bool quiet_;
    bool terminal_;
    bool bar_shown_ = false;
    std::int64_t to_draw_;
    std::int64_t to_skip_;
    std::int64_t drawn_ = 0;
    std::int64_t skipped_ = 0;
    std::int64_t pictures_ = 0;
    int next_line_ = 10; // per cent
    Clock::time_point begin_;
    Clock::time_point shown_;
    Clock::time_point first_drawn_;
};
