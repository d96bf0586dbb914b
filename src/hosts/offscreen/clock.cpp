#include "hosts/offscreen/clock.h"

void Clock::play(const std::string& file) {
    playing_ = std::make_shared<const Played>(Played{file, frame_});
    running_ = true;
}

unsigned Clock::position_ms() const {
    if (!playing_) return 0;
    const std::int64_t frames = frame_ - playing_->from_frame;
    return static_cast<unsigned>(frames * 1000 * rate_.seconds / rate_.frames);
}
