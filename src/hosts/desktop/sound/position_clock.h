// The position of a device, at any moment, from measurements that come now and then and may be coarse.
//
// Between measurements the position runs along a straight line. A measurement never moves it but bends the line, so
// that the error decays within a few tenths of a second. The line never falls, and while the device plays its slope
// stays within a quarter of real time: polled every 2 ms, each value in milliseconds differs from the last.
//
// A measurement equal to the last one is ignored, since some devices report only whole buffers. Of the last few
// others the one furthest ahead counts, for a report may be old but not early. Without measurements the position runs
// on, up to the last frame that was handed to the device: a device that stalls falls silent there.
//
// Times are seconds of a clock that never goes back; positions are frames. Not for use by two threads at once: hand
// out copies of line().
#pragma once

#include <array>
#include <chrono>
#include <cstddef>

namespace desktop {

// Seconds of the clock that is never set and never goes back.
inline double steady_seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// A position that runs along a straight line.
struct Line {
    double time;     // seconds
    double position; // at that time, in frames
    double slope;    // frames per second, never negative

    double at(double now) const { return position + slope * (now - time); }
};

class PositionClock {
public:
    // For a device of `rate` frames per second that stands at frame 0 until measured otherwise.
    explicit PositionClock(double rate);

    // At the time `now` `handed_out` frames have been handed to the device: no more can be audible. To be
    // told often, and before every measurement.
    void limit(double now, double handed_out);

    // At the time `now` the device says that frame `frames` is audible. More than was handed out is not
    // believed.
    void measure(double now, double frames);

    const Line& line() const { return line_; }

private:
    static constexpr std::size_t kKept = 4;

    double rate_;
    Line line_{0, 0, 0};
    double handed_out_ = 0;
    double last_frames_ = 0;
    std::array<double, kKept> leads_{}; // of the last measurements: how far each was ahead of rate_ * time
    std::size_t kept_ = 0;              // how many there were since the device last stalled
    std::size_t measurements_ = 0;      // how many there were at all
};

} // namespace desktop
