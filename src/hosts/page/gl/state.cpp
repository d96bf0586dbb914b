#include "hosts/page/gl/state.h"

#include <algorithm>

#include "hosts/page/gl/errors.h"

namespace page::gl {

namespace {

State g_state;
bool g_changed = true;
GLfloat g_clear_color[4];

GLfloat clamped(GLfloat value) { return std::min(std::max(value, 0.0f), 1.0f); }

bool is_blend_factor(GLenum factor) {
    return factor == GL_ZERO || factor == GL_ONE ||
           (factor >= GL_SRC_COLOR && factor <= GL_SRC_ALPHA_SATURATE) ||
           (factor >= GL_CONSTANT_COLOR && factor <= GL_ONE_MINUS_CONSTANT_ALPHA);
}

bool is_comparison(GLenum function) { return function >= GL_NEVER && function <= GL_ALWAYS; }

bool is_stencil_operation(GLenum operation) {
    switch (operation) {
    case GL_KEEP:
    case GL_ZERO:
    case GL_REPLACE:
    case GL_INCR:
    case GL_DECR:
    case GL_INVERT:
    case GL_INCR_WRAP:
    case GL_DECR_WRAP:
        return true;
    default:
        return false;
    }
}

} // namespace

const State& state() { return g_state; }

State& change_state() {
    g_changed = true;
    return g_state;
}

bool take_state_changed() {
    const bool changed = g_changed;
    g_changed = false;
    return changed;
}

const GLfloat* clear_color() { return g_clear_color; }

void blend_func(GLenum source, GLenum destination) {
    if (!outside_begin()) return;
    if (!is_blend_factor(source) || !is_blend_factor(destination)) return set_error(GL_INVALID_ENUM);
    State& s = change_state();
    s.blend_source = source;
    s.blend_destination = destination;
}

void depth_func(GLenum function) {
    if (!outside_begin()) return;
    if (!is_comparison(function)) return set_error(GL_INVALID_ENUM);
    change_state().depth_function = function;
}

void depth_mask(GLboolean write) {
    if (!outside_begin()) return;
    change_state().depth_mask = write != 0;
}

void color_mask(GLboolean red, GLboolean green, GLboolean blue, GLboolean alpha) {
    if (!outside_begin()) return;
    const GLboolean mask[] = {red, green, blue, alpha};
    for (int i = 0; i < 4; ++i) change_state().color_mask[i] = mask[i] != 0;
}

void cull_face(GLenum face) {
    if (!outside_begin()) return;
    if (face != GL_FRONT && face != GL_BACK && face != GL_FRONT_AND_BACK) return set_error(GL_INVALID_ENUM);
    change_state().cull_face = face;
}

void stencil_func(GLenum function, GLint reference, GLuint mask) {
    if (!outside_begin()) return;
    if (!is_comparison(function)) return set_error(GL_INVALID_ENUM);
    State& s = change_state();
    s.stencil_function = function;
    s.stencil_reference = reference;
    s.stencil_mask = mask;
}

void stencil_op(GLenum fail, GLenum depth_fail, GLenum pass) {
    if (!outside_begin()) return;
    const GLenum operations[] = {fail, depth_fail, pass};
    if (!std::all_of(operations, operations + 3, is_stencil_operation)) return set_error(GL_INVALID_ENUM);
    std::copy(operations, operations + 3, change_state().stencil_operations);
}

void shade_model(GLenum mode) {
    if (!outside_begin()) return;
    if (mode != GL_FLAT && mode != GL_SMOOTH) return set_error(GL_INVALID_ENUM);
    change_state().flat = mode == GL_FLAT;
}

// Hints are checked and have no effect.
void hint(GLenum target, GLenum mode) {
    if (!outside_begin()) return;
    const bool known = (target >= GL_PERSPECTIVE_CORRECTION_HINT && target <= GL_FOG_HINT);
    if (!known || mode < GL_DONT_CARE || mode > GL_NICEST) set_error(GL_INVALID_ENUM);
}

void viewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    if (!outside_begin()) return;
    if (width < 0 || height < 0) return set_error(GL_INVALID_VALUE);
    const GLint box[] = {x, y, width, height};
    std::copy(box, box + 4, change_state().viewport);
}

void point_size(GLfloat size) {
    if (!outside_begin()) return;
    if (!(size > 0)) return set_error(GL_INVALID_VALUE);
    change_state().point_size = size;
}

void set_clear_color(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha) {
    if (!outside_begin()) return;
    const GLfloat color[] = {red, green, blue, alpha};
    std::transform(color, color + 4, g_clear_color, clamped);
}

void fog(GLenum name, const GLfloat* values) {
    if (!outside_begin()) return;
    const GLenum mode = static_cast<GLenum>(values[0]);
    switch (name) {
    case GL_FOG_MODE:
        if (mode != GL_LINEAR && mode != GL_EXP && mode != GL_EXP2) return set_error(GL_INVALID_ENUM);
        change_state().fog_mode = mode;
        return;
    case GL_FOG_DENSITY:
        if (values[0] < 0) return set_error(GL_INVALID_VALUE);
        change_state().fog_density = values[0];
        return;
    case GL_FOG_START:
        change_state().fog_start = values[0];
        return;
    case GL_FOG_END:
        change_state().fog_end = values[0];
        return;
    case GL_FOG_COLOR:
        std::transform(values, values + 4, change_state().fog_color, clamped);
        return;
    case GL_FOG_INDEX: // for colours by index, which there are not
        return;
    default:
        set_error(GL_INVALID_ENUM);
    }
}

void tex_env(GLenum target, GLenum name, GLfloat value) {
    if (!outside_begin()) return;
    if (target != GL_TEXTURE_ENV || name != GL_TEXTURE_ENV_MODE) return set_error(GL_INVALID_ENUM);
    const GLenum mode = static_cast<GLenum>(value);
    switch (mode) {
    case GL_MODULATE:
    case GL_DECAL:
    case GL_BLEND:
    case GL_REPLACE:
        change_state().environment = mode;
        return;
    default:
        set_error(GL_INVALID_ENUM);
    }
}

void reset_state() {
    g_state = State();
    g_state.blend_source = GL_ONE;
    g_state.depth_function = GL_LESS;
    g_state.depth_mask = 1;
    std::fill(g_state.color_mask, g_state.color_mask + 4, 1);
    g_state.cull_face = GL_BACK;
    g_state.stencil_function = GL_ALWAYS;
    g_state.stencil_mask = ~0u;
    std::fill(g_state.stencil_operations, g_state.stencil_operations + 3, GLenum{GL_KEEP});
    g_state.viewport[2] = 1024;
    g_state.viewport[3] = 768;
    g_state.point_size = 1;
    g_state.environment = GL_MODULATE;
    g_state.fog_mode = GL_EXP;
    g_state.fog_density = 1;
    g_state.fog_end = 1;
    std::fill(g_clear_color, g_clear_color + 4, 0.0f);
    g_changed = true;
}

} // namespace page::gl
