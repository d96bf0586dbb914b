// The pulsing cross: a cube on two bars that flash and turn every second, four beams, four double helices and five
// large planes between two slabs of blocks, while the camera circles. Flashing and rotation run by show time; camera
// and caption depend on the pass, which every start advances.
#include <GL/glu.h>

#include <cmath>

#include "show/image/random.h"
#include "show/scenes/angles.h"
#include "show/scenes/beams.h"
#include "show/scenes/caption.h"
#include "show/scenes/greetings.h"
#include "show/scenes/gyro.h"
#include "show/scenes/letterbox.h"
#include "show/scenes/scene_setup.h"
#include "show/scenes/scenes.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"

namespace {

int g_cross_pass;        // number of starts so far
float g_cross_load_time; // seconds of show time at loading; the flashing counts from it

bool is_even(int second) { return (second & 1) == 0; }
bool is_odd(int second) { return second % 2 == 1; } // false for all negative seconds

// --- The slabs ---

constexpr int kBlocks = 20; // along each side

// What row or column number n adds to the height of its blocks; filled by cross_prepare.
double g_sine_square[kBlocks];
double g_cosine_square[kBlocks];

void make_block_squares() {
    for (int n = 0; n < kBlocks; ++n) {
        const double angle = n * kBlockWave;
        g_sine_square[n] = std::pow(std::sin(angle) * 2.7, 2);
        g_cosine_square[n] = std::pow(std::cos(angle) * 2.7, 2);
    }
}

// Draws the blocks of floor and ceiling.
void draw_slabs() {
    glPushMatrix();
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    glDisable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, tex_wall);
    glTranslated(-120, -120, -40);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    for (int i = 0; i < kBlocks; ++i) {
        for (int j = 0; j < kBlocks; ++j) {
            const double a = g_sine_square[j], b = g_sine_square[i];
            const double c = g_cosine_square[j], d = g_cosine_square[i];
            glPushMatrix();
            glScaled(6, 6, 3);
            draw_box(j, i, 5 - a - b, j + 1, i + 1, c + 1 + d);
            glTranslated(0, 0, 35);
            draw_box(j, i, -5 - c - d, j + 1, i + 1, 5 - c - d);
            glPopMatrix();
        }
    }
    glDisable(GL_CULL_FACE);
    glPopMatrix();
}

// --- The cross ---

// Draws a bar of the cross, along z and centred.
void draw_bar() {
    glTranslated(0, 0, -35);
    gluCylinder(g_quadric, 3, 3, 70, 200, 2);
}

// Draws the cross. In odd seconds it rotates and both bars are white; in even seconds it stands still, the first bar
// red and the second black.
void draw_cross(int second) {
    glPushMatrix();
    glEnable(GL_BLEND);
    glEnable(GL_TEXTURE); // a matrix mode, not a capability: GL rejects it. Intentional.
    glColor4f(1.0f, 0.0f, 0.0f, 0.9f);
    gluQuadricNormals(g_quadric, GLU_SMOOTH);
    gluQuadricTexture(g_quadric, GL_TRUE);
    gluQuadricOrientation(g_quadric, GLU_OUTSIDE);
    glTranslated(-60, -60, 95);
    if (is_odd(second)) {
        glRotated(g_demo_time * 90, 0, 0, 1);
        glColor4f(1.0f, 1.0f, 1.0f, 0.9f);
    }
    glPushMatrix();
    glRotated(90, 1, 0, 0);
    draw_bar();
    glPopMatrix();

    if (is_even(second)) glColor4f(0.0f, 0.0f, 0.0f, 0.9f);
    glPushMatrix();
    glRotatef(90.0f, 1.0f, 0.0f, 0.0f);
    glRotatef(90.0f, 0.0f, 1.0f, 0.0f);
    draw_bar();
    glPopMatrix();

    glBindTexture(GL_TEXTURE_2D, tex_wall);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    draw_box_centered(0, 0, 0, 15, 15, 15);
    glPopMatrix();
}

// --- Arms and helices ---

// Draws piece number i without the glow, in the current colour.
void draw_plain_piece(int i) {
    glPushMatrix();
    glTranslated(0, 0, 40 * i);
    blend_alpha();
    draw_beam_cylinder();
    glPopMatrix();
}

// Draws one arm: a beam along x.
void draw_beam_arm() {
    glRotatef(180.0f, 1.0f, 0.0f, 1.0f);
    set_up_beam(GLU_OUTSIDE, tex_beam);
    draw_visible_pieces(g_scroll_y, draw_plain_piece);
}

// Draws four arms: two opposite ones are white, the others red, changing every second.
void draw_arms(int second) {
    glDepthMask(GL_FALSE);
    for (int arm = 0; arm < 4; ++arm) {
        const bool white = arm % 2 == 0 ? is_even(second) : is_odd(second);
        if (white) {
            glColor4f(1.0f, 1.0f, 1.0f, 0.5f);
        } else {
            glColor4f(1.0f, 0.0f, 0.0f, 0.5f);
        }
        glPushMatrix();
        glTranslated(-50, -60, 5);
        if (arm > 0) glRotatef(90.0f * static_cast<float>(arm), 0.0f, 0.0f, -1.0f);
        draw_beam_arm();
        glPopMatrix();
    }
}

// Draws the four double helices, along the arms.
void draw_helices() {
    glPushMatrix();
    glTranslated(-50, -60, 5);
    glRotatef(90.0f, 0.0f, 0.0f, -1.0f);
    glEnable(GL_BLEND);
    blend_alpha();
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    glBindTexture(GL_TEXTURE_2D, tex_ribbon);
    for (int i = 0; i < 4; ++i) {
        glPushMatrix();
        glRotatef(static_cast<float>(-(g_demo_time * 100)), 0.0f, 3.0f, 0.0f);
        draw_helix_strand(0.0f);
        draw_helix_strand(18.0f);
        glPopMatrix();
        glRotatef(90.0f, 0.0f, 0.0f, -1.0f);
    }
    glPopMatrix();
}

// --- Planes ---

// Draws five translucent planes across the room, with growing gaps.
void draw_planes() {
    glDisable(GL_CULL_FACE);
    glBindTexture(GL_TEXTURE_2D, tex_beam);
    set_render_state(kDepthTest | kTexture);
    glEnable(GL_BLEND);
    glEnable(GL_TEXTURE); // rejected, as above
    glColor4f(1.0f, 1.0f, 1.0f, 0.1f);
    glBlendFunc(GL_ALPHA,
                GL_SRC_ALPHA); // GL rejects GL_ALPHA and keeps the function set before. Intentional.
    glDepthMask(GL_FALSE);
    random_seed(20000); // no number is drawn
    double z = 0;
    for (int i = 0; i < 5; ++i) {
        z -= 9 * i;
        glBegin(GL_QUADS);
        glTexCoord2d(0, 0);
        glVertex3d(500, -500, z);
        glTexCoord2d(1, 0);
        glVertex3d(-500, -500, z);
        glTexCoord2d(1, 1);
        glVertex3d(-500, 500, z);
        glTexCoord2d(0, 1);
        glVertex3d(500, 500, z);
        glEnd();
    }
}

// --- Caption, camera ---

// Passes 2 and 3 show the last row of the texture of words.
int caption_row() { return g_cross_pass > 1 && g_cross_pass < 4 ? 7 : kNoCaption; }

// Sets the view of the current pass.
void cross_camera() {
    switch (g_cross_pass) {
    case 1:
        look_at_origin();
        glRotatef(70.0f, -1.0f, 0.0f, 0.0f);
        glTranslated(-100, 100, -100);
        glRotatef(static_cast<float>(-30 * g_demo_time), 0.0f, 0.0f, 1.0f);
        return;
    case 2:
        look_at_origin();
        glRotatef(70.0f, -1.0f, 0.0f, 0.0f);
        glTranslated(-100, 100, -100);
        glRotatef(static_cast<float>(-60 * g_demo_time + 90), 0.0f, 0.0f, 1.0f);
        return;
    case 3:
        look_at_origin();
        glRotatef(70.0f, -1.0f, 0.0f, 0.0f);
        glTranslated(-100, 100, 0);
        glRotatef(static_cast<float>(-60 * g_demo_time), 1.0f, 1.0f, 1.0f);
        return;
    }
}

} // namespace

void cross_prepare() {
    g_cross_load_time = static_cast<float>(g_demo_time);
    make_block_squares();
}

void cross_start() {
    g_cross_pass += 1;
    set_up_lights();
    set_up_projection();
    set_up_fog(100.0f, 600.0f);
}

void cross_render() {
    const float t = static_cast<float>(g_demo_time - g_cross_load_time);
    const int second = static_cast<int>(t);
    glLoadIdentity();
    g_scroll_y = 0;
    set_render_state(kDepthTest | kLighting | kTexture);
    cross_camera();
    glClearColor(0.5f, 0.5f, 0.5f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw_slabs();
    draw_cross(second);
    draw_arms(second);
    draw_helices();
    draw_planes();
    glDepthMask(GL_TRUE);
    draw_caption(tex_words, caption_row());
    glDepthMask(GL_TRUE);
    draw_letterbox();
}

void cross_stop() {}
void cross_release() {}
