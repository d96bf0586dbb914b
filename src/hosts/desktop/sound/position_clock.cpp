#include "hosts/desktop/sound/position_clock.h"

#include <algorithm>

namespace desktop {

namespace {

constexpr double kSettling = 0.15; // seconds in which an error falls to 1/e
constexpr double kMaxBend = 0.25;  // part of real time that the slope may differ from it
constexpr double kStep = 0.1;      // seconds; a device this far ahead was not watched: step, don't chase
constexpr std::size_t kFirstMeasurements = 8; // so early nothing can be heard yet: step as well

} // namespace

PositionClock::PositionClock(double rate) : rate_(rate) {}

void PositionClock::limit(double now, double handed_out) {
    handed_out_ = handed_out;
    if (line_.at(now) <= handed_out) return;
    line_ = {now, std::max(line_.position, handed_out), line_.slope};
    kept_ = 0; // it stalled: what it said before is too far ahead
}

void PositionClock::measure(double now, double frames) {
    if (frames > handed_out_) {
        kept_ = 0;
        return;
    }
    if (frames > last_frames_) {
        last_frames_ = frames;
        leads_[kept_ % kKept] = frames - rate_ * now;
        ++kept_;
        ++measurements_;
    }
    if (kept_ == 0) return;

    const auto kept = static_cast<std::ptrdiff_t>(std::min(kept_, kKept));
    const double lead = *std::max_element(leads_.begin(), leads_.begin() + kept);
    const double here = line_.at(now);
    const double error = (lead + rate_ * now - here) / rate_; // seconds
    const bool catch_up = error > kStep || (error > 0 && measurements_ < kFirstMeasurements);
    if (catch_up) {
        line_ = {now, here + error * rate_, rate_};
        return;
    }
    const double bend = std::max(-kMaxBend, std::min(error / kSettling, kMaxBend));
    line_ = {now, here, rate_ * (1 + bend)};
}

} // namespace desktop
