// Progress on standard error: a bar on a terminal, elsewhere a line every ten per cent.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "hosts/common/times.h"

namespace offscreen {

class Progress {
public:
    // The numbers of frames to be drawn and to be skipped. Quiet: prints nothing.
    Progress(bool quiet, std::int64_t to_draw, std::int64_t to_skip);

    // The frame of show time `time` is done.
    void frame(common::ShowTime time, bool drawn);

    // The export is complete: one line with what was made, how many pictures in how much time.
    void complete(const std::string& what, std::int64_t pictures);

    // Removes the bar before a message.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    double done() const; // 0..1
    std::string status(common::ShowTime time) const;

    bool quiet_;
    bool terminal_;
    bool bar_shown_ = false;
    std::int64_t to_draw_;
    std::int64_t to_skip_;
    std::int64_t drawn_ = 0;
    std::int64_t skipped_ = 0;
    int next_line_ = 10; // per cent
    Clock::time_point begin_;
    Clock::time_point shown_;
    Clock::time_point first_drawn_;
};

} // namespace offscreen
