// Convolution of whole images, for the filters that are built on it. Like the public operations of filters.h, but
// these return success and do not call the progress hook.
#pragma once

#include <cstdint>

#include "show/image/image.h"
#include "show/image/kernel.h"

enum class Direction { kRows, kColumns };

Image* convolved(const Image* img, const KernelArgs& args);
bool convolve(Image* img, const KernelArgs& args);
Image* convolved_lines(const Image* img, Direction direction, const KernelArgs& args);
bool convolve_lines(Image* img, Direction direction, const KernelArgs& args);
