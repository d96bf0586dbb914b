#include "hosts/offscreen/frame_set.h"

#include <algorithm>

void FrameSet::add(std::int64_t first, std::int64_t end) {
    if (first >= end) return;
    auto range = ranges_.upper_bound(first);
    if (range != ranges_.begin() && std::prev(range)->second >= first) --range;
    while (range != ranges_.end() && range->first <= end) {
        first = std::min(first, range->first);
        end = std::max(end, range->second);
        range = ranges_.erase(range);
    }
    ranges_.emplace(first, end);
}

void FrameSet::add(const FrameSet& other) {
    for (const auto& [first, end] : other.ranges_) add(first, end);
}

bool FrameSet::contains(std::int64_t frame) const {
    const auto after = ranges_.upper_bound(frame);
    return after != ranges_.begin() && std::prev(after)->second > frame;
}

std::int64_t FrameSet::size() const {
    std::int64_t frames = 0;
    for (const auto& [first, end] : ranges_) frames += end - first;
    return frames;
}
