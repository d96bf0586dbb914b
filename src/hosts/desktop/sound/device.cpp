#include "hosts/desktop/sound/device.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace desktop {

// Either this sees the call under way, or the call sees that there is no mixer: both sides store first and look then,
// in one order for all threads.
void Device::disconnect() {
    mixer_.store(nullptr);
    while (filling_.load()) std::this_thread::sleep_for(std::chrono::microseconds(50));
}

std::optional<double> Device::offset() const {
    const std::int64_t offset = offset_.load(std::memory_order_acquire);
    if (offset == kUnknown) return {};
    return static_cast<double>(offset);
}

void Device::fill(float* out, std::size_t frames) {
    filling_.store(true);
    const std::uint64_t asked_for = asked_for_.load(std::memory_order_relaxed);
    if (Mixer* mixer = mixer_.load()) {
        if (offset_.load(std::memory_order_relaxed) == kUnknown)
            offset_.store(static_cast<std::int64_t>(mixer->handed_out() - asked_for),
                          std::memory_order_release);
        mixer->render(out, frames);
    } else {
        std::fill_n(out, 2 * frames, 0.0f);
    }
    asked_for_.store(asked_for + frames, std::memory_order_release);
    filling_.store(false);
}

} // namespace desktop
