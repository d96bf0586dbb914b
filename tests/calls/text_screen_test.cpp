#include <GL/glu.h>

#include "show/image/filters.h"
#include "show/image/image.h"
#include "show/image/upload.h"
#include "show/stage/language.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/show_time.h"
#include "show/text/text.h"
#include "tests/calls/expected_layers.h"
#include "tests/calls/scene_test.h"

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

class TextScreen : public SceneTest {
protected:
    TextScreen() : SceneTest(kTextScreen) {}
    void draw_expected(double) override { draw_frame(names_.panel); }
};

} // namespace

TEST(TextScreenPanel, IsGermanUnlessEnglishWasChosen) {
    ASSERT_TRUE(has_font("./Vera.ttf"));
    EXPECT_TRUE(prepares(kTextScreen, [] { make_panel(kGerman); }));
    g_english = 1;
    EXPECT_TRUE(prepares(kTextScreen, [] { make_panel(kEnglish); }));
}

TEST(TextScreenPanel, WithoutTheFontIsTransparent) {
    WorkingFolder empty({});
    g_scenes[kTextScreen].prepare();
    const std::vector<unsigned char> nothing(512 * 512 * 2, 0);
    EXPECT_EQ(recording::uploads().at(0).pixels, nothing);
}

TEST_F(TextScreen, IsAStillPicture) {
    start(67.5);
    expect_right_frames({67.5, 70.0, 73.99, 0.0});
}
