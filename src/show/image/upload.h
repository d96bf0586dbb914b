// Conversion of values to bytes, and of an image to a GL texture.
#pragma once

#include <cstdint>

#include "show/image/image.h"

// The high byte of a value clamped to 0..65535.
inline std::uint8_t value_to_byte(std::int32_t v) {
    return static_cast<std::uint8_t>((v < 0 ? 0 : v > 65535 ? 65535 : v) >> 8);
}

// How a texture is filtered.
enum TextureFilter {
    kTextureNearest = 0,   // nearest pixel of the nearest mipmap
    kTextureMipmapped = 1, // linear within and between mipmaps
    kTextureLinear = 2     // linear, mipmaps not used; also any other value
};

// Makes a texture with mipmaps (whatever the filter) and returns its name, leaving it bound. A grey image becomes
// GL_LUMINANCE, three planes GL_RGB, with alpha GL_LUMINANCE_ALPHA and GL_RGBA; one byte per value. With kImageWrap
// the texture repeats, otherwise it clamps to the edge, or to GL_CLAMP if glGetError reports an error after the first
// of the two GL_CLAMP_TO_EDGE calls. Any error still pending counts, also one of earlier calls. Intentional.
//
// Rows are not padded, while GL expects them to start at multiples of four bytes: width times bytes per pixel must be
// such a multiple (the show's always are), or the texture is slanted.
//
// 0xFFFFFFFF for a null image or without memory. GL's own errors are not checked.
std::uint32_t image_upload(const Image* img, int filter);
