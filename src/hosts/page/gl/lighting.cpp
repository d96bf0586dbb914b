#include "hosts/page/gl/lighting.h"

#include <algorithm>
#include <cmath>

#include "hosts/page/gl/attributes.h"
#include "hosts/page/gl/errors.h"
#include "hosts/page/gl/matrices.h"
#include "hosts/page/gl/state.h"

namespace page::gl {

namespace {

using Material = LightingBlock::Material;
using Light = LightingBlock::Light;

enum Part { kEmission = 1, kAmbient = 2, kDiffuse = 4, kSpecular = 8 };

struct LightSource {
    bool on;
    Light light;
};

LightSource g_sources[kMostLights];
Material g_materials[2];
GLfloat g_scene_ambient[4];
bool g_local_viewer;

// Colour material: which parts of which face follow the current colour, while it is enabled.
bool g_color_material;
GLenum g_tracking_face, g_tracking_mode;

LightingBlock g_block;
bool g_block_is_old = true;

void copy4(const GLfloat* from, GLfloat (&to)[4]) { std::copy(from, from + 4, to); }

int parts_of(GLenum mode) {
    switch (mode) {
    case GL_EMISSION:
        return kEmission;
    case GL_AMBIENT:
        return kAmbient;
    case GL_DIFFUSE:
        return kDiffuse;
    case GL_SPECULAR:
        return kSpecular;
    case GL_AMBIENT_AND_DIFFUSE:
        return kAmbient | kDiffuse;
    default:
        return 0;
    }
}

bool is_face(GLenum face) { return face == GL_FRONT || face == GL_BACK || face == GL_FRONT_AND_BACK; }

// Whether `face` includes the front (index 0) or the back (1).
bool includes(GLenum face, int index) {
    return face == GL_FRONT_AND_BACK || face == (index == 0 ? GL_FRONT : GL_BACK);
}

// The parts of that face's material that follow the current colour.
int tracked_parts(int index) {
    return g_color_material && includes(g_tracking_face, index) ? parts_of(g_tracking_mode) : 0;
}

// Sets the colours of a material that `parts` names. Those of specular leave the shininess in the fourth place.
void set_colors(Material& m, int parts, const GLfloat* color) {
    if (parts & kEmission) copy4(color, m.emission);
    if (parts & kAmbient) copy4(color, m.ambient);
    if (parts & kDiffuse) copy4(color, m.diffuse);
    if (parts & kSpecular) std::copy(color, color + 3, m.specular);
}

// Gives the parts that follow the current colour its value as of now.
void store_tracked_colors() {
    const Float4 color = g_attributes.color;
    const GLfloat values[4] = {color[0], color[1], color[2], color[3]};
    for (int i = 0; i < 2; ++i) set_colors(g_materials[i], tracked_parts(i), values);
}

void changed() { g_block_is_old = true; }

} // namespace

const LightingBlock& lighting_block(bool& block_changed) {
    if (!g_block_is_old) return g_block;
    g_block_is_old = false;
    block_changed = true;
    int count = 0;
    for (const LightSource& source : g_sources) {
        if (source.on) g_block.lights[count++] = source.light;
    }
    copy4(g_scene_ambient, g_block.scene_ambient);
    g_block.switches[0] = static_cast<GLfloat>(count);
    g_block.switches[1] = g_local_viewer;
    for (int i = 0; i < 2; ++i) {
        g_block.switches[2 + i] = static_cast<GLfloat>(tracked_parts(i));
        g_block.materials[i] = g_materials[i];
    }
    return g_block;
}

void enable_light(GLenum name, bool on) {
    g_sources[name - GL_LIGHT0].on = on;
    changed();
}

void enable_color_material(bool on) {
    if (g_color_material) store_tracked_colors();
    g_color_material = on;
    if (g_color_material) store_tracked_colors();
    changed();
}

void light(GLenum name, GLenum what, const GLfloat* values) {
    if (!outside_begin()) return;
    if (name < GL_LIGHT0 || name >= GL_LIGHT0 + kMostLights) return set_error(GL_INVALID_ENUM);
    Light& l = g_sources[name - GL_LIGHT0].light;
    switch (what) {
    case GL_AMBIENT:
        copy4(values, l.ambient);
        break;
    case GL_DIFFUSE:
        copy4(values, l.diffuse);
        break;
    case GL_SPECULAR:
        copy4(values, l.specular);
        break;
    case GL_POSITION: {
        const Matrix& m = modelview();
        const Float4 eye = m.column[0] * values[0] + m.column[1] * values[1] + m.column[2] * values[2] +
                           m.column[3] * values[3];
        for (int i = 0; i < 4; ++i) l.position[i] = eye[i];
        break;
    }
    case GL_SPOT_DIRECTION: {
        const Matrix& m = modelview();
        const Float4 eye = m.column[0] * values[0] + m.column[1] * values[1] + m.column[2] * values[2];
        for (int i = 0; i < 3; ++i) l.spot[i] = eye[i];
        break;
    }
    case GL_SPOT_EXPONENT:
        if (values[0] < 0 || values[0] > 128) return set_error(GL_INVALID_VALUE);
        l.spot[3] = values[0];
        break;
    case GL_SPOT_CUTOFF:
        if (!(values[0] >= 0 && values[0] <= 90) && values[0] != 180) return set_error(GL_INVALID_VALUE);
        l.attenuation[3] =
            static_cast<GLfloat>(std::max(-1.0, std::cos(values[0] * 3.14159265358979323846 / 180)));
        break;
    case GL_CONSTANT_ATTENUATION:
    case GL_LINEAR_ATTENUATION:
    case GL_QUADRATIC_ATTENUATION:
        if (values[0] < 0) return set_error(GL_INVALID_VALUE);
        l.attenuation[what - GL_CONSTANT_ATTENUATION] = values[0];
        break;
    default:
        return set_error(GL_INVALID_ENUM);
    }
    changed();
}

void light_model(GLenum name, const GLfloat* values) {
    if (!outside_begin()) return;
    switch (name) {
    case GL_LIGHT_MODEL_AMBIENT:
        copy4(values, g_scene_ambient);
        break;
    case GL_LIGHT_MODEL_LOCAL_VIEWER:
        g_local_viewer = values[0] != 0;
        break;
    case GL_LIGHT_MODEL_TWO_SIDE:
        change_state().two_sided = values[0] != 0;
        break;
    default:
        return set_error(GL_INVALID_ENUM);
    }
    changed();
}

// The parts that follow the current colour keep doing so.
void material(GLenum face, GLenum name, const GLfloat* values) {
    if (!is_face(face)) return set_error(GL_INVALID_ENUM);
    if (name == GL_COLOR_INDEXES) return; // for colours by index, which there are not
    if (name == GL_SHININESS && !(values[0] >= 0 && values[0] <= 128)) return set_error(GL_INVALID_VALUE);
    if (name != GL_SHININESS && parts_of(name) == 0) return set_error(GL_INVALID_ENUM);
    for (int i = 0; i < 2; ++i) {
        if (!includes(face, i)) continue;
        if (name == GL_SHININESS) {
            g_materials[i].specular[3] = values[0];
        } else {
            set_colors(g_materials[i], parts_of(name) & ~tracked_parts(i), values);
        }
    }
    changed();
}

void color_material(GLenum face, GLenum mode) {
    if (!outside_begin()) return;
    if (!is_face(face) || parts_of(mode) == 0) return set_error(GL_INVALID_ENUM);
    if (g_color_material) store_tracked_colors();
    g_tracking_face = face;
    g_tracking_mode = mode;
    if (g_color_material) store_tracked_colors();
    changed();
}

void reset_lighting() {
    for (int i = 0; i < kMostLights; ++i) {
        const GLfloat level = i == 0 ? 1.0f : 0.0f; // light 0 is white, the others are black
        g_sources[i] = {false,
                        {{0, 0, 1, 0},
                         {0, 0, 0, 1},
                         {level, level, level, 1},
                         {level, level, level, 1},
                         {0, 0, -1, 0},
                         {1, 0, 0, -1}}};
    }
    for (Material& m : g_materials)
        m = {{0, 0, 0, 1}, {0.2f, 0.2f, 0.2f, 1}, {0.8f, 0.8f, 0.8f, 1}, {0, 0, 0, 0}};
    copy4(g_materials[0].ambient, g_scene_ambient);
    g_local_viewer = false;
    g_color_material = false;
    g_tracking_face = GL_FRONT_AND_BACK;
    g_tracking_mode = GL_AMBIENT_AND_DIFFUSE;
    changed();
}

} // namespace page::gl
