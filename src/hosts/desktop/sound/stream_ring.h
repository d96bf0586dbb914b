// A queue of decoded frames between one thread that decodes and one that plays. Both ends are wait-free and
// neither allocates. A frame is a left and a right float.
#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

namespace sound {

class StreamRing {
public:
    // Holds up to `capacity` frames, a power of two.
    explicit StreamRing(std::size_t capacity);

    // The decoding end.
    std::size_t space() const;                              // frames that a write would take now
    std::size_t write(const float* in, std::size_t frames); // returns how many went in

    // The playing end.
    std::size_t read(float* out, std::size_t frames); // returns how many came out

    // Empties the queue. Only while neither end is in use.
    void clear();

private:
    std::size_t capacity_;
    std::vector<float> frames_;
    std::atomic<std::size_t> written_{0}; // frames ever written; the slot is the count modulo the capacity
    std::atomic<std::size_t> read_{0};
};

} // namespace sound
