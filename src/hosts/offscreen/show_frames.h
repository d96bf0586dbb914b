// Which frames the show has at a frame rate, and the show time of each. Frame k is drawn at exactly k / rate
// of music; show time runs along, with the jump where a piece of music starts.
#pragma once

#include <cstdint>

#include "hosts/offscreen/times.h"

// Stands for everything that is drawn before the first frame: the loading screens.
constexpr std::int64_t kLoadingFrame = -1;

class ShowFrames {
public:
    explicit ShowFrames(FrameRate rate);

    FrameRate rate() const { return rate_; }

    // How many frames the show draws before it ends.
    std::int64_t count() const { return count_; }

    // The frame in which the second piece of music starts. It is the last one on the first piece's clock.
    std::int64_t switch_frame() const { return switch_; }

    // Show time of frame `index`, rounded up to the microsecond.
    ShowTime time_of(std::int64_t index) const;

    // The first frame whose show time is `time` or later; frames of a half-open range of times [from, to) are
    // those from first_frame_at(from) up to, but not including, first_frame_at(to).
    std::int64_t first_frame_at(ShowTime time) const;

    // The frame that is on screen at `time` (0..kShowEnd, or kLoadingTime for the last loading screen).
    std::int64_t frame_on_screen_at(ShowTime time) const;

private:
    FrameRate rate_;
    std::int64_t switch_;
    std::int64_t count_;
};
