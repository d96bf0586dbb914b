// Convolution of whole images, for the filters that are made of it: as the public operations, but they report
// success instead of calling the progress hook.
#pragma once

#include <cstdint>

#include "image/image.h"

enum class Direction { kRows, kColumns };

// What the result is to be. Nothing is done with null weights or a negative radius.
struct KernelArgs {
    const std::int32_t* weights;
    std::int32_t r;
    double divisor;
    std::int32_t bias;
};

Image* convolved(const Image* img, const KernelArgs& args);
bool convolve(Image* img, const KernelArgs& args);
Image* convolved_lines(const Image* img, Direction direction, const KernelArgs& args);
bool convolve_lines(Image* img, Direction direction, const KernelArgs& args);
