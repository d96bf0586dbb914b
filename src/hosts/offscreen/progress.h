// Progress on standard error: a bar on a terminal, elsewhere a line at two per cent, which tells how long it will take,
// and every ten.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "hosts/common/times.h"

namespace offscreen {

class Progress {
public:
    // The frames that are wanted; those before and between them are skipped. Quiet: prints nothing.
    Progress(bool quiet, const common::ShowFrames& frames, const common::FrameSet& wanted);

    // The frame `frame` is done.
    void frame(std::int64_t frame);

    // The export is complete: one line with what was made, how many pictures in how much time.
    void complete(const std::string& what, std::int64_t pictures);

    // Removes the bar before a message.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    int cost_of(std::int64_t frame) const; // milliseconds of one processor core
    double done() const;                   // share of the time that all frames take, 0..1
    std::string status(std::int64_t frame) const;

    bool quiet_;
    const common::ShowFrames& frames_;
    const common::FrameSet& wanted_;
    bool terminal_;
    bool bar_shown_ = false;
    std::int64_t whole_cost_ = 0;
    std::int64_t cost_ = 0; // of the frames that are done
    std::int64_t drawn_ = 0;
    int next_line_ = 2; // per cent
    Clock::time_point begin_;
    Clock::time_point shown_;
    Clock::time_point first_drawn_;
};

} // namespace offscreen
