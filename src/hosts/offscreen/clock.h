// The show's clock: the position of its music, counted in frames instead of played. Nothing is heard and no
// time passes but by going on to the next frame.
#pragma once

#include "hosts/offscreen/times.h"

#include <cstdint>
#include <string>
#include <vector>

// What the show played: a file, from its beginning, from a frame on until the next entry or the end.
struct Played {
    std::string file;
    std::int64_t from_frame;
    bool heard; // false: the silence after the show released what it played
};

class Clock {
public:
    explicit Clock(FrameRate rate) : rate_(rate) {}

    FrameRate rate() const { return rate_; }

    // The frame being drawn. It stands at 0 until music has started, whatever the show does meanwhile.
    std::int64_t frame() const { return frame_; }
    void next_frame() {
        if (!played_.empty()) ++frame_;
    }

    // Whether the show has started its music: from then on its display calls are frames.
    bool running() const { return !played_.empty(); }

    void play(const std::string& file) { played_.push_back({file, frame_, true}); }
    void stop();

    // Whole milliseconds since the start of what was played last, rounded down as a sound library counts
    // them.
    unsigned position_ms() const;

    const std::vector<Played>& played() const { return played_; }

private:
    FrameRate rate_;
    std::int64_t frame_ = 0;
    std::vector<Played> played_;
};

// The clock that the FMOD Ex calls of this host move and read.
void set_clock(Clock* clock);
