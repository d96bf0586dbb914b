#include <GL/glu.h>

#include "show/image/filters.h"
#include "show/image/image.h"
#include "show/image/progress.h"
#include "show/image/random.h"
#include "show/image/upload.h"
#include "show/stage/language.h"
#include "show/stage/loading_screen.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/show_time.h"
#include "show/text/text.h"
#include "tests/calls/expected_layers.h"
#include "tests/calls/scene_run.h"

namespace {

// One language's lines and the glyph width of its list.
struct Language {
    const char* bored;
    const char* want;
    const char* first;
    const char* second;
    const char* third;
    int width;
};

constexpr Language kEnglish = {"boooring..?",   "you want:", "no more flybyes...?!", "no more abstracts...?!",
                               "oldskool...!!", 43};
constexpr Language kGerman = {
    "laaangweilig..?", "du willst:", "keine Flybyes...?!", "keine Abstraktitaeten...?!", "oldskool...!!", 37};

void make_panel(const Language& text) {
    Font* font = font_load("./Vera.ttf");
    Image* img = image_create(512, 512, 1);
    image_fill(img, 0xFF000000);
    draw_text(img, font, 10, 191, 80, 99, -77, text.bored);
    font_reopen(font, "./Vera.ttf");
    draw_text(img, font, 20, 277, 43, 43, -28, text.want);
    draw_text(img, font, 20, 327, text.width, 43, -28, text.first);
    draw_text(img, font, 20, 374, text.width, 43, -28, text.second);
    draw_text(img, font, 20, 425, text.width, 43, -28, text.third);
    image_levels(img, 7, 0, 65535, 65535, 0);
    image_rank(img, 0);
    image_levels(img, 7, 0, 65535, 65535, 0);
    image_blur_h(img, 4, 1.0);
    image_set_alpha(img, img);
    image_upload(img, 1);
    image_free(img);
    font_free(font);
}

void draw_frame(unsigned panel) {
    glLoadIdentity();
    set_render_state(7);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    begin_2d();
    glDepthMask(0);
    glTranslated(-100, 0, 0);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glColor4f(0.5f, 0.5f, 0.5f, 1.0f);
    expected::overlay_quad(0, 0, 2048, 768);
    glEnable(GL_TEXTURE_2D);
    expected::bind(panel);
    glColor4f(1, 1, 1, 1);
    expected::overlay_quad(256, 128, 768, 640);
    end_2d();
    glDepthMask(1);
    expected::letterbox_bars();
}

} // namespace

TEST(TextScreenPanel, IsGermanUnlessEnglishWasChosen) {
    ASSERT_TRUE(has_font("./Vera.ttf"));
    g_english = 0;
    EXPECT_TRUE(same_calls(g_scenes[kTextScreen].prepare, [] { make_panel(kGerman); }));
}

TEST(TextScreenPanel, IsEnglishWhenEnglishWasChosen) {
    g_english = 1;
    EXPECT_TRUE(same_calls(g_scenes[kTextScreen].prepare, [] { make_panel(kEnglish); }));
}

TEST(TextScreenPanel, DiffersByLanguage) {
    g_english = 0;
    g_scenes[kTextScreen].prepare();
    g_english = 1;
    g_scenes[kTextScreen].prepare();
    EXPECT_NE(recording::uploads().at(0).pixels, recording::uploads().at(1).pixels);
}

TEST(TextScreenPanel, IsMadeInTheSameWayWhileEveryOperationRedrawsTheLoadingScreen) {
    g_progress_hook = loading_step;
    EXPECT_TRUE(same_calls(g_scenes[kTextScreen].prepare, [] { make_panel(kGerman); }));
}

TEST(TextScreenPanel, IsGreyWithAlphaAndClampsPlainlyAfterTheLoadingScreen) {
    g_progress_hook = loading_step;
    const recording::Log calls = recording::calls_of(g_scenes[kTextScreen].prepare);
    ASSERT_EQ(recording::uploads().size(), 1u);
    EXPECT_EQ(recording::uploads()[0].width, 512);
    EXPECT_EQ(recording::uploads()[0].height, 512);
    EXPECT_EQ(recording::uploads()[0].format, static_cast<unsigned>(GL_LUMINANCE_ALPHA));
    EXPECT_EQ(wrap_modes(calls), std::vector<unsigned>{GL_CLAMP});
}

TEST(TextScreenPanel, WithoutTheFontIsTransparent) {
    TemporaryDirectory empty({});
    g_scenes[kTextScreen].prepare();
    const std::vector<unsigned char> nothing(512 * 512 * 2, 0);
    EXPECT_EQ(recording::uploads().at(0).pixels, nothing);
}

TEST(TextScreen, StartSetsLightsProjectionAndFog) {
    EXPECT_TRUE(same_calls([] { start_at(kTextScreen, 67.5); },
                           [] {
                               expected::light_and_projection();
                               expected::fog(100.0f, 600.0f);
                           }));
}

TEST(TextScreen, StopAndReleaseDoNothing) {
    EXPECT_TRUE(recording::calls_of([] {
                    g_scenes[kTextScreen].stop();
                    g_scenes[kTextScreen].release();
                }).empty());
}

TEST(TextScreen, IsAStillPicture) {
    const Names names = prepare({kTextScreen});
    start_at(kTextScreen, 67.5);
    for (double time : {67.5, 70.0, 73.99, 0.0}) {
        g_demo_time = time;
        g_scene_time = time - 67.5;
        EXPECT_TRUE(same_calls(g_scenes[kTextScreen].render, [&names] { draw_frame(names.panel); })) << time;
    }
}

TEST(TextScreen, OnlyTheMeantCallsAreRejected) {
    prepare({kTextScreen});
    EXPECT_EQ(rejected_calls_of([] { render_at(kTextScreen, 70.0); }),
              (std::vector<std::string>{"glDisable", "glEnable"}));
    EXPECT_EQ(recording::modelview_depth(), 1);
    EXPECT_EQ(recording::projection_depth(), 1);
}

TEST(TextScreen, DrawsNoNumbers) {
    g_random = {11, 22, 33};
    prepare({kTextScreen});
    start_at(kTextScreen, 67.5);
    render_at(kTextScreen, 70.0);
    EXPECT_EQ(g_random.s1, 11u);
}
