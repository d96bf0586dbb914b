#include <GL/glu.h>

#include <cmath>

#include "show/image/filters.h"
#include "show/image/generators.h"
#include "show/image/image.h"
#include "show/image/random.h"
#include "show/image/upload.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"
#include "show/text/text.h"
#include "tests/calls/expected_layers.h"
#include "tests/calls/scene_test.h"

namespace {

// --- How the textures are made ---

void make_wall_texture() {
    Image* plasma = image_create(256, 256, 9);
    image_plasma(plasma, 4104, 1.0);
    Image* wall = image_create(256, 256, 9);
    image_fill(wall, 0xff000095);
    image_line(wall, 0, 0, 255, 0, 0xff00004b);
    image_line(wall, 0, 255, 255, 255, 0xff000000);
    image_line(wall, 0, 0, 0, 255, 0xff000000);
    image_line(wall, 255, 0, 255, 255, 0xff000000);
    image_blur_directional(wall, 3, 0.0, 1.0, 1.0);
    image_blend(wall, plasma, 4, 76);
    image_upload(wall, 1);
    image_free(plasma);
    image_free(wall);
}

void make_ribbon_texture() {
    Image* edges = image_create(256, 256, 9);
    image_fill(edges, 0xff000000);
    image_line(edges, 12, 0, 13, 255, 0xffffffff);
    image_line(edges, 242, 0, 242, 255, 0xffffffff);
    image_blur_h(edges, 19, 25.0);
    Image* band = image_create(256, 256, 1);
    image_fill(band, 0xffffffff);
    Image* middle = image_create_like(edges);
    image_fill(middle, 0xff000000);
    image_fill_rect(middle, 10, 0, 236, 256, 0xff959595);
    image_blend(edges, middle, 1, 244);
    image_fill_rect(band, 10, 0, 236, 256, 0xe95e5800);
    image_set_alpha(band, edges);
    image_blend(band, edges, 1, 256);
    image_upload(band, 1);
    image_free(edges);
    image_free(band);
    image_free(middle);
}

void make_beam_texture() {
    Image* img = image_create(256, 256, 9);
    image_plasma(img, 32768, 0.67);
    image_upload(img, 1);
    image_free(img);
}

void make_shaft_texture() {
    Image* img = image_create(128, 256, 1);
    image_fill(img, 0xff000000);
    image_line(img, 64, 0, 64, 255, 0xffffffff);
    image_blur_h(img, 63, 85.0);
    image_upload(img, 1);
    image_free(img);
}

void make_words_texture() {
    Font* font = font_load("./Vera.ttf");
    Image* img = image_create(512, 512, 1);
    image_fill(img, 0xff000000);
    draw_text(img, font, 6, 37, 80, 32, -48, "kOLTVARE");
    draw_text(img, font, 1, 96, 69, 32, -48, "nolts varimeer");
    draw_text(img, font, 1, 160, 92, 32, -39, "skrelmunt");
    draw_text(img, font, 0, 224, 111, 32, -37, "froskets");
    draw_text(img, font, 1, 288, 154, 32, -37, "ulvan");
    draw_text(img, font, 1, 352, 92, 32, -37, "tindelwok");
    draw_text(img, font, 1, 416, 130, 32, -37, "gravnik");
    draw_text(img, font, 1, 480, 66, 32, 0, "rolm @ pYX05");
    image_levels(img, 7, 0, 65535, 65535, 0);
    image_rank(img, 0);
    image_levels(img, 7, 0, 65535, 65535, 0);
    image_blur_h(img, 4, 1.0);
    image_set_alpha(img, img);
    image_upload(img, 1);
    image_free(img);
    font_free(font);
}

void make_everything() {
    make_wall_texture();
    make_ribbon_texture();
    make_beam_texture();
    make_shaft_texture();
    make_words_texture();
    const unsigned box = glGenLists(1);
    glNewList(box, GL_COMPILE);
    draw_box(0, 0, 0, 1, 1, 1);
    glEndList();
}

// --- The frame ---

// The three layers that a pass shows.
struct Layers {
    bool wall, ribbon, beam;
};

Layers layers_of(int pass) {
    switch (pass) {
    case 0: // not started yet
        return {false, false, false};
    case 1:
        return {false, true, false};
    case 3:
        return {true, true, true};
    default:
        return {false, true, true};
    }
}

float scroll_at(int pass, float t) {
    if (pass != 3) return 0.0f;
    if (t > 1.4) return static_cast<float>(200.0 * t + 100.0);
    return static_cast<float>(20.0 * t + 100.0);
}

void place_camera(int pass, float t) {
    switch (pass) {
    case 1:
        glEnable(GL_BLEND);
        set_render_state(7);
        glTranslated(30, -200, -30);
        break;
    case 2: {
        const double d = 4.0;
        const float grey = static_cast<float>(1 - (0.5 / d) * t);
        glClearColor(grey, grey, grey, 1);
        glTranslated(30 - (30 / d) * t, (100 / d) * t - 100, (30 / d) * t - 30);
        glRotatef(rounded((60 / d) * t), -1, 0, 0);
        glTranslated(0, -100, 0);
        break;
    }
    case 3:
        glClearColor(0.5f, 0.5f, 0.5f, 0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glRotatef(60, -1, 0, 0);
        if (t > 1.4) glRotatef(rounded(std::sin((1.4 - t) * 0.21220659103167516) * 90), 0, 0.2f, 1);
        if (t > 7.0) {
            glRotatef(rounded(std::sin((7.0 - t) * 0.2829421213755669) * 90), 0, 0.2f, 1);
            glRotatef(rounded(std::sin((7.0 - t) * 0.03536776517194586) * 45), 1, 0, 0);
        }
        break;
    case 4:
        glClearColor(0.5f, 0.5f, 0.5f, 0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glRotatef(60, -1, 0, 0);
        break;
    default:
        break;
    }
}

void draw_wall(const Names& names, float scroll) {
    glDisable(GL_BLEND);
    expected::bind(names.wall);
    glTranslated(0, -scroll, 0);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    glColor3f(1, 1, 1);
    double y = 0;
    for (int i = 0; i <= 599; ++i) {
        random_seed(2000);
        const double h = random_next() * std::pow(2.0, -27) - 20 + 30;
        y += h;
        if (y < scroll - 600.0) continue;
        if (y > scroll + 600.0) break;
        random_seed(static_cast<unsigned>(y));
        double x = -120;
        for (int j = 0; j <= 19; ++j) {
            x += 12;
            const double r = random_next();
            const double c = std::pow(std::cos(j * 0.15915494327375637) * 3.3, 4.0);
            glPushMatrix();
            glTranslated(x, y - h, -20);
            glScaled(12, h, r * std::pow(2.0, -30) - 2.0 + 2.0 + c);
            glCallList(names.box);
            glPopMatrix();
        }
    }
}

void draw_shafts(const Names& names, float scroll) {
    glDisable(GL_CULL_FACE);
    expected::bind(names.shaft);
    set_render_state(5);
    glEnable(GL_BLEND);
    glColor4f(1, 1, 1, 0.1f);
    glBlendFunc(GL_ALPHA, GL_SRC_ALPHA);
    glDepthMask(0);
    random_seed(20000);
    for (int i = 0; i <= 4; ++i) {
        const int z = 2 * i - 10;
        for (int j = 0; j <= 49; ++j) {
            const int top = 100 * j + 100;
            const int bottom = 100 * j;
            if (top < scroll - 600.0) continue;
            if (top > scroll + 600.0) break;
            glBegin(GL_QUADS);
            expected::corner(0, 0, 50, top, z);
            expected::corner(1, 0, -50, top, z);
            expected::corner(1, 1, -50, bottom, z);
            expected::corner(0, 1, 50, bottom, z);
            glEnd();
        }
    }
}

void draw_beam(const Names& names, float scroll) {
    glPushMatrix();
    glDepthMask(1);
    glRotatef(90, -1, 0, 0);
    glTranslated(0, -10, 0);
    expected::beam_material(names.beam);
    expected::red_beam(scroll);
    glDepthMask(0);
    glPopMatrix();
}

void draw_ribbon(const Names& names, float scroll) {
    glPushMatrix();
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glTranslated(0, -10, 10);
    glRotatef(rounded(-(g_demo_time * 300)), 0, 1, 0);
    glColor4f(1, 1, 1, 1);
    expected::bind(names.ribbon);
    glBegin(GL_QUADS);
    expected::helix_quads(0.0f, scroll);
    expected::helix_quads(18.0f, scroll);
    glEnd();
    glDepthMask(1);
    glPopMatrix();
}

int caption_row(int pass, float t) {
    if (pass != 3) return -1;
    if (t > 1.4 && t < 7.0) return 0;
    if (t > 7.0 && t < 13.0) return 1;
    if (t > 13.0 && t < 18.0) return 2;
    if (t > 18.0) return 3;
    return -1;
}

// The frame of a pass, with t seconds gone.
void draw_frame(const Names& names, int pass, float t) {
    const Layers layers = layers_of(pass);
    const float scroll = scroll_at(pass, t);
    glLoadIdentity();
    set_render_state(7);
    expected::look_at();
    place_camera(pass, t);
    glEnable(GL_TEXTURE_2D);
    if (layers.wall) {
        draw_wall(names, scroll);
        draw_shafts(names, scroll);
    }
    if (layers.beam) draw_beam(names, scroll);
    if (layers.ribbon) draw_ribbon(names, scroll);
    expected::caption(names.words, caption_row(pass, t));
    expected::letterbox();
}

class Greetings : public SceneTest {
protected:
    Greetings() : SceneTest(kGreetings) {}
    void draw_expected(double time) override { draw_frame(names_, pass(), seconds_in(time)); }

    // The row of the words that a frame shows, -1 for none.
    int row_shown(double time) {
        const recording::Log calls = frame(time);
        for (size_t i = 1; i < calls.size(); ++i) {
            if (calls[i] == recording::Call{"glVertex3d", {512.0, 668.16, 1.0}}) {
                return static_cast<int>(std::get<double>(calls[i - 1].arguments[1]) * 8);
            }
        }
        return -1;
    }
};

} // namespace

TEST(GreetingsTextures, AreMadeInOrder) {
    ASSERT_TRUE(has_font("./Vera.ttf"));
    EXPECT_TRUE(prepares(kGreetings, make_everything));
}

TEST(GreetingsTextures, WithoutTheFontTheWordsAreInvisible) {
    WorkingFolder empty({});
    prepare({kGreetings});
    const std::vector<unsigned char> nothing(512 * 512 * 2, 0);
    EXPECT_EQ(recording::uploads().at(4).pixels, nothing);
}

TEST_F(Greetings, BeforeItsFirstStartItShowsNoLayer) { EXPECT_TRUE(frame_is_right(0.0)); }

TEST_F(Greetings, ThePassOneFrameIsTheRibbonAlone) {
    start_pass(1, 0.0);
    expect_right_frames({0.0, 0.016, 1.4, 3.0, 6.2});
}

TEST_F(Greetings, ThePassTwoFrameBringsTheCameraIn) {
    start_pass(2, 6.2);
    expect_right_frames({6.2, 6.3, 7.7, 8.2, 9.999, 10.2, 11.0});
}

TEST_F(Greetings, ThePassThreeFrameIsTheWholeWall) {
    start_pass(3, 10.0);
    expect_right_frames({10.0, 10.5, 11.3, 11.5, 12.0, 15.5, 16.9, 17.0, 17.1, 20.0, 23.0, 25.0, 28.0, 33.9});
}

TEST_F(Greetings, ThePassThreeTimeBoundsAreStrict) {
    start_pass(3, 10.0);
    // The local time is single precision: the float nearest to 1.4 lies below 1.4.
    for (float bound : {1.4f, 7.0f, 13.0f, 18.0f}) {
        for (float t : {std::nextafterf(bound, 0.0f), bound, std::nextafterf(bound, 99.0f)}) {
            EXPECT_TRUE(frame_is_right(10.0 + static_cast<double>(t))) << t;
        }
    }
}

TEST_F(Greetings, FarBeyondTheirEndTheLoopsRunOutOfThings) {
    start_pass(3, 10.0);
    // Steps of 1000 units of height, of which 1200 are drawn: the end of the shafts (5000), of the beams
    // (7960) and of the wall (somewhere from 6000 to 25200) is on one of them.
    for (double t = 25.0; t <= 130.0; t += 5.0) EXPECT_TRUE(frame_is_right(10.0 + t)) << t;
    EXPECT_TRUE(frame_is_right(10.0 + 354.0)); // the helix ends at 71200
    EXPECT_TRUE(frame_is_right(10.0 + 360.0));
}

TEST_F(Greetings, WhatStandsExactlyOnACullingBoundIsDrawn) {
    start_pass(3, 10.0);
    // Scroll height 1200: shafts end at 600 and 1800, beams stand at 600 and 1800.
    EXPECT_TRUE(frame_is_right(15.5));
    // Scroll height 1180: the helix passes through 680 and 1780, multiples of 89.
    EXPECT_TRUE(frame_is_right(15.4));
}

TEST_F(Greetings, AFourthPassHasNoWallAndAFifthKeepsItsLayers) {
    start_pass(4, 34.0);
    EXPECT_TRUE(frame_is_right(35.0));
    start_pass(5, 36.0);
    EXPECT_TRUE(frame_is_right(37.0));
}

TEST_F(Greetings, CaptionsFollowThePassAndItsTime) {
    start_pass(1, 0.0);
    EXPECT_EQ(row_shown(3.0), -1);
    start_pass(2, 6.2);
    EXPECT_EQ(row_shown(8.2), -1);
    start_pass(3, 10.0);
    EXPECT_EQ(row_shown(10.0), -1);
    EXPECT_EQ(row_shown(10.0 + static_cast<double>(1.4f)), -1);
    EXPECT_EQ(row_shown(11.5), 0);
    EXPECT_EQ(row_shown(16.99), 0);
    EXPECT_EQ(row_shown(17.0), -1);
    EXPECT_EQ(row_shown(17.01), 1);
    EXPECT_EQ(row_shown(22.99), 1);
    EXPECT_EQ(row_shown(23.0), -1);
    EXPECT_EQ(row_shown(23.01), 2);
    EXPECT_EQ(row_shown(27.99), 2);
    EXPECT_EQ(row_shown(28.0), -1);
    EXPECT_EQ(row_shown(28.01), 3);
    EXPECT_EQ(row_shown(34.0), 3);
}

TEST_F(Greetings, AllRowsOfTheWallHaveTheSameHeight) {
    start_pass(3, 10.0);
    const recording::Log boxes = recording::only(frame(20.0), "glScaled");
    ASSERT_GT(boxes.size(), 40u);
    for (const recording::Call& box : boxes) EXPECT_EQ(box.arguments[1], boxes[0].arguments[1]);
    const double height = std::get<double>(boxes[0].arguments[1]);
    EXPECT_GE(height, 10.0);
    EXPECT_LT(height, 42.0);
}

TEST_F(Greetings, WithoutScrollThereIsNoWallAndTheRibbonStartsAtZero) {
    start_pass(2, 6.2);
    const recording::Log calls = frame(8.0);
    EXPECT_EQ(recording::count(calls, "glCallList"), 0);
    const recording::Log points = recording::only(calls, "glVertex3f");
    EXPECT_EQ(points.at(0).arguments[1], recording::Argument(0.0));
    EXPECT_EQ(recording::count(calls, "gluCylinder"), 2 * 17);
}

TEST_F(Greetings, TheTimeOfAPassCountsFromItsSinglePrecisionStart) {
    start_pass(2, 6.2);
    // 6.2 narrowed to float lies above 6.2, so the first frame's time is slightly negative.
    EXPECT_TRUE(frame_is_right(6.2));
    const recording::Call colour = recording::only(frame(6.2), "glClearColor").at(0);
    EXPECT_EQ(std::get<double>(colour.arguments[0]), 1.0f);
}
