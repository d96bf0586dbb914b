#include "hosts/page/gl/capabilities.h"

#include "hosts/page/gl/errors.h"
#include "hosts/page/gl/lighting.h"
#include "hosts/page/gl/state.h"

namespace page::gl {

namespace {

// What OpenGL 1.1 can switch on and the layer cannot.
bool is_unsupported_capability(GLenum name) {
    switch (name) {
    case GL_ALPHA_TEST:
    case GL_AUTO_NORMAL:
    case GL_COLOR_LOGIC_OP:
    case GL_INDEX_LOGIC_OP:
    case GL_LINE_SMOOTH:
    case GL_LINE_STIPPLE:
    case GL_POINT_SMOOTH:
    case GL_POLYGON_OFFSET_FILL:
    case GL_POLYGON_OFFSET_LINE:
    case GL_POLYGON_OFFSET_POINT:
    case GL_POLYGON_SMOOTH:
    case GL_POLYGON_STIPPLE:
    case GL_SCISSOR_TEST:
    case GL_TEXTURE_1D:
        return true;
    default:
        return (name >= GL_CLIP_PLANE0 && name <= GL_CLIP_PLANE5) ||
               (name >= GL_MAP1_COLOR_4 && name <= GL_MAP1_VERTEX_4) ||
               (name >= GL_MAP2_COLOR_4 && name <= GL_MAP2_VERTEX_4) ||
               (name >= GL_TEXTURE_GEN_S && name <= GL_TEXTURE_GEN_Q);
    }
}

// The member that a capability switches; null if it is none of them.
GLint* switch_of(State& s, GLenum capability) {
    switch (capability) {
    case GL_BLEND:
        return &s.blend;
    case GL_CULL_FACE:
        return &s.cull;
    case GL_DEPTH_TEST:
        return &s.depth_test;
    case GL_FOG:
        return &s.fog;
    case GL_LIGHTING:
        return &s.lighting;
    case GL_NORMALIZE:
        return &s.normalize;
    case GL_STENCIL_TEST:
        return &s.stencil_test;
    case GL_TEXTURE_2D:
        return &s.texturing;
    default:
        return nullptr;
    }
}

} // namespace

void enable(GLenum capability, bool on) {
    if (!outside_begin()) return;
    if (GLint* member = switch_of(change_state(), capability)) {
        *member = on;
        return;
    }
    if (capability >= GL_LIGHT0 && capability < GL_LIGHT0 + kMostLights) return enable_light(capability, on);
    if (capability == GL_COLOR_MATERIAL) return enable_color_material(on);
    if (capability == GL_DITHER) return; // colours have eight bits: not seen
    if (!is_unsupported_capability(capability)) return set_error(GL_INVALID_ENUM);
    if (on) report_missing("glEnable of what neither the show nor GLU enables");
}

} // namespace page::gl
