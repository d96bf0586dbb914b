// Convolution of whole images, for the filters that are made of it: as the public operations, but they report
// success instead of calling the progress hook.
#pragma once

#include <cstdint>

#include "show/image/image.h"
#include "show/image/kernel.h"

enum class Direction { kRows, kColumns };

Image* convolved(const Image* img, const KernelArgs& args);
bool convolve(Image* img, const KernelArgs& args);
Image* convolved_lines(const Image* img, Direction direction, const KernelArgs& args);
bool convolve_lines(Image* img, Direction direction, const KernelArgs& args);
