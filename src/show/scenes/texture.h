// Steps that the scenes' textures have in common.
#pragma once

#include <cstdint>

struct Image;

// A new image (size and ImageFlags as for image_create) filled with opaque black.
Image* create_black(std::int32_t width, std::int32_t height, std::uint32_t flags);

// Uploads the image as a mipmapped texture and frees it. Returns the texture's name.
unsigned upload_and_free(Image* img);

// Inverts the colour planes: 0 becomes 65535 and 65535 becomes 0.
void invert(Image* img);
