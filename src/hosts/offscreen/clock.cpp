#include "hosts/offscreen/clock.h"

void Clock::stop() {
    if (!played_.empty() && played_.back().heard) played_.push_back({"", frame_, false});
}

unsigned Clock::position_ms() const {
    const std::int64_t frames = frame_ - played_.back().from_frame;
    return static_cast<unsigned>(frames * 1000 * rate_.seconds / rate_.frames);
}
