#include "driver/gl_helpers.h"

#include <GL/glut.h>

#include <cmath>

int g_render_state = 0;
GLUquadric* g_quadric = nullptr;
unsigned g_loading_texture = 0;

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

    // The stencil step above has already recorded the bit that this one shares with it, so colour writes are
    // never turned off. What is left is the clean-up: a stencil field of 0 drops the recorded bit, so that
    // the next request for kStencilShow issues its calls again. Meant.
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

void begin_2d() {
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, 1024, 768, 0, -100, 100);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
}

void end_2d() {
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

void set_specular(float level, int shininess) {
    const float color[4] = {level, level, level, level};
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, color);
    glMateriali(GL_FRONT_AND_BACK, GL_SHININESS, shininess);
}

void draw_rect(double x0, double y0, double x1, double y1) {
    glBegin(GL_QUADS);
    glVertex2d(x0, y0);
    glVertex2d(x1, y0);
    glVertex2d(x1, y1);
    glVertex2d(x0, y1);
    glEnd();
}

void draw_rect_tex(double x0, double y0, double x1, double y1, double s0, double t0, double s1, double t1) {
    glBegin(GL_QUADS);
    glTexCoord2d(s0, t0);
    glVertex2d(x0, y0);
    glTexCoord2d(s1, t0);
    glVertex2d(x1, y0);
    glTexCoord2d(s1, t1);
    glVertex2d(x1, y1);
    glTexCoord2d(s0, t1);
    glVertex2d(x0, y1);
    glEnd();
}

void draw_grid_2d(double x0, double y0, double x1, double y1, double tex_scale, int nx, int ny) {
    const double dx = (x1 - x0) / nx;
    const double dy = (y1 - y0) / ny;
    glNormal3d(0, 0, 1);
    double y = y0;
    for (; ny != 0; --ny) {
        double x = x0;
        glBegin(GL_QUAD_STRIP);
        for (int i = 0; i <= nx; ++i) {
            glTexCoord2d(x * tex_scale, (y + dy) * tex_scale);
            glVertex2d(x, y + dy);
            glTexCoord2d(x * tex_scale, y * tex_scale);
            glVertex2d(x, y);
            x += dx;
        }
        glEnd();
        y += dy;
    }
}

void draw_box(double x0, double y0, double z0, double x1, double y1, double z1) {
    const double x[2] = {x0, x1};
    const double y[2] = {y0, y1};
    const double z[2] = {z0, z1};
    struct Face {
        int normal[3];
        int corners[4][3]; // 0 or 1 on each axis
    };
    static constexpr Face kFaces[6] = {
        {{0, 0, -1}, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}},
        {{1, 0, 0}, {{1, 0, 0}, {1, 0, 1}, {1, 1, 1}, {1, 1, 0}}},
        {{0, 0, 1}, {{1, 0, 1}, {0, 0, 1}, {0, 1, 1}, {1, 1, 1}}},
        {{-1, 0, 0}, {{0, 0, 1}, {0, 0, 0}, {0, 1, 0}, {0, 1, 1}}},
        {{0, 1, 0}, {{0, 1, 0}, {1, 1, 0}, {1, 1, 1}, {0, 1, 1}}},
        {{0, -1, 0}, {{0, 0, 0}, {0, 0, 1}, {1, 0, 1}, {1, 0, 0}}},
    };
    static constexpr int kTexCoords[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};

    glBegin(GL_QUADS);
    for (const Face& face : kFaces) {
        glNormal3d(face.normal[0], face.normal[1], face.normal[2]);
        for (int i = 0; i < 4; ++i) {
            const int* corner = face.corners[i];
            glTexCoord2d(kTexCoords[i][0], kTexCoords[i][1]);
            glVertex3d(x[corner[0]], y[corner[1]], z[corner[2]]);
        }
    }
    glEnd();
}

void draw_box_centered(double cx, double cy, double cz, double hx, double hy, double hz) {
    draw_box(cx - hx, cy - hy, cz - hz, cx + hx, cy + hy, cz + hz);
}

void draw_box_array(const double box[6]) { draw_box(box[0], box[1], box[2], box[3], box[4], box[5]); }

float* vec3_cross(float out[3], const float a[3], const float b[3]) {
    const double ax = a[0], ay = a[1], az = a[2];
    const double bx = b[0], by = b[1], bz = b[2];
    out[0] = static_cast<float>(ay * bz - az * by);
    out[1] = static_cast<float>(az * bx - ax * bz);
    out[2] = static_cast<float>(ax * by - ay * bx);
    return out;
}

float* vec3_scale_by_length(float out[3], const float v[3]) {
    const double x = v[0], y = v[1], z = v[2];
    const float length = static_cast<float>(std::sqrt(x * x + y * y + z * z));
    out[0] = v[0] * length;
    out[1] = v[1] * length;
    out[2] = v[2] * length;
    return out;
}

void draw_loading_screen() {
    glClearColor(1, 1, 1, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glLoadIdentity();
    begin_2d();

    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, g_loading_texture);
    glColor3f(2.0f, 2.0f, 2.0f); // over-bright on purpose; clamped to white
    glDisable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDepthMask(GL_FALSE);

    glBegin(GL_QUADS);
    glTexCoord2i(0, 0);
    glVertex3i(307, 256, 1);
    glTexCoord2i(0, 1);
    glVertex3i(307, 512, 1);
    glTexCoord2i(1, 1);
    glVertex3i(717, 512, 1);
    glTexCoord2i(1, 0);
    glVertex3i(717, 256, 1);
    glEnd();

    end_2d();
    glDepthMask(GL_TRUE);
    glEnable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    end_2d(); // one push, two pops: the second underflows, GL notes an error that nobody reads. Meant.
    glFlush();
    glutSwapBuffers();
}
