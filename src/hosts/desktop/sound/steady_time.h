// Seconds of the clock that never goes back nor stops for the setting of the time.
#pragma once

#include <chrono>

namespace sound {

inline double steady_seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace sound
