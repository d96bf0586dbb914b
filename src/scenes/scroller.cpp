// The scroller: a flat layer of old tricks (a poem on a film strip, raster bars, plasma flashes, sprites,
// stars, a sliding sign, a cube). At first and at the end the layer is drawn into a corner of the frame
// buffer, copied into a texture and laid on a sheet in a room of walls, film ribbons and tubes; from second
// 23.2 to 71 it fills the screen itself.
#include <GL/glu.h>

#include <cmath>

#include "driver/display.h"
#include "driver/gl_helpers.h"
#include "driver/show.h"
#include "image/filters.h"
#include "image/generators.h"
#include "image/image.h"
#include "image/noise.h"
#include "image/random.h"
#include "scenes/angles.h"
#include "scenes/beams.h"
#include "scenes/greetings.h"
#include "scenes/lettering.h"
#include "scenes/poem.h"
#include "scenes/ribbon.h"
#include "scenes/scenes.h"
#include "scenes/stage.h"
#include "scenes/text_screen.h"
#include "scenes/texture.h"
#include "text/text.h"

namespace {

unsigned tex_feedback; // the layer, 512 by 512, copied anew every frame in sheet mode
unsigned tex_bar;
unsigned tex_poem;
unsigned tex_film;
unsigned tex_plasma;
unsigned tex_sign;
unsigned tex_sprite;
unsigned sheet_list;

int g_scroller_starts;
float g_scroller_start_time; // seconds of show time at the first start

struct Star {
    float x, y, z; // z below 0
};

constexpr int kStars = 8000;
Star g_stars[kStars];

// A draw as a fraction, 0 up to but not including 1.
double random_fraction() { return random_next() * 0x1p-32; }

// --- The sheet ---

double edge_curl(int q) { return -20 * std::sin(q * q * kWave); }

// A cell of the sheet from depth z0 at its left to z1 at its right. The left edge bends over four cells, the
// right one over six; where the right curl begins, its first cell starts a hair beside its neighbour. Meant.
void draw_sheet_cell(int i, int j) {
    const int column = i + 20;
    double z0 = 0, z1 = 0;
    if (column <= 3) {
        z0 = edge_curl(column - 4);
        z1 = edge_curl(column - 3);
    } else if (column >= 34) {
        z0 = edge_curl(column - 35);
        z1 = edge_curl(column - 34);
    }
    const double s0 = column * 0.025, s1 = (column + 1) * 0.025;
    const double t0 = (j + 20) * 0.025, t1 = (j + 21) * 0.025;
    glTexCoord2d(s0, t0);
    glVertex3d(i, j, z0);
    glTexCoord2d(s1, t0);
    glVertex3d(i + 1, j, z1);
    glTexCoord2d(s1, t1);
    glVertex3d(i + 1, j + 1, z1);
    glTexCoord2d(s0, t1);
    glVertex3d(i, j + 1, z0);
}

unsigned make_sheet() {
    const unsigned list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    glRotatef(180.0f, 0.0f, 0.0f, 1.0f);
    glBegin(GL_QUADS);
    for (int j = -20; j < 20; ++j) {
        for (int i = -20; i < 20; ++i) draw_sheet_cell(i, j);
    }
    glEnd();
    glEndList();
    return list;
}

// --- Textures and stars ---

// No image yet: the first copy from the frame buffer makes it.
unsigned make_feedback_texture() {
    unsigned texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    return texture;
}

unsigned make_bar_texture() {
    Image* img = create_black(128, 256, kImageGrey | kImageAlpha);
    image_line(img, 64, 0, 64, 255, 0xFFFFFFFF);
    image_blur_h(img, 63, 85.0);
    image_set_alpha(img, img);
    return upload_and_free(img);
}

unsigned make_poem_texture() {
    Font* font = font_load("./Vera.ttf");
    Image* img = create_black(512, 700, kImageGrey);
    for (int i = 0; i < kPoemLines; ++i) {
        draw_text(img, font, poem_pen_x(g_english, i), 30 * (i + 1), 20, 20, -12, poem_line(g_english, i));
    }
    image_rank(img, 1);
    image_set_alpha(img, img);
    const unsigned texture = upload_and_free(img);
    font_free(font);
    return texture;
}

// Grain with sprocket holes along both edges; the alpha is its negative.
unsigned make_film_texture() {
    Image* img = create_black(512, 128, kImageGrey);
    image_noise(img, 41728);
    image_contrast(img, kPlaneRed | kPlaneGreen | kPlaneBlue, -15000, 2.47);
    for (int n = 0; n < 35; ++n) {
        image_fill_rect(img, 15 * n, 5, 5, 10, 0xFFFFFFFF);
        image_fill_rect(img, 15 * n, 112, 5, 10, 0xFFFFFFFF);
    }
    image_blur_h(img, 1, 1.0);
    image_blur_v(img, 1, 1.0);
    invert(img);
    image_set_alpha(img, img);
    invert(img);
    return upload_and_free(img);
}

void make_stars() {
    random_seed(2222);
    for (Star& star : g_stars) {
        const double r1 = random_fraction(), r2 = random_fraction(), r3 = random_fraction();
        star.x = static_cast<float>(r1 * 40 - 20 + 19);
        star.y = static_cast<float>(r2 * 6 - 3);
        star.z = static_cast<float>(r3 * 4 - 2 - 2);
    }
}

unsigned make_plasma_texture() {
    Image* img = image_create(1024, 1024, kImageColor);
    image_plasma(img, 33280, 0.8);
    return upload_and_free(img);
}

unsigned make_sign_texture() {
    Font* font = font_load("./Vera.ttf");
    Image* img = create_black(512, 512, kImageGrey);
    draw_text(img, font, 25, 185, 92, 55, 0, "PROST!");
    image_blur_h(img, 8, 1.0);
    image_set_alpha(img, img);
    const unsigned texture = upload_and_free(img);
    font_free(font);
    return texture;
}

unsigned make_sprite_texture() {
    Image* img = create_black(256, 256, kImageGrey);
    image_radial(img, 0.0, 1.0);
    image_set_alpha(img, img);
    return upload_and_free(img);
}

// --- The layer ---

void set_white(double alpha) { glColor4f(1.0f, 1.0f, 1.0f, static_cast<float>(alpha)); }

// Under the projection in force, that of the scene's start: the stars are no overlay.
void draw_starfield(float t) {
    if (!(t > 43.2)) return;
    glPointSize(2.0f);
    glEnable(GL_BLEND);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    glBegin(GL_POINTS);
    for (const Star& star : g_stars) {
        const float grey = -1.0f / star.z;
        glColor3f(grey, grey, grey);
        glVertex3d(star.x - 0.5 * t - 1, star.y, star.z);
    }
    glEnd();
}

struct PlasmaFlash {
    double from, to; // seconds; at both bounds there is none
    double shift;    // of the plasma, overlay units
};

constexpr PlasmaFlash kPlasmaFlashes[] = {{14, 22, -1536}, {23.2, 28, -1024}, {28.4, 33, -1024}};

// In for a second, out for three; past that the alpha is negative until the span ends, and GL clamps it.
double plasma_alpha(double since) { return since > 1 ? 1 - (since - 1) / 3 : since; }

// One sheet that turns about the origin, and another at half strength that turns the other way about its own
// point (1024, 1024).
void draw_plasma(float t) {
    begin_2d();
    for (const PlasmaFlash& flash : kPlasmaFlashes) {
        if (!(t > flash.from && t < flash.to)) continue;
        glBindTexture(GL_TEXTURE_2D, tex_plasma);
        glRotatef(12.0f * t, 0.0f, 0.0f, 1.0f);
        glTranslated(flash.shift, flash.shift, 0);
        const double alpha = plasma_alpha(t - flash.from);
        if (!(alpha < 1)) continue;
        glEnable(GL_TEXTURE_2D);
        glEnable(GL_BLEND);
        blend_alpha();
        set_white(alpha);
        draw_flat(0, 0, 3072, 2304);
        set_white(alpha / 2);
        glTranslated(1024, 1024, 0);
        glRotatef(-24.0f * t, 0.0f, 0.0f, 1.0f);
        glTranslated(-1024, -1024, 0);
        draw_flat(0, 0, 3072, 2304);
    }
    end_2d();
}

// In at the right edge at second 60, out at the left one at 64.
void draw_sign(float t) {
    if (!(t > 60 && t < 64)) return;
    const double a = 1 - (t - 60) * 0.25;
    glBindTexture(GL_TEXTURE_2D, tex_sign);
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    blend_alpha();
    set_white(1);
    glTranslated(2048 * a - 1024, 0, 0);
    draw_flat(0, 0, 1024, 768);
    end_2d();
}

// One bar across the screen; s of -0.8..0.8 takes its top edge from just above the screen (y = -8) to 606.
// The texture's first axis runs down across the bar.
void draw_bar_band(double s) {
    const double y = (s + 1) * 384 - 85;
    glBegin(GL_QUADS);
    glTexCoord2d(0, 0);
    glVertex3d(0, y, 1);
    glTexCoord2d(1, 0);
    glVertex3d(0, y + 38.4, 1);
    glTexCoord2d(1, 1);
    glVertex3d(1024, y + 38.4, 1);
    glTexCoord2d(0, 1);
    glVertex3d(1024, y, 1);
    glEnd();
}

// Four green bars and four red ones between them.
void draw_raster_bars(float t) {
    if (!(t > 5.5)) return;
    begin_2d();
    glBindTexture(GL_TEXTURE_2D, tex_bar);
    glDisable(GL_LIGHTING);
    const double since = t - 5.5;
    const float alpha = since < 3 ? static_cast<float>(since / 3) : 1.0f;
    glColor4f(0.0f, 1.0f, 0.0f, alpha);
    for (int i = 0; i < 4; ++i) draw_bar_band(0.8 * std::sin((since + 0.3 * i) * 0.8841941292986465));
    glColor4f(1.0f, 0.0f, 0.0f, alpha);
    for (int i = 0; i < 4; ++i) draw_bar_band(0.8 * std::sin((since + 0.15 + 0.3 * i) * 0.8841941292986465));
    glEnable(GL_LIGHTING);
    end_2d();
}

// All lines, wherever they are: most of them lie beyond the screen.
void draw_poem(float t) {
    glBindTexture(GL_TEXTURE_2D, tex_poem);
    for (int i = 0; i < kPoemLines; ++i) {
        const double x = poem_left(i, t);
        // Each line takes 30 of the 700 rows.
        draw_flat(x, 675.84, x + 1024, 714.24, 0.01 + i * 3 / 70.0, 0.01 + (i + 1) * 3 / 70.0);
    }
    glEnd(); // one more than there are batches: GL notes an error that nobody reads. Meant.
}

void draw_film_strip(float t) {
    begin_2d();
    glBindTexture(GL_TEXTURE_2D, tex_film);
    set_white(1);
    draw_flat(0, 614.4, 1024, 768);
    draw_poem(t);
    end_2d();
}

void draw_sprite(double x, double y, double half_width, double half_height) {
    begin_2d();
    glBindTexture(GL_TEXTURE_2D, tex_sprite);
    draw_flat(x - half_width, y - half_height, x + half_width, y + half_height);
    end_2d();
}

// Twenty blobs of random sizes and speeds; seeded anew every frame, so that they stay the same ones.
void draw_swarm(float t) {
    if (!(t > 35.5 && t < 43.2)) return;
    blend_alpha();
    random_seed(2000);
    double a = t - 35.5;
    if (a > 1) a = 1 - (t - 42.2); // far above 1 at first; GL clamps it
    set_white(a);
    for (int i = 0; i < 20; ++i) {
        const double r1 = random_fraction(), r2 = random_fraction(), r3 = random_fraction();
        const double half = -0.1 + 0.2 * r2 + 0.1; // of the screen
        const float speed_y = static_cast<float>(r1 * 1000 - 500);
        const float speed_x = static_cast<float>(r3 * 3000 - 1500);
        const double y = std::sin(static_cast<double>(t) * speed_y * kWave) * 230.4 + 384;
        const double x = std::cos(static_cast<double>(t) * speed_x * kWave) * 230.4 + 512;
        draw_sprite(x, y, 1024 * half, 768 * half);
    }
}

// A hundred blobs along a curve.
void draw_chain(float t) {
    if (!(t > 47 && t < 60.1)) return;
    blend_alpha();
    double a = (t - 47.0) / 3;
    if (a > 1) a = 1 - (t - 59.1);
    set_white(a);
    for (int i = 0; i < 100; ++i) {
        const double y = std::sin((t + 0.25 * i) * 1.7683882585972932) * 230.4 + 384;
        const double x = std::cos((t + 0.125 * i) * 0.3536776517194586) * 384 + 512;
        draw_sprite(x, y, 61.44, 46.08);
    }
}

// The cube, and from second 68 a slab through its middle that only fills the depth buffer.
void draw_cube(float t) {
    glDepthMask(GL_TRUE);
    glPushMatrix();
    if (t > 67) {
        glEnable(GL_BLEND);
        glDisable(GL_TEXTURE_2D);
        const double a = (t - 67.0) / 3;
        glTranslated(0, 0, -3);
        glScaled(1.5, 1.5, 1.5);
        glRotatef(60.0f * t, 0.3f, 1.0f, 0.1f);
        if (t > 68) {
            glColor4f(0.0f, 0.0f, 0.0f, 0.0f);
            blend_alpha();
            draw_box_centered(0, 0, 0, 0.01, 0.5, 0.5);
        }
        glRotatef(70.0f * t, 1.0f, 1.0f, 1.0f);
        glColor4f(0.3f, 0.3f, 1.0f, a < 1 ? static_cast<float>(a) : 1.0f);
        blend_alpha();
        draw_box_centered(0, 0, 0, 0.3, 0.3, 0.3);
    }
    blend_alpha();
    glEnable(GL_TEXTURE_2D);
    glPopMatrix();
}

void draw_layer(float t) {
    glLoadIdentity();
    set_render_state(kDepthTest | kLighting | kTexture);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw_starfield(t);
    draw_plasma(t);
    draw_sign(t);
    glEnable(GL_BLEND);
    blend_alpha();
    glDepthMask(GL_FALSE);
    glEnable(GL_TEXTURE_2D);
    draw_raster_bars(t);
    draw_film_strip(t);
    draw_swarm(t);
    draw_chain(t);
    draw_cube(t);
}

// --- The room ---

void copy_layer(float t) {
    glViewport(0, 0, 512, 512);
    draw_layer(t);
    glFlush();
    glBindTexture(GL_TEXTURE_2D, tex_feedback);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 512, 512, 0);
    set_picture_viewport();
    glLoadIdentity();
}

void scroller_camera(float t) {
    if (t < 13) {
        glTranslated(0, 0, 30.0 * t - 420);
    } else if (t < 71) {
        glTranslated(0, 0, -30);
    }
    if (t >= 71) glTranslated(0, 0, -30 - 5.0 * (t - 71.0));
    if (g_scroller_starts == 1 || g_scroller_starts == 2) look_at_origin();
}

// 80 cells about the y axis; neighbours share their points.
void draw_film_ribbon(int offset) {
    const auto point = [offset](int m) { return ribbon_point((m + offset) * (100 * kWave), 1.78 * m); };
    RibbonPoint p0 = point(0);
    RibbonPoint p1 = point(1);
    RibbonPoint edge0 = ribbon_edge(p0, p1);
    glBegin(GL_QUADS);
    for (int n = 0; n < 80; ++n) {
        const RibbonPoint p2 = point(n + 2);
        const RibbonPoint edge1 = ribbon_edge(p1, p2);
        draw_ribbon_cell(p0, edge0, p1, edge1);
        p0 = p1;
        p1 = p2;
        edge0 = edge1;
    }
    glEnd();
}

void draw_ribbon_pair() {
    glPushMatrix();
    glTranslated(0, 80, -20);
    // Show time, not the scene's: the spin runs on.
    glRotatef(static_cast<float>(g_demo_time * 300), 0.0f, 1.0f, 0.0f);
    glScaled(3, 3, 3);
    draw_film_ribbon(0);
    draw_film_ribbon(18);
    glPopMatrix();
}

void draw_film_ribbons() {
    glPushMatrix();
    glRotatef(90.0f, 0.0f, 0.0f, 1.0f);
    glEnable(GL_BLEND);
    blend_alpha();
    set_white(1);
    glBindTexture(GL_TEXTURE_2D, tex_ribbon);
    draw_ribbon_pair();
    glRotatef(180.0f, 0.0f, 0.0f, 1.0f);
    draw_ribbon_pair();
    glPopMatrix();
}

void draw_tube_row() {
    glRotatef(90.0f, 0.0f, 0.0f, -1.0f);
    set_up_beam(GLU_INSIDE);
    for (int i = 0; i < 20; ++i) draw_glowing_piece(i);
}

// Out to the right and to the left, along the axes of the film ribbons.
void draw_tube_rows() {
    for (int side = 1; side >= -1; side -= 2) {
        glPushMatrix();
        glRotatef(90.0f, 0.0f, static_cast<float>(side), 0.0f);
        glTranslated(20 * side, 0, 80);
        glScaled(3, 3, 3);
        draw_tube_row();
        glPopMatrix();
    }
}

void draw_wall_box(double x, double y, double z, double depth) {
    glPushMatrix();
    glTranslated(x, y, z);
    glScaled(12, 30, depth);
    glCallList(box_list);
    glPopMatrix();
}

// Floor and ceiling of boxes about the room; the middle ones leave space for the sheet.
void draw_walls() {
    glPushMatrix();
    glDisable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, tex_wall);
    glRotatef(90.0f, -1.0f, 0.0f, 0.0f);
    glTranslated(-12, 0, -50);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    set_white(1);
    for (int row = 0; row < 11; ++row) {
        for (int column = 0; column < 20; ++column) {
            const double x = -108 + 12 * column;
            const double y = 30 * row;
            const double depth = column > 4 && column < 15 && row != 10 ? 25 : 70;
            const double swell = 20 * std::sin(column * kBlockWave) + 2;
            draw_wall_box(x, y, -20 - swell, depth + swell);
            draw_wall_box(x, y, 120 - depth, depth + swell);
        }
    }
    glDisable(GL_CULL_FACE);
    glPopMatrix();
}

void draw_sheet() {
    glBindTexture(GL_TEXTURE_2D, tex_feedback);
    glEnable(GL_BLEND);
    blend_alpha();
    set_white(0.8);
    glPushMatrix();
    glTranslated(0, 0, 2);
    glRotatef(180.0f, 0.0f, 0.0f, 1.0f);
    glScaled(2.9, 2.2, 3);
    glCallList(sheet_list);
    glPopMatrix();
    glDisable(GL_BLEND);
}

// The picture of the text screen, gone after three seconds.
void draw_fading_text_screen(float t) {
    const double a = 1 - t / 3.0;
    if (!(a > 0)) return;
    const float alpha = static_cast<float>(a);
    glLoadIdentity();
    set_render_state(kDepthTest | kLighting | kTexture);
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    glTranslated(-100, 0, 0);
    glDisable(GL_TEXTURE_2D);
    blend_alpha();
    glColor4f(0.5f, 0.5f, 0.5f, alpha);
    draw_backdrop_quad();
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, tex_panel);
    glColor4f(2.0f, 2.0f, 2.0f, alpha);
    draw_panel_quad();
    end_2d();
    glDepthMask(GL_TRUE);
    glEnable(GL_LIGHTING);
}

void draw_room(float t) {
    scroller_camera(t);
    set_render_state(kDepthTest | kLighting | kTexture);
    glClearColor(0.5f, 0.5f, 0.5f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw_film_ribbons();
    draw_tube_rows();
    draw_walls();
    draw_sheet();
    draw_fading_text_screen(t);
    draw_letterbox();
}

} // namespace

// The order decides which random numbers each texture is made from.
void scroller_prepare() {
    tex_feedback = make_feedback_texture();
    sheet_list = make_sheet();
    tex_bar = make_bar_texture();
    tex_poem = make_poem_texture();
    tex_film = make_film_texture();
    make_stars();
    tex_plasma = make_plasma_texture();
    tex_sign = make_sign_texture();
    tex_sprite = make_sprite_texture();
}

void scroller_start() {
    g_scroller_starts += 1;
    set_up_lights();
    set_up_projection();
    set_up_fog(100.0f, 600.0f);
    // A later start does not put the clock back.
    if (g_scroller_starts == 1) g_scroller_start_time = static_cast<float>(g_demo_time);
}

void scroller_render() {
    const float t = static_cast<float>(g_demo_time - g_scroller_start_time);
    if (t < 23.2 || t > 71) {
        copy_layer(t);
        draw_room(t);
    } else {
        set_full_viewport(); // and left so; no bars
        draw_layer(t);
    }
}

void scroller_stop() {}
void scroller_release() {}
