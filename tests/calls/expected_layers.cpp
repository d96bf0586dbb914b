#include "tests/calls/expected_layers.h"

#include <GL/glu.h>

#include <cmath>

#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/vectors.h"

namespace expected {

void bind(unsigned texture) { glBindTexture(GL_TEXTURE_2D, texture); }

void corner(double s, double t, double x, double y, double z) {
    glTexCoord2d(s, t);
    glVertex3d(x, y, z);
}

void overlay_quad(double x0, double y0, double x1, double y1) {
    glBegin(GL_QUADS);
    corner(0, 0, x0, y0, 1);
    corner(0, 1, x0, y1, 1);
    corner(1, 1, x1, y1, 1);
    corner(1, 0, x1, y0, 1);
    glEnd();
}

void light_and_projection() {
    const float ambient[4] = {0.8f, 0.8f, 0.8f, 1.0f};
    const float half[4] = {0.5f, 0.5f, 0.5f, 0.5f};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, half);
    glLightfv(GL_LIGHT0, GL_SPECULAR, half);
    glEnable(GL_LIGHT0);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(70.0, 1.3333333333333333, 0.1, 500.0);
    glMatrixMode(GL_MODELVIEW);
}

void fog(float from, float to) {
    const float grey[4] = {0.5f, 0.5f, 0.5f, 1.0f};
    glFogi(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, from);
    glFogf(GL_FOG_END, to);
    glFogfv(GL_FOG_COLOR, grey);
    glEnable(GL_FOG);
}

void look_at() { gluLookAt(-0.0, 0, 35, 0, 0, 0, 0, 1, 1); }

void caption(unsigned words, int row) {
    glLoadIdentity();
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    bind(words);
    glColor4f(2, 2, 2, 0.5f);
    glEnable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDepthMask(0);
    glTranslated(-100, 0, 0);
    if (row >= 0) {
        glBegin(GL_QUADS);
        corner(0, row * 0.125, 512, 668.16, 1);
        corner(0, (row + 1) * 0.125, 512, 768, 1);
        corner(1, (row + 1) * 0.125, 1024, 768, 1);
        corner(1, row * 0.125, 1024, 668.16, 1);
        glEnd();
    }
    end_2d();
}

void letterbox_bars() {
    glEnable(GL_LIGHTING);
    glDisable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDisable(0x1702);
    glColor4f(0, 0, 0, 0);
    glViewport(0, 0, 1024, 768);
    begin_2d();
    glDepthMask(0);
    draw_rect(0, 0, 1024, 76.8);
    draw_rect(0, 691.2, 1024, 768);
    glEnable(GL_BLEND);
    glEnable(GL_LIGHTING);
    glEnable(0x1702);
    glDepthMask(1);
    glViewport(0, 76, 1024, 614);
    end_2d();
}

void letterbox() {
    glDepthMask(1);
    letterbox_bars();
}

void beam_material(unsigned beam) {
    gluQuadricNormals(g_quadric, GLU_SMOOTH);
    gluQuadricTexture(g_quadric, GL_TRUE);
    gluQuadricOrientation(g_quadric, GLU_OUTSIDE);
    glEnable(GL_BLEND);
    bind(beam);
    set_specular(1.0f, 12);
}

void red_beam(float scroll) {
    for (int i = 0; i <= 199; ++i) {
        const double z = 40.0 * i - 40.0;
        if (z < scroll - 600.0) continue;
        if (z > scroll + 600.0) return;
        glPushMatrix();
        glTranslated(0, 0, 40 * i);
        glColor4f(1, 0, 0, 0.5f);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        gluCylinder(g_quadric, 0.3, 0.3, 40, 100, 1);
        glColor4f(1.2f, 0, 0, 0.3f);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE);
        gluCylinder(g_quadric, 0.3, 0.3, 40, 100, 1);
        glPopMatrix();
    }
}

namespace {

struct Point {
    float v[3];
};

Point minus(const Point& a, const Point& b) { return {{a.v[0] - b.v[0], a.v[1] - b.v[1], a.v[2] - b.v[2]}}; }

// Where step `turn` of the helix stands, at a height.
Point on_helix(double turn, double height) {
    const double angle = turn * 100 * 0.0017683882585972932;
    return {{static_cast<float>(5 * std::sin(angle)), static_cast<float>(height),
             static_cast<float>(5 * std::cos(angle))}};
}

// How far the ribbon reaches sideways at p, where it goes on to `next`.
Point sideways(const Point& p, const Point& next) {
    const float outwards[3] = {p.v[0], 0, p.v[2]};
    const Point along = minus(next, p);
    float across[3];
    vec3_cross(across, outwards, along.v);
    float scaled[3];
    vec3_scale_by_length(scaled, across);
    return {{static_cast<float>(scaled[0] * 0.03), static_cast<float>(scaled[1] * 0.03),
             static_cast<float>(scaled[2] * 0.03)}};
}

void ribbon_corner(int s, int t, const Point& p) {
    glTexCoord2d(s, t);
    glVertex3f(p.v[0], p.v[1], p.v[2]);
}

Point plus(const Point& a, const Point& b) { return {{a.v[0] + b.v[0], a.v[1] + b.v[1], a.v[2] + b.v[2]}}; }

} // namespace

void helix_quads(float phase, float scroll) {
    for (int i = 0; i <= 39999; ++i) {
        const double a = i + static_cast<double>(phase);
        const Point p0 = on_helix(a, 1.78 * i);
        const Point p1 = on_helix(a + 1, 1.78 * i + 1.78);
        const Point p2 = on_helix(a + 2, 1.78 * (i + 1) + 1.78);
        if (p0.v[1] < scroll - 500.0) continue;
        if (p0.v[1] > scroll + 600.0) return;
        const Point s0 = sideways(p0, p1);
        const Point s1 = sideways(p1, p2);
        glNormal3d(0, 0, -1);
        ribbon_corner(0, 0, p0);
        ribbon_corner(0, 1, p1);
        ribbon_corner(1, 1, plus(p1, s1));
        ribbon_corner(1, 0, plus(p0, s0));
    }
}

void helix_strand(float phase, float scroll) {
    glBegin(GL_QUADS);
    helix_quads(phase, scroll);
    glEnd();
}

} // namespace expected
