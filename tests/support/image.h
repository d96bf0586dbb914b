// Owners of the show's images and fonts.
#pragma once

#include <memory>

#include "show/image/image.h"
#include "show/text/text.h"

struct ImageDeleter {
    void operator()(Image* img) const { image_free(img); }
};
using ImagePtr = std::unique_ptr<Image, ImageDeleter>;

struct FontDeleter {
    void operator()(Font* font) const { font_free(font); }
};
using FontPtr = std::unique_ptr<Font, FontDeleter>;
