// What a long export tells on standard error: on a terminal a bar that is drawn over and over, elsewhere a
// plain line now and then.
#pragma once

#include "hosts/offscreen/times.h"

#include <chrono>
#include <cstdint>
#include <string>

class Progress {
public:
    // `pictures` are to be made; `skipped` frames lie before and between them. Quiet: says nothing at all.
    Progress(bool quiet, std::int64_t pictures, std::int64_t skipped);

    // A frame of show time `time` is done, with or without a picture of it.
    void frame(ShowTime time, bool picture);

    // The export is complete: one line with what was made, how many pictures in how much time.
    void complete(const std::string& what);

    // Removes the bar, so that a message can stand in its place.
    void clear();

    std::int64_t pictures() const { return pictures_done_; }

private:
    using Clock = std::chrono::steady_clock;

    double done() const; // 0..1
    std::string status(ShowTime time) const;

    bool quiet_;
    bool terminal_;
    bool bar_shown_ = false;
    std::int64_t pictures_;
    std::int64_t skipped_;
    std::int64_t pictures_done_ = 0;
    std::int64_t skipped_done_ = 0;
    int next_line_ = 10; // per cent
    Clock::time_point begin_;
    Clock::time_point shown_;
    Clock::time_point first_picture_;
};
