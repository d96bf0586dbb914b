// The driver's side: the framebuffer, the buffers and the programs. Everything else goes through the queue.
#pragma once

#include "hosts/page/gl/driver.h"

namespace page::gl {

// Rectangle in the framebuffer's pixels, origin at the lower left.
struct PixelBox {
    GLint x, y, width, height;
};

const Driver& driver();

// Draws what is in the queue and empties it.
void draw_queue();

// The pixels that a rectangle of the show's 1024x768 covers.
PixelBox to_pixels(GLint x, GLint y, GLint width, GLint height);

// The largest width and height of a texture.
GLint most_texture_size();

// The driver's binding of textures; bound as what it already is costs nothing.
void bind_driver_texture(GLuint texture);

} // namespace page::gl
