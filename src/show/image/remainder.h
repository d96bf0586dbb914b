// Remainders by a number that is used many times, without dividing.
#pragma once

#include <cstdint>

// v % n for 32-bit v from one precomputed reciprocal, exact for every v and n > 0: D. Lemire, O. Kaser, N.
// Kurz, "Faster remainder by direct computation", Software: Practice and Experience 49 (6), 2019.
struct Remainder {
    std::uint32_t n;
    std::uint64_t reciprocal; // ceil(2^64 / n), modulo 2^64

    explicit Remainder(std::uint32_t divisor = 1) : n(divisor), reciprocal(UINT64_MAX / divisor + 1) {}

    std::uint32_t of(std::uint32_t v) const {
        __extension__ using Wide = unsigned __int128;
        const std::uint64_t fraction = reciprocal * v; // of v / n, in units of 2^-64
        return static_cast<std::uint32_t>((static_cast<Wide>(fraction) * n) >> 64);
    }
};
