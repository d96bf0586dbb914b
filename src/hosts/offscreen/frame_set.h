// A set of frames, kept as ranges.
#pragma once

#include <cstdint>
#include <map>

class FrameSet {
public:
    // Adds the frames from `first` up to, but not including, `end`.
    void add(std::int64_t first, std::int64_t end);
    void add(const FrameSet& other);

    bool contains(std::int64_t frame) const;
    bool empty() const { return ranges_.empty(); }
    std::int64_t size() const;

    // Of a set that is not empty.
    std::int64_t first() const { return ranges_.begin()->first; }
    std::int64_t last() const { return ranges_.rbegin()->second - 1; }

private:
    std::map<std::int64_t, std::int64_t> ranges_; // first to end; disjoint and apart
};
