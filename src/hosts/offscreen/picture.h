// One picture on its way from the frame buffer to a file.
#pragma once

#include "hosts/offscreen/times.h"

#include <cstddef>
#include <cstdint>
#include <vector>

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels; // four bytes each: red, green, blue, unused; the bottom row first

    std::int64_t frame = 0; // counted over the whole show
    ShowTime time = 0;

    std::size_t stride() const { return static_cast<std::size_t>(width) * 4; }

    // Row `y` counted from the top.
    const std::uint8_t* row(int y) const {
        return pixels.data() + static_cast<std::size_t>(height - 1 - y) * stride();
    }
};
