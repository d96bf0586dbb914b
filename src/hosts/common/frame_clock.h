// The show's clock: the position of its music, counted in frames. It advances by one frame at a time and nothing is
// played.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "hosts/common/times.h"

namespace common {

// A piece of music that the show plays.
struct Played {
    std::string file;
    std::int64_t from_frame; // the frame at whose time it starts, at its beginning
};

class FrameClock {
public:
    explicit FrameClock(FrameRate rate) : rate_(rate) {}

    // The frame being drawn: 0 until music has started.
    std::int64_t frame() const { return frame_; }
    void next_frame() {
        if (running_) ++frame_;
    }

    // Whether the show has started its music: from then on its display calls are frames.
    bool running() const { return running_; }

    void play(const std::string& file) {
        playing_ = std::make_shared<const Played>(Played{file, frame_});
        running_ = true;
    }
    void stop() { playing_.reset(); }

    // What is heard from this frame's time on, or null.
    std::shared_ptr<const Played> playing() const { return playing_; }

    // Whole milliseconds since the start of what plays, rounded down as a sound library counts them.
    unsigned position_ms() const {
        if (!playing_) return 0;
        const std::int64_t frames = frame_ - playing_->from_frame;
        return static_cast<unsigned>(frames * 1000 * rate_.seconds / rate_.frames);
    }

private:
    FrameRate rate_;
    std::int64_t frame_ = 0;
    bool running_ = false;
    std::shared_ptr<const Played> playing_;
};

} // namespace common
