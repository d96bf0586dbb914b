// The gyroscope room: between a floor and a ceiling of blocks, three sets of spinning rings, four columns of beams
// and four double helices, while the camera turns. Every start begins another pass, with its own camera and caption.
#include "show/scenes/gyro.h"

#include <GL/glu.h>

#include <cmath>

#include "show/image/filters.h"
#include "show/image/generators.h"
#include "show/image/image.h"
#include "show/image/upload.h"
#include "show/scenes/angles.h"
#include "show/scenes/beams.h"
#include "show/scenes/caption.h"
#include "show/scenes/greetings.h"
#include "show/scenes/letterbox.h"
#include "show/scenes/scene_setup.h"
#include "show/scenes/scenes.h"
#include "show/scenes/texture.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"

namespace {

int g_gyro_pass;         // number of starts so far
float g_gyro_pass_start; // seconds of show time
unsigned tex_glow;       // red and clear in the middle, black and opaque at the rim and in the corners

// --- The slabs ---

constexpr int kBlocks = 20; // along each side

// What row or column number n adds to the height of its blocks; filled by gyro_prepare.
double g_cosine_power[kBlocks];
double g_sine_power[kBlocks];

void make_block_powers() {
    for (int n = 0; n < kBlocks; ++n) {
        const double angle = n * kBlockWave;
        g_cosine_power[n] = std::pow(std::cos(angle) * 1.1, 12);
        g_sine_power[n] = std::pow(std::sin(angle) * 0.9, 2);
    }
}

// Draws floor and ceiling. The translation is not pushed: the following layers use it too.
void draw_slabs() {
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    glDisable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, tex_wall);
    glTranslated(-120, -120, -40);
    for (int i = 0; i < kBlocks; ++i) {
        for (int j = 0; j < kBlocks; ++j) {
            const double cx = g_cosine_power[j], cy = g_cosine_power[i];
            const double sx = g_sine_power[j], sy = g_sine_power[i];
            glPushMatrix();
            glScaled(12, 12, 12);
            draw_box(j, i, 0, j + 1, i + 1, cx + 1 + cy + sx + 1 + sy - 2);
            draw_box(j, i, -1 - cx - 1 - cy + 20, j + 1, i + 1, 20);
            glPopMatrix();
        }
    }
}

// --- The gyroscope ---

struct Circle {
    double sine, cosine;
};

// Points on the unit circle; filled by gyro_prepare.
constexpr int kRingCells = 359;
constexpr int kBandCells = 36;
Circle g_ring_circle[kRingCells + 1];
Circle g_band_circle[kBandCells + 1];
double g_band_far_cosine[kBandCells + 1]; // the cosines of the bands' far edges

// The far edge of a band computes its cosines from another product for the same angle, which may round differently.
void make_circles() {
    const auto circle = [](double angle) { return Circle{std::sin(angle), std::cos(angle)}; };
    for (int n = 0; n <= kRingCells; ++n) g_ring_circle[n] = circle(n * 0.01768388258597293);
    for (int n = 0; n <= kBandCells; ++n) {
        g_band_circle[n] = circle(n * 0.1768388258597293);
        g_band_far_cosine[n] = std::cos(100 * n * kWave);
    }
}

// Draws a flat ring of 359 cells of a little more than a degree each, so that it closes with a small overlap. The
// second and the fourth corner take the cosine of the cell's other end, which skews every cell. Intentional.
void draw_flat_ring(float inner, float outer) {
    const double in = inner, out = outer;
    for (int i = 0; i < kRingCells; ++i) {
        const Circle &from = g_ring_circle[i], &to = g_ring_circle[i + 1];
        glPushMatrix();
        glScaled(5, 5, 5);
        glNormal3d(0, 0, -1);
        glBegin(GL_QUADS);
        glTexCoord2d(0, 0);
        glVertex3d(out * from.sine, out * from.cosine, 0);
        glTexCoord2d(0, 1);
        glVertex3d(in * from.sine, in * to.cosine, 0);
        glTexCoord2d(1, 1);
        glVertex3d(in * to.sine, in * to.cosine, 0);
        glTexCoord2d(1, 0);
        glVertex3d(out * to.sine, out * from.cosine, 0);
        glEnd();
        glPopMatrix();
    }
}

// Draws a band of 36 cells around a ring, 0.5 to both sides of its plane.
void draw_ring_band(float radius) {
    const double r = radius;
    for (int i = 0; i < kBandCells; ++i) {
        const Circle &from = g_band_circle[i], &to = g_band_circle[i + 1];
        glPushMatrix();
        glScaled(5, 5, 5);
        glNormal3d(0, 0, -1);
        glBegin(GL_QUADS);
        glTexCoord2d(0, 0);
        glVertex3d(r * from.sine, r * from.cosine, -0.5);
        glTexCoord2d(0, 1);
        glVertex3d(r * from.sine, r * g_band_far_cosine[i], 0.5);
        glTexCoord2d(1, 1);
        glVertex3d(r * to.sine, r * g_band_far_cosine[i + 1], 0.5);
        glTexCoord2d(1, 0);
        glVertex3d(r * to.sine, r * to.cosine, -0.5);
        glEnd();
        glPopMatrix();
    }
}

struct RingSet {
    float color[3];
    double speed; // degrees per second of show time
    float axis[3];
    float inner, outer;
    float bands[2]; // radii
};

constexpr RingSet kRingSets[] = {
    {{0, 1, 0}, 50, {1.0f, 0.5f, 0.1f}, 8, 10, {10.0f, 8.0f}},
    {{1, 0, 0}, 100, {0.5f, 0.1f, 0.3f}, 5, 8, {7.9f, 5.0f}},
    {{0, 0, 1}, 200, {0.3f, 0.5f, 0.9f}, 3, 5, {4.9f, 3.0f}},
};

// Draws the three sets of rings. This translation is not pushed either.
void draw_gyroscope() {
    glTranslated(240, 240, -40);
    glDisable(GL_CULL_FACE);
    glEnable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, tex_glow);
    for (const RingSet& set : kRingSets) {
        glPushMatrix();
        glColor3f(set.color[0], set.color[1], set.color[2]);
        glTranslated(-120, -120, 120);
        glRotatef(static_cast<float>(g_demo_time * set.speed), set.axis[0], set.axis[1], set.axis[2]);
        draw_flat_ring(set.inner, set.outer);
        draw_ring_band(set.bands[0]);
        draw_ring_band(set.bands[1]);
        glPopMatrix();
    }
}

// --- Beams and helices ---

// Draws one beam along z.
void draw_beam_column() {
    glRotatef(90.0f, 0.0f, 0.0f, -1.0f);
    set_up_beam(GLU_OUTSIDE, tex_beam);
    draw_visible_pieces(g_scroll_y, draw_glowing_piece);
}

void draw_beam_columns() {
    static constexpr double kPlaces[][2] = {{-60, -60}, {-180, -60}, {-180, -180}, {-60, -180}};
    glDepthMask(GL_TRUE);
    for (const double* place : kPlaces) {
        glPushMatrix();
        glTranslated(place[0], place[1], 0);
        draw_beam_column();
        glPopMatrix();
    }
}

void draw_helices() {
    struct Helix {
        double x, z;
        int turn; // +1 or -1
    };
    static constexpr Helix kHelices[] = {{-180, 60, 1}, {-180, 180, -1}, {-60, 180, 1}, {-60, 60, -1}};
    glDepthMask(GL_FALSE);
    glPushMatrix();
    glRotatef(90.0f, 1.0f, 0.0f, 0.0f);
    glEnable(GL_BLEND);
    blend_alpha();
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    glBindTexture(GL_TEXTURE_2D, tex_ribbon);
    for (const Helix& helix : kHelices) {
        glPushMatrix();
        glTranslated(helix.x, -0.0, helix.z);
        glRotatef(static_cast<float>(helix.turn * g_demo_time * 300), 0.0f, 1.0f, 0.0f);
        draw_helix_strand(0.0f);
        draw_helix_strand(18.0f);
        glPopMatrix();
    }
    glDepthMask(GL_TRUE);
    glPopMatrix();
}

// --- Caption, bars, camera ---

// The row of the texture of words: passes 1 to 3 show the three rows after those of the greetings.
int caption_row() { return g_gyro_pass >= 1 && g_gyro_pass <= 3 ? g_gyro_pass + 3 : kNoCaption; }

// Draws the bars. The first end_2d pops both stacks once more than was pushed, as draw_caption has closed its own
// overlay, and the push and pop around the bars interleave with those of the overlay. Intentional.
void draw_gyro_letterbox() {
    glDepthMask(GL_TRUE);
    glEnable(GL_LIGHTING);
    end_2d();
    glPushMatrix();
    begin_letterbox();
    glColor4f(1.0f, 1.0f, 1.0f, 0.0f);
    restore_after_letterbox();
    glPopMatrix();
    set_picture_viewport();
    end_2d();
}

// Sets the view of the current pass at its time t (seconds).
void gyro_camera(float t) {
    switch (g_gyro_pass) {
    case 1:
        look_at_origin();
        glRotatef(70.0f, -1.0f, 0.0f, 0.0f);
        glTranslated(0, 100, -70);
        glRotatef(-30.0f * t, 0.0f, 0.0f, 1.0f);
        return;
    case 2:
        look_at_origin();
        glRotatef(70.0f, -1.0f, 0.0f, 0.0f);
        glTranslated(0, 70, -10);
        glRotatef(-25.0f * t, 0.0f, 0.0f, 1.0f);
        glRotatef(25.0f * t, 1.0f, 1.0f, 0.0f);
        return;
    case 3: // the rotation comes before the view: everything turns about the world's diagonal
        glRotatef(-100.0f * t, 1.0f, 1.0f, 1.0f);
        glTranslated(0, 0, -0.0);
        look_at_origin();
        return;
    }
}

} // namespace

void draw_helix_strand(float phase) {
    glBegin(GL_QUADS);
    draw_helix_ribbon(phase);
    glEnd();
}

void gyro_prepare() {
    Image* unused = create_black(256, 256, kImageGrey);
    Image* rim = create_black(256, 256, kImageGrey); // dark in the middle
    image_radial(rim, 0.0, 1.0);
    invert(rim);
    image_set_alpha(unused, rim);
    Image* glow = image_create(256, 256, kImageColor | kImageAlpha);
    image_fill(glow, 0xffba0000);
    image_blend(glow, rim, kMixSubtract, 200);
    image_set_alpha(glow, rim);
    tex_glow = image_upload(glow, kTextureMipmapped);
    image_free(unused);
    image_free(rim);
    image_free(glow);
    make_block_powers();
    make_circles();
}

void gyro_start() {
    g_gyro_pass += 1;
    set_up_lights();
    set_up_projection();
    set_up_fog(100.0f, 600.0f);
    g_gyro_pass_start = static_cast<float>(g_demo_time);
}

void gyro_render() {
    const float t = static_cast<float>(g_demo_time - g_gyro_pass_start);
    glLoadIdentity();
    g_scroll_y = 0;
    set_render_state(kDepthTest | kLighting | kTexture);
    gyro_camera(t);
    glClearColor(0.5f, 0.5f, 0.5f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw_slabs();
    draw_gyroscope();
    draw_beam_columns();
    draw_helices();
    draw_caption(tex_words, caption_row());
    draw_gyro_letterbox();
}

void gyro_stop() {}
void gyro_release() {}
