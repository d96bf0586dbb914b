// Show times, frame rates, and which frames the show has at a rate. All exact: on every machine a frame belongs to a
// time or it does not. The tables follow the show's timeline; a test compares the two.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace common {

// Microseconds of show time.
using ShowTime = std::int64_t;

constexpr ShowTime kSecond = 1'000'000;

// A piece of music as the show plays it.
struct Piece {
    ShowTime from;  // when the show starts it
    ShowTime clock; // the show time of its position 0: the clock may jump forward at the start
};
constexpr Piece kPieces[] = {{0, 0}, {74'000'000, 74'300'000}};

// When the show ends by itself.
constexpr ShowTime kShowEnd = 162'000'000;

// Everything before the first frame: the loading screens.
constexpr ShowTime kLoadingTime = -1;
constexpr std::int64_t kLoadingFrame = -1;

// Frames counted from 0 over the whole show, or kLoadingFrame.
using FrameSet = std::set<std::int64_t>;

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

// The frames of the show at a rate. Frame k is drawn at exactly k / rate of music; its show time jumps where the
// second piece of music starts (kPieces).
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

    // The piece of music on whose clock frame `index` is.
    const Piece& piece_of(std::int64_t index) const { return kPieces[index > switch_ ? 1 : 0]; }

    // The first frame whose show time is `time` or later.
    std::int64_t first_frame_at(ShowTime time) const;

    // The frames whose show times lie in [from, to).
    FrameSet between(ShowTime from, ShowTime to) const;

    // The frame that is on screen at `time` (0..kShowEnd, or kLoadingTime for the last loading screen).
    std::int64_t frame_on_screen_at(ShowTime time) const;

private:
    FrameRate rate_;
    std::int64_t switch_;
    std::int64_t count_ = 0;
};

// Reads "74", "12.5" or "1:14.3" (up to six decimals, not negative). Nothing else is a time.
std::optional<ShowTime> parse_time(const std::string& text);

// Reads "60", "30000/1001" or "29.97" (1..1000 frames per second).
std::optional<FrameRate> parse_rate(const std::string& text);

// "74.300": seconds with three decimals, rounded down.
std::string seconds_text(ShowTime time);

} // namespace common
