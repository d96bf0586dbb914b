// An image as a BMP file in memory: 24 bits per pixel, bottom row first, blue, green, red. Rows are not padded to
// multiples of four bytes, so only images whose width is a multiple of four are valid BMP files. Alpha is left out.
#pragma once

#include <cstdint>

#include "show/image/image.h"

// Returns the file, which the caller frees with std::free, and stores its size in bytes. Null, with size not written,
// for a null image, for a file of more than 2^31 - 1 bytes, or without memory.
std::uint8_t* image_to_bmp(const Image* img, std::int32_t* size);
