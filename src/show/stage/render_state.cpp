#include "show/stage/render_state.h"

#include <GL/gl.h>

int g_render_state = 0;

namespace {

struct Capability {
    int flag;
    GLenum name;
};

constexpr Capability kCapabilities[] = {
    {kDepthTest, GL_DEPTH_TEST}, {kLighting, GL_LIGHTING}, {kTexture, GL_TEXTURE_2D},
    {kBlend, GL_BLEND},          {kCull, GL_CULL_FACE},    {kStencilTest, GL_STENCIL_TEST},
};

// Whether `flags` asks for another mode of a field than the one in force; if so, records it.
bool field_changes(int flags, int field) {
    const int mode = flags & field;
    if (mode == 0 || mode == (g_render_state & field)) return false;
    g_render_state = (g_render_state & ~field) | mode;
    return true;
}

// Issues the calls of a blend mode, a culled side or a stencil mode; none for a value without a meaning.
void call_blend_mode(int mode) {
    if (mode == kBlendAdd) glBlendFunc(GL_ONE, GL_ONE);
    if (mode == kBlendAlpha) glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    if (mode == kBlendMultiply) glBlendFunc(GL_ZERO, GL_SRC_COLOR);
}

void call_cull_side(int side) {
    if (side == kCullFront) glCullFace(GL_FRONT);
    if (side == kCullBack) glCullFace(GL_BACK);
}

void call_stencil_mode(int mode) {
    if (mode == kStencilMark) {
        glStencilFunc(GL_ALWAYS, 1, 255);
        glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
    }
    if (mode == kStencilShow) {
        glStencilFunc(GL_NOTEQUAL, 0, 255);
        glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    }
}

} // namespace

void set_render_state(int flags) {
    for (const Capability& capability : kCapabilities) {
        const int changed = (flags ^ g_render_state) & capability.flag;
        if (!changed) continue;
        if (flags & capability.flag) {
            glEnable(capability.name);
        } else {
            glDisable(capability.name);
        }
        g_render_state ^= capability.flag;
    }
    if (field_changes(flags, kBlendMode)) call_blend_mode(flags & kBlendMode);
    if (field_changes(flags, kCullSide)) call_cull_side(flags & kCullSide);
    if (field_changes(flags, kStencilMode)) call_stencil_mode(flags & kStencilMode);

    // The stencil step above has already recorded the bit that kColorMask shares with it, so colour writes are never
    // turned off. The only effect left: a stencil field of 0 turns them on (again) and clears the recorded bit, so
    // that the next request for kStencilShow issues its calls. Intentional.
    const int mask_changed = (flags ^ g_render_state) & kColorMask;
    if (mask_changed) {
        const GLboolean write = (flags & kColorMask) ? GL_FALSE : GL_TRUE;
        glColorMask(write, write, write, write);
        g_render_state ^= kColorMask;
    }
}

void init_gl_state() {
    glShadeModel(GL_SMOOTH);
    glDepthFunc(GL_LEQUAL);
    glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST);
    glHint(GL_LINE_SMOOTH_HINT, GL_NICEST);
    glEnable(GL_COLOR_MATERIAL);
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
    glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, 1);
    glEnable(GL_NORMALIZE);
    glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
}

void blend_alpha() { glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA); }

void set_white(double alpha) { glColor4f(1.0f, 1.0f, 1.0f, static_cast<float>(alpha)); }

void set_specular(float level, int shininess) {
    const float color[4] = {level, level, level, level};
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, color);
    glMateriali(GL_FRONT_AND_BACK, GL_SHININESS, shininess);
}
