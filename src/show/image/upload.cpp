#include "show/image/upload.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <cstdlib>

namespace {

constexpr std::uint32_t kNoTexture = 0xFFFFFFFF;

struct Format {
    GLenum format;
    int bytes_per_pixel; // also GL's number of internal components
};

Format choose_format(const Image* img) {
    const bool alpha = img->flags & kImageAlpha;
    if (image_has_three_planes(img)) return alpha ? Format{GL_RGBA, 4} : Format{GL_RGB, 3};
    return alpha ? Format{GL_LUMINANCE_ALPHA, 2} : Format{GL_LUMINANCE, 1};
}

// Writes one plane into every `step`th byte.
void interleave(std::uint8_t* out, int step, const std::int32_t* plane, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) out[i * static_cast<std::size_t>(step)] = value_to_byte(plane[i]);
}

// The pixels as bytes, which the caller frees. If a row's bytes are not a multiple of four, GL reads up to three
// bytes per row beyond the packed pixels; the buffer is larger by as much, and black there.
std::uint8_t* make_pixels(const Image* img, const Format& format) {
    const std::size_t pixels = image_count(img);
    const std::size_t slack = 3 * static_cast<std::size_t>(img->height);
    const int step = format.bytes_per_pixel;
    std::uint8_t* bytes =
        static_cast<std::uint8_t*>(std::calloc(pixels * static_cast<std::size_t>(step) + slack, 1));
    if (!bytes) return nullptr;

    std::uint8_t* out = bytes;
    if (image_has_three_planes(img)) interleave(out++, step, img->red, pixels);
    interleave(out++, step, img->green, pixels);
    if (image_has_three_planes(img)) interleave(out++, step, img->blue, pixels);
    if (img->flags & kImageAlpha) interleave(out, step, img->alpha, pixels);
    return bytes;
}

GLint minification(int filter) {
    if (filter == kTextureMipmapped) return GL_LINEAR_MIPMAP_LINEAR;
    return filter == kTextureNearest ? GL_NEAREST_MIPMAP_NEAREST : GL_LINEAR;
}

void set_wrapping(bool repeat) {
    if (repeat) {
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
        return;
    }
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    if (glGetError() == GL_NO_ERROR) {
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    } else {
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
    }
}

} // namespace

std::uint32_t image_upload(const Image* img, int filter) {
    if (!img) return kNoTexture;
    const Format format = choose_format(img);
    std::uint8_t* pixels = make_pixels(img, format);
    if (!pixels) return kNoTexture;

    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    gluBuild2DMipmaps(GL_TEXTURE_2D, format.bytes_per_pixel, img->width, img->height, format.format,
                      GL_UNSIGNED_BYTE, pixels);
    std::free(pixels);

    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, minification(filter));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter == kTextureNearest ? GL_NEAREST : GL_LINEAR);
    set_wrapping(img->flags & kImageWrap);
    return name;
}
