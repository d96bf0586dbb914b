#include <GL/gl.h>

#include <cmath>

#include "show/image/filters.h"
#include "show/image/image.h"
#include "show/image/upload.h"
#include "show/stage/loading_screen.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/show_time.h"
#include "show/text/text.h"
#include "tests/calls/expected_layers.h"
#include "tests/calls/scene_test.h"

namespace {

// How the title's picture is made.
void make_title_texture() {
    Font* font = font_load("./Vera.ttf");
    Image* img = image_create(512, 512, 1);
    image_fill(img, 0xFF000000);
    draw_text(img, font, 0, 210, 108, 20, 0, "sKAV of");
    draw_text(img, font, 2, 240, 68, 20, 0, "pRANDIKS");
    draw_text(img, font, 15, 302, 49, 20, -56, "...and preselected");
    draw_text(img, font, 2, 160, 55, 12, -40, "in the");
    image_levels(img, 2, 0, 65535, 65535, 0);
    image_rank(img, 0);
    image_upload(img, 1);
    image_free(img);
    font_free(font);
    loading_step();
}

// The frame, `alpha` being that of the lettering.
void draw_title(unsigned texture, float alpha) {
    glClearColor(1, 1, 1, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glLoadIdentity();
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    expected::bind(texture);
    glColor4f(1, 1, 1, alpha);
    glEnable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDepthMask(GL_FALSE);
    glTranslated(-100.0, 0.0, 0.0);
    glBegin(GL_QUADS);
    glTexCoord2d(0.001, 0);
    glVertex3i(307, 256, 1);
    glTexCoord2d(0.001, 1);
    glVertex3i(307, 512, 1);
    glTexCoord2d(0.999, 1);
    glVertex3i(717, 512, 1);
    glTexCoord2d(0.999, 0);
    glVertex3i(717, 256, 1);
    glEnd();
    end_2d();
    glDepthMask(GL_TRUE);
    glEnable(GL_LIGHTING);
    end_2d();
}

// Alpha of the lettering at a show time.
double alpha_at(double time) {
    g_demo_time = time;
    const recording::Log calls = recording::only(recording::calls_of(g_scenes[kTitle].render), "glColor4f");
    return std::get<double>(calls.at(0).arguments.at(3));
}

} // namespace

TEST(Title, PreparesItsLetteringAndStepsTheLoadingScreenOnceMore) {
    ASSERT_TRUE(has_font("./Vera.ttf"));
    EXPECT_TRUE(prepares(kTitle, make_title_texture));
}

TEST(Title, WithoutTheFontItsTextureIsPlainWhite) {
    WorkingFolder empty({});
    prepare({kTitle});
    const std::vector<unsigned char> white(512 * 512, 255);
    EXPECT_EQ(recording::uploads().at(0).pixels, white);
}

TEST(Title, StandsAtFullStrengthUntilSixSecondsAndThenFadesPastZero) {
    const Names names = prepare({kTitle});
    const struct {
        double time;
        float alpha;
    } moments[] = {{0.0, 1.0f}, {5.9, 1.0f},   {6.0, 1.0f},  {6.5, 0.75f}, {7.0, 0.5f},
                   {8.0, 0.0f}, {8.5, -0.25f}, {9.0, -0.5f}, {10.0, -1.0f}};
    for (const auto& moment : moments) {
        g_demo_time = moment.time;
        EXPECT_TRUE(same_calls(g_scenes[kTitle].render, [&] { draw_title(names.title, moment.alpha); }))
            << moment.time;
    }
}

TEST(Title, FadesInSinglePrecisionTime) {
    prepare({kTitle});
    const float t = static_cast<float>(6.7);
    EXPECT_EQ(alpha_at(6.7), static_cast<float>(1.0 - (t - 6.0) * 0.5));
    const float just_after = std::nextafterf(6.0f, 7.0f);
    EXPECT_EQ(alpha_at(just_after), static_cast<float>(1.0 - (static_cast<double>(just_after) - 6.0) * 0.5));
    EXPECT_LT(alpha_at(just_after), 1.0);
    EXPECT_EQ(alpha_at(std::nextafter(6.0, 7.0)), 1.0); // not yet there in single precision
}

TEST(Title, FollowsShowTimeAndNotItsOwn) {
    prepare({kTitle});
    g_scene_time = 9.0;
    EXPECT_EQ(alpha_at(1.0), 1.0);
}

TEST(Title, CountsFromTheSceneTimeThatItWasPreparedAt) {
    g_scene_time = 1.5;
    prepare({kTitle});
    EXPECT_EQ(alpha_at(7.5), 1.0);
    EXPECT_EQ(alpha_at(8.5), 0.5);
}
