#include "hosts/page/gl/queries.h"

#include <algorithm>
#include <cmath>

#include "hosts/page/gl/attributes.h"
#include "hosts/page/gl/errors.h"
#include "hosts/page/gl/matrices.h"
#include "hosts/page/gl/renderer.h"
#include "hosts/page/gl/state.h"
#include "hosts/page/gl/textures.h"

namespace page::gl {

namespace {

void copy_matrix(const Matrix& m, GLfloat* values) {
    for (int i = 0; i < 16; ++i) values[i] = m.column[i / 4][i % 4];
}

} // namespace

void get_integers(GLenum name, GLint* values) {
    if (!outside_begin()) return;
    if (get_pixel_store(name, *values)) return;
    switch (name) {
    case GL_MATRIX_MODE:
        *values = static_cast<GLint>(current_matrix_mode());
        return;
    case GL_MODELVIEW_STACK_DEPTH:
        *values = modelview_depth();
        return;
    case GL_PROJECTION_STACK_DEPTH:
        *values = projection_depth();
        return;
    case GL_MAX_TEXTURE_SIZE:
        *values = most_texture_size();
        return;
    case GL_TEXTURE_BINDING_2D:
        *values = static_cast<GLint>(bound_texture());
        return;
    case GL_VIEWPORT:
        std::copy(state().viewport, state().viewport + 4, values);
        return;
    default:
        report_missing("glGetIntegerv of that name");
        set_error(GL_INVALID_ENUM);
    }
}

void get_floats(GLenum name, GLfloat* values) {
    if (!outside_begin()) return;
    switch (name) {
    case GL_MODELVIEW_MATRIX:
        return copy_matrix(modelview(), values);
    case GL_PROJECTION_MATRIX:
        return copy_matrix(projection(), values);
    case GL_TEXTURE_MATRIX:
        return copy_matrix(texture_matrix(), values);
    case GL_CURRENT_COLOR:
        for (int i = 0; i < 4; ++i) values[i] = g_attributes.color[i];
        return;
    default:
        report_missing("glGetFloatv of that name");
        set_error(GL_INVALID_ENUM);
    }
}

// GLU chooses its ways by the version and the extensions.
const GLubyte* get_string(GLenum name) {
    if (!outside_begin()) return nullptr;
    const char* text = nullptr;
    switch (name) {
    case GL_VENDOR:
        text = "skav";
        break;
    case GL_RENDERER:
        text = "OpenGL on WebGL";
        break;
    case GL_VERSION:
        text = "1.1";
        break;
    case GL_EXTENSIONS:
        text = "";
        break;
    default:
        set_error(GL_INVALID_ENUM);
    }
    return reinterpret_cast<const GLubyte*>(text);
}

} // namespace page::gl
