#include "hosts/desktop/sound/stream_ring.h"

#include <algorithm>

namespace sound {

StreamRing::StreamRing(std::size_t capacity) : capacity_(capacity), frames_(2 * capacity) {}

std::size_t StreamRing::space() const {
    return capacity_ - (written_.load(std::memory_order_relaxed) - read_.load(std::memory_order_acquire));
}

std::size_t StreamRing::write(const float* in, std::size_t frames) {
    const std::size_t count = std::min(frames, space());
    const std::size_t written = written_.load(std::memory_order_relaxed);
    const std::size_t at = written % capacity_;
    const std::size_t before_wrap = std::min(count, capacity_ - at);
    std::copy_n(in, 2 * before_wrap, frames_.begin() + static_cast<std::ptrdiff_t>(2 * at));
    std::copy_n(in + 2 * before_wrap, 2 * (count - before_wrap), frames_.begin());
    written_.store(written + count, std::memory_order_release);
    return count;
}

std::size_t StreamRing::read(float* out, std::size_t frames) {
    const std::size_t read = read_.load(std::memory_order_relaxed);
    const std::size_t count = std::min(frames, written_.load(std::memory_order_acquire) - read);
    const std::size_t at = read % capacity_;
    const std::size_t before_wrap = std::min(count, capacity_ - at);
    std::copy_n(frames_.begin() + static_cast<std::ptrdiff_t>(2 * at), 2 * before_wrap, out);
    std::copy_n(frames_.begin(), 2 * (count - before_wrap), out + 2 * before_wrap);
    read_.store(read + count, std::memory_order_release);
    return count;
}

void StreamRing::clear() {
    written_.store(0, std::memory_order_relaxed);
    read_.store(0, std::memory_order_relaxed);
}

} // namespace sound
