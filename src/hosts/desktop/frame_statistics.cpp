#include "hosts/desktop/frame_statistics.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace desktop {

void FrameStatistics::position_read(double now, unsigned milliseconds) {
    const bool goes_back = last_read_ && milliseconds < last_read_->milliseconds;
    if (goes_back) music_moves_ = false;
    if (music_moves_) {
        const double music = static_cast<double>(milliseconds - last_read_->milliseconds);
        const double jitter = std::abs(music - 1000 * (now - last_read_->time));
        jitter_sum_ += jitter;
        jitter_most_ = std::max(jitter_most_, jitter);
        ++steps_;
    } else if (last_read_ && !goes_back) {
        music_moves_ = milliseconds > last_read_->milliseconds;
    }
    last_read_ = Reading{now, milliseconds};
}

void FrameStatistics::shown(double now) {
    if (!last_read_) return;
    ++frames_;
    if (!first_shown_) first_shown_ = now;
    if (last_shown_) {
        const double time = now - *last_shown_;
        if (time > worst_) {
            worst_ = time;
            worst_at_ = last_read_->milliseconds / 1000.0;
        }
        const double refreshes = time * refresh_rate_;
        if (refreshes > 1.5) {
            ++late_;
            missed_ += std::lround(refreshes) - 1;
        }
    }
    last_shown_ = end_ = now;
}

std::string FrameStatistics::text() const {
    const double seconds = first_shown_ ? end_ - *first_shown_ : 0;
    const double rate = seconds > 0 ? static_cast<double>(frames_ - 1) / seconds : 0;
    const double jitter = steps_ > 0 ? jitter_sum_ / static_cast<double>(steps_) : 0;
    char text[400];
    std::snprintf(text, sizeof text,
                  "frames shown: %ld in %.1f s, %.1f a second\n"
                  "late frames: %ld, missed refreshes: %ld (of %.1f a second)\n"
                  "worst frame: %.1f ms, before %.3f s of the music\n"
                  "clock jitter: %.1f ms, %.1f ms at most",
                  frames_, seconds, rate, late_, missed_, refresh_rate_, 1000 * worst_, worst_at_, jitter,
                  jitter_most_);
    return text;
}

} // namespace desktop
