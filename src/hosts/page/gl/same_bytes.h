// Comparing plain values as memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace page::gl {

// Whether both have the same bytes. T has no gaps and a size of whole words.
template <class T>
bool same_bytes(const T& a, const T& b) {
    static_assert(sizeof(T) % sizeof(std::uint32_t) == 0);
    const auto word = [](const T& value, std::size_t at) {
        std::uint32_t result;
        std::memcpy(&result, reinterpret_cast<const unsigned char*>(&value) + at, sizeof result);
        return result;
    };
    std::uint32_t difference = 0;
    for (std::size_t at = 0; at < sizeof(T); at += sizeof(std::uint32_t))
        difference |= word(a, at) ^ word(b, at);
    return difference == 0;
}

} // namespace page::gl
