// Which part of the music the device plays at which of its own frames: a list that the playing thread adds to
// and the asking thread searches, without a lock.
//
// Device frames count everything ever handed to the device, silence included. A new entry is made only where
// the relation between device and music changes: at a start, a seek, the end, and both ends of a gap in
// which the decoder was late. Only the newest entries are kept, many more than the device's delay can hold.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace sound {

// From device frame `device` on, until the next segment, the play number `play` is at music frame `music`:
// running on from it frame by frame, or standing at it in silence.
struct Segment {
    double device;
    double music;
    std::uint64_t play;
    bool running;
};

class SegmentLog {
public:
    static constexpr std::size_t kKept = 256;

    // Adds a segment that begins no earlier than the last one. One thread at a time. Wait-free.
    void add(const Segment& segment);

    // The segment that device frame `device` lies in; none before the first one, or if it is no longer kept.
    // Any thread. Lock-free.
    std::optional<Segment> at(double device) const;

private:
    struct Entry {
        std::atomic<double> device{0};
        std::atomic<double> music{0};
        std::atomic<std::uint64_t> play{0};
        std::atomic<bool> running{false};
    };

    std::array<Entry, kKept> entries_;
    std::atomic<std::uint64_t> count_{0}; // ever added; number n is at n modulo kKept
};

} // namespace sound
