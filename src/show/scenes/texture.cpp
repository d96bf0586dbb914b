#include "show/scenes/texture.h"

#include "show/image/filters.h"
#include "show/image/image.h"
#include "show/image/upload.h"

Image* create_black(std::int32_t width, std::int32_t height, std::uint32_t flags) {
    Image* img = image_create(width, height, flags);
    image_fill(img, 0xFF000000);
    return img;
}

unsigned upload_and_free(Image* img) {
    const unsigned texture = image_upload(img, kTextureMipmapped);
    image_free(img);
    return texture;
}

void invert(Image* img) { image_levels(img, kPlaneRed | kPlaneGreen | kPlaneBlue, 0, 65535, 65535, 0); }
