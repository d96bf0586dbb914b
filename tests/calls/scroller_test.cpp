#include <GL/glu.h>

#include <algorithm>
#include <cmath>

#include "show/image/filters.h"
#include "show/image/generators.h"
#include "show/image/image.h"
#include "show/image/noise.h"
#include "show/image/random.h"
#include "show/image/upload.h"
#include "show/scenes/poem.h"
#include "show/stage/language.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"
#include "show/stage/vectors.h"
#include "show/text/text.h"
#include "tests/calls/expected_layers.h"
#include "tests/calls/scene_test.h"

namespace {

constexpr double k = 0.0017683882585972932; // pi / 1776.5, the show's unit of angle

void blend_over() { glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA); }

// --- How things are made ---

void make_feedback_texture() {
    unsigned texture = 0;
    glGenTextures(1, &texture);
    expected::bind(texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
}

double curl(int q) { return -20 * std::sin(q * q * k); }

void make_sheet_list() {
    const unsigned list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    glRotatef(180, 0, 0, 1);
    glBegin(GL_QUADS);
    for (int j = -20; j <= 19; ++j) {
        for (int i = -20; i <= 19; ++i) {
            const int c = i + 20;
            double z0 = 0;
            double z1 = 0;
            if (c <= 3) {
                z0 = curl(c - 4);
                z1 = curl(c - 3);
            } else if (c >= 34) {
                z0 = curl(c - 35);
                z1 = curl(c - 34);
            }
            const double s0 = (i + 20) * 0.025;
            const double s1 = (i + 1 + 20) * 0.025;
            const double t0 = (j + 20) * 0.025;
            const double t1 = (j + 1 + 20) * 0.025;
            expected::corner(s0, t0, i, j, z0);
            expected::corner(s1, t0, i + 1, j, z1);
            expected::corner(s1, t1, i + 1, j + 1, z1);
            expected::corner(s0, t1, i, j + 1, z0);
        }
    }
    glEnd();
    glEndList();
}

void make_bar_texture() {
    Image* img = image_create(128, 256, 5);
    image_fill(img, 0xFF000000);
    image_line(img, 64, 0, 64, 255, 0xFFFFFFFF);
    image_blur_h(img, 63, 85.0);
    image_set_alpha(img, img);
    image_upload(img, 1);
    image_free(img);
}

// The words are the makers' own; where they stand is not.
void make_poem_texture(bool english) {
    Font* font = font_load("./Vera.ttf");
    Image* img = image_create(512, 700, 1);
    image_fill(img, 0xFF000000);
    for (int n = 1; n <= 22; ++n) {
        int x = 10;
        if (n == 3) x = 20;
        if (n == 4) x = 0;
        if (n == 14 && !english) x = 0;
        draw_text(img, font, x, 30 * n, 20, 20, -12, poem_line(english, n - 1));
    }
    image_rank(img, 1);
    image_set_alpha(img, img);
    image_upload(img, 1);
    image_free(img);
    font_free(font);
}

void make_film_texture() {
    Image* img = image_create(512, 128, 1);
    image_fill(img, 0xFF000000);
    image_noise(img, 41728);
    image_contrast(img, 7, -15000, 2.47);
    for (int n = 0; n <= 34; ++n) {
        image_fill_rect(img, 15 * n, 5, 5, 10, 0xFFFFFFFF);
        image_fill_rect(img, 15 * n, 112, 5, 10, 0xFFFFFFFF);
    }
    image_blur_h(img, 1, 1.0);
    image_blur_v(img, 1, 1.0);
    image_levels(img, 7, 0, 65535, 65535, 0);
    image_set_alpha(img, img);
    image_levels(img, 7, 0, 65535, 65535, 0);
    image_upload(img, 1);
    image_free(img);
}

struct Star {
    float x, y, z;
};

double unit(unsigned number) { return number / 4294967296.0; }

std::vector<Star> make_stars() {
    std::vector<Star> stars;
    random_seed(2222);
    for (int i = 0; i < 8000; ++i) {
        const double r1 = unit(random_next());
        const double r2 = unit(random_next());
        const double r3 = unit(random_next());
        stars.push_back({rounded(r1 * 40 - 20 + 19), rounded(r2 * 6 - 3), rounded(r3 * 4 - 2 - 2)});
    }
    return stars;
}

void make_plasma_texture() {
    Image* img = image_create(1024, 1024, 2);
    image_plasma(img, 33280, 0.8);
    image_upload(img, 1);
    image_free(img);
}

void make_sign_texture() {
    Font* font = font_load("./Vera.ttf");
    Image* img = image_create(512, 512, 1);
    image_fill(img, 0xFF000000);
    draw_text(img, font, 25, 185, 92, 55, 0, "PROST!");
    image_blur_h(img, 8, 1.0);
    image_set_alpha(img, img);
    image_upload(img, 1);
    image_free(img);
    font_free(font);
}

void make_sprite_texture() {
    Image* img = image_create(256, 256, 1);
    image_fill(img, 0xFF000000);
    image_radial(img, 0.0, 1.0);
    image_set_alpha(img, img);
    image_upload(img, 1);
    image_free(img);
}

void make_everything(bool english) {
    make_feedback_texture();
    make_sheet_list();
    make_bar_texture();
    make_poem_texture(english);
    make_film_texture();
    make_stars();
    make_plasma_texture();
    make_sign_texture();
    make_sprite_texture();
}

// The stars without a change of the generator.
std::vector<Star> stars() {
    const RandomState before = g_random;
    std::vector<Star> made = make_stars();
    g_random = before;
    return made;
}

// --- The flat layer ---

void draw_starfield(float t) {
    glPointSize(2);
    glEnable(GL_BLEND);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    glBegin(GL_POINTS);
    for (const Star& star : stars()) {
        const float grey = rounded(-1 / static_cast<double>(star.z));
        glColor3f(grey, grey, grey);
        glVertex3d(star.x - 0.5 * t - 1, star.y, star.z);
    }
    glEnd();
}

void draw_plasma_flash(unsigned plasma, float t) {
    begin_2d();
    double a = 1;
    const struct {
        double from, to, shift;
    } flashes[] = {{14, 22, -1536}, {23.2, 28, -1024}, {28.4, 33, -1024}};
    for (const auto& flash : flashes) {
        if (t <= flash.from || t >= flash.to) continue;
        expected::bind(plasma);
        glRotatef(rounded(12.0 * t), 0, 0, 1);
        glTranslated(flash.shift, flash.shift, 0);
        a = t - flash.from;
        if (a > 1) a = 1 - (t - flash.from - 1) / 3;
    }
    if (a < 1) {
        glEnable(GL_TEXTURE_2D);
        glEnable(GL_BLEND);
        blend_over();
        glColor4f(1, 1, 1, rounded(a));
        expected::overlay_quad(0, 0, 3072, 2304);
        glColor4f(1, 1, 1, rounded(a / 2));
        glTranslated(1024, 1024, 0);
        glRotatef(rounded(-24.0 * t), 0, 0, 1);
        glTranslated(-1024, -1024, 0);
        expected::overlay_quad(0, 0, 3072, 2304);
    }
    end_2d();
}

void draw_sign(unsigned sign, float t) {
    const double a = 1 - (t - 60.0) * 0.25;
    expected::bind(sign);
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    blend_over();
    glColor4f(1, 1, 1, 1);
    glTranslated(2048 * a - 1024, 0, 0);
    expected::overlay_quad(0, 0, 1024, 768);
    end_2d();
}

void draw_bar(double s) {
    const double y = (s + 1) * 384 - 85;
    glBegin(GL_QUADS);
    expected::corner(0, 0, 0, y, 1);
    expected::corner(1, 0, 0, y + 38.4, 1);
    expected::corner(1, 1, 1024, y + 38.4, 1);
    expected::corner(0, 1, 1024, y, 1);
    glEnd();
}

void draw_raster_bars(unsigned bar, float t) {
    begin_2d();
    expected::bind(bar);
    glDisable(GL_LIGHTING);
    const double a = std::min(1.0, (t - 5.5) / 3);
    glColor4f(0, 1, 0, rounded(a));
    for (int i = 0; i <= 3; ++i) draw_bar(0.8 * std::sin(((t - 5.5) + 0.3 * i) * 0.8841941292986465));
    glColor4f(1, 0, 0, rounded(a));
    for (int i = 0; i <= 3; ++i) draw_bar(0.8 * std::sin(((t - 5.5) + 0.15 + 0.3 * i) * 0.8841941292986465));
    glEnable(GL_LIGHTING);
    end_2d();
}

double line_position(int i, float t) {
    if (i <= 5) return (i + 0.5) * 1024 - 243.2 * t;
    if (i == 6) return 8.5 * 1024 - 281.6 * t;
    if (i <= 10) return (i + 3) * 1024 - 294.4 * t;
    if (i <= 18) return (i + 12) * 1024 - 422.4 * t;
    return (i + 11.5) * 1024 - 422.4 * t;
}

void draw_film_and_poem(const Names& names, float t) {
    begin_2d();
    expected::bind(names.film);
    glColor4f(1, 1, 1, 1);
    expected::overlay_quad(0, 614.4, 1024, 768);
    expected::bind(names.poem);
    for (int i = 0; i <= 21; ++i) {
        const double x = line_position(i, t);
        const double top = 0.01 + i * 3.0 / 70;
        const double bottom = 0.01 + (i + 1) * 3.0 / 70;
        glBegin(GL_QUADS);
        expected::corner(0, top, x, 675.84, 1);
        expected::corner(0, bottom, x, 714.24, 1);
        expected::corner(1, bottom, x + 1024, 714.24, 1);
        expected::corner(1, top, x + 1024, 675.84, 1);
        glEnd();
    }
    glEnd();
    end_2d();
}

void draw_sprite(unsigned sprite, double x, double y, double half_width, double half_height) {
    begin_2d();
    expected::bind(sprite);
    expected::overlay_quad(x - half_width, y - half_height, x + half_width, y + half_height);
    end_2d();
}

void draw_sprites_1(unsigned sprite, float t) {
    blend_over();
    random_seed(2000);
    double a = t - 35.5;
    if (a > 1) a = 1 - (t - 42.2);
    glColor4f(1, 1, 1, rounded(a));
    for (int i = 0; i < 20; ++i) {
        const double r1 = unit(random_next());
        const double r2 = unit(random_next());
        const double r3 = unit(random_next());
        const double h = -0.1 + 0.2 * r2 + 0.1;
        const double y = std::sin(t * static_cast<double>(rounded(r1 * 1000 - 500)) * k) * 230.4 + 384;
        const double x = std::cos(t * static_cast<double>(rounded(r3 * 3000 - 1500)) * k) * 230.4 + 512;
        draw_sprite(sprite, x, y, 1024 * h, 768 * h);
    }
}

void draw_sprites_2(unsigned sprite, float t) {
    blend_over();
    double a = (t - 47.0) / 3;
    if (a > 1) a = 1 - (t - 59.1);
    glColor4f(1, 1, 1, rounded(a));
    for (int i = 0; i <= 99; ++i) {
        const double y = std::sin((t + 0.25 * i) * 1.7683882585972932) * 230.4 + 384;
        const double x = std::cos((t + 0.125 * i) * 0.3536776517194586) * 384 + 512;
        draw_sprite(sprite, x, y, 61.44, 46.08);
    }
}

void draw_cube(float t) {
    glEnable(GL_BLEND);
    glDisable(GL_TEXTURE_2D);
    const double a = std::min(1.0, (t - 67.0) / 3);
    glTranslated(0, 0, -3);
    glScaled(1.5, 1.5, 1.5);
    glRotatef(rounded(60.0 * t), 0.3f, 1, 0.1f);
    if (t > 68) {
        glColor4f(0, 0, 0, 0);
        blend_over();
        draw_box_centered(0, 0, 0, 0.01, 0.5, 0.5);
    }
    glRotatef(rounded(70.0 * t), 1, 1, 1);
    glColor4f(0.3f, 0.3f, 1, rounded(a));
    blend_over();
    draw_box_centered(0, 0, 0, 0.3, 0.3, 0.3);
}

void draw_layer(const Names& names, float t) {
    glLoadIdentity();
    set_render_state(7);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (t > 43.2) draw_starfield(t);
    draw_plasma_flash(names.plasma, t);
    if (t > 60 && t < 64) draw_sign(names.sign, t);
    glEnable(GL_BLEND);
    blend_over();
    glDepthMask(0);
    glEnable(GL_TEXTURE_2D);
    if (t > 5.5) draw_raster_bars(names.bar, t);
    draw_film_and_poem(names, t);
    if (t > 35.5 && t < 43.2) draw_sprites_1(names.sprite, t);
    if (t > 47 && t < 60.1) draw_sprites_2(names.sprite, t);
    glDepthMask(1);
    glPushMatrix();
    if (t > 67) draw_cube(t);
    blend_over();
    glEnable(GL_TEXTURE_2D);
    glPopMatrix();
}

// --- The room ---

struct Point {
    float v[3];
};

Point film_point(double m, double offset) {
    const double w = 100 * k;
    return {{rounded(5 * std::sin((m + offset) * w)), rounded(1.78 * m),
             rounded(5 * std::cos((m + offset) * w))}};
}

Point film_edge(const Point& p, const Point& next) {
    const float outwards[3] = {p.v[0], 0, p.v[2]};
    const float along[3] = {next.v[0] - p.v[0], next.v[1] - p.v[1], next.v[2] - p.v[2]};
    float across[3];
    float scaled[3];
    vec3_scale_by_length(scaled, vec3_cross(across, outwards, along));
    Point edge;
    for (int i = 0; i < 3; ++i) edge.v[i] = rounded(0.03 * scaled[i]);
    return edge;
}

void film_corner(int s, int t, const Point& p) {
    glTexCoord2d(s, t);
    glVertex3f(p.v[0], p.v[1], p.v[2]);
}

Point plus(const Point& a, const Point& b) { return {{a.v[0] + b.v[0], a.v[1] + b.v[1], a.v[2] + b.v[2]}}; }

void draw_film_ribbon(double offset) {
    glBegin(GL_QUADS);
    for (int n = 0; n <= 79; ++n) {
        const Point p0 = film_point(n, offset);
        const Point p1 = film_point(n + 1, offset);
        const Point p2 = film_point(n + 2, offset);
        const Point e0 = film_edge(p0, p1);
        const Point e1 = film_edge(p1, p2);
        glNormal3d(0, 0, -1);
        film_corner(0, 0, p0);
        film_corner(0, 1, p1);
        film_corner(1, 1, plus(p1, e1));
        film_corner(1, 0, plus(p0, e0));
    }
    glEnd();
}

void draw_film_pair(double time) {
    glPushMatrix();
    glTranslated(0, 80, -20);
    glRotatef(rounded(time * 300), 0, 1, 0);
    glScaled(3, 3, 3);
    draw_film_ribbon(0);
    draw_film_ribbon(18);
    glPopMatrix();
}

void draw_film_ribbons(unsigned ribbon, double time) {
    glPushMatrix();
    glRotatef(90, 0, 0, 1);
    glEnable(GL_BLEND);
    blend_over();
    glColor4f(1, 1, 1, 1);
    expected::bind(ribbon);
    draw_film_pair(time);
    glRotatef(180, 0, 0, 1);
    draw_film_pair(time);
    glPopMatrix();
}

void draw_tube_row(unsigned beam) {
    glRotatef(90, 0, 0, -1);
    gluQuadricNormals(g_quadric, GLU_SMOOTH);
    gluQuadricTexture(g_quadric, GL_TRUE);
    gluQuadricOrientation(g_quadric, GLU_INSIDE);
    glEnable(GL_BLEND);
    expected::bind(beam);
    set_specular(1.0f, 12);
    for (int i = 0; i <= 19; ++i) {
        glPushMatrix();
        glTranslated(0, 0, 40 * i);
        glColor4f(1, 0, 0, 0.5f);
        blend_over();
        gluCylinder(g_quadric, 0.3, 0.3, 40, 100, 1);
        glColor4f(1.2f, 0, 0, 0.3f);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE);
        gluCylinder(g_quadric, 0.3, 0.3, 40, 100, 1);
        glPopMatrix();
    }
}

void draw_tube_rows(unsigned beam) {
    glPushMatrix();
    glRotatef(90, 0, 1, 0);
    glTranslated(20, 0, 80);
    glScaled(3, 3, 3);
    draw_tube_row(beam);
    glPopMatrix();
    glPushMatrix();
    glRotatef(90, 0, -1, 0);
    glTranslated(-20, 0, 80);
    glScaled(3, 3, 3);
    draw_tube_row(beam);
    glPopMatrix();
}

void draw_walls(const Names& names) {
    glPushMatrix();
    glDisable(GL_BLEND);
    expected::bind(names.wall);
    glRotatef(90, -1, 0, 0);
    glTranslated(-12, 0, -50);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    glColor4f(1, 1, 1, 1);
    for (int r = 0; r <= 10; ++r) {
        for (int c = 0; c <= 19; ++c) {
            const double x = -108 + 12 * c;
            const double y = 30 * r;
            const double d = 4 < c && c < 15 && r != 10 ? 25 : 70;
            const double s = 20 * std::sin(c * 0.15915494327375637) + 2;
            glPushMatrix();
            glTranslated(x, y, -20 - s);
            glScaled(12, 30, d + s);
            glCallList(names.box);
            glPopMatrix();
            glPushMatrix();
            glTranslated(x, y, 120 - d);
            glScaled(12, 30, d + s);
            glCallList(names.box);
            glPopMatrix();
        }
    }
    glDisable(GL_CULL_FACE);
    glPopMatrix();
}

void draw_sheet(const Names& names) {
    expected::bind(names.feedback);
    glEnable(GL_BLEND);
    blend_over();
    glColor4f(1, 1, 1, 0.8f);
    glPushMatrix();
    glTranslated(0, 0, 2);
    glRotatef(180, 0, 0, 1);
    glScaled(2.9, 2.2, 3);
    glCallList(names.sheet);
    glPopMatrix();
    glDisable(GL_BLEND);
}

void draw_fading_text_screen(unsigned panel, double a) {
    glLoadIdentity();
    set_render_state(7);
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    glEnable(GL_BLEND);
    glDepthMask(0);
    glTranslated(-100, 0, 0);
    glDisable(GL_TEXTURE_2D);
    blend_over();
    glColor4f(0.5f, 0.5f, 0.5f, rounded(a));
    expected::overlay_quad(0, 0, 2048, 768);
    glEnable(GL_TEXTURE_2D);
    expected::bind(panel);
    glColor4f(2, 2, 2, rounded(a));
    expected::overlay_quad(256, 128, 768, 640);
    end_2d();
    glDepthMask(1);
    glEnable(GL_LIGHTING);
}

// The frame t seconds after the first of `starts` starts.
void draw_frame(const Names& names, int starts, float t, double time) {
    if (t >= 23.2 && t <= 71) {
        glViewport(0, 0, 1024, 768);
        draw_layer(names, t);
        return;
    }
    glViewport(0, 0, 512, 512);
    draw_layer(names, t);
    glFlush();
    expected::bind(names.feedback);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 512, 512, 0);
    glViewport(0, 76, 1024, 614);
    glLoadIdentity();
    if (t < 13) {
        glTranslated(0, 0, 30.0 * t - 420);
    } else if (t < 71) {
        glTranslated(0, 0, -30);
    } else {
        glTranslated(0, 0, -30 - 5 * (t - 71.0));
    }
    if (starts == 1 || starts == 2) expected::look_at();
    set_render_state(7);
    glClearColor(0.5f, 0.5f, 0.5f, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw_film_ribbons(names.ribbon, time);
    draw_tube_rows(names.beam);
    draw_walls(names);
    draw_sheet(names);
    const double a = 1 - t / 3.0;
    if (a > 0) draw_fading_text_screen(names.panel, a);
    expected::letterbox_bars();
}

class Scroller : public SceneTest {
protected:
    Scroller() : SceneTest(kScroller, {kGreetings, kTextScreen}) {}

    void draw_expected(double time) override {
        draw_frame(names_, pass(), seconds_since_first_start(time), time);
    }

    // The frame at a local time as the scene sees it. The start at 74.0 is exact in single precision.
    recording::Log frame_at(double t) const { return frame(74.0 + t); }

    // Each bound from both sides and on itself.
    void expect_right_around(std::initializer_list<float> bounds) {
        for (float bound : bounds) {
            for (float t : {std::nextafterf(bound, 0.0f), bound, std::nextafterf(bound, 99.0f)}) {
                EXPECT_TRUE(frame_is_right(74.0 + static_cast<double>(t))) << "after " << t << " s";
            }
        }
    }
};

} // namespace

TEST(ScrollerPreparation, MakesItsThingsInOrderInBothLanguages) {
    ASSERT_TRUE(has_font("./Vera.ttf"));
    for (int english : {0, 1}) {
        g_english = english;
        EXPECT_TRUE(prepares(kScroller, [english] { make_everything(english); })) << english;
    }
}

TEST(ScrollerPreparation, WithoutTheFontThePoemAndTheSignAreInvisible) {
    WorkingFolder empty({});
    prepare({kScroller});
    for (size_t i : {size_t(1), size_t(4)}) {
        const recording::Upload& upload = recording::uploads().at(i);
        EXPECT_EQ(upload.pixels, std::vector<unsigned char>(upload.pixels.size(), 0)) << i;
    }
}

TEST_F(Scroller, TheSheetHangsInTheRoomUntilDirectMode) {
    start_pass(1, 74.0);
    expect_right_frames({74.0, 74.1, 75.5, 76.99});
    start_pass(2, 77.0);
    expect_right_frames({77.0, 77.5, 79.6, 81.0, 84.0, 87.0, 88.5, 89.5, 93.0, 96.5, 97.1});
}

TEST_F(Scroller, TheLayerFillsTheScreenInDirectMode) {
    start_pass(2, 74.0);
    expect_right_frames({97.3,  98.5,  101.9, 102.2, 102.5,  104.0, 106.9, 108.0, 110.0, 111.0, 116.5, 117.1,
                         118.0, 122.0, 125.0, 133.3, 134.05, 135.0, 136.5, 138.5, 141.1, 143.0, 144.9});
}

TEST_F(Scroller, AfterDirectModeTheCameraPullsBack) {
    start_pass(2, 74.0);
    expect_right_frames({145.1, 149.0, 152.99});
}

TEST_F(Scroller, AStartThatSinglePrecisionRoundsIsCountedFromTheRoundedTime) {
    start_pass(1, 74.3);
    EXPECT_TRUE(frame_is_right(74.3));
    EXPECT_TRUE(frame_is_right(75.7));
    EXPECT_TRUE(frame_is_right(100.1));
}

TEST_F(Scroller, TheFirstStartSetsTheClockAndLaterOnesDoNot) {
    start_pass(1, 74.0);
    start_pass(2, 77.0);
    start_pass(3, 90.0);
    EXPECT_TRUE(frame_is_right(91.0)); // 17 seconds in; without a look-at
    EXPECT_EQ(recording::count(frame_at(17.0), "gluLookAt"), 0);
    EXPECT_TRUE(frame_is_right(120.0));
}

TEST_F(Scroller, TheModeBoundsAreStrict) {
    start_pass(2, 74.0);
    expect_right_around({23.2f, 71.0f});
    EXPECT_EQ(recording::count(frame_at(23.19), "glCopyTexImage2D"), 1);
    EXPECT_EQ(recording::count(frame_at(static_cast<double>(23.2f)), "glCopyTexImage2D"), 0);
    EXPECT_EQ(recording::count(frame_at(71.0), "glCopyTexImage2D"), 0);
    EXPECT_EQ(recording::count(frame_at(71.01), "glCopyTexImage2D"), 1);
}

TEST_F(Scroller, EverythingComesAndGoesAtItsSecond) {
    start_pass(2, 74.0);
    expect_right_around({3.0f});       // the text screen has gone
    expect_right_around({5.5f, 8.5f}); // raster bars, then at full strength
    expect_right_around({13.0f});      // the camera stops
    expect_right_around({14.0f, 15.0f, 18.0f, 22.0f, 23.2f, 24.2f, 28.0f, 28.4f, 29.4f, 33.0f}); // plasma
    expect_right_around({35.5f, 36.5f, 43.2f}); // sprites, then the stars
    expect_right_around({47.0f, 50.0f, 60.1f}); // more sprites
    expect_right_around({60.0f, 62.0f, 64.0f}); // the sign
    expect_right_around({67.0f, 68.0f, 70.0f}); // the cube, its slab, at full strength
}

TEST_F(Scroller, APlasmaFlashDrawsNothingAtItsFullInstantAndGoesOnBelowZero) {
    start_pass(1, 74.0);
    const auto quads = [this](double t) {
        int found = 0;
        for (const recording::Call& call : recording::only(frame_at(t), "glVertex3d")) {
            found += call == recording::Call{"glVertex3d", {3072.0, 2304.0, 1.0}};
        }
        return found;
    };
    EXPECT_EQ(quads(14.99), 2);
    EXPECT_EQ(quads(15.0), 0);
    EXPECT_EQ(quads(15.01), 2);
    EXPECT_EQ(quads(21.0), 2); // alpha -1 by then
}

TEST_F(Scroller, TheSignSlidesFromOffTheRightEdgeToOffTheLeftOne) {
    start_pass(2, 74.0);
    const auto shift = [this](float t) {
        return std::get<double>(
            recording::only(frame_at(static_cast<double>(t)), "glTranslated").at(0).arguments[0]);
    };
    EXPECT_NEAR(shift(std::nextafterf(60.0f, 61.0f)), 1024.0, 0.01);
    EXPECT_NEAR(shift(62.0f), 0.0, 0.01);
    EXPECT_NEAR(shift(std::nextafterf(64.0f, 63.0f)), -1024.0, 0.01);
}

TEST_F(Scroller, ABackToFrontClockIsDrawnToo) {
    start_pass(1, 74.0);
    EXPECT_TRUE(frame_is_right(73.0)); // one second before its start, after a seek
}
