#include "show/scenes/scroller_layer.h"

#include <GL/gl.h>

#include <cmath>

#include "show/image/filters.h"
#include "show/image/generators.h"
#include "show/image/image.h"
#include "show/image/noise.h"
#include "show/image/random.h"
#include "show/scenes/angles.h"
#include "show/scenes/poem.h"
#include "show/scenes/texture.h"
#include "show/stage/language.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/text/text.h"

namespace {

unsigned tex_bar;
unsigned tex_poem;
unsigned tex_film;
unsigned tex_plasma;
unsigned tex_sign;
unsigned tex_sprite;

struct Star {
    float x, y, z; // z below 0
};

constexpr int kStars = 8000;
Star g_stars[kStars];

// A random number in 0..1, 1 excluded.
double random_fraction() { return random_next() * 0x1p-32; }

// --- Textures and stars ---

// A soft line in the middle, for the raster bars.
unsigned make_bar_texture() {
    Image* img = create_black(128, 256, kImageGrey | kImageAlpha);
    image_line(img, 64, 0, 64, 255, 0xFFFFFFFF);
    image_blur_h(img, 63, 85.0);
    image_set_alpha(img, img);
    return upload_and_free(img);
}

// All lines of the poem, one in every 30 rows.
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

// Film grain with sprocket holes along both edges; the alpha is its negative.
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

// --- The parts of the layer, in drawing order ---

// Draws the stars in the scene's perspective, moving to the left.
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
    double from, to; // seconds, both excluded
    double shift;    // of the plasma, overlay units
};

constexpr PlasmaFlash kPlasmaFlashes[] = {{14, 22, -1536}, {23.2, 28, -1024}, {28.4, 33, -1024}};

// Opacity some seconds into a flash: fades in for one second and out for three. After that it is below 0 until the
// flash ends, which GL clamps.
double plasma_alpha(double since) { return since > 1 ? 1 - (since - 1) / 3 : since; }

// Draws a plasma that rotates about the origin, and another at half opacity that rotates the other way about its own
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

// Draws the sign, which crosses the screen from right to left between seconds 60 and 64.
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

// Sets the state for the bars, the film strip and the sprites.
void set_flat_state() {
    glEnable(GL_BLEND);
    blend_alpha();
    glDepthMask(GL_FALSE);
    glEnable(GL_TEXTURE_2D);
}

// Draws one bar across the screen. s in -0.8..0.8 moves its top edge from y = -8 (above the screen) to 606. The
// texture's first axis runs downwards across the bar.
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

// Draws four green bars and four red ones between them.
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

// Draws all lines of the poem; most of them lie outside the screen.
void draw_poem(float t) {
    glBindTexture(GL_TEXTURE_2D, tex_poem);
    for (int i = 0; i < kPoemLines; ++i) {
        const double x = poem_left(i, t);
        // Each line occupies 30 of the texture's 700 rows.
        draw_flat(x, 675.84, x + 1024, 714.24, 0.01 + i * 3 / 70.0, 0.01 + (i + 1) * 3 / 70.0);
    }
    glEnd(); // without a glBegin: GL records an error that is not read. Intentional.
}

void draw_film_strip(float t) {
    begin_2d();
    glBindTexture(GL_TEXTURE_2D, tex_film);
    set_white(1);
    draw_flat(0, 614.4, 1024, 768);
    draw_poem(t);
    end_2d();
}

// Draws one sprite about (x, y), in overlay units.
void draw_sprite(double x, double y, double half_width, double half_height) {
    begin_2d();
    glBindTexture(GL_TEXTURE_2D, tex_sprite);
    draw_flat(x - half_width, y - half_height, x + half_width, y + half_height);
    end_2d();
}

// Draws twenty sprites of random sizes and speeds, from the same seed in every frame.
void draw_swarm(float t) {
    if (!(t > 35.5 && t < 43.2)) return;
    blend_alpha();
    random_seed(2000);
    double a = t - 35.5;
    if (a > 1) a = 1 - (t - 42.2); // above 1 until second 42.2; GL clamps it
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

// Draws a hundred sprites along a curve.
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

// Draws the cube, and from second 68 a slab through its middle that writes only to the depth buffer.
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

} // namespace

// The order matters: all textures draw from the same random generator.
void prepare_scroller_layer() {
    tex_bar = make_bar_texture();
    tex_poem = make_poem_texture();
    tex_film = make_film_texture();
    make_stars();
    tex_plasma = make_plasma_texture();
    tex_sign = make_sign_texture();
    tex_sprite = make_sprite_texture();
}

void draw_scroller_layer(float t) {
    glLoadIdentity();
    set_render_state(kDepthTest | kLighting | kTexture);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw_starfield(t);
    draw_plasma(t);
    draw_sign(t);
    set_flat_state();
    draw_raster_bars(t);
    draw_film_strip(t);
    draw_swarm(t);
    draw_chain(t);
    draw_cube(t);
}
