// Texture objects. All images are kept by the driver as RGBA with eight bits; what a luminance or an RGB texture lacks
// stands there as OpenGL defines it for sampling.
#pragma once

#include <GL/gl.h>

#include "hosts/page/gl/state.h"

namespace page::gl {

// Fills the texture members of `state` from the texture that is bound. They stay 0 if that is not complete: it is then
// as if texturing were off.
void fill_texture_state(State& state);

// Commands.
void gen_textures(GLsizei count, GLuint* names);
void bind_texture(GLenum target, GLuint name);
void tex_parameter(GLenum target, GLenum name, GLint value);
void tex_image(GLenum target, GLint level, GLint internal_format, GLsizei width, GLsizei height, GLint border,
               GLenum format, GLenum type, const void* pixels);
void copy_tex_image(GLenum target, GLint level, GLenum internal_format, GLint x, GLint y, GLsizei width,
                    GLsizei height, GLint border);
void pixel_store(GLenum name, GLint value);

// glGetTexLevelParameteriv; false if that is not kept here.
void get_tex_level_parameter(GLenum target, GLint level, GLenum name, GLint* value);

// The value of a glPixelStore name; false if it is none.
bool get_pixel_store(GLenum name, GLint& value);

// The name that is bound.
GLuint bound_texture();

// The initial state, with one texture; the driver must be set.
void reset_textures();

void delete_textures();

} // namespace page::gl
