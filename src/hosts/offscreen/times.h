// Points in show time and frame rates, both exact: a frame belongs to a time or it does not, on every
// machine.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Microseconds of show time.
using ShowTime = std::int64_t;

constexpr ShowTime kSecond = 1'000'000;

// Stands for everything before the show's first moment: the loading screen.
constexpr ShowTime kLoadingTime = -1;

// Frames per second as a fraction; both parts positive.
struct FrameRate {
    std::int64_t frames = 60;
    std::int64_t seconds = 1;

    // The first moment of frame `index` counted from 0, rounded up to the microsecond.
    ShowTime time_of(std::int64_t index) const;

    // The first frame that begins at `time` or later.
    std::int64_t first_frame_at(ShowTime time) const;

    // The frame that is on screen at `time`: the last one that began at `time` or earlier.
    std::int64_t frame_on_screen_at(ShowTime time) const;

    double per_second() const { return static_cast<double>(frames) / static_cast<double>(seconds); }
};

// Reads "74", "12.5" or "1:14.3" (up to six decimals, not negative). Nothing else is a time.
std::optional<ShowTime> parse_time(const std::string& text);

// Reads "60", "30000/1001" or "29.97" (1..1000 frames per second).
std::optional<FrameRate> parse_rate(const std::string& text);

// "74.300": seconds with three decimals, rounded down.
std::string seconds_text(ShowTime time);
