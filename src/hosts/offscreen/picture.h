// One picture on its way from the frame buffer to a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "hosts/offscreen/clock.h"
#include "hosts/offscreen/times.h"

struct PictureInfo {
    std::int64_t frame = 0; // counted over the whole show
    ShowTime time = 0;
    std::shared_ptr<const Played> sound; // what is heard from this frame's time on; null: nothing
};

struct Picture {
    PictureInfo info;
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels; // four bytes each: red, green, blue, unused; the bottom row first

    std::size_t stride() const { return static_cast<std::size_t>(width) * 4; }

    // Row `y` counted from the top.
    const std::uint8_t* row(int y) const {
        return pixels.data() + static_cast<std::size_t>(height - 1 - y) * stride();
    }

    std::uint8_t* row(int y) { return pixels.data() + static_cast<std::size_t>(height - 1 - y) * stride(); }

    void resize(int new_width, int new_height) {
        width = new_width;
        height = new_height;
        pixels.resize(stride() * static_cast<std::size_t>(height));
    }
};

using PicturePtr = std::unique_ptr<Picture>;
