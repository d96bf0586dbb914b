// The state that decides how vertices become pixels, and the commands that set it. Lights and materials: lighting.h.
#pragma once

#include <GL/gl.h>

namespace page::gl {

// All members have four bytes, so that two states can be compared as memory. 0 and 1 stand for false and true.
struct State {
    // What the driver does.
    GLint blend, depth_test, cull, stencil_test;
    GLenum blend_source, blend_destination;
    GLenum depth_function;
    GLint depth_mask;
    GLint color_mask[4];
    GLenum cull_face;
    GLenum stencil_function;
    GLint stencil_reference;
    GLuint stencil_mask;
    GLenum stencil_operations[3];
    GLint viewport[4]; // pixels of the show's 1024x768

    // What the shaders do.
    GLint lighting, two_sided, normalize, flat;
    GLfloat point_size;
    GLenum environment; // texture environment mode
    GLint fog;          // enabled
    GLenum fog_mode;
    GLfloat fog_density, fog_start, fog_end;
    GLfloat fog_color[4];
    GLint texturing; // GL_TEXTURE_2D is enabled

    // Filled from the bound texture when something is drawn (textures.h); all 0: no texture.
    GLuint texture;
    GLint texture_parts; // 1: it has colour, 2: alpha, 3: both
    GLint border_axes;   // whose border may be sampled, 1: s, 2: t, 3: both
    GLint border_when;   // 1: magnified, 2: minified
    GLenum minification;
};

// Read access.
const State& state();

// The state, to change it.
State& change_state();

// Whether change_state was called since the last call of this function.
bool take_state_changed();

// The colour that glClear fills with, 0..1.
const GLfloat* clear_color();

// Commands.
void blend_func(GLenum source, GLenum destination);
void depth_func(GLenum function);
void depth_mask(GLboolean write);
void color_mask(GLboolean red, GLboolean green, GLboolean blue, GLboolean alpha);
void cull_face(GLenum face);
void stencil_func(GLenum function, GLint reference, GLuint mask);
void stencil_op(GLenum fail, GLenum depth_fail, GLenum pass);
void shade_model(GLenum mode);
void hint(GLenum target, GLenum mode);
void viewport(GLint x, GLint y, GLsizei width, GLsizei height);
void point_size(GLfloat size);
void set_clear_color(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha);
void fog(GLenum name, const GLfloat* values);
void tex_env(GLenum target, GLenum name, GLfloat value);

void reset_state();

} // namespace page::gl
