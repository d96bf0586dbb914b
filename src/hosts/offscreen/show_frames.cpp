#include "hosts/offscreen/show_frames.h"

#include <algorithm>

#include "hosts/offscreen/running_order.h"

ShowFrames::ShowFrames(FrameRate rate)
    : rate_(rate), switch_(rate.first_frame_at(kPieces[1].from)), count_(0) {
    count_ = first_frame_at(kShowEnd);
}

ShowTime ShowFrames::time_of(std::int64_t index) const {
    if (index == kLoadingFrame) return kLoadingTime;
    if (index <= switch_) return rate_.time_of(index);
    return kPieces[1].clock + rate_.time_of(index - switch_);
}

std::int64_t ShowFrames::first_frame_at(ShowTime time) const {
    const std::int64_t before = rate_.first_frame_at(time);
    if (before <= switch_) return before;
    const ShowTime in_piece = std::max<ShowTime>(time - kPieces[1].clock, 0);
    return switch_ + std::max<std::int64_t>(rate_.first_frame_at(in_piece), 1);
}

std::int64_t ShowFrames::frame_on_screen_at(ShowTime time) const {
    if (time == kLoadingTime) return kLoadingFrame;
    const std::int64_t after = first_frame_at(time);
    const std::int64_t frame = time_of(after) == time ? after : after - 1;
    return std::clamp<std::int64_t>(frame, 0, count_ - 1);
}
