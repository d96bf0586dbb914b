#include "hosts/desktop/sound/segment_log.h"

namespace sound {

// The fields are stored with release and loaded with acquire order: whoever reads a field of the entry that
// overwrites number n also sees that n + kKept entries were there before, and discards what it read.

void SegmentLog::add(const Segment& segment) {
    const std::uint64_t number = count_.load(std::memory_order_relaxed);
    Entry& entry = entries_[number % kKept];
    entry.device.store(segment.device, std::memory_order_release);
    entry.music.store(segment.music, std::memory_order_release);
    entry.play.store(segment.play, std::memory_order_release);
    entry.running.store(segment.running, std::memory_order_release);
    count_.store(number + 1, std::memory_order_release);
}

std::optional<Segment> SegmentLog::at(double device) const {
    for (std::uint64_t number = count_.load(std::memory_order_acquire); number-- > 0;) {
        const Entry& entry = entries_[number % kKept];
        const Segment segment{
            entry.device.load(std::memory_order_acquire), entry.music.load(std::memory_order_acquire),
            entry.play.load(std::memory_order_acquire), entry.running.load(std::memory_order_acquire)};
        const bool overwritten = count_.load(std::memory_order_relaxed) >= number + kKept;
        if (overwritten) return std::nullopt;
        if (segment.device <= device) return segment;
    }
    return std::nullopt;
}

} // namespace sound
