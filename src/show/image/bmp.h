// An image as a BMP file in memory: 24 bits per pixel, bottom row first, blue, green, red. Rows are packed
// without padding, as every reader wants them only where the width is a multiple of four. Alpha is left out.
#pragma once

#include <cstdint>

#include "show/image/image.h"

// Returns the file, which the caller frees with std::free, and its size in bytes. Null for a null image or
// without memory.
std::uint8_t* image_to_bmp(const Image* img, std::int32_t* size);
