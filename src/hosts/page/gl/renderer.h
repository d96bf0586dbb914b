// The driver's side: the framebuffer, the buffers and the programs. Everything else goes through the queue.
#pragma once

#include <GL/gl.h>

#include "hosts/common/geometry.h"

namespace page::gl {

// Makes the framebuffer, the buffers and the first program, in the driver's context. False, with a report, if that
// cannot do it.
bool start_renderer(int width, int height);
void stop_renderer();

// Changes the framebuffer's size; the picture is lost.
void resize_framebuffer(int width, int height);

// The framebuffer is always bound, but while it is copied to the context's own.
void bind_framebuffer();
void copy_to_screen();

// Draws what is in the queue and empties it.
void draw_queue();

// The framebuffer's pixels that a rectangle of the show's 1024x768 covers.
common::Box to_pixels(GLint x, GLint y, GLint width, GLint height);

// The largest width and height of a texture.
GLint most_texture_size();

// The driver's binding of textures; bound as what it already is costs nothing.
void bind_driver_texture(GLuint texture);

} // namespace page::gl
