// What the recipes of the scenes' textures have in common: how they begin and end, and black for white.
#pragma once

#include <cstdint>

struct Image;

// A new image (sizes and ImageFlags of image_create) filled with opaque black.
Image* create_black(std::int32_t width, std::int32_t height, std::uint32_t flags);

// Makes the mipmapped texture of the image, which is freed, and returns its name.
unsigned upload_and_free(Image* img);

// Swaps black and white in the colour planes.
void invert(Image* img);
